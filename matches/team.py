"""./team: eleven players of one team on a server that already runs."""

import argparse
import signal
import socket
import time
from dataclasses import dataclass
from pathlib import Path
from types import FrameType

from rich import box
from rich.console import Console
from rich.table import Table

from matches import options
from matches import players as teams
from matches.build import build_programs
from matches.judge import ended_how
from matches.locks import Lock, lock_keep_folder
from matches.monitor import Monitor, Sight
from matches.places import DEFAULT_CONF, work_folder
from matches.players import KINDS, TEAM_SIZE, Eleven, Player
from matches.processes import Nursery
from matches.settings import check_conf, make_team_folder
from matches.words import Failure, say, shown

ABOUT = """\
Plays for a team: starts eleven players against a server that already runs, the
goalkeeper first. Builds what has changed before. Ends with what the players did;
Ctrl-C stops them.
"""

STATUS = """\
Ends with 0 after full time, 1 when it could not start, 2 for a wrong option, 3
when no server answers, 4 when the server refuses the team, 5 when server and
players lose each other during the match, 6 when players crash or are killed, 130
after Ctrl-C.
"""

NO_SERVER, REFUSED, LOST, DIED = 3, 4, 5, 6

JOINING = 1.0  # seconds until the next player starts all the same
SILENCE = 1.2  # seconds without a step after which the server is asked whether it is there;
ANSWER = 0.4  # and so long it may take: a player gives up after 2 s, without its statistics
AFTERWARDS = 1.0  # seconds that the team stays after full time


@dataclass(frozen=True)
class Ending:
    """Why it is over: the exit status, what is said, and what to do next."""

    status: int
    words: str
    advice: str = ""


@dataclass(frozen=True)
class Where:
    """The server."""

    host: str
    address: str
    port: int

    def __str__(self) -> str:
        return f"{self.host}, port {self.port}"


def _parser() -> options.Parser:
    parser = options.Parser("team", "HOST [TEAMNAME] [option ...]", ABOUT, STATUS)
    add = parser.add_argument
    add("host", metavar="HOST", help="name or address of the server")
    add(
        "name",
        metavar="TEAMNAME",
        nargs="?",
        type=options.team_name,
        help="up to 15 letters, digits, - or _ (teamname of player.conf)",
    )
    add(
        "--port",
        type=options.whole_number(1, 65535),
        metavar="P",
        help="UDP port of the server (serverPort of player.conf)",
    )
    add(
        "--say-id",
        type=options.say_mark,
        metavar="C",
        help="letter or digit that marks the team's own say messages (sayID of player.conf); "
        "give two teams of this program on one pitch different ones",
    )
    add(
        "--conf",
        type=options.readable_file,
        default=DEFAULT_CONF,
        metavar="FILE",
        help="settings of the team (player.conf)",
    )
    return parser


def _resolve(host: str, port: int) -> Where:
    try:
        found = socket.getaddrinfo(host, port, socket.AF_INET, socket.SOCK_DGRAM)
    except OSError as error:
        raise Failure(
            f"there is no host '{host}': {error.strerror}", "Give its name or address.", NO_SERVER
        ) from error
    return Where(host, str(found[0][4][0]), port)


