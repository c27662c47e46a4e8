"""A sequential test on pairs of matches: it says after each pair whether enough has been played.

Three answers are possible: A is better, A is worse, or the two differ by less than the smallest
difference of interest. Two probability ratio tests run side by side, each between "no difference"
and "this difference", one in either direction. The spread of the pairs is unknown, so each
hypothesis is given the spread that suits it best (a generalised likelihood ratio).
"""

from collections.abc import Sequence
from dataclasses import dataclass
from enum import Enum

import numpy as np
import numpy.typing as npt

LEAST_PAIRS = 10
"""Before that the spread of the pairs is known too badly."""

Floats = npt.NDArray[np.float64]


class Decision(Enum):
    """What the test has found."""

    BETTER = "better"
    WORSE = "worse"
    SAME = "no difference"
    OPEN = "undecided"


@dataclass(frozen=True)
class Bounds:
    """What may go wrong, and how often."""

    false_alarm: float = 0.05
    """At most this share of equal teams is called different."""
    miss: float = 0.05
    """At most this share of teams that differ by `difference` is not called so."""
    difference: float = 0.5
    """The smallest mean goal difference of interest."""

    @property
    def upper(self) -> float:
        """Log likelihood ratio for a difference; each direction has half of the false alarms."""
        return float(np.log((1 - self.miss) / (self.false_alarm / 2)))

    @property
    def lower(self) -> float:
        """Log likelihood ratio against a difference."""
        return float(np.log(self.miss / (1 - self.false_alarm / 2)))

    def shared_by(self, comparisons: int) -> "Bounds":
        """Bounds of one of several comparisons that keep the promise for all of them together."""
        return Bounds(self.false_alarm / comparisons, self.miss, self.difference)


@dataclass(frozen=True)
class Outcome:
    """The decision, and the number of pairs after which it fell (all when there is none)."""

    decision: Decision
    pairs: int


def log_ratios(pairs: Sequence[float], difference: float) -> Floats:
    """After each pair, how much likelier it is that the mean is `difference` than that it is 0."""
    values = np.asarray(pairs, dtype=np.float64)
    count = np.arange(1, len(values) + 1)
    against_none = np.cumsum(values**2)
    against_some = np.cumsum((values - difference) ** 2)
    # Pairs without any spread would otherwise be infinitely sure.
    floor = 1e-9 * difference**2
    ratio = np.log((against_none + floor) / (against_some + floor))
    return np.asarray((count - 1) / 2 * ratio, dtype=np.float64)


def decide(pairs: Sequence[float], bounds: Bounds) -> Outcome:
    """Goes through the pairs in their order, and stops at the first that settles it."""
    up_at, up = _end_of(log_ratios(pairs, bounds.difference), bounds)
    down_at, down = _end_of(log_ratios(pairs, -bounds.difference), bounds)
    ends = [
        (at, decision)
        for at, accepted, decision in (
            (up_at, up is True, Decision.BETTER),
            (down_at, down is True, Decision.WORSE),
            (max(up_at, down_at), up is False and down is False, Decision.SAME),
        )
        if accepted
    ]
    if not ends:
        return Outcome(Decision.OPEN, len(pairs))
    at, decision = min(ends, key=lambda end: end[0])
    return Outcome(decision, at)


def _end_of(ratios: Floats, bounds: Bounds) -> tuple[int, bool | None]:
    """After how many pairs one direction is settled, and whether there is a difference."""
    crossed = (ratios >= bounds.upper) | (ratios <= bounds.lower)
    crossed[: LEAST_PAIRS - 1] = False
    if not crossed.any():
        return len(ratios), None
    at = int(np.argmax(crossed))
    return at + 1, bool(ratios[at] >= bounds.upper)
