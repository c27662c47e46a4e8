"""./team: eleven players of one team on a server that already runs."""

import argparse
import socket
from pathlib import Path

from rich import box
from rich.console import Console
from rich.table import Table

from matches import options
from matches.build import build_programs
from matches.locks import lock_keep_folder
from matches.places import DEFAULT_CONF, work_folder
from matches.players import KINDS, Player
from matches.processes import Signals
from matches.settings import check_conf, make_team_folder
from matches.visit import NO_SERVER, Ending, Team, Where
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


def _statistics(players: list[Player]) -> Table | str:
    counts = [found for player in players if (found := player.counts)]
    if not counts:
        return "no statistics: the players ended by themselves, without a word"
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

        Signals(team.stop)
        say("team", f"{name} plays on {where}; Ctrl-C stops it")
        ending = team.run(programs / "agent", build)
    _tell(team, ending, folder)
    return ending.status


def _tell(team: Team, ending: Ending, folder: Path) -> None:
    console = Console(highlight=False, markup=False)
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
