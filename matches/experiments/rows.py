"""The record that one match leaves: a folder with a row of results and, if wanted, its logs.

The folder gets its name when it is complete, so a match that is cut short leaves nothing that could
be mistaken for a result. Needs the standard library alone.
"""

import json
import os
from dataclasses import asdict, dataclass, field
from pathlib import Path
from typing import Any

FILE = "row.json"
FOLDER = "games"
FIRST_TRY = "first-try"
"""Beside the row: all that is left of the match that stumbled."""
DROPPED = "logs-dropped"
"""Says that logs beside the row have been removed on purpose."""

PLAYED = "played"
FAILED = "failed"


@dataclass(frozen=True)
class Played:
    """What came about on the pitch."""

    fault: str = ""
    cycles: int = 0
    goals: tuple[int, int] = (0, 0)
    """Left, right."""
    figures: dict[str, dict[str, Any]] = field(default_factory=dict)
    """By side, left and right, as match-stats calls them."""


@dataclass(frozen=True)
class Row:
    """The record of one match."""

    game: str
    seed: int
    status: str
    """`PLAYED`, or `FAILED` when a player or the server did not come through."""
    played: Played
    heat: dict[str, list[int]] = field(default_factory=dict)
    """Where the ball and both sides' players were."""
    files: dict[str, int] = field(default_factory=dict)
    """What lies beside the row, with sizes."""
    stumbled: str = ""
    """What went wrong at first, but not when it was played again."""
    seconds: float = 0.0
    cpu_seconds: float = 0.0
    machine: str = ""

    def write(self, folder: Path, seconds: float, cpu_seconds: float) -> None:
        """Into the folder of the match, last of all."""
        data = asdict(self) | {
            "seconds": round(seconds, 3),
            "cpu_seconds": round(cpu_seconds, 3),
            "machine": os.uname().nodename,
        }
        (folder / FILE).write_text(json.dumps(data) + "\n")


def read_row(folder: Path) -> Row | None:
    """The row of a match; None when there is none, or when files beside it are not all there."""
    try:
        data = json.loads((folder / FILE).read_text())
        played = data.pop("played")
        row = Row(played=Played(**played | {"goals": tuple(played["goals"])}), **data)
        if (folder / DROPPED).exists():
            return row
        complete = all((folder / name).stat().st_size == row.files[name] for name in row.files)
        return row if complete else None
    except (OSError, ValueError, TypeError, KeyError):
        return None


def drop_logs(folder: Path, row: Row) -> None:
    """Removes what lies beside the row, but for a first try."""
    (folder / DROPPED).touch()
    for name in row.files:
        if not name.startswith(FIRST_TRY):
            (folder / name).unlink(missing_ok=True)
