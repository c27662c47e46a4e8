#!/usr/bin/env python3
"""Checks that every include points down, by the table in floors.txt.

usage: check_includes.py [ROOT]

Names file and line of each include that does not, and then ends with status 1.
"""

from __future__ import annotations

import re
import sys
from collections.abc import Iterator
from pathlib import Path

TABLE = "scripts/floors.txt"
SUFFIXES = {".h", ".cpp"}
INCLUDE = re.compile(r'\s*#\s*include\s*"([^"]+)"')

Floors = dict[str, frozenset[str]]


class TableError(Exception):
    """The table itself is wrong."""


def read_floors(text: str) -> Floors:
    """Each folder with what it may include beside itself."""
    floors: Floors = {}
    for number, line in enumerate(text.splitlines(), start=1):
        row = line.partition("#")[0].strip()
        if not row:
            continue
        name, colon, below = row.partition(":")
        if not colon or not name.isidentifier() or name in floors:
            raise TableError(f"{TABLE}:{number}: not a new row 'folder: folders': {row}")
        used = frozenset(floors) if below.strip() == "*" else frozenset(below.split())
        for folder in sorted(used - set(floors)):
            raise TableError(f"{TABLE}:{number}: {name} may not use {folder}, which is not above it")
        floors[name] = used
    return floors


def is_source(path: Path) -> bool:
    """Whether a compiler reads the file."""
    return path.suffix in SUFFIXES and path.is_file()


def folders(root: Path) -> Iterator[Path]:
    """The folders that hold sources: those of src, and those beside it."""
    for parent in (root / "src", root):
        for folder in sorted(parent.iterdir()):
            visible = folder.is_dir() and not folder.name.startswith((".", "build"))
            if visible and folder != root / "src" and any(map(is_source, folder.rglob("*"))):
                yield folder


def fault_of(include: str, folder: str, floors: Floors, root: Path) -> str | None:
    """What is wrong with an include in a file of the folder."""
    if not any((base / include).is_file() for base in (root / "src", root)):
        return f'"{include}" is no file below src or the root'
    target = include.partition("/")[0]
    if target == folder or target in floors[folder]:
        return None
    below = ", ".join(sorted(floors[folder])) or "nothing"
    return f'"{include}" points up: {folder} may include {below}'


def faults_of_file(path: Path, folder: str, floors: Floors, root: Path) -> Iterator[str]:
    """One line for every include of the file that is not allowed."""
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), start=1):
        match = INCLUDE.match(line)
        fault = fault_of(match[1], folder, floors, root) if match else None
        if fault:
            yield f"{path.relative_to(root)}:{number}: {fault}"


def check(root: Path) -> list[str]:
    """One line for each fault of the tree."""
    floors = read_floors((root / TABLE).read_text(encoding="utf-8"))
    report: list[str] = []
    for folder in folders(root):
        if folder.name not in floors:
            report.append(f"{folder.relative_to(root)}: has no row in {TABLE}")
            continue
        for path in sorted(filter(is_source, folder.rglob("*"))):
            report.extend(faults_of_file(path, folder.name, floors, root))
    return report


def main(arguments: list[str]) -> int:
    """The status of the process."""
    root = Path(arguments[0]) if arguments else Path(__file__).resolve().parent.parent
    try:
        report = check(root)
    except (OSError, TableError) as error:
        report = [str(error)]
    for line in report:
        print(line, file=sys.stderr)
    return 1 if report else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
