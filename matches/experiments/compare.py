"""./compare: which of two or more teams is better, by how much, and how sure that is."""

import shutil
import signal
import sys
import time
from argparse import ArgumentTypeError, Namespace
from collections.abc import Callable
from dataclasses import dataclass, replace
from itertools import combinations
from pathlib import Path
from types import FrameType
from typing import NoReturn

from rich.console import Console

from matches import options
from matches.experiments.engine import Where, check_jobs
from matches.experiments.entrants import (
    KEYS,
    Bundle,
    Entrant,
    entries_of,
    find_entrant,
    own_revision,
)
from matches.experiments.line import Line, series_text
from matches.experiments.plan import FILE, Plan
from matches.experiments.runs import Run, disk_needed
from matches.experiments.series import Series
from matches.experiments.tables import matches_of, summary_table, write_results
from matches.places import work_folder
from matches.words import Failure, duration, say, shown

ABOUT = """\
Plays pairs of matches between teams, the same seed with the sides swapped, until
it is clear which one is better. A team is a file of settings, an agent's binary,
the folder of a packaged team, or a git revision of this repository.
"""

STATUS = """\
Ends with 0 when the verdict is clear, 3 when all matches were played and it is
not, 1 when something failed, 2 for a wrong option, 130 after Ctrl-C. What was
played is kept: start the same command with --resume to go on.
"""

UNDECIDED = 3
MATCHES = 400


def parser(command: str, usage: str, about: str, status: str) -> options.Parser:
    """The options that all experiments have."""
    made = options.Parser(command, usage, about, status)
    add, number = made.add_argument, options.whole_number
    add("--half-cycles", type=number(1, 100000), default=3000, metavar="N",
        help="length of a half in cycles of 0.1 s (3000)")
    add("--seed", type=number(0, 999999999), default=1, metavar="N",
        help="seed of the first pair; each next pair has the next (1)")
    add("--real-time", action="store_true",
        help="play in real time, not as fast as the machine can")
    add("--jobs", type=_jobs, metavar="N",
        help="matches at once: 4, or 50%% of the processors (what the machine bears)")
    add("--machines", type=options.readable_file, metavar="FILE",
        help="play on the machines of this list of ssh logins, one a line, as GNU parallel takes "
        "them: 4/user@host plays four matches at once, : is this machine")
    add("--keep-logs", choices=("all", "telling", "none"), default="telling",
        help="whose game logs are kept, compressed (telling: the first of each result)")
    add("--out", type=Path, metavar="DIR", help="folder of the experiment (experiments/...)")
    add("--resume", action="store_true", help="go on with what is in the folder")
    return made


def _parser() -> options.Parser:
    made = parser("compare", "TEAM TEAM ... [option ...]", ABOUT, STATUS)
    add, number = made.add_argument, options.whole_number
    add("teams", nargs="*", metavar="TEAM",
        help="settings, agent, packaged team or git revision; of more than two, each is compared "
        "with the first")
    add("--all", action="store_true", help="of more than two, compare every one with every other")
    add("--matches", type=number(2, 1000000), metavar="N",
        help=f"play at most so many of each comparison ({MATCHES}); with --resume more than before")
    add("--difference", type=decimal(0.01, 20), default=0.5, metavar="GOALS",
        help="the smallest mean goal difference of interest (0.5)")
    add("--error", type=decimal(0.0001, 0.4), default=0.05, metavar="P",
        help="bound for each of the two errors: calling equal teams different, and missing a "
        "difference of that size (0.05)")
    add("--list", action="store_true",
        help="play nothing; print one command for each match, for a batch scheduler")
    return made


def decimal(low: float, high: float) -> Callable[[str], float]:
    """The type of an option that takes a number."""

    def convert(text: str) -> float:
        try:
            value = float(text)
        except ValueError:
            value = float("nan")
        if not low <= value <= high:
            raise ArgumentTypeError(f"takes a number from {low:g} to {high:g}, not '{text}'")
        return value

    return convert


def _jobs(text: str) -> str:
    try:
        return check_jobs(text)
    except Failure as failure:
        raise ArgumentTypeError(failure.what) from failure


# ---------------------------------------------------------------- the folder


@dataclass(frozen=True)
class Wish:
    """What every experiment is told by its command line."""

    out: Path | None
    resume: bool
    where: Where


def open_run(
    wish: Wish, usual: Path, make: Callable[[Path], Plan], words: list[str]
) -> Run:
    """The folder of an experiment: a new one that `make` fills, or one that is taken up again."""
    folder = wish.out or usual
    begun = (folder / FILE).exists()
    if wish.resume:
        if not begun:
            raise Failure(f"there is no experiment in '{shown(folder)}' to go on with")
        plan = Plan.load(folder)
        if words and plan.words != words:
            raise Failure(
                f"'{shown(folder)}' holds another experiment: {' '.join(plan.words)}",
                "Name its folder with --out and leave the rest out, or start anew.",
            )
        return Run(folder, plan, wish.where)
    if begun:
        raise Failure(
            f"'{shown(folder)}' holds an experiment already",
            "Go on with it by --resume, or choose another folder with --out.",
        )
    return Run(folder, make(folder), wish.where)


def new_plan(folder: Path, plan: Plan) -> Plan:
    """Written last, so that a folder with a plan has everything."""
    plan.save(folder)
    return plan


