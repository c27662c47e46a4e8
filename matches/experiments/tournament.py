"""./tournament: packaged teams, every one against every other, on both sides."""

from argparse import Namespace
from collections.abc import Mapping, Sequence
from dataclasses import dataclass
from itertools import combinations
from pathlib import Path

from rich import box
from rich.console import Console
from rich.table import Table

from matches import options
from matches.experiments.common import (
    Wish,
    experiment_parser,
    fill,
    free_folder,
    open_run,
    tell_trouble,
)
from matches.experiments.engine import Where
from matches.experiments.entrants import KEYS, entries_of, find_league_team, own_revision
from matches.experiments.line import Line
from matches.experiments.plan import Game, Plan
from matches.experiments.rows import PLAYED, Row
from matches.experiments.runs import Run
from matches.experiments.tables import write_results
from matches.words import Failure, say, shown

ABOUT = """\
Plays a tournament of packaged teams: folders with the programs `start` and `kill`,
as leagues have them. Every team meets every other, once on either side. Ends with
the table of the group.
"""

STATUS = """\
Ends with 0 when every match came through, 1 when something failed, 2 for a wrong
option, 130 after Ctrl-C. What was played is kept: start the same command with
--resume to go on.
"""

WIN, DRAW = 3, 1


@dataclass
class Standing:
    """A row of the table of a group."""

    team: str
    matches: int = 0
    won: int = 0
    drawn: int = 0
    lost: int = 0
    scored: int = 0
    received: int = 0

    @property
    def points(self) -> int:
        """Three for a win, one for a draw."""
        return WIN * self.won + DRAW * self.drawn

    @property
    def difference(self) -> int:
        """Of goals."""
        return self.scored - self.received

    def add(self, ours: int, theirs: int) -> None:
        """One match more."""
        self.matches += 1
        self.won += ours > theirs
        self.drawn += ours == theirs
        self.lost += ours < theirs
        self.scored += ours
        self.received += theirs


def standings(teams: Mapping[str, str], matches: Sequence[tuple[Game, Row]]) -> list[Standing]:
    """In order: points, goal difference, goals scored; then the name, which decides nothing."""
    table = {key: Standing(name) for key, name in teams.items()}
    for game, row in matches:
        if row.status == PLAYED:
            left, right = row.played.goals
            table[game.sides[0]].add(left, right)
            table[game.sides[1]].add(right, left)
    return sorted(
        table.values(), key=lambda s: (-s.points, -s.difference, -s.scored, s.team)
    )


def group_table(rows: Sequence[Standing]) -> Table:
    """As leagues print it."""
    table = Table(box=box.SIMPLE_HEAD, pad_edge=False, show_edge=False)
    for name in ("", "team", "matches", "points", "won", "drawn", "lost", "goals", "average"):
        table.add_column(name, justify="left" if name == "team" else "right")
    for place, row in enumerate(rows, 1):
        average = row.difference / row.matches if row.matches else 0.0
        table.add_row(
            str(place), row.team, str(row.matches), str(row.points), str(row.won), str(row.drawn),
            str(row.lost), f"{row.scored}:{row.received}", f"{average:+.2f}",
        )
    return table


def _parser() -> options.Parser:
    made = experiment_parser("tournament", "FOLDER FOLDER ... [option ...]", ABOUT, STATUS)
    add = made.add_argument
    add("folders", nargs="*", metavar="FOLDER", help="a packaged team")
    add("--rounds", type=options.whole_number(1, 1000), default=1, metavar="N",
        help="how often each two meet on either side (1)")
    add("--server", type=options.program, metavar="FILE",
        help="another server that takes the field's options (the practice server)")
    return made


def main(arguments: list[str]) -> int:
    """Plays; returns the exit status."""
    given = _parser().parse_args(arguments)
    if len(given.folders) < 2 and not (given.resume and given.out):
        raise Failure("a tournament takes two teams or more", "Try ./tournament --help", status=2)
    if len(given.folders) > len(KEYS):
        raise Failure(f"a tournament takes at most {len(KEYS)} teams", status=2)
    wish = Wish(given.out, given.resume, Where(given.jobs or "", given.machines))
    names = ("seed", "half_cycles", "real_time", "rounds", "server")
    words = [*given.folders, *(f"{name}={getattr(given, name)}" for name in names)]
    with open_run(
        wish, free_folder("tournament"), lambda folder: _make(folder, given, words),
        words if given.folders else [],
    ) as run:
        return _play(run)


def _make(folder: Path, given: Namespace, words: list[str]) -> Plan:
    entrants = [find_league_team(text) for text in given.folders]
    entries = entries_of(entrants)
    plan = Plan(
        entries, list(combinations(entries, 2)), given.rounds, given.seed, given.half_cycles,
        not given.real_time, str(given.server or ""), own_revision(), keep_logs=given.keep_logs,
        words=words,
    )
    return fill("tournament", folder, plan, entrants)


def _games(plan: Plan) -> list[Game]:
    """Round by round, so that no team waits for long."""
    return sorted(
        (game for pair in plan.comparisons for game in plan.games(*pair)),
        key=lambda game: (game.pair, game.turn, game.first, game.second),
    )


def _played(run: Run) -> list[tuple[Game, Row]]:
    found = [(game, run.row_of(game)) for game in _games(run.plan)]
    return [(game, row) for game, row in found if row is not None]


def _play(run: Run) -> int:
    games = _games(run.plan)
    names = {key: entry.label for key, entry in run.plan.entries.items()}
    interrupted = False
    with Line() as line:

        def watch(done: int) -> None:
            leader = standings(names, _played(run))[0]
            line.show(f"{leader.team} leads with {leader.points} points", done, len(games))

        try:
            run.play_all(games, watch)
        except KeyboardInterrupt:
            interrupted = True
            run.refresh()
    matches = _played(run)
    write_results(run.plan, matches, run.folder / "results.csv")
    _tell(run, names, matches)
    if interrupted:
        say("tournament", "stopped; go on with --resume")
        return 130
    failed = [row for _, row in matches if row.status != PLAYED]
    if len(matches) < len(games):
        raise Failure(
            f"{len(games) - len(matches)} matches could not be played",
            f"{run.words}\nStart again with --resume.",
        )
    return 1 if failed else 0


def _tell(run: Run, names: Mapping[str, str], matches: Sequence[tuple[Game, Row]]) -> None:
    console = Console(highlight=False)
    for game, row in matches:
        left, right = (names[key] for key in game.sides)
        score = " : ".join(map(str, row.played.goals)) if row.status == PLAYED else "failed"
        console.print(f"{game}  {left} {score} {right}", soft_wrap=True)
    console.print("")
    table = group_table(standings(names, matches))
    console.print(table)
    with (run.folder / "table.txt").open("w") as file:
        Console(file=file, width=80).print(table)
    tell_trouble("tournament", run, [row for _, row in matches])
    say("tournament", f"table.txt, results.csv and the logs are in {shown(run.folder)}/")
