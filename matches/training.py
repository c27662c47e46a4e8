"""The trials of a scene: a server with its trainer, the players of the scene, and a log."""

import random
import re
import time
from collections.abc import Callable
from dataclasses import dataclass
from pathlib import Path

from matches.conditions import Course, Moving, Sight, Verdict, judge
from matches.judge import ended_how
from matches.monitor import Monitor
from matches.players import Eleven, Player
from matches.ports import HOST
from matches.processes import Nursery, Program, end_all, wait_until
from matches.results import SIDES
from matches.scenefile import Placed, Scene, SetUp
from matches.settings import TeamSettings, make_team_folder
from matches.trainer import Trainer
from matches.words import Failure, last_words, shown

SAY_MARKS = "vw"
SETTLE = 10  # steps in which the players look around before a trial; nobody can run then
NEVER = 1_000_000  # cycles: no half ends, and no kick-off comes by itself
JOINING = 3.0  # seconds a player may take to be on the pitch
LOG = "scene.rcg"
CHAPTER = re.compile(rb'^\(msg \d+ 1 "\(chapter \S+ (\d+)')


@dataclass(frozen=True)
class TrainingSettings:
    """Everything that the trials depend on."""

    left: TeamSettings
    right: TeamSettings
    trials: int = 100
    seed: int = 1
    real_time: bool = False


