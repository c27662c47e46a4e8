"""./play: a match of two teams on this machine, on the practice server."""

from dataclasses import dataclass, replace
from pathlib import Path

from rich.console import Console

from matches import options
from matches.build import build_programs
from matches.duration import expected_duration
from matches.judge import faults
from matches.match import Match
from matches.places import work_folder
from matches.processes import Signals
from matches.progress import Progress
from matches.repeat import difference, fingerprint
from matches.replay import make_replay, page_of_viewer
from matches.results import MatchOutcome
from matches.settings import MatchSettings, TeamSettings, warn_of_settings
from matches.table import WIDTH, report
from matches.words import Failure, duration, say, shown

ABOUT = """\
Plays a match on this machine: two teams of eleven players against each other on
the practice server. Builds what has changed first. Ends with a table of what
happened; Ctrl-C ends the match early, with the table of what was played.
"""

STATUS = """\
Ends with 0 when all 22 players came through and the server understood every
command; on a bad network, when the commands lost stay in proportion to what it
does. What the rules void (a kick out of reach, a second neck turn in a cycle) is
neither refused nor lost. Ends with 1 when something failed, with 2 for a wrong
option, with 130 after Ctrl-C.
"""


def _parser() -> options.Parser:
    parser = options.Parser("play", "[option ...]", ABOUT, STATUS)
    add = parser.add_argument
    number = options.whole_number
    add(
        "--half-cycles",
        type=number(1, 100000),
        default=300,
        metavar="N",
        help="length of a half in cycles of 0.1 s (300)",
    )
    for side in ("left", "right"):
        add(
            f"--{side}",
            type=options.team_name,
            default=side.capitalize(),
            metavar="NAME",
            help=f"name of the team that starts on the {side} ({side.capitalize()})",
        )
    options.add_team_options(parser)
    add(
        "--seed",
        type=number(0, 999999999),
        default=1,
        metavar="N",
        help="where the server's random numbers start (1); with --fast one seed gives one match",
    )
    add(
        "--fast",
        action="store_true",
        help="the clock waits for the players instead of the players for the clock: a match takes "
        "seconds, and is the same every time",
    )
    add(
        "--speed",
        type=number(1, 10000),
        metavar="X",
        help="with --fast: at most X times as fast as in real time (no limit)",
    )
    add(
        "--repeat-check",
        action="store_true",
        help="with --fast: play it twice, and fail when the two logs are not the same",
    )
    add("--watch", action="store_true", help="show the match in a browser while it is played")
    add(
        "--plans",
        action="store_true",
        help="log what each player believes and which case of its behaviour it takes; the replay "
        "shows it",
    )
    add("--players", action="store_true", help="show a table of the players too")
    add(
        "--lossy",
        type=number(0, 999999999),
        metavar="SEED",
        help="play through a bad network: of all datagrams, either way, 10 %% are lost, 10 %% "
        "doubled, 10 %% late by up to 150 ms, 2 %% cut short and 2 %% garbled",
    )
    add(
        "--busy",
        type=number(0, 100),
        default=0,
        metavar="N",
        help="also run N programs that only keep a processor busy (0)",
    )
    add(
        "--port",
        type=number(1, 65534),
        metavar="P",
        help="UDP port of the practice server; --lossy takes the next too (6000, or a free one)",
    )
    add(
        "--keep",
        type=Path,
        metavar="DIR",
        help="folder for settings, logs and results (match, or match-2, ... when that is in use)",
    )
    return parser


@dataclass(frozen=True)
class _Wishes:
    """What the command line says beside the match itself."""

    players: bool
    repeat_check: bool


