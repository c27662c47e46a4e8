"""The arithmetic of experiments against second computations and against chance."""

import math
import random
import statistics
import unittest
from fractions import Fraction

import numpy as np
from scipy import optimize, stats

from matches.experiments.arithmetic import (
    differences,
    elo_estimate,
    elo_of,
    holm,
    likelihood_of_superiority,
    mean_estimate,
    p_value,
    running_estimates,
    score_of,
)
from matches.experiments.sequential import LEAST_PAIRS, Bounds, Decision, decide, log_ratios


def pairs_of(rng: np.random.Generator, count: int, difference: float) -> list[float]:
    """Mean goal differences of pairs between two teams whose goals come at random."""
    ours = rng.poisson(1.5 + difference / 2, (count, 2))
    theirs = rng.poisson(1.5 - difference / 2, (count, 2))
    return [float(value) for value in (ours - theirs).mean(axis=1)]


class Estimates(unittest.TestCase):
    """Means, Elo, likelihood of superiority, corrections."""

    def test_mean_and_p_value_against_the_library_and_the_textbook(self) -> None:
        rng = np.random.default_rng(1)
        for _ in range(200):
            values = pairs_of(rng, int(rng.integers(2, 60)), float(rng.uniform(-1, 1)))
            if len(set(values)) == 1:
                continue
            found = mean_estimate(values)
            exact = sum(map(Fraction, values)) / len(values)
            self.assertAlmostEqual(found.value, float(exact))
            error = statistics.stdev(values) / math.sqrt(len(values))
            low, high = stats.t.interval(0.95, len(values) - 1, float(exact), error)
            self.assertAlmostEqual(found.low, low)
            self.assertAlmostEqual(found.high, high)
            test = stats.ttest_1samp(values, 0)
            self.assertAlmostEqual(p_value(values), test.pvalue)
            wanted = test.pvalue / 2 if exact < 0 else 1 - test.pvalue / 2
            self.assertAlmostEqual(likelihood_of_superiority(values), wanted)
            np.testing.assert_allclose(
                running_estimates(values)[-1], [found.value, found.low, found.high], atol=1e-9
            )

    def test_elo_is_the_inverse_of_the_expected_score(self) -> None:
        for score in np.linspace(0.01, 0.99, 50):
            self.assertAlmostEqual(1 / (1 + 10 ** (-elo_of(score) / 400)), score)
        self.assertEqual((elo_of(0), elo_of(1)), (-math.inf, math.inf))

    def test_elo_interval_against_a_bootstrap(self) -> None:
        rng = np.random.default_rng(5)
        goals = rng.poisson((1.8, 1.2, 1.8, 1.2), (300, 4))
        scores = [(score_of(a, b) + score_of(c, d)) / 2 for a, b, c, d in goals]
        found = elo_estimate(scores)
        drawn = rng.choice(scores, (4000, len(scores))).mean(axis=1)
        low, high = np.percentile([elo_of(score) for score in drawn], (2.5, 97.5))
        self.assertAlmostEqual(found.low, low, delta=0.08 * (high - low))
        self.assertAlmostEqual(found.high, high, delta=0.08 * (high - low))

    def test_values_without_spread(self) -> None:
        self.assertEqual(likelihood_of_superiority([1.0, 1.0]), 1.0)
        self.assertEqual(likelihood_of_superiority([0.0, 0.0]), 0.5)
        self.assertEqual((p_value([0.0, 0.0]), p_value([2.0, 2.0]), p_value([3.0])), (1, 0, 1))
        self.assertEqual(mean_estimate([1.0]).high, math.inf)

    def test_holm_against_its_definition(self) -> None:
        rng = random.Random(3)
        for _ in range(200):
            values = [rng.random() ** 4 for _ in range(rng.randint(1, 12))]
            for limit in (0.01, 0.05, 0.2, 0.7):
                rejected: set[int] = set()
                for rank, p in enumerate(sorted(values)):
                    if p >= limit / (len(values) - rank):
                        break
                    rejected.add(values.index(p))
                found = {i for i, p in enumerate(holm(values)) if p < limit}
                self.assertEqual(found, rejected)

    def test_of_many_figures_without_a_difference_few_are_called_different(self) -> None:
        rng = np.random.default_rng(8)
        alarms = uncovered = 0
        for _ in range(400):
            found = differences([list(row) for row in rng.normal(0, 1, (25, 40))])
            alarms += any(figure.is_real for figure in found)
            uncovered += any(not f.estimate.low <= 0 <= f.estimate.high for f in found)
        # 5 % of 400 are 20; 35 would come about once in a thousand.
        self.assertLess(alarms, 35)
        self.assertLess(uncovered, 35)
        self.assertGreater(alarms, 5)