class Training:
    """Start, play, finish, in this order."""

    def __init__(
        self,
        scene: Scene,
        settings: TrainingSettings,
        programs: Path,
        folder: Path,
        port: int,
        nursery: Nursery,
    ) -> None:
        """Folder and port, and the port above it, are ours alone."""
        self._scene = scene
        self._settings = settings
        self._programs = programs
        self._folder = folder
        self._port = port
        self._nursery = nursery
        self._teams = (settings.left, settings.right)
        self._players: dict[tuple[str, int], Player] = {}
        self._server: Program
        self._trainer: Trainer
        self.log = folder / LOG
        self.verdicts: list[Verdict] = []

    # ---- Start

    def start(self) -> None:
        """Returns when everybody who plays in the scene is there."""
        for name in (self.log, self.log.with_suffix(".rcl")):
            name.unlink(missing_ok=True)
        self._start_server()
        counts = [self._highest(side) for side in "lr"]
        last = ("lr"[1 if counts[1] else 0], counts[1] or counts[0])
        for side in (0, 1):
            self._start_team(side, counts[side], last)

    def _highest(self, side: str) -> int:
        return max((number for letter, number in self._scene.players if letter == side), default=0)

    def _start_server(self) -> None:
        settings = self._settings
        joining = sum(self._highest(side) for side in "lr")
        options = {
            "--port": self._port,
            "--address": HOST,
            "--half-cycles": NEVER,
            "--ready-cycles": NEVER,
            "--wait": NEVER,
            "--players": joining,
            "--seed": settings.seed,
            "--log": self.log,
            "--scoreboard": "off",
        }
        arguments = [str(part) for option in options.items() for part in option]
        arguments += ["--trainer"] if settings.real_time else ["--trainer", "--synchronous"]
        server = self._programs / "practice-server"
        self._server = self._nursery.start(
            [server, *arguments], self._folder, self._folder / "server.out"
        )
        wait_until(lambda: not self._server.runs() or self.log.exists(), 5.0)
        if not self._server.runs():
            raise Failure("the practice server did not start", last_words(self._server.out))
        teams = {team.name: letter for team, letter in zip(self._teams, "lr", strict=True)}
        self._trainer = Trainer(HOST, self._port + 1, teams, not settings.real_time)

    def _start_team(self, side: int, count: int, last: tuple[str, int]) -> None:
        """A server numbers players as they come: who is not needed comes too, and goes again.

        They go before the last player of all comes, with whom the clock may start.
        """
        team, letter = self._teams[side], "lr"[side]
        folder = self._folder / SIDES[side]
        make_team_folder(folder, team.conf, team.name, self._port, SAY_MARKS[side])
        agent = team.agent or self._programs / "agent"

        def has_joined(number: int, players: list[Player]) -> None:
            self._players[letter, number] = players[-1]
            self._await(lambda: (letter, number) in self._trainer.look().players, letter, number)
            if (letter, number + 1) == last:
                self._dismiss_others()

        if last == ("r", 1) == (letter, 1):
            self._dismiss_others()
        Eleven(folder, agent, HOST, team.name).start(self._nursery, has_joined, count)

    def _await(self, condition: Callable[[], bool], side: str, number: int) -> None:
        player = self._players[side, number].program
        end = time.monotonic() + JOINING
        while not condition():
            if not player.runs():
                raise Failure(
                    f"player {side} {number} {ended_how(player.status)} before the first trial",
                    self._players[side, number].words or "It said nothing.",
                )
            if time.monotonic() > end:
                raise Failure(f"player {side} {number} does not join")
            time.sleep(0.01)

    def _dismiss_others(self) -> None:
        others = {who for who in self._players if who not in self._scene.players}
        monitor = Monitor(HOST, self._port)
        wait_until(lambda: monitor.look().steps > 0, 2.0)
        for side, number in others:
            monitor.discard(side, number)
        gone = wait_until(lambda: not others & self._trainer.look().players.keys(), 2.0)
        monitor.close()
        end_all(self._players.pop(who).program for who in others)
        if not gone:
            raise Failure("the practice server does not let a monitor discard players")

    # ---- Trials

    def play(self, watch: Callable[[Verdict], None], wants_to_stop: Callable[[], bool]) -> None:
        """Plays all trials; `watch` is called after each."""
        self._trainer.next_cycle()
        for trial in range(1, self._settings.trials + 1):
            if wants_to_stop():
                return
            verdict = self._try(trial)
            self.verdicts.append(verdict)
            watch(verdict)

    def _try(self, trial: int) -> Verdict:
        scene, trainer = self._scene, self._trainer
        set_up = scene.draw(random.Random(f"{self._settings.seed} {trial}"))
        self._set_up(set_up)
        for _ in range(SETTLE):
            trainer.next_cycle()
        course = self._begin(set_up, trial)
        while True:
            trainer.next_cycle()
            words = list(trainer.words)
            if course.cycles == 0 and scene.mode in words:
                words.remove(scene.mode)  # said because of us
            assert trainer.sight is not None
            seen = trainer.sight.mirrored if set_up.mirrored else trainer.sight
            course.see(seen, words)
            verdict = judge(course, scene.success, scene.failure, scene.lasts)
            if verdict is not None:
                return verdict
            if course.cycles % 20 == 0:
                self._refuse_early_ends()

    def _set_up(self, set_up: SetUp) -> None:
        trainer = self._trainer
        trainer.tell("(change_mode pause)")
        trainer.tell(f"(move (ball) {set_up.ball.x:.4f} {set_up.ball.y:.4f})")
        for who, place in set_up.players.items():
            trainer.tell(self._move(who, place, moving=False))
        trainer.tell("(recover)")

    def _begin(self, set_up: SetUp, trial: int) -> Course:
        """What moves starts to move. Players who were made to make room stay where they are."""
        scene, trainer, ball = self._scene, self._trainer, set_up.ball
        trainer.tell(f"(chapter {scene.name} {trial})")
        trainer.tell(f"(change_mode {scene.mode})")
        if scene.ball is not None and scene.ball.speed is not None:
            speed = f"{ball.vx:.4f} {ball.vy:.4f}"
            trainer.tell(f"(move (ball) {ball.x:.4f} {ball.y:.4f} 0 {speed})")
        for who, place in set_up.players.items():
            if scene.players[who].speed is not None:
                trainer.tell(self._move(who, place, moving=True))
        first = Sight(0, Moving(ball.x, ball.y, ball.vx, ball.vy), {})
        return Course(
            first.mirrored if set_up.mirrored else first,
            scene.mode,
            started=scene.mode == "play_on",
        )

    def _move(self, who: tuple[str, int], place: Placed, moving: bool) -> str:
        letter, number = who
        name = self._teams["lr".index(letter)].name
        parts = [f"(move (player {name} {number}) {place.x:.4f} {place.y:.4f}"]
        if place.facing is not None:
            parts.append(f"{place.facing:.2f}")
        if moving:
            parts.append(f"{place.vx:.4f} {place.vy:.4f}")
        return " ".join(parts) + ")"

    def _refuse_early_ends(self) -> None:
        for (side, number), player in self._players.items():
            if not player.program.runs():
                raise Failure(
                    f"player {side} {number} {ended_how(player.program.status)} in a trial",
                    f"{player.words or 'It said nothing.'}\n"
                    f"More may be in {shown(player.program.err)}",
                )

    # ---- End

    def finish(self) -> None:
        """Stops everybody, and writes the verdicts into the log."""
        self._trainer.close()
        end_all([player.program for player in self._players.values()])
        end_all([self._server])
        mark_chapters(self.log, self.verdicts)


def mark_chapters(log: Path, verdicts: list[Verdict]) -> None:
    """Adds to each chapter of a game log how it ends, which nobody knew when it began."""
    lines = log.read_bytes().split(b"\n")
    for index, line in enumerate(lines):
        chapter = CHAPTER.match(line)
        if chapter is None or int(chapter[1]) > len(verdicts):
            continue
        verdict = verdicts[int(chapter[1]) - 1]
        outcome = f": {'success' if verdict.success else 'failure'}, {verdict.why}"
        lines[index] = chapter[0] + outcome.encode() + line[chapter.end() :]
    log.write_bytes(b"\n".join(lines))
