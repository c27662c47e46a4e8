"""Whether a match that was played twice was the same match, by its logs."""

import hashlib
from itertools import zip_longest
from pathlib import Path

LOGS = ("match.rcg", "match.rcl")


def fingerprint(folder: Path) -> str:
    """Twelve digits that two matches share only when their game logs are the same."""
    return hashlib.sha256((folder / LOGS[0]).read_bytes()).hexdigest()[:12]


def difference(first: Path, second: Path) -> str | None:
    """Where the logs in the two folders differ first; None when they are the same."""
    for name in LOGS:
        with (first / name).open("rb") as one, (second / name).open("rb") as other:
            for number, (left, right) in enumerate(zip_longest(one, other), 1):
                if left != right:
                    return f"line {number} of {name}"
    return None