def free_folder(name: str) -> Path:
    """Where the experiments of this checkout are."""
    return work_folder() / "experiments" / name


def tell_disk(plan: Plan, comparisons: int, folder: Path, command: str) -> None:
    """Before anything is played; fails when it cannot be enough."""
    needed = disk_needed(plan, comparisons)
    folder.mkdir(parents=True, exist_ok=True)
    free = shutil.disk_usage(folder).free
    say(command, f"logs that are kept ({plan.keep_logs}) take at most about {needed / 1e6:.0f} MB "
        f"of {free / 1e9:.1f} GB that are free")
    if needed > free:
        raise Failure("the logs will not find room on this disk", "Try --keep-logs telling")


def heed_signals() -> None:
    """All signals that want our end unwind us as Ctrl-C does."""

    def stop(_number: int, _frame: FrameType | None) -> NoReturn:
        raise KeyboardInterrupt

    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, stop)


# ---------------------------------------------------------------- the command


def main(arguments: list[str]) -> int:
    """Compares; returns the exit status."""
    given = _parser().parse_args(arguments)
    heed_signals()
    wish = Wish(given.out, given.resume, Where(given.jobs or "", given.machines))
    words = _words_of(given) if given.teams else []
    if len(given.teams) < 2 and not (given.resume and given.out):
        raise Failure("compare takes two teams or more", "Try ./compare --help", status=2)
    entrants: list[Entrant] = []

    def make(folder: Path) -> Plan:
        entrants.extend(find_entrant("compare", text) for text in given.teams)
        entries = entries_of(entrants)
        keys = list(entries)
        pairs = list(combinations(keys, 2)) if given.all else [(keys[0], k) for k in keys[1:]]
        bundle = Bundle("compare", folder)
        plan = Plan(
            entries, pairs, (given.matches or MATCHES) // 2, given.seed, given.half_cycles,
            not given.real_time, "", own_revision(), given.error, given.difference,
            given.keep_logs, words,
        )
        bundle.check(plan)
        for key, entrant in zip(entries, entrants, strict=True):
            bundle.add(key, entrant)
        return new_plan(folder, plan)

    if len(given.teams) > len(KEYS):
        raise Failure(f"compare takes at most {len(KEYS)} teams", status=2)
    usual = free_folder("-".join(Path(text).name.removesuffix(".conf") for text in given.teams))
    run = open_run(wish, usual, make, words)
    if given.matches and given.matches // 2 != run.plan.pairs:
        run.change_plan(replace(run.plan, pairs=given.matches // 2))
    try:
        tell_disk(run.plan, len(run.plan.comparisons), run.folder, "compare")
        return _list(run) if given.list else _compare(run)
    finally:
        run.close()


def _words_of(given: Namespace) -> list[str]:
    """What is played, as far as the user says it; where and how many is another matter."""
    names = ("seed", "half_cycles", "real_time", "all", "difference", "error", "keep_logs")
    return [*given.teams, *(f"{name}={getattr(given, name)}" for name in names)]


def _list(run: Run) -> int:
    """One command a match."""
    launcher = run.folder / "one-match"
    for first, second in run.plan.comparisons:
        for game in run.plan.games(first, second):
            if run.row_of(game) is None:
                print(f"{launcher} {game}")
    return 0


def _compare(run: Run) -> int:
    """Plays what is left, tells, writes."""
    plan = run.plan
    found: list[Series] = []
    interrupted = False
    began = time.monotonic()
    with Line() as line:
        try:
            for first, second in plan.comparisons:
                found.append(_play_one(run, first, second, line))
        except KeyboardInterrupt:
            interrupted = True
            run.refresh()
            found = [run.assess(first, second) for first, second in plan.comparisons]
    _tell(run, found)
    if run.seconds > 1:
        played = sum(1 for _ in (run.folder / "games").iterdir())
        say("compare", f"{played} matches are there; this took {duration(time.monotonic() - began)}, "
            f"{100 * line.processors.share:.0f} % of the processors in use")
    if interrupted:
        say("compare", "stopped; go on with --resume")
        return 130
    if any(series.missing and not series.is_settled for series in found):
        raise Failure(
            "some matches could not be played",
            f"{run.words}\nWhat parallel did is in {shown(run.folder / 'jobs.log')}. Start again "
            "with --resume.",
        )
    return 0 if all(series.decision.value != "undecided" for series in found) else UNDECIDED


def _play_one(run: Run, first: str, second: str, line: Line) -> Series:
    names = (run.plan.entries[first].label, run.plan.entries[second].label)
    line.restart()

    def watch(series: Series, done: int) -> None:
        run.prune(series)
        line.show(series_text(names, series), done, 2 * run.plan.pairs)

    series = run.play(first, second, watch)
    run.prune(series)
    return series


def _tell(run: Run, found: list[Series]) -> None:
    from matches.experiments.report import write_report

    write_results(run.plan, matches_of(found), run.folder / "results.csv")
    console = Console(width=None if sys.stdout.isatty() else 80, highlight=False)
    for series in found:
        console.print("")
        console.print(summary_table(run.plan, series))
        for row in series.failed:
            say("compare", f"FAILED: {row.game}: {row.played.fault}; all of it is in "
                f"{shown(run.folder_of(row.game))}/")
    console.print("")
    write_report(run, found, run.folder / "report.html")
    say("compare", f"results.csv and report.html are in {shown(run.folder)}/")
