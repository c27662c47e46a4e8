"""GNU parallel plays the matches: on this machine, or on all that a list of logins names.

It keeps every processor busy, tries again what failed, stops what takes too long, and writes a log
of its jobs. What has been played is told by the folders of the matches, not by that log: so nothing
is played twice, and nothing counts that did not arrive.
"""

import os
import re
import shutil
import signal
import zlib
from collections.abc import Iterator, Sequence
from contextlib import contextmanager
from dataclasses import dataclass
from pathlib import Path
from types import TracebackType

from matches.build import install
from matches.duration import expected_duration
from matches.experiments.plan import FILE, Plan
from matches.processes import Nursery, end_all, wait_until
from matches.words import Failure, last_words

RETRIES = 3
HOPELESS = 8
STOPPING = (1.5, 8.0)  # seconds after each signal
SLOWEST = 20.0  # cycles a second of a synchronous match on a machine that is still of use
REMOTE = ".matches"  # on other machines, below the home folder


def tools_missing(machines: Path | None) -> list[str]:
    """The Debian packages that playing needs and that are not here."""
    wanted = {"parallel": "parallel"}
    if machines is not None:
        wanted |= {"ssh": "openssh-client", "rsync": "rsync"}
    return [package for program, package in wanted.items() if not shutil.which(program)]


def usual_jobs(plan: Plan) -> int:
    """How many matches this machine bears at once.

    A synchronous match keeps a processor busy with its server and others with its players, in turn;
    one more fills the pauses in which others begin and end. In real time 22 players need little,
    but they need it at once.
    """
    processors = len(os.sched_getaffinity(0))
    return processors + 1 if plan.synchronous else max(1, processors // 2)


def time_limit(plan: Plan) -> float:
    """Seconds after which a match will not end any more; time for a second try is among them."""
    if plan.synchronous:
        return 2 * (60 + 2 * plan.half_cycles / SLOWEST)
    return 2 * expected_duration(plan.half_cycles) + 180


@dataclass(frozen=True)
class Where:
    """Where matches are played."""

    jobs: str = ""
    """As GNU parallel takes them; empty for what the machine bears."""
    machines: Path | None = None
    """A list of ssh logins, in GNU parallel's form."""


@contextmanager
def _signals_later() -> Iterator[list[int]]:
    """Holds back what would unwind us between the start of a program and our knowing of it."""
    waiting: list[int] = []
    numbers = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)
    before = [signal.signal(number, lambda n, _: waiting.append(n)) for number in numbers]
    try:
        yield waiting
    finally:
        for number, handler in zip(numbers, before, strict=True):
            signal.signal(number, handler)


class Engine:
    """One start of GNU parallel. Leaving it ends all matches that still run."""

    def __init__(self, run: Path, plan: Plan, where: Where, games: Sequence[str]) -> None:
        install("to play many matches", tools_missing(where.machines))
        (run / "list").write_text("".join(f"{game}\n" for game in games))
        with _signals_later() as waiting:
            self._nursery = Nursery()
            self._program = self._nursery.start(
                _command(run, plan, where), run, run / "parallel.out"
            )
        if waiting:
            self.__exit__(None, None, None)
            raise KeyboardInterrupt

    @property
    def runs(self) -> bool:
        """Whether there is anything left to play."""
        return self._program.runs()

    @property
    def words(self) -> str:
        """What it has said last."""
        return last_words(self._program.out)

    def __enter__(self) -> "Engine":
        return self

    def __exit__(
        self,
        kind: type[BaseException] | None,
        error: BaseException | None,
        trace: TracebackType | None,
    ) -> None:
        # GNU parallel ends its jobs, which takes them a moment; while it starts up itself, it
        # may overhear the first signal.
        for seconds in STOPPING:
            self._program.signal(signal.SIGTERM)
            if wait_until(lambda: not self._program.runs(), seconds):
                break
        end_all([self._program], signal.SIGKILL)
        self._nursery.__exit__(kind, error, trace)


def _command(run: Path, plan: Plan, where: Where) -> list[str]:
    jobs = where.jobs or ("" if where.machines else str(usual_jobs(plan)))
    command = [
        "parallel", "--will-cite", "--joblog", "+jobs.log",
        "--retries", str(RETRIES),
        # Where so many cannot be played, no other will be.
        "--halt", f"soon,fail={HOPELESS}",
        "--timeout", str(round(time_limit(plan))),
        "--termseq", "TERM,6000,KILL,25",
        "--arg-file", "list",
        *(["--jobs", jobs] if jobs else []),
    ]
    if where.machines is not None:
        command += [
            "--sshloginfile", str(where.machines),
            "--workdir", f"{REMOTE}/{run.name}-{os.getuid()}-{zlib.crc32(bytes(run)):08x}",
            "--basefile", "bundle", "--basefile", "one-match", "--basefile", FILE,
            "--return", "games/{}",
            "--cleanup",
        ]
    return [*command, "./one-match", "{}"]


def check_jobs(text: str) -> str:
    """GNU parallel's ways to say how many: 4, 50%, +1."""
    if not re.fullmatch(r"[1-9][0-9]{0,3}|[1-9][0-9]{0,2}%|[+-][0-9]{1,3}", text):
        raise Failure(
            f"--jobs takes a number, a share of the processors (50%) or more or fewer than them "
            f"(+1), not '{text}'", "", status=2,
        )
    return text
