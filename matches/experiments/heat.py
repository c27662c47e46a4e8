"""Where ball and players were in a match, counted on a grid. Standard library alone."""

import subprocess
from pathlib import Path

COLUMNS = 21
ROWS = 14
LENGTH = 105.0
WIDTH = 68.0
STRIDE = 5
"""Every fifth cycle is enough: nobody gets from cell to cell in fewer."""


def cell_of(x: float, y: float) -> int:
    """The number of the cell, row by row from the top; places outside count for the edge."""
    column = int((x + LENGTH / 2) * COLUMNS / LENGTH)
    row = int((y + WIDTH / 2) * ROWS / WIDTH)
    return min(max(row, 0), ROWS - 1) * COLUMNS + min(max(column, 0), COLUMNS - 1)


def count_places(match_stats: Path, log: Path) -> dict[str, list[int]]:
    """Counts for ball, left and right, each as its own side sees it: it attacks to the right.

    The ball is as the left side sees it. Empty when the log cannot be read.
    """
    run = subprocess.run([match_stats, "--cycles", log], capture_output=True, text=True)
    lines = run.stdout.splitlines()
    if len(lines) < 2:
        return {}
    at = {name: number for number, name in enumerate(lines[0].split(","))}
    ball = (at["ball_x"], at["ball_y"])
    mode = at["playmode"]
    teams = {
        side: [(at[f"{side[0]}{n}_x"], at[f"{side[0]}{n}_y"], at[f"{side[0]}{n}_state"])
               for n in range(1, 12)]
        for side in ("left", "right")
    }
    counts = {what: [0] * (COLUMNS * ROWS) for what in ("ball", "left", "right")}
    for line in lines[1::STRIDE]:
        cells = line.split(",")
        if cells[mode] != "play_on":
            continue
        counts["ball"][cell_of(float(cells[ball[0]]), float(cells[ball[1]]))] += 1
        for side, players in teams.items():
            sign = 1 if side == "left" else -1
            for x, y, state in players:
                if cells[state] != "0":
                    counts[side][cell_of(sign * float(cells[x]), sign * float(cells[y]))] += 1
    return counts