def _settings(arguments: list[str]) -> tuple[MatchSettings, _Wishes]:
    given = _parser().parse_args(arguments)
    if not given.fast and (given.speed is not None or given.repeat_check):
        option = "--speed" if given.speed is not None else "--repeat-check"
        raise Failure(f"{option} needs --fast", "Add --fast", status=2)
    if given.fast and given.lossy is not None:
        raise Failure(
            "--fast and --lossy do not go together: the clock would wait for what is lost",
            "Leave one of them out",
            status=2,
        )
    if given.left == given.right:
        raise Failure("the two teams need different names", "Try --left or --right", status=2)
    settings = MatchSettings(
        TeamSettings(given.left, given.left_conf, given.left_agent),
        TeamSettings(given.right, given.right_conf, given.right_agent),
        given.half_cycles,
        given.seed,
        given.lossy,
        given.busy,
        given.port,
        given.keep,
        given.plans,
        given.watch,
        given.fast,
        given.speed,
    )
    return settings, _Wishes(given.players, given.repeat_check)


def main(arguments: list[str]) -> int:
    """Plays; returns the exit status."""
    settings, wishes = _settings(arguments)
    programs, build = build_programs("play")
    warn_of_settings("play", programs, settings.left, settings.right)
    match = Match(settings, programs, work_folder())
    match.tell_address = lambda address: say("play", f"open {address} to see the match")
    signals = Signals(lambda _: match.stop())
    say("play", _announcement(settings))
    say("play", f"port {match.port}, files in {shown(match.folder)}/; Ctrl-C ends it")
    with Progress(settings.half_cycles, fast=settings.fast) as progress:
        outcome = match.run(build, progress.show)
    status = _tell(outcome, programs, wishes.players, signals.number)
    if wishes.repeat_check and status == 0:
        return _check_repeat(settings, programs, outcome.folder)
    return status


def _announcement(settings: MatchSettings) -> str:
    half = settings.half_cycles
    if settings.speed is not None:
        return f"two halves of {half} cycles, at most {settings.speed} times as fast as real time"
    if settings.fast:
        return f"two halves of {half} cycles, as fast as the players think"
    expected = duration(expected_duration(half))
    return f"two halves of {half} cycles, about {expected} with breaks and stoppages"


def _check_repeat(settings: MatchSettings, programs: Path, first: Path) -> int:
    """Plays it once more."""
    match = Match(replace(settings, keep=first / "repeat"), programs, work_folder())
    signals = Signals(lambda _: match.stop())
    say("play", f"once more, files in {shown(match.folder)}/")
    second = match.run(None, lambda _: None).folder
    if signals.number:
        return 128 + signals.number
    where = difference(first, second)
    if where is not None:
        raise Failure(
            f"the two matches differ, first in {where}",
            "One seed should give one match: was a player slow, or does it look at a clock?",
        )
    say("play", f"both matches are the same to the last byte ({fingerprint(first)})")
    return 0


def _make_replay(outcome: MatchOutcome, programs: Path) -> None:
    """One page of the match, where the viewer was built."""
    viewer = page_of_viewer(programs)
    page = outcome.folder / "replay.html"
    if viewer is None:
        say("play", "no replay, for the viewer was left out of the build; install esbuild")
        return
    make_replay(viewer, outcome.folder / "match.rcg", page)
    say("play", f"{shown(page)} shows the match in any browser")


def _tell(
    outcome: MatchOutcome, programs: Path, shows_players: bool, signal_number: int
) -> int:
    if outcome.cycles == 0 and outcome.interrupted:
        say("play", "stopped before the kick-off; nothing was played")
        return 128 + signal_number
    with (outcome.folder / "table.txt").open("w") as file:
        Console(file=file, width=WIDTH).print(report(outcome, players=True))
    console = Console(width=None if Console().is_terminal else WIDTH, highlight=False)
    console.print(report(outcome, shows_players))
    _make_replay(outcome, programs)
    say("play", f"settings, logs, results and tables are in {shown(outcome.folder)}/")
    if signal_number:
        return 128 + signal_number
    if faults(outcome):
        raise Failure(
            "something went wrong on the pitch",
            "The faults below the table say what; a player's own words are in its player-N.err",
        )
    return 0
