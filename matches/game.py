"""The course of a match: its programs are started, watched and stopped, its results collected."""

import re
import time
from collections.abc import Callable
from pathlib import Path

from matches import players as teams
from matches.duration import expected_duration
from matches.judge import ended_how
from matches.monitor import Monitor, Sight
from matches.players import Eleven, Player
from matches.ports import HOST
from matches.processes import Nursery, Program, Usage, end_all, wait_until
from matches.results import (
    SIDES,
    MatchOutcome,
    read_figures,
    read_server_results,
    team_result,
    write_players,
)
from matches.settings import MatchSettings, make_team_folder
from matches.words import Failure, MatchFailure, last_words, shown

SAY_MARKS = "vw"
JOINING = 3.0  # seconds a player may take to be on the pitch
SILENCE = 60.0  # seconds without a step after which a match is given up
OWN_FILES = (
    "match.rcg",
    "match.rcl",
    "server.json",
    "server.out",
    "link.txt",
    "table.txt",
    "watch.out",
    "replay.html",
)
FIRST_PAGE_PORT = 8000


class Game:
    """The course of one match: start, play, finish, in this order."""

    def __init__(
        self, settings: MatchSettings, programs: Path, folder: Path, port: int, nursery: Nursery
    ) -> None:
        """Folder and port are ours alone."""
        self._settings = settings
        self._programs = programs
        self._folder = folder
        self._port = port
        self._nursery = nursery
        self.watch: Callable[[Sight], None] = lambda _: None
        self.wants_to_stop: Callable[[], bool] = lambda: False
        self.tell_address: Callable[[str], None] = lambda _: None
        self._server: Program
        self._monitor: Monitor
        self._network: Program | None = None
        self._busy: list[Program] = []
        self._players: tuple[list[Player], list[Player]] = ([], [])
        self._door = port if settings.lossy is None else port + 1
        for name in (*OWN_FILES, "players.csv"):
            (self._folder / name).unlink(missing_ok=True)

    # ---- Start

    def start(self) -> None:
        """Server and network first, then the players."""
        self._start_server()
        if self._settings.watch:
            self._start_watch()
        self._start_network()
        self._start_busy_programs()
        for side in (0, 1):
            self._start_team(side)

    def _start_server(self) -> None:
        """Returns when it listens."""
        settings = self._settings
        options: dict[str, object] = {
            "--port": self._port,
            "--address": HOST,
            "--half-cycles": settings.half_cycles,
            "--seed": settings.seed,
            "--log": self._folder / "match.rcg",
            "--results": self._folder / "server.json",
            "--scoreboard": "plain",
        }
        if settings.speed is not None:
            options["--speed"] = settings.speed
        arguments = [str(part) for option in options.items() for part in option]
        if settings.fast:
            arguments.append("--synchronous")
        server = self._programs / "practice-server"
        out = self._folder / "server.out"
        self._server = self._nursery.start([server, *arguments], self._folder, out)
        self._await_port(self._server, self._port, "the practice server")
        self._monitor = Monitor(HOST, self._port)

    def _start_watch(self) -> None:
        """Returns when browsers may come."""
        out = self._folder / "watch.out"
        for http in (FIRST_PAGE_PORT, 0):  # if somebody has it, any free one
            options = [HOST, "--port", str(self._port), "--http", str(http)]
            program = self._nursery.start([self._programs / "watch", *options], self._folder, out)
            wait_until(lambda: not program.runs() or "open http" in out.read_text(), 5.0)
            if program.runs():
                break
        address = re.search(r"http://\S+", out.read_text())
        if address is None:
            raise Failure("watch did not start", last_words(out))
        self.tell_address(address[0])

    def _start_network(self) -> None:
        """The bad one, when it is asked for."""
        if self._settings.lossy is None:
            return
        numbers = (self._door, self._port, self._settings.lossy)
        link = [str(self._programs / "lossy-link"), *map(str, numbers)]
        self._network = self._nursery.start(link, self._folder, self._folder / "link.txt")
        self._await_port(self._network, self._door, "the bad network")

    def _start_busy_programs(self) -> None:
        """They do nothing but keep a processor busy."""
        nothing = Path("/dev/null")
        loop = ["/bin/sh", "-c", "while :; do :; done"]
        self._busy = [
            self._nursery.start(loop, self._folder, nothing) for _ in range(self._settings.busy)
        ]

    def _start_team(self, side: int) -> None:
        """The left one goes first: the server gives that side to the team that comes first."""
        team = (self._settings.left, self._settings.right)[side]
        folder = self._folder / SIDES[side]
        make_team_folder(folder, team.conf, team.name, self._door, SAY_MARKS[side])
        agent = team.agent or self._programs / "agent"
        joined: list[Player] = []

        def has_joined(number: int, players: list[Player]) -> None:
            joined[:] = players
            self._await_player(side, number, players)

        try:
            started = Eleven(
                folder, agent, HOST, team.name, self._settings.plans
            ).start(self._nursery, has_joined)
            self._players[side].extend(started)
        except _Stop:
            self._players[side].extend(joined)

    def _await_player(self, side: int, number: int, players: list[Player]) -> None:
        wanted = ("lr"[side], number)
        start = time.monotonic()
        while wanted not in self._look().present:
            if self.wants_to_stop():
                raise _Stop
            self._refuse_early_ends(players, side)
            # A server that takes no monitors is given a moment.
            if time.monotonic() - start > (JOINING if self._monitor.sight.steps else 0.4):
                return
            self._monitor.wait(0.02)

    def _await_port(self, program: Program, port: int, what: str) -> None:
        def listens() -> bool:
            return not program.runs() or _is_open(port)

        if not wait_until(listens, 5.0) or not program.runs():
            raise Failure(f"{what} did not start", last_words(program.out))

    # ---- Course

    def play(self) -> None:
        """Returns when the match is over for whatever reason."""
        started = heard = time.monotonic()
        steps = 0
        while not self.wants_to_stop() and not self._is_over():
            sight = self._look()
            everybody = [player for side in self._players for player in side]
            if not sight.has_begun and sight.steps:
                for side in (0, 1):
                    self._refuse_early_ends(self._players[side], side)
            if not self._server.runs() or not any(p.program.runs() for p in everybody):
                return
            if sight.steps > steps:
                steps, heard = sight.steps, time.monotonic()
            limit = 2 * expected_duration(self._settings.half_cycles) + SILENCE
            if time.monotonic() > (heard + SILENCE if steps else started + limit):
                return
            time.sleep(0.02 if self._settings.fast else 0.05)

    def _look(self) -> Sight:
        sight = self._monitor.look()
        self.watch(sight)
        return sight

    def _is_over(self) -> bool:
        return self._monitor.sight.is_over or (self._folder / "server.json").exists()

    def _refuse_early_ends(self, players: list[Player], side: int) -> None:
        name = (self._settings.left, self._settings.right)[side].name
        for player in players:
            if not player.program.runs():
                words = player.words or "It said nothing."
                raise MatchFailure(
                    f"{name} {player.number} {ended_how(player.program.status)} "
                    "before the kick-off",
                    f"{words}\nMore may be in {shown(player.program.err)}",
                )

    # ---- End

    def finish(self) -> MatchOutcome:
        """Stops everybody and puts together what is known."""
        fast = self._settings.fast
        if not fast and not self.wants_to_stop():
            time.sleep(0.5)  # in which the last commands arrive; a clock that waits has them all
        everybody = [player for side in self._players for player in side]
        server_usage = self._server.usage() if self._server.runs() else None
        over = self._is_over()
        if over:
            teams.stop(everybody)
            wait_until(lambda: not self._server.runs(), 15)
        # Before its time the server goes first: it would count players that leave as lost.
        end_all([self._server])
        if not over:
            teams.stop(everybody)
        self._monitor.close()
        end_all([*self._busy, *([self._network] if self._network else [])])
        if self._server.status != 0:
            raise MatchFailure(
                f"the practice server {ended_how(self._server.status)}",
                last_words(self._server.out) or "It said nothing.",
            )
        return self._outcome(server_usage)

    def _outcome(self, server_usage: Usage | None) -> MatchOutcome:
        server = read_server_results(self._folder / "server.json")
        figures = read_figures(self._programs, self._folder / "match.rcg")
        left, right = (
            team_result(team.name, players, server, figures)
            for team, players in zip(
                (self._settings.left, self._settings.right), self._players, strict=True
            )
        )
        outcome = MatchOutcome(
            self._folder,
            left,
            right,
            server.cycles,
            server.finished,
            self.wants_to_stop(),
            server_usage,
            self._network.out.read_text().strip() if self._network else "",
            server.pace,
        )
        write_players(outcome, self._folder / "players.csv")
        return outcome


class _Stop(Exception):
    """Somebody wants the match to end while the teams are still being started."""


def _is_open(port: int) -> bool:
    """Whether somebody on this machine has the UDP port."""
    wanted = f":{port:04X}"
    rows = Path("/proc/net/udp").read_text().splitlines()[1:]
    return any(row.split()[1].endswith(wanted) for row in rows)
