"""Small game logs made for a test, and long ones made from a real one."""

import base64
import gzip
import json
import pathlib
import re

HEADER = "(server_param (goal_width 14.02)(half_time 300)(simulator_step 100)(stamina_max 8000))"


def player(side: str, unum: int, x: float, y: float, state: str = "0x1", body: float = 0) -> str:
    """One player of a show, version 5."""
    return (
        f"(({side} {unum}) 0 {state} {x} {y} 0 0 {body} 0 (v h 90) (s 8000 1 1 130600)"
        " (c 0 0 0 0 0 0 0 0 0 0 0))"
    )


def show(time: int, ball: tuple[float, float] = (0, 0), moved: dict[str, str] | None = None) -> str:
    """A show of 22 players on a grid; `moved` replaces some of them, by "l 7"."""
    players = {
        f"{side} {unum}": player(side, unum, sign * (4 * unum), 3 * unum - 18)
        for side, sign in (("l", -1), ("r", 1))
        for unum in range(1, 12)
    }
    players.update(moved or {})
    return f"(show {time} ((b) {ball[0]} {ball[1]} 0 0) {' '.join(players.values())})"


def match(*records: str) -> str:
    """A game log of version 5 with these records."""
    return "\n".join(("ULG5", HEADER, *records)) + "\n"


def simple(cycles: int, team: str = "Alpha") -> str:
    """A match whose ball rolls along the middle line, 10 cm a cycle."""
    return match(
        f"(playmode 1 play_on)\n(team 1 {team} Beta 0 0)",
        *(show(time, (time / 10 - 1, 0)) for time in range(1, cycles + 1)),
    )


def long_log(source: pathlib.Path, size: int) -> bytes:
    """The shows of a real log over and over, with the time going on, until the size is reached."""
    with gzip.open(source) as file:
        lines = file.read().splitlines(keepends=True)
    first = next(
        index
        for index, line in enumerate(lines)
        if line.startswith((b"(playmode", b"(team", b"(show"))
    )
    body = [line for line in lines[first:] if line.startswith((b"(playmode", b"(show"))]
    body = [line for line in body if b" time_over)" not in line]
    times = [int(re.match(rb"\(\w+ (\d+)", line)[1]) for line in body]  # type: ignore[index]
    parts = [*lines[:first], b"(team 1 Alpha Beta 0 0)\n"]
    total = sum(map(len, parts))
    offset = 0
    while total < size:
        for time, line in zip(times, body, strict=True):
            moved = re.sub(rb"^(\(\w+) \d+", rb"\g<1> %d" % (time + offset), line)
            parts.append(moved)
            total += len(moved)
        offset += times[-1]
    return b"".join(parts)


def packed(data: bytes) -> str:
    """Base64 of gzip, as the page takes it."""
    return base64.b64encode(gzip.compress(data)).decode()


def embed(page: str, source: object) -> str:
    """The page with something put into it."""
    text = json.dumps(source).replace("<", "\\u003c")
    mark = '<script id="source" type="application/json">null</script>'
    assert page.count(mark) == 1
    return page.replace(mark, mark.replace("null", text))
