#!/usr/bin/env python3
"""How often the verdicts of ./compare are wrong, and how often its intervals hold the true value.

    bench/verdicts.py                  on made-up results: goals come at random, one by one
    bench/verdicts.py RESULTS.csv      on real ones: the matches of an experiment, drawn anew

Real matches are made into an experiment of a team against itself by giving both sides of each match
to either team by chance; the true difference is then 0.
"""

import argparse
import csv
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))

import numpy as np  # noqa: E402

from matches.experiments.arithmetic import mean_estimate  # noqa: E402
from matches.experiments.sequential import Bounds, Decision, decide  # noqa: E402

MOST_PAIRS = 3000


def made_up(rng: np.random.Generator, difference: float) -> list[float]:
    """Pairs of matches with 1.5 goals a side on average."""
    ours = rng.poisson(1.5 + difference / 2, (MOST_PAIRS, 2))
    theirs = rng.poisson(1.5 - difference / 2, (MOST_PAIRS, 2))
    return [float(value) for value in (ours - theirs).mean(axis=1)]


def drawn(rng: np.random.Generator, matches: list[int]) -> list[float]:
    """Pairs of real matches in which chance says whose goals they are."""
    chosen = rng.choice(matches, (MOST_PAIRS, 2)) * rng.choice((-1, 1), (MOST_PAIRS, 2))
    return [float(value) for value in chosen.mean(axis=1)]


def tell(name: str, experiments: list[list[float]], bounds: Bounds, truth: float) -> None:
    """One line of the table."""
    found = []
    covered = 0
    pairs = []
    for values in experiments:
        outcome = decide(values, bounds)
        found.append(outcome.decision)
        pairs.append(outcome.pairs)
        estimate = mean_estimate(values[: outcome.pairs])
        covered += estimate.low <= truth <= estimate.high
    shares = "".join(f"{100 * found.count(d) / len(found):9.1f} %" for d in Decision)
    print(f"{name:28}{shares}{np.mean(pairs):9.1f}{100 * covered / len(found):9.1f} %")


def main() -> None:
    """Prints a table."""
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("results", nargs="?", type=Path)
    parser.add_argument("--runs", type=int, default=1000)
    given = parser.parse_args()
    rng = np.random.default_rng(1)
    print(f"{'':28}" + "".join(f"{d.value:>11}" for d in Decision) + "    pairs  interval")
    if given.results:
        rows = list(csv.DictReader(given.results.open()))
        played = [row for row in rows if row["status"] == "played"]
        matches = [int(row["left_goals"]) - int(row["right_goals"]) for row in played]
        for size in (0.3, 0.5, 1.0):
            runs = [drawn(rng, matches) for _ in range(given.runs)]
            tell(f"itself, interest {size:g}", runs, Bounds(difference=size), 0)
        return
    for size in (0.3, 0.5, 1.0):
        for truth in (0.0, size / 2, size, 2 * size):
            runs = [made_up(rng, truth) for _ in range(given.runs)]
            tell(f"differ by {truth:g}, interest {size:g}", runs, Bounds(difference=size), truth)


if __name__ == "__main__":
    main()
