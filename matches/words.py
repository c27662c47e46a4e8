"""What is said to the user, and how it is said that something failed."""

import sys
from pathlib import Path


class Failure(Exception):
    """Something that ends the command: what failed, and what to do next."""

    def __init__(self, what: str, advice: str = "", status: int = 1) -> None:
        super().__init__(what)
        self.what = what
        self.advice = advice
        self.status = status


class MatchFailure(Failure):
    """A player or the server did not come through, on a machine that could play."""


def say(command: str, text: str) -> None:
    """One line to standard output, marked with the command that says it."""
    print(f"{command}: {text}", flush=True)


def complain(command: str, failure: Failure) -> None:
    """The failure's two parts, on standard error."""
    sys.stdout.flush()
    lines = [f"{command}: {failure.what}"]
    lines += [f"  {line}" for line in failure.advice.splitlines()]
    sys.stderr.write("\n".join(lines) + "\n")


def shown(path: Path) -> str:
    """A path as short as can be: relative to the working directory where it lies below."""
    try:
        return str(path.relative_to(Path.cwd()))
    except ValueError:
        return str(path)


def duration(seconds: float) -> str:
    """Minutes and seconds: 45 s, 1:05 min."""
    whole = max(0, round(seconds))
    return f"{whole} s" if whole < 60 else f"{whole // 60}:{whole % 60:02d} min"


def last_words(path: Path, lines: int = 3) -> str:
    """The last lines of a file, or nothing when there is none."""
    try:
        text = path.read_bytes()[-4000:].decode(errors="replace")
    except OSError:
        return ""
    return "\n".join(text.strip().splitlines()[-lines:])
