"""What all commands for experiments share: options, and the folder that may be taken up again."""

import shutil
import signal
from argparse import ArgumentTypeError
from collections.abc import Callable, Iterable, Iterator, Sequence
from contextlib import contextmanager
from dataclasses import dataclass
from pathlib import Path
from types import FrameType
from typing import NoReturn

from matches import options
from matches.experiments.engine import Where, check_jobs
from matches.experiments.entrants import Bundle, Entrant
from matches.experiments.plan import FILE, Plan
from matches.experiments.rows import FIRST_TRY, PLAYED, Row
from matches.experiments.runs import Run, disk_needed
from matches.locks import Lock
from matches.places import work_folder
from matches.words import Failure, say, shown


def experiment_parser(command: str, usage: str, about: str, status: str) -> options.Parser:
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


@contextmanager
def open_run(
    wish: Wish, usual: Path, make: Callable[[Path], Plan], words: list[str]
) -> Iterator[Run]:
    """The folder of an experiment: a new one that `make` fills, or one that is taken up again."""
    _heed_signals()
    folder = wish.out or usual
    begun = (folder / FILE).exists()
    if wish.resume and not begun:
        raise Failure(f"there is no experiment in '{shown(folder)}' to go on with")
    if begun and not wish.resume:
        raise Failure(
            f"'{shown(folder)}' holds an experiment already",
            "Go on with it by --resume, or choose another folder with --out.",
        )
    with Lock(folder) as lock:
        if not lock.take():
            raise Failure(
                f"another command plays in '{shown(folder)}'", "Choose another with --out."
            )
        plan = Plan.load(folder) if begun else make(folder)
        if words and plan.words != words:
            raise Failure(
                f"'{shown(folder)}' holds another experiment: {' '.join(plan.words)}",
                "Name its folder with --out and leave the rest out, or start anew.",
            )
        yield Run(folder, plan, wish.where)


def fill(command: str, folder: Path, plan: Plan, entrants: Sequence[Entrant]) -> Plan:
    """Puts programs and settings into a new folder. A folder with a plan has everything."""
    bundle = Bundle(command, folder)
    bundle.check(plan)
    for key, entrant in zip(plan.entries, entrants, strict=True):
        bundle.add(key, entrant)
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


def tell_trouble(command: str, run: Run, matches: Iterable[Row]) -> None:
    """Of matches that failed, and of those that were played twice."""
    for row in matches:
        folder = run.folder_of(row.game)
        if row.status != PLAYED:
            fault = row.played.fault
            say(command, f"FAILED: {row.game}: {fault}; all of it is in {shown(folder)}/")
        elif row.stumbled:
            say(command, f"STUMBLED: {row.game}: {row.stumbled}; not so when it was played again, "
                f"and that counts; the first try is in {shown(folder / FIRST_TRY)}/")


def _heed_signals() -> None:
    """All signals that want our end unwind us as Ctrl-C does."""

    def stop(_number: int, _frame: FrameType | None) -> NoReturn:
        raise KeyboardInterrupt

    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, stop)
