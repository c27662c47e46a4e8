"""The pictures of a report, as text that stands in an HTML page."""

import base64
import io
import re
import zlib
from collections.abc import Sequence

import matplotlib as mpl
import numpy as np
from matplotlib.colors import LinearSegmentedColormap
from matplotlib.figure import Figure
from matplotlib.patches import Arc, Rectangle
from matplotlib.ticker import MaxNLocator

from matches.experiments.arithmetic import Estimate, Floats, running_estimates
from matches.experiments.heat import COLUMNS, LENGTH, ROWS, WIDTH

FIRST = "#1f6feb"
SECOND = "#d9730d"
INK = "#3b4252"
GRID = "#dfe3ea"
BALANCE = LinearSegmentedColormap.from_list("balance", [SECOND, "#ffffff", FIRST])

STYLE: dict[str, object] = {
    "font.family": "sans-serif",
    "font.size": 10,
    "text.color": INK,
    "axes.labelcolor": INK,
    "axes.edgecolor": GRID,
    "axes.spines.top": False,
    "axes.spines.right": False,
    "xtick.color": INK,
    "ytick.color": INK,
    "svg.fonttype": "none",
    "svg.hashsalt": "report",
}


def _svg(figure: Figure, label: str) -> str:
    """Without the head of a file, and with a name for those who cannot see it."""
    out = io.StringIO()
    figure.savefig(out, format="svg", transparent=True, metadata={"Date": None})
    text = out.getvalue()
    text = text[text.index("<svg") :]
    # Ids must differ from picture to picture in one page.
    mark = f"{zlib.crc32(label.encode()):x}"
    text = re.sub(r'(id="|href="#|url\(#)', rf"\g<1>{mark}", text)
    return text.replace("<svg", f'<svg role="img" aria-label="{label}"', 1)


