"""The figures of all matches of a comparison, team against team."""

import pandas as pd

from matches.experiments.arithmetic import Difference, differences
from matches.experiments.heat import COLUMNS, ROWS
from matches.experiments.plan import Game
from matches.experiments.series import Series
from matches.experiments.tables import figure_names

CONSEQUENCES = ("points",)
"""Figures that say again what the goals say."""


def frames(series: Series) -> tuple[pd.DataFrame, pd.DataFrame]:
    """A row a match, a column a figure, for the first team and for the second; indexed by pair."""
    names = [
        name
        for name in figure_names(row for pair in series.pairs for row in pair.rows)
        if name not in CONSEQUENCES
    ]
    tables = []
    for team in (series.first, series.second):
        rows = []
        for pair in series.pairs:
            for row in pair.rows:
                # A team against itself is the first one on the left, as in any first match.
                sides = Game.named(row.game).sides
                turned = row.game.endswith("-2")
                side = ("left", "right")[(team == series.second) != turned]
                assert sides[side == "right"] == team
                figures = row.played.figures.get(side, {})
                rows.append({"pair": pair.number} | {name: figures.get(name) for name in names})
        table = pd.DataFrame(rows, columns=["pair", *names]).set_index("pair")
        tables.append(table.apply(pd.to_numeric))
    return tables[0], tables[1]


def figure_differences(first: pd.DataFrame, second: pd.DataFrame) -> dict[str, Difference]:
    """First minus second, pair by pair, for each figure that all matches have and that varies."""
    names = [
        str(name)
        for name in first.columns
        if not (first[name].isna().any() or second[name].isna().any())
        and (first[name].nunique() > 1 or second[name].nunique() > 1)
    ]
    found = (first[names] - second[names]).groupby(level="pair").mean()
    return dict(
        zip(names, differences([list(found[name]) for name in names]), strict=True)
    )


def heat_of(series: Series) -> dict[str, list[int]]:
    """Counts on the grid, summed over the matches, for both teams and the ball.

    Each team attacks to the right; the ball is as the first team sees it. Empty without positions.
    """
    total = {what: [0] * (COLUMNS * ROWS) for what in ("first", "second", "ball")}
    seen = False
    for pair in series.pairs:
        for turn, row in enumerate(pair.rows):
            if not row.heat:
                continue
            seen = True
            sides = ("left", "right") if turn == 0 else ("right", "left")
            ball = row.heat["ball"] if turn == 0 else row.heat["ball"][::-1]
            for what, counts in zip(
                total, (row.heat[sides[0]], row.heat[sides[1]], ball), strict=True
            ):
                total[what] = [a + b for a, b in zip(total[what], counts, strict=True)]
    return total if seen else {}