class SequentialTest(unittest.TestCase):
    """Decisions, and how often they are wrong."""

    def test_log_ratio_against_a_search_for_the_best_spread(self) -> None:
        rng = np.random.default_rng(2)
        values = np.array(pairs_of(rng, 30, 0.4))

        def best(mean: float) -> float:
            def negative(log_sigma: float) -> float:
                return -float(stats.norm.logpdf(values, mean, math.exp(log_sigma)).sum())

            return -float(optimize.minimize_scalar(negative, bounds=(-5, 5), method="bounded").fun)

        plain = best(0.5) - best(0.0)
        self.assertAlmostEqual(log_ratios(list(values), 0.5)[-1], plain * 29 / 30, places=5)

    def test_decisions_do_not_change_when_more_is_played(self) -> None:
        rng = np.random.default_rng(4)
        for _ in range(50):
            values = pairs_of(rng, 400, 0.5)
            whole = decide(values, Bounds())
            self.assertIsNot(whole.decision, Decision.OPEN)
            self.assertEqual(decide(values[: whole.pairs], Bounds()), whole)
            before = decide(values[: whole.pairs - 1], Bounds())
            self.assertIs(before.decision, Decision.OPEN)
            mirrored = decide([-value for value in values], Bounds())
            opposite = {Decision.BETTER: Decision.WORSE, Decision.WORSE: Decision.BETTER}
            self.assertIs(mirrored.decision, opposite.get(whole.decision, whole.decision))
            self.assertEqual(mirrored.pairs, whole.pairs)

    def test_pairs_without_spread(self) -> None:
        self.assertEqual(decide([0.0] * 50, Bounds()).decision, Decision.SAME)
        self.assertEqual(decide([0.0] * 50, Bounds()).pairs, LEAST_PAIRS)
        self.assertEqual(decide([1.0] * 50, Bounds()).decision, Decision.BETTER)
        self.assertIs(decide([], Bounds()).decision, Decision.OPEN)
        self.assertIs(decide([5.0] * (LEAST_PAIRS - 1), Bounds()).decision, Decision.OPEN)

    def shares(self, difference: float, bounds: Bounds, runs: int) -> dict[Decision, float]:
        """How often each decision falls between teams of a known difference."""
        rng = np.random.default_rng(11)
        found = [decide(pairs_of(rng, 1500, difference), bounds).decision for _ in range(runs)]
        return {decision: found.count(decision) / runs for decision in Decision}

    def test_errors_are_as_promised(self) -> None:
        # With 600 runs a share of 5 % is seen as at most 7.7 % in 999 cases of 1000.
        for bounds in (Bounds(), Bounds(0.05, 0.05, 1.0), Bounds(0.05, 0.05, 0.3)):
            same = self.shares(0, bounds, 600)
            self.assertLess(same[Decision.BETTER] + same[Decision.WORSE], 0.077, bounds)
            better = self.shares(bounds.difference, bounds, 600)
            self.assertGreater(better[Decision.BETTER], 1 - 0.077, bounds)
            self.assertLess(better[Decision.WORSE], 0.005, bounds)
        strict = Bounds(0.01, 0.2, 0.5)
        same = self.shares(0, strict, 600)
        self.assertLess(same[Decision.BETTER] + same[Decision.WORSE], 0.025)
        self.assertGreater(self.shares(0.5, strict, 600)[Decision.BETTER], 0.75)


if __name__ == "__main__":
    unittest.main()
