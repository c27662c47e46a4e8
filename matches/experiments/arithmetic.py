"""Estimates from pairs of matches, with their intervals.

A pair is two matches of one seed with the sides swapped. Pairs are independent of each other, the
two matches of a pair are not; so everything here is computed from one number a pair.
"""

from collections.abc import Sequence
from dataclasses import dataclass

import numpy as np
import numpy.typing as npt
from scipy import stats

Floats = npt.NDArray[np.float64]


@dataclass(frozen=True)
class Estimate:
    """A value and the interval that holds the true one, with the confidence it was made for."""

    value: float
    low: float
    high: float

    @property
    def half_width(self) -> float:
        """The value is this exact, if the interval is symmetric."""
        return (self.high - self.low) / 2


def mean_estimate(values: Sequence[float] | Floats, confidence: float = 0.95) -> Estimate:
    """The mean with Student's interval; a single value says nothing of its own exactness."""
    sample = np.asarray(values, dtype=np.float64)
    if len(sample) == 0:
        return Estimate(float("nan"), -float("inf"), float("inf"))
    mean = float(sample.mean())
    if len(sample) == 1:
        return Estimate(mean, -float("inf"), float("inf"))
    error = float(sample.std(ddof=1)) / len(sample) ** 0.5
    width = float(stats.t.ppf((1 + confidence) / 2, len(sample) - 1)) * error
    return Estimate(mean, mean - width, mean + width)


def running_estimates(values: Sequence[float], confidence: float = 0.95) -> Floats:
    """Rows of mean, low and high after 2, 3, ... values."""
    sample = np.asarray(values, dtype=np.float64)
    count = np.arange(1, len(sample) + 1)
    mean = np.cumsum(sample) / count
    # Taken around the last mean, the sums of squares lose no digits.
    shifted = sample - sample.mean() if len(sample) else sample
    square = np.cumsum(shifted**2) - np.cumsum(shifted) ** 2 / count
    with np.errstate(divide="ignore", invalid="ignore"):
        error = np.sqrt(np.maximum(square, 0) / (count - 1) / count)
        width = stats.t.ppf((1 + confidence) / 2, count - 1) * error
    return np.column_stack([mean, mean - width, mean + width])[1:]


def score_of(goals_for: int, goals_against: int) -> float:
    """1 for a win, a half for a draw, 0 for a loss."""
    return 0.5 + 0.5 * ((goals_for > goals_against) - (goals_for < goals_against))


def elo_of(score: float) -> float:
    """The Elo difference at which this mean score is expected."""
    if score <= 0 or score >= 1:
        return float("inf") if score >= 1 else -float("inf")
    return float(-400 * np.log10(1 / score - 1))


def elo_estimate(scores: Sequence[float], confidence: float = 0.95) -> Estimate:
    """Elo from the mean scores of the pairs, each between 0 and 1."""
    score = mean_estimate(scores, confidence)
    return Estimate(elo_of(score.value), elo_of(score.low), elo_of(score.high))


def likelihood_of_superiority(values: Sequence[float], equal: float = 0.0) -> float:
    """How likely it is, from these pairs alone, that the true mean lies above `equal`."""
    sample = np.asarray(values, dtype=np.float64) - equal
    if len(sample) < 2:
        return 0.5
    error = float(sample.std(ddof=1)) / len(sample) ** 0.5
    if error == 0:
        return 0.5 + 0.5 * float(np.sign(sample[0]))
    return float(stats.t.cdf(sample.mean() / error, len(sample) - 1))


def p_value(values: Sequence[float] | Floats) -> float:
    """How often a mean at least so far from 0 would come about if the true one were 0."""
    sample = np.asarray(values, dtype=np.float64)
    if len(sample) < 2:
        return 1.0
    spread = float(sample.std(ddof=1))
    if spread == 0:
        return 1.0 if sample[0] == 0 else 0.0
    t = abs(float(sample.mean())) / (spread / len(sample) ** 0.5)
    return float(2 * stats.t.sf(t, len(sample) - 1))


def holm(p_values: Sequence[float]) -> list[float]:
    """The p values, corrected so that one limit holds for all of them together."""
    order = sorted(range(len(p_values)), key=lambda i: p_values[i])
    corrected = [0.0] * len(p_values)
    largest = 0.0
    for rank, index in enumerate(order):
        largest = max(largest, min(1.0, (len(p_values) - rank) * p_values[index]))
        corrected[index] = largest
    return corrected


@dataclass(frozen=True)
class Difference:
    """One of many figures: A minus B, with an interval that holds for all figures at once."""

    estimate: Estimate
    corrected_p: float

    @property
    def is_real(self) -> bool:
        """Whether chance alone hardly explains it, with all figures looked at."""
        return self.corrected_p < 0.05


def differences(figures: Sequence[Sequence[float]]) -> list[Difference]:
    """Of each figure, from its differences in the pairs.

    The p values are corrected after Holm; the intervals are widened after Bonferroni, so that with
    95 % confidence all of them hold their true values.
    """
    confidence = 1 - 0.05 / max(1, len(figures))
    corrected = holm([p_value(values) for values in figures])
    return [
        Difference(mean_estimate(values, confidence), p)
        for values, p in zip(figures, corrected, strict=True)
    ]
