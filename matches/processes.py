"""Child processes that end when this process ends, for any reason."""

import os
import signal
import subprocess
import time
from collections.abc import Callable, Iterable, Mapping, Sequence
from contextlib import suppress
from dataclasses import dataclass
from pathlib import Path
from types import FrameType

from matches.words import Failure

TICKS = os.sysconf("SC_CLK_TCK")

# Reads process groups until its input ends, as it does when we are gone, and kills them.
GUARD = """
trap '' INT TERM HUP
while read -r group; do groups="$groups $group"; done
for group in $groups; do kill -KILL -"$group" 2>/dev/null; done
"""


@dataclass(frozen=True)
class Usage:
    """What a process has taken of the machine."""

    cpu_seconds: float
    peak_kilobytes: int


class Program:
    """A program in a process group of its own, with its words in files."""

    def __init__(
        self,
        arguments: Sequence[str | Path],
        folder: Path,
        out: Path,
        err: Path | None = None,
        announce: Callable[[], None] | None = None,
        environment: Mapping[str, str] | None = None,
    ) -> None:
        """Starts it in the folder; without `err`, both kinds of words go to `out`.

        `environment` comes in addition to ours.

        `announce` is called in the new process, before it becomes the program.
        """
        self.out = out
        self.err = err or out
        try:
            with out.open("wb") as output, self.err.open("ab" if err is None else "wb") as errors:
                self._process = subprocess.Popen(
                    [str(argument) for argument in arguments],
                    cwd=folder,
                    stdin=subprocess.DEVNULL,
                    stdout=output,
                    stderr=output if err is None else errors,
                    process_group=0,
                    preexec_fn=announce,
                    env={**os.environ, **(environment or {})},
                )
        except OSError as error:
            raise Failure(f"cannot start {arguments[0]}: {error.strerror}") from error
        self._swept = False

    @property
    def pid(self) -> int:
        """The number of the process, and of its group."""
        return self._process.pid

    def runs(self) -> bool:
        """Whether it still runs."""
        if self._process.poll() is None:
            return True
        self._sweep()
        return False

    @property
    def status(self) -> int | None:
        """The exit status, negative for the signal that killed it; None while it runs."""
        return None if self.runs() else self._process.returncode

    def signal(self, number: signal.Signals) -> None:
        """To the program, and to whatever it has started, while it runs."""
        if self.runs():
            with suppress(ProcessLookupError):
                os.killpg(self.pid, number)

    def usage(self) -> Usage | None:
        """What it has taken so far; None when it does not run any more."""
        try:
            fields = Path(f"/proc/{self.pid}/stat").read_text().rpartition(")")[2].split()
            status = Path(f"/proc/{self.pid}/status").read_text()
        except OSError:
            return None
        peak = [line.split()[1] for line in status.splitlines() if line.startswith("VmHWM:")]
        # Behind the name in parentheses, fields 11 and 12 are the ticks in user and kernel mode.
        ticks = int(fields[11]) + int(fields[12])
        return Usage(ticks / TICKS, int(peak[0])) if peak else None

    def _sweep(self) -> None:
        """Ends what a program has left behind in its group."""
        if not self._swept:
            self._swept = True
            with suppress(ProcessLookupError, PermissionError):
                os.killpg(self.pid, signal.SIGKILL)


class Signals:
    """The first wish to end is noted in `number` and passed on, the second one ends us."""

    def __init__(self, stop: Callable[[int], None] = lambda _: None) -> None:
        self.number = 0
        self._stop = stop
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            signal.signal(number, self._handle)

    def _handle(self, number: int, _frame: FrameType | None) -> None:
        if self.number:
            raise KeyboardInterrupt
        self.number = number
        self._stop(number)


def wait_until(condition: Callable[[], bool], seconds: float) -> bool:
    """Looks a hundred times a second; false when the time is over before it holds."""
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.01)
    return True


def end_all(
    programs: Iterable[Program], first: signal.Signals = signal.SIGTERM, patience: float = 3
) -> None:
    """Politely first, then by force."""
    left = list(programs)
    for number, seconds in ((first, patience), (signal.SIGTERM, 1.0), (signal.SIGKILL, 2.0)):
        for program in left:
            program.signal(number)
        if wait_until(lambda: not [program for program in left if program.runs()], seconds):
            return


class Nursery:
    """All programs of a match. Leaving it ends them; if we are killed, a guard does so."""

    def __init__(self) -> None:
        self.programs: list[Program] = []
        self._guard = subprocess.Popen(
            ["/bin/sh", "-c", GUARD],
            stdin=subprocess.PIPE,
            stdout=subprocess.DEVNULL,
            process_group=0,
        )

    def start(
        self,
        arguments: Sequence[str | Path],
        folder: Path,
        out: Path,
        err: Path | None = None,
        environment: Mapping[str, str] | None = None,
    ) -> Program:
        """Starts a program as Program does."""
        program = Program(arguments, folder, out, err, self._announce, environment)
        self.programs.append(program)
        return program

    def _announce(self) -> None:
        """The new process tells the guard itself: we may be killed before we could."""
        assert self._guard.stdin is not None
        os.write(self._guard.stdin.fileno(), f"{os.getpid()}\n".encode())

    def __enter__(self) -> "Nursery":
        return self

    def __exit__(self, *_: object) -> None:
        end_all(self.programs)
        self._guard.kill()
        self._guard.wait()
        assert self._guard.stdin is not None
        self._guard.stdin.close()
