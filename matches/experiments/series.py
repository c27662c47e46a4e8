"""What the matches between two teams say, as far as they have been played.

Pairs count in the order of their numbers, whenever they were finished, and none counts behind the
one that settled it. So the result does not depend on how many machines played.
"""

from collections.abc import Callable
from dataclasses import dataclass, field

from matches.experiments.arithmetic import (
    Estimate,
    elo_estimate,
    likelihood_of_superiority,
    mean_estimate,
    score_of,
)
from matches.experiments.plan import Game, Plan
from matches.experiments.rows import PLAYED, Row
from matches.experiments.sequential import LEAST_PAIRS, Bounds, Decision, decide


@dataclass(frozen=True)
class Pair:
    """Two matches of one seed, the first team first on the left, then on the right."""

    number: int
    rows: tuple[Row, Row]

    @property
    def goals(self) -> tuple[tuple[int, int], tuple[int, int]]:
        """Of the first team and the second, in both matches."""
        (a, b), (c, d) = (row.played.goals for row in self.rows)
        return (a, b), (d, c)

    @property
    def difference(self) -> float:
        """The mean goal difference of the first team."""
        return sum(ours - theirs for ours, theirs in self.goals) / 2

    @property
    def score(self) -> float:
        """The mean score of the first team, 0 to 1."""
        return sum(score_of(ours, theirs) for ours, theirs in self.goals) / 2


@dataclass(frozen=True)
class Series:
    """The matches between two teams that count."""

    first: str
    second: str
    pairs: list[Pair] = field(default_factory=list)
    failed: list[Row] = field(default_factory=list)
    """Matches that did not come through; their pairs do not count."""
    decision: Decision = Decision.OPEN
    missing: bool = False
    """Whether there is still something to play before anything is settled."""

    @property
    def is_settled(self) -> bool:
        """Whether no further match can change anything."""
        return self.decision is not Decision.OPEN or not self.missing

    @property
    def stumbled(self) -> list[Row]:
        """Matches that count, but were played twice."""
        return [row for pair in self.pairs for row in pair.rows if row.stumbled]

    @property
    def differences(self) -> list[float]:
        """One number a pair."""
        return [pair.difference for pair in self.pairs]

    @property
    def difference(self) -> Estimate:
        """Of the mean goals a match."""
        return mean_estimate(self.differences)

    @property
    def elo(self) -> Estimate:
        """Of the first team over the second."""
        return elo_estimate([pair.score for pair in self.pairs])

    @property
    def superiority(self) -> float:
        """How likely it is that the first team is the better one."""
        return likelihood_of_superiority(self.differences)

    @property
    def tally(self) -> tuple[int, int, int]:
        """Matches won, drawn, lost by the first team."""
        scores = [score_of(*goals) for pair in self.pairs for goals in pair.goals]
        return scores.count(1.0), scores.count(0.5), scores.count(0.0)

    @property
    def goals(self) -> tuple[int, int]:
        """Scored by the first team and by the second."""
        matches = [goals for pair in self.pairs for goals in pair.goals]
        return sum(ours for ours, _ in matches), sum(theirs for _, theirs in matches)

    @property
    def all_equal(self) -> bool:
        """Whether swapping the teams has never changed the result."""
        return bool(self.pairs) and all(
            pair.rows[0].played.goals == pair.rows[1].played.goals for pair in self.pairs
        )


def bounds_of(plan: Plan) -> Bounds:
    """What each comparison of the plan may get wrong, so that all together keep the promise."""
    bounds = Bounds(plan.error, plan.error, plan.difference)
    return bounds.shared_by(max(1, len(plan.comparisons)))


def assess(
    plan: Plan,
    first: str,
    second: str,
    row_of: Callable[[Game], Row | None],
    sequential: bool = True,
) -> Series:
    """Goes through the pairs in their order; stops at one that has not been played."""
    pairs: list[Pair] = []
    failed: list[tuple[int, Row]] = []
    missing = False
    for number in range(1, plan.pairs + 1):
        one, two = (row_of(Game(first, second, number, turn)) for turn in (1, 2))
        if one is None or two is None:
            missing = True
            break
        bad = [(number, row) for row in (one, two) if row.status != PLAYED]
        failed += bad
        if not bad:
            pairs.append(Pair(number, (one, two)))
    decision = Decision.OPEN
    if sequential:
        outcome = decide([pair.difference for pair in pairs], bounds_of(plan))
        decision = outcome.decision
        pairs = pairs[: outcome.pairs]
    if decision is not Decision.OPEN:
        last = pairs[-1].number
        failed = [(number, row) for number, row in failed if number <= last]
    return Series(first, second, pairs, [row for _, row in failed], decision, missing)


def goals_text(value: float) -> str:
    """A goal difference with its sign."""
    return f"{value:+.2f}" if abs(value) >= 0.005 else "0.00"


def verdict(plan: Plan, series: Series) -> str:
    """In words."""
    first, second = (plan.entries[key].label for key in (series.first, series.second))
    if not series.pairs:
        return "nothing is known: no pair of matches came through"
    if series.decision is Decision.BETTER:
        return f"{first} is better than {second}"
    if series.decision is Decision.WORSE:
        return f"{first} is worse than {second}"
    if series.decision is Decision.SAME and series.all_equal:
        return "no difference: with the sides swapped, all matches ended the same"
    if series.decision is Decision.SAME:
        return f"no difference larger than {plan.difference:g} goals a match"
    if len(series.pairs) < LEAST_PAIRS:
        return f"undecided: {len(series.pairs)} pairs are too few to say anything"
    found = series.difference
    return (
        f"undecided after {len(series.pairs)} pairs: between {goals_text(found.low)} and "
        f"{goals_text(found.high)} goals a match"
    )
