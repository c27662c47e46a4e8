"""What the user reads in the terminal, and the table of all matches for other programs."""

import csv
import math
from collections.abc import Iterable, Sequence
from pathlib import Path
from typing import Any

from rich import box
from rich.table import Table

from matches.experiments.arithmetic import Estimate
from matches.experiments.plan import Game, Plan
from matches.experiments.rows import Row
from matches.experiments.series import Series, goals_text, verdict

NO_FIGURES = ("name",)


def elo_text(value: float) -> str:
    """Whole Elo, with a sign."""
    if math.isinf(value):
        return "+inf" if value > 0 else "-inf"
    return f"{value:+.0f}" if abs(value) >= 0.5 else "0"


def interval_text(estimate: Estimate, one: Any = goals_text) -> str:
    """The value and its interval."""
    if math.isnan(estimate.value):
        return "-"
    return f"{one(estimate.value)} [{one(estimate.low)}, {one(estimate.high)}]"


def facts(plan: Plan, series: Series) -> list[tuple[str, str]]:
    """The result of a comparison, a line each."""
    won, drawn, lost = series.tally
    ours, theirs = series.goals
    lines = [
        ("pairs of matches", str(len(series.pairs))),
        ("won, drawn, lost", f"{won}, {drawn}, {lost}"),
        ("goals", f"{ours} : {theirs}"),
        ("goal difference a match", interval_text(series.difference)),
        ("Elo", interval_text(series.elo, elo_text)),
        ("likelihood of superiority", f"{100 * series.superiority:.1f} %"),
        ("verdict", verdict(plan, series)),
    ]
    if series.stumbled:
        lines.insert(1, ("matches played twice", f"{len(series.stumbled)} (a busy machine)"))
    if series.failed:
        lines.insert(1, ("matches that failed", f"{len(series.failed)} (not counted)"))
    return lines


def summary_table(plan: Plan, series: Series) -> Table:
    """The result of one comparison."""
    first, second = (plan.entries[key].label for key in (series.first, series.second))
    table = Table(box=box.SIMPLE_HEAD, pad_edge=False, show_edge=False)
    table.add_column(f"{first} against {second}")
    table.add_column("", overflow="fold")
    for name, value in facts(plan, series):
        bold = "[bold]" if name == "verdict" else ""
        table.add_row(name, bold + value)
    return table


def figure_names(rows: Iterable[Row]) -> list[str]:
    """The figures that are numbers, in the order in which match-stats tells them."""
    names: dict[str, None] = {}
    for row in rows:
        for figures in row.played.figures.values():
            names |= dict.fromkeys(
                name for name, value in figures.items()
                if name not in NO_FIGURES and isinstance(value, int | float)
            )
    return list(names)


def write_results(plan: Plan, matches: Sequence[tuple[Game, Row]], path: Path) -> None:
    """A row a match, in the order of the matches; nothing in it depends on who played when."""
    names = figure_names(row for _, row in matches)
    head = ["match", "pair", "seed", "status", "fault", "cycles"]
    for side in ("left", "right"):
        head += [f"{side}_{name}" for name in ("team", "revision", "settings", "goals")]
        head += [f"{side}_{name}" for name in names if name != "goals"]
    new = path.with_name(path.name + ".new")
    with new.open("w", newline="") as file:
        out = csv.writer(file, lineterminator="\n")
        out.writerow(head)
        for game, row in matches:
            cells: list[object] = [game, game.pair, row.seed, row.status, row.played.fault]
            cells.append(row.played.cycles)
            sides = zip(game.sides, ("left", "right"), row.played.goals, strict=True)
            for key, side, goals in sides:
                entry = plan.entries[key]
                figures = row.played.figures.get(side, {})
                cells += [entry.label, entry.revision, entry.settings, goals]
                cells += [figures.get(name, "") for name in names if name != "goals"]
            out.writerow(cells)
    new.replace(path)


def matches_of(series: Iterable[Series]) -> list[tuple[Game, Row]]:
    """Those that count and those that failed, in order."""
    found: list[tuple[Game, Row]] = []
    for one in series:
        rows = [row for pair in one.pairs for row in pair.rows] + one.failed
        # Of a pair that failed, the match that came through is told too.
        found += sorted((Game.named(row.game), row) for row in rows)
    return found
