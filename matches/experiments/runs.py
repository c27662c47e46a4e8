"""Plays the matches of a plan, as many as it takes, in a folder that may be taken up again."""

import os
import shutil
import time
from collections.abc import Callable
from pathlib import Path

from matches.experiments import rows
from matches.experiments.engine import Engine, Where
from matches.experiments.plan import Game, Plan
from matches.experiments.rows import Row, drop_logs, read_row
from matches.experiments.series import Series, assess
from matches.words import Failure, shown

LOOK = 0.25  # seconds between looks at what has been finished
LEAST_FREE = 50_000_000  # bytes of disk without which nothing new is started
BYTES_A_CYCLE = 750  # of both compressed logs
TELLING = 20  # logs that are kept, about, when only the telling ones are


class Run:
    """The folder of an experiment: its plan, its programs and what has been played."""

    def __init__(self, folder: Path, plan: Plan, where: Where) -> None:
        """The folder is to be locked."""
        self.folder = folder.resolve()
        self.plan = plan
        self.where = where
        self._rows: dict[str, Row] = {}
        self.seconds = 0.0
        """Spent on playing by this command."""
        self.words = ""
        """What the engine said last, for when matches are missing."""

    def change_plan(self, plan: Plan) -> None:
        """Another plan on the same matches."""
        self.plan = plan
        plan.save(self.folder)

    def folder_of(self, game: Game | str) -> Path:
        """Where a match leaves what it leaves."""
        return self.folder / rows.FOLDER / str(game)

    def row_of(self, game: Game) -> Row | None:
        """The record of a match, if it has been played."""
        return self._rows.get(str(game))

    @property
    def played(self) -> int:
        """How many matches have a record."""
        return len(self._rows)

    def refresh(self) -> None:
        """Reads the rows that are new."""
        try:
            names = os.listdir(self.folder / rows.FOLDER)
        except FileNotFoundError:
            return
        for name in names:
            if name not in self._rows and (row := read_row(self.folder_of(name))):
                self._rows[name] = row

    def assess(self, first: str, second: str, sequential: bool = True) -> Series:
        """What is known so far."""
        return assess(self.plan, first, second, self.row_of, sequential)

    def play(
        self,
        first: str,
        second: str,
        watch: Callable[[Series, int], None],
        sequential: bool = True,
    ) -> Series:
        """Until it is settled. `watch` gets what is known and how many matches are done."""
        self.refresh()
        series = self.assess(first, second, sequential)
        games = list(self.plan.games(first, second))
        todo = [game for game in games if self.row_of(game) is None]
        if series.is_settled or not todo:
            return series
        self._play_games(
            todo,
            lambda: self.assess(first, second, sequential),
            lambda known: watch(known, sum(self.row_of(game) is not None for game in games)),
        )
        self.refresh()
        return self.assess(first, second, sequential)

    def play_all(self, games: list[Game], watch: Callable[[int], None]) -> None:
        """All of them, whatever comes out."""
        self.refresh()
        todo = [game for game in games if self.row_of(game) is None]
        if not todo:
            return

        def count() -> Series:
            watch(sum(self.row_of(game) is not None for game in games))
            return Series("", "", missing=True)

        self._play_games(todo, count, lambda _: None)
        self.refresh()

    def _play_games(
        self, todo: list[Game], known: Callable[[], Series], watch: Callable[[Series], None]
    ) -> None:
        started = time.monotonic()
        try:
            with Engine(self.folder, self.plan, self.where, list(map(str, todo))) as engine:
                seen = -1
                while engine.runs:
                    time.sleep(LOOK)
                    self.refresh()
                    if len(self._rows) != seen:
                        seen = len(self._rows)
                        series = known()
                        if series.is_settled:
                            break
                    watch(series)
                    self._heed_the_disk()
                self.words = engine.words
        finally:
            self.seconds += time.monotonic() - started
            shutil.rmtree(self.folder / "running", ignore_errors=True)

    def _heed_the_disk(self) -> None:
        if shutil.disk_usage(self.folder).free < LEAST_FREE:
            raise Failure(
                f"the disk of '{shown(self.folder)}' is nearly full",
                "Make room, then start the same command with --resume; nothing is played twice.",
            )

    def prune(self, series: Series) -> None:
        """Drops the logs that nobody will ask for, as the plan wants it.

        Of the telling ones the first of each goal difference is kept: the largest win, the largest
        loss and the match closest to the mean are always among them.
        """
        if self.plan.keep_logs != "telling":
            return
        firsts: set[int] = set()
        for game in self.plan.games(series.first, series.second):
            row = self.row_of(game)
            if row is None or row.status != rows.PLAYED:
                continue
            difference = (row.played.goals[0] - row.played.goals[1]) * (3 - 2 * game.turn)
            folder = self.folder_of(game)
            if difference in firsts and row.files and not (folder / rows.DROPPED).exists():
                drop_logs(folder, row)
            firsts.add(difference)


def disk_needed(plan: Plan, comparisons: int) -> int:
    """Bytes that the kept logs will take at most."""
    matches = {"all": 2 * plan.pairs, "telling": min(TELLING, 2 * plan.pairs), "none": 0}
    return matches[plan.keep_logs] * comparisons * 2 * plan.half_cycles * BYTES_A_CYCLE