class Team:
    """The course of one team's match."""

    def __init__(self, where: Where, name: str, folder: Path) -> None:
        self._where = where
        self._name = name
        self._folder = folder
        self._monitor = Monitor(where.address, where.port)
        self._before: frozenset[tuple[str, int]] = frozenset()
        self._joined: set[int] = set()
        self._began = self._heard = self._asked = time.monotonic()
        self.players: list[Player] = []
        self.stopped_by = 0

    @property
    def sight(self) -> Sight:
        """The newest that is known of the match."""
        return self._monitor.sight

    def run(self, agent: Path, build: Lock | None) -> Ending:
        """Starts the players, waits for an end, stops them, and tells why it ended."""
        with Nursery() as nursery:
            eleven = Eleven(self._folder, agent, self._where.host, self._name)
            self._wait(0.25)  # in which a server that is there answers
            self._before = self._ours()
            self.players = eleven.start(nursery, self._has_joined)
            if build is not None:
                build.release()
            ending = self._play()
            teams.stop(self.players)
            self._monitor.close()
        return ending

    # ---- Start

    def _wait(self, seconds: float) -> None:
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            self._look()
            time.sleep(0.02)

    def _has_joined(self, number: int, players: list[Player]) -> None:
        self.players = players
        start = time.monotonic()
        patience = JOINING if self.sight.steps else 0.4 if number == 1 else 0.05
        while len(self._joined) < number and time.monotonic() - start < patience:
            if self.stopped_by or not players[-1].program.runs():
                return
            self._wait(0.02)

    def _ours(self) -> frozenset[tuple[str, int]]:
        """Those on the pitch that carry the team's name."""
        teams_here = self.sight.teams
        side = "lr"[teams_here.index(self._name)] if self._name in teams_here else ""
        return frozenset(player for player in self.sight.present if player[0] == side)

    # ---- Course

    def _look(self) -> None:
        steps = self.sight.steps
        sight = self._monitor.look()
        now = time.monotonic()
        if sight.steps > steps:
            self._heard = self._asked = now
            self._joined |= {number for _, number in self._ours() - self._before}
        elif now - self._heard > SILENCE and now - self._asked > ANSWER / 3:
            self._monitor.greet()
            self._asked = now

    def _play(self) -> Ending:
        full_time = 0.0
        while not self.stopped_by:
            self._wait(0.1)
            running = [player for player in self.players if player.program.runs()]
            if self.sight.is_over:
                full_time = full_time or time.monotonic()
                if not running or time.monotonic() - full_time > AFTERWARDS:
                    break
            elif not running or self._server_is_gone():
                break
        return self._ending()

    def _server_is_gone(self) -> bool:
        return self.sight.steps > 0 and time.monotonic() - self._heard > SILENCE + ANSWER

    # ---- End

    def _ending(self) -> Ending:
        where, sight = self._where, self.sight
        if self.stopped_by:
            return Ending(128 + self.stopped_by, "stopped by the user")
        died = self._died()
        if died:
            return died
        if sight.steps == 0:
            return Ending(
                NO_SERVER,
                f"no server answers at {where}",
                "Is it running there, and does a firewall let UDP pass?",
            )
        if not self._joined:
            return self._refused()
        if sight.is_over:
            return self._full_time()
        if self._server_is_gone():
            return Ending(LOST, f"the server at {where} fell silent in cycle {sight.cycle}")
        return Ending(
            LOST,
            f"the players lost the server at {where} in cycle {sight.cycle}, "
            "which goes on without them",
            "Is the network between the two well?",
        )

    def _full_time(self) -> Ending:
        numbers = {number for _, number in self._ours()}
        gone = sorted(self._joined - numbers)
        if len(self._joined) < TEAM_SIZE:
            return Ending(LOST, f"full time, but only {len(self._joined)} of {TEAM_SIZE} played")
        if gone:
            return Ending(LOST, f"full time, but the server lost {_listed(gone)} before")
        return Ending(0, "full time")

    def _died(self) -> Ending | None:
        bad = [player for player in self.players if player.program.status not in (None, 0)]
        if not bad:
            return None
        kinds = dict.fromkeys(ended_how(player.program.status) for player in bad)
        who = _listed([player.number for player in bad])
        words = f"{who} {' or '.join(kinds)}"
        return Ending(DIED, words, bad[0].words or "Nothing was said.")

    def _refused(self) -> Ending:
        names = [name for name in self.sight.teams if name]
        if len(names) == 2 and self._name not in names:
            cause = f"{names[0]} and {names[1]} are on the pitch already"
        elif len(self._before) == TEAM_SIZE:
            cause = f"a team {self._name} is complete already"
        else:
            cause = "it does not say why"
        return Ending(REFUSED, f"the server at {self._where} refused the team: {cause}")


def _listed(numbers: list[int]) -> str:
    if len(numbers) == TEAM_SIZE:
        return "all players"
    return ("player " if len(numbers) == 1 else "players ") + ", ".join(map(str, numbers))


def _statistics(players: list[Player]) -> Table | str:
    counts = [found for player in players if (found := player.counts)]
    if not counts:
        return "no statistics: the players ended before they could tell"
    table = Table(box=box.SIMPLE_HEAD, pad_edge=False, show_edge=False)
    table.add_column(f"commands of {len(counts)} players")
    table.add_column("queued", justify="right", min_width=9)
    table.add_column("executed", justify="right", min_width=9)
    for kind in KINDS:
        queued = sum(count.queued[kind] for count in counts)
        received = sum(count.received[kind] for count in counts)
        table.add_row(kind, str(queued), str(received))
    return table


def main(arguments: list[str]) -> int:
    """Plays; returns the exit status."""
    given = _parser().parse_args(arguments)
    programs, build = build_programs("team")
    checked = check_conf(programs, given.conf)
    for warning in checked.warnings:
        say("team", warning)
    values = checked.values
    where = _resolve(given.host, given.port or values.port)
    name = given.name or values.team_name
    try:
        options.team_name(name)
    except argparse.ArgumentTypeError as error:
        raise Failure(f"the team's name in {shown(given.conf)} {error}") from error
    folder, lock = lock_keep_folder(None, work_folder() / "match" / f"team-{name}")
    with lock:
        make_team_folder(folder, given.conf, name, where.port, given.say_id or values.say_mark)
        team = Team(where, name, folder)

        def stop(number: int, _frame: FrameType | None) -> None:
            if team.stopped_by:
                raise KeyboardInterrupt
            team.stopped_by = number

        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            signal.signal(number, stop)
        say("team", f"{name} plays on {where}; Ctrl-C stops it")
        ending = team.run(programs / "agent", build)
    _tell(team, ending, folder)
    return ending.status


def _tell(team: Team, ending: Ending, folder: Path) -> None:
    console = Console(highlight=False)
    console.print("")
    console.print(_statistics(team.players))
    sight = team.sight
    if sight.has_begun:
        left, right = (name or "(nobody)" for name in sight.teams)
        console.print(
            f"\n{left} {sight.score[0]} : {sight.score[1]} {right}  after {sight.cycle} cycles",
            soft_wrap=True,
        )
    say("team", ending.words)
    for line in ending.advice.splitlines():
        print(f"  {line}")
    say("team", f"settings and the players' own words are in {shown(folder)}/")