def growth(values: Sequence[float], difference: float) -> str:
    """The mean goal difference and its interval, pair after pair."""
    with mpl.rc_context(STYLE):
        figure = Figure(figsize=(9.2, 3.1), layout="constrained")
        axes = figure.subplots()
        rows = running_estimates(values)
        pairs = np.arange(2, len(values) + 1)
        axes.axhline(0, color=INK, linewidth=0.8)
        for level in (-difference, difference):
            axes.axhline(level, color=INK, linewidth=0.8, linestyle=(0, (2, 3)))
        axes.fill_between(pairs, rows[:, 1], rows[:, 2], color=FIRST, alpha=0.16, linewidth=0)
        axes.plot(pairs, rows[:, 0], color=FIRST, linewidth=1.8)
        # The first intervals are so wide that they would hide all that follows.
        later = rows[min(len(rows) - 1, max(3, len(rows) // 12)) :]
        reach = 1.15 * max(difference, float(np.abs(later).max()))
        axes.set_ylim(-reach, reach)
        axes.set_xlim(1, max(3, len(values)))
        axes.xaxis.get_major_locator().set_params(integer=True)
        axes.set_xlabel("pairs of matches")
        axes.set_ylabel("goal difference a match")
        return _svg(figure, "goal difference as it grew")


def goal_bars(matches: Sequence[int]) -> str:
    """How often each goal difference came about."""
    with mpl.rc_context(STYLE):
        figure = Figure(figsize=(9.2, 2.3), layout="constrained")
        axes = figure.subplots()
        reach = max(3, *(abs(value) for value in matches))
        values = np.arange(-reach, reach + 1)
        counts = [list(matches).count(value) for value in values]
        colours = [FIRST if v > 0 else SECOND if v < 0 else "#9aa3b2" for v in values]
        bars = axes.bar(values, counts, color=colours, width=0.82)
        axes.bar_label(bars, [str(c) if c else "" for c in counts], fontsize=8, color=INK)
        axes.set_xticks(values, [f"{v:+d}" if v else "0" for v in values])
        axes.set_yticks([])
        axes.spines["left"].set_visible(False)
        axes.margins(y=0.15)
        axes.set_xlabel("goal difference of a match")
        return _svg(figure, "matches by goal difference")


def distributions(first: Sequence[float], second: Sequence[float], label: str) -> str:
    """Two teams' values of one figure, as two outlines."""
    with mpl.rc_context(STYLE | {"font.size": 7}):
        figure = Figure(figsize=(2.4, 0.62))
        axes = figure.add_axes((0.02, 0.3, 0.96, 0.68))
        both = np.concatenate([first, second])
        low, high = float(both.min()), float(both.max())
        whole = bool(np.all(both == np.round(both))) and high - low <= 24
        bins = (
            np.arange(low - 0.5, high + 1) if whole else np.linspace(low, high, 17)
        )
        for values, colour in ((first, FIRST), (second, SECOND)):
            axes.hist(
                values, bins=list(bins), color=colour, alpha=0.25, histtype="stepfilled"
            )
            axes.hist(values, bins=list(bins), color=colour, histtype="step", linewidth=1.1)
        axes.set_yticks([])
        axes.set_xticks([low, high], [f"{low:g}", f"{high:g}"])
        axes.tick_params(length=0, pad=2)
        for tick, side in zip(axes.get_xticklabels(), ("left", "right"), strict=True):
            tick.set_horizontalalignment(side)
        axes.spines["left"].set_visible(False)
        return _svg(figure, f"distribution of {label}")


def heat_maps(first: Sequence[int], second: Sequence[int], ball: Sequence[int],
              names: tuple[str, str]) -> str:
    """Where both teams were, where they differ, and where the ball was: an img element."""
    grids = [np.asarray(counts, dtype=float).reshape(ROWS, COLUMNS)
             for counts in (first, second, ball)]
    shares = [grid / max(1.0, grid.sum()) * 100 for grid in grids]
    with mpl.rc_context(STYLE):
        figure = Figure(figsize=(9.2, 5.8), layout="constrained")
        axes = figure.subplots(2, 2).ravel()
        top = max(float(shares[0].max()), float(shares[1].max()), 1e-9)
        _map(figure, axes[0], shares[0], f"{names[0]} (attacks to the right)", "Blues", 0, top)
        _map(figure, axes[1], shares[1], f"{names[1]} (attacks to the right)", "Oranges", 0, top)
        change = shares[0] - shares[1]
        reach = max(float(np.abs(change).max()), 1e-9)
        title = f"{names[0]} more (blue), {names[1]} more (orange)"
        _map(figure, axes[2], change, title, BALANCE, -reach, reach)
        title = f"the ball ({names[0]} attacks to the right)"
        _map(figure, axes[3], shares[2], title, "Greens", 0, float(shares[2].max()) or 1)
        out = io.BytesIO()
        figure.savefig(out, format="png", dpi=110, transparent=True)
    data = base64.b64encode(out.getvalue()).decode()
    return f'<img alt="heat maps" src="data:image/png;base64,{data}">'


def _map(
    figure: Figure,
    axes: mpl.axes.Axes,
    grid: Floats,
    title: str,
    colours: object,
    low: float,
    high: float,
) -> None:
    box = (-LENGTH / 2, LENGTH / 2, WIDTH / 2, -WIDTH / 2)
    image = axes.imshow(grid, extent=box, cmap=colours, vmin=low, vmax=high,
                        interpolation="bilinear")
    _pitch(axes)
    axes.set_title(title, fontsize=10)
    bar = figure.colorbar(image, ax=axes, shrink=0.72, pad=0.015)
    bar.outline.set_visible(False)
    bar.ax.tick_params(labelsize=7, length=0)
    bar.set_label("% of the time a cell", fontsize=7)


def _pitch(axes: mpl.axes.Axes) -> None:
    """The lines, in metres."""
    line = {"edgecolor": INK, "facecolor": "none", "linewidth": 0.8}
    x, y = LENGTH / 2, WIDTH / 2
    axes.add_patch(Rectangle((-x, -y), LENGTH, WIDTH, **line))
    axes.plot([0, 0], [-y, y], color=INK, linewidth=0.8)
    axes.add_patch(Arc((0, 0), 18.3, 18.3, edgecolor=INK, linewidth=0.8))
    for sign in (-1, 1):
        axes.add_patch(Rectangle((sign * x, -20.16), -sign * 16.5, 40.32, **line))
        axes.add_patch(Rectangle((sign * x, -9.16), -sign * 5.5, 18.32, **line))
    axes.set_xticks([])
    axes.set_yticks([])
    for spine in axes.spines.values():
        spine.set_visible(False)


def tried(trials: Sequence[tuple[float, Estimate]], best: float, label: str) -> str:
    """The gain of each trial over one of its values."""
    with mpl.rc_context(STYLE):
        figure = Figure(figsize=(9.2, 2.4), layout="constrained")
        axes = figure.subplots()
        axes.axhline(0, color=INK, linewidth=0.8)
        for value, estimate in trials:
            axes.plot([value, value], [estimate.low, estimate.high], color=FIRST, alpha=0.25)
            face = FIRST if value == best else "white"
            axes.plot(
                [value], [estimate.value], "o", color=FIRST, markerfacecolor=face, markersize=5
            )
        if all(value.is_integer() for value, _ in trials):
            axes.xaxis.set_major_locator(MaxNLocator(integer=True))
        axes.set_xlabel(label)
        axes.set_ylabel("goals a match")
        return _svg(figure, f"gain over {label}")
