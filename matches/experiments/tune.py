"""./tune: searches the settings of a team that beat those it has."""

import json
import os
import re
import shutil
import warnings
from argparse import Namespace
from dataclasses import dataclass, replace
from pathlib import Path

import optuna
from rich.console import Console

from matches import options
from matches.experiments.common import (
    Wish,
    decimal,
    experiment_parser,
    fill,
    free_folder,
    open_run,
)
from matches.experiments.engine import Where
from matches.experiments.entrants import Entrant, entries_of, own_revision
from matches.experiments.line import Line
from matches.experiments.plan import Entry, Plan
from matches.experiments.runs import Run
from matches.experiments.sequential import Decision
from matches.experiments.series import Series, goals_text
from matches.experiments.tables import matches_of, summary_table, write_results
from matches.experiments.tune_report import Trial, write_page
from matches.places import DEFAULT_CONF
from matches.settings import check_conf
from matches.words import Failure, say, shown

ABOUT = """\
Searches settings that play better. FILE names keywords of player.conf, a line
each with the lowest and the highest value to try; "whole" for whole numbers:

    dribbleAreaX:     -20.0 to 40.0
    dribbleKickPower:  10 to 80 whole

Each trial plays the same pairs of matches against the settings as they are. The
best one plays again on fresh seeds, as ./compare does, and only that counts.
"""

STATUS = """\
Ends with 0 when better settings were found and confirmed, 3 when not, 1 when
something failed, 2 for a wrong option, 130 after Ctrl-C. What was played is kept:
start the same command with --resume to go on.
"""

BASE = "base"
BEST = "best"
RANGE = re.compile(r"([A-Za-z]\w*)\s*:\s*(-?[\d.]+)\s+to\s+(-?[\d.]+)(\s+whole)?")
NOT_CONFIRMED = 3


@dataclass(frozen=True)
class Range:
    """What may be tried for one keyword."""

    keyword: str
    low: float
    high: float
    whole: bool

    @property
    def distribution(self) -> optuna.distributions.BaseDistribution:
        """As the optimiser calls it."""
        if self.whole:
            return optuna.distributions.IntDistribution(int(self.low), int(self.high))
        return optuna.distributions.FloatDistribution(self.low, self.high)

    def text(self, value: float) -> str:
        """As it stands in the settings."""
        return f"{value:.1f}" if self.whole else f"{value:.4f}"


def read_ranges(path: Path) -> list[Range]:
    """Fails with file and line."""
    found = []
    for number, line in enumerate(path.read_text(errors="replace").splitlines(), 1):
        text = line.partition("#")[0].strip()
        if not text:
            continue
        match = RANGE.fullmatch(text)
        try:
            if match is None:
                raise ValueError
            low, high = float(match[2]), float(match[3])
        except ValueError as error:
            raise Failure(
                f"{shown(path)}:{number}: '{text}' is no range",
                "Write: keyword: LOW to HIGH, or keyword: LOW to HIGH whole",
            ) from error
        if low >= high:
            raise Failure(f"{shown(path)}:{number}: {low:g} is not below {high:g}")
        found.append(Range(match[1], low, high, bool(match[4])))
    if not found:
        raise Failure(f"{shown(path)} names no keyword", "Try ./tune --help")
    return found


def _parser() -> options.Parser:
    made = experiment_parser("tune", "FILE [option ...]", ABOUT, STATUS)
    add, number = made.add_argument, options.whole_number
    add("ranges", type=options.readable_file, metavar="FILE", help="the keywords and their ranges")
    add("--conf", type=options.readable_file, default=DEFAULT_CONF, metavar="FILE",
        help="the settings to beat (player.conf)")
    add("--trials", type=number(1, 10000), default=40, metavar="N",
        help="settings to try (40); with --resume more than before")
    add("--pairs", type=number(2, 10000), default=30, metavar="N",
        help="pairs of matches of a trial (30)")
    add("--matches", type=number(20, 1000000), default=1000, metavar="N",
        help="play at most so many to confirm the best settings (1000)")
    add("--difference", type=decimal(0.01, 20), default=0.3, metavar="GOALS",
        help="the smallest gain of interest when the best settings are confirmed (0.3)")
    return made


def main(arguments: list[str]) -> int:
    """Searches; returns the exit status."""
    given = _parser().parse_args(arguments)
    ranges = read_ranges(given.ranges)
    wish = Wish(given.out, given.resume, Where(given.jobs or "", given.machines))
    names = ("conf", "pairs", "seed", "half_cycles", "real_time")
    words = [str(given.ranges), *(f"{name}={getattr(given, name)}" for name in names)]
    words += [f"{r.keyword}:{r.low}:{r.high}:{r.whole}" for r in ranges]
    usual = free_folder(f"tune-{given.ranges.stem}")
    with open_run(wish, usual, lambda folder: _make(folder, given, words), words) as run:
        tuning = Tuning(run, ranges, given)
        with Line() as line:
            try:
                tuning.search(given.trials, line)
                confirmed = tuning.confirm(line)
            except KeyboardInterrupt:
                tuning.write(None)
                say("tune", "stopped; go on with --resume")
                return 130
        return tuning.tell(confirmed)


def _make(folder: Path, given: Namespace, words: list[str]) -> Plan:
    base = Entrant(given.conf.name.removesuffix(".conf"), None, given.conf)
    plan = Plan(
        entries_of([base], [BASE]), [], given.pairs, given.seed, given.half_cycles,
        not given.real_time, "", own_revision(), keep_logs="none", words=words,
    )
    return fill("tune", folder, plan, [base])


class Tuning:
    """A search that may be taken up again: what was tried is told by the matches that were played.

    The optimiser is given all that is known before each proposal, and its chance is set by the
    number of the trial; so the same results bring the same proposals.
    """

    def __init__(self, run: Run, ranges: list[Range], given: Namespace) -> None:
        self._run = run
        self._ranges = ranges
        self._given = given
        self.trials: list[Trial] = []

    # ---- Search

    def search(self, count: int, line: Line) -> None:
        """Plays the trials that are wanted."""
        optuna.logging.set_verbosity(optuna.logging.ERROR)
        warnings.simplefilter("ignore", optuna.exceptions.ExperimentalWarning)
        for number in range(len(self.trials) + 1, count + 1):
            values = self._propose(number)
            key = f"t{number:04d}"
            self._add_team(key, values)

            def watch(series: Series, done: int, trial: int = number) -> None:
                line.show(self._standing(trial, series), done, 2 * self._run.plan.pairs)

            line.restart()
            series = self._run.play(key, BASE, watch, sequential=False)
            if series.missing:
                raise Failure(
                    "some matches could not be played",
                    f"{self._run.words}\nStart again with --resume.",
                )
            self.trials.append(Trial(number, key, values, series.difference, len(series.failed)))
            self.write(None)

    def _propose(self, number: int) -> dict[str, float]:
        """Tree-structured Parzen estimators bear noise, few trials, and ranges of all kinds."""
        sampler = optuna.samplers.TPESampler(seed=self._run.plan.seed + number, multivariate=True)
        study = optuna.create_study(direction="maximize", sampler=sampler)
        distributions = {r.keyword: r.distribution for r in self._ranges}
        for trial in self.trials:
            if trial.estimate.value == trial.estimate.value:
                study.add_trial(optuna.trial.create_trial(
                    params={
                        r.keyword: int(trial.values[r.keyword]) if r.whole
                        else trial.values[r.keyword]
                        for r in self._ranges
                    },
                    distributions=distributions,
                    value=trial.estimate.value,
                ))
        params = study.ask(distributions).params
        return {r.keyword: float(r.text(params[r.keyword])) for r in self._ranges}

    def _add_team(self, key: str, values: dict[str, float]) -> None:
        """The settings to beat, with some lines more."""
        bundle = self._run.folder / "bundle"
        team = bundle / "teams" / key
        team.mkdir(parents=True, exist_ok=True)
        base = (bundle / "teams" / BASE / "player.conf").read_text()
        lines = [f"{r.keyword}: {r.text(values[r.keyword])}" for r in self._ranges]
        (team / "player.conf").write_text(base.rstrip() + "\n\n" + "\n".join(lines) + "\n")
        if not (team / "agent").exists():
            (team / "agent").hardlink_to(bundle / "teams" / BASE / "agent")
        check_conf(bundle / "bin", team / "player.conf")
        settings = " ".join(line.replace(": ", "=") for line in lines)
        entry = Entry(key, key, key, "agent", self._run.plan.entries[BASE].revision, settings)
        entries = self._run.plan.entries | {key: entry}
        self._run.change_plan(replace(self._run.plan, entries=entries))

    def _standing(self, number: int, series: Series) -> str:
        best = max((t.estimate.value for t in self.trials), default=float("nan"))
        so_far = f", best so far {goals_text(best)} goals" if self.trials else ""
        now = f"{goals_text(series.difference.value)}" if series.pairs else "-"
        return f"trial {number} of {self._given.trials}: {now}{so_far}"

    @property
    def best(self) -> Trial:
        """The one that won by the most; which is luck in part, so it has to be confirmed."""
        return max(self.trials, key=lambda trial: trial.estimate.value)

    # ---- Confirmation

    def confirm(self, line: Line) -> tuple[Plan, Series]:
        """The best settings against those to beat, on seeds that no trial has seen."""
        best = replace(self._run.plan.entries[self.best.key], label="best found")
        plan = replace(
            self._run.plan,
            entries={best.key: best, BASE: self._run.plan.entries[BASE]},
            comparisons=[(best.key, BASE)],
            pairs=self._given.matches // 2,
            seed=self._run.plan.seed + self._run.plan.pairs,
            difference=self._given.difference,
            keep_logs="telling",
        )
        folder = self._run.folder / f"confirm-{best.key}"
        folder.mkdir(exist_ok=True)
        if not (folder / "one-match").exists():
            bundle = self._run.folder / "bundle"
            shutil.copytree(bundle, folder / "bundle", copy_function=os.link, dirs_exist_ok=True)
            shutil.copy(self._run.folder / "one-match", folder)
        plan.save(folder)
        fresh = Run(folder, plan, self._run.where)
        line.restart()

        def watch(series: Series, done: int) -> None:
            fresh.prune(series)
            line.show(f"confirming: {goals_text(series.difference.value) if series.pairs else '-'}",
                      done, 2 * plan.pairs)

        series = fresh.play(best.key, BASE, watch)
        fresh.prune(series)
        if series.missing and not series.is_settled:
            raise Failure("some matches could not be played", f"{fresh.words}\nTry --resume.")
        from matches.experiments.report import write_report

        write_results(plan, matches_of([series]), folder / "results.csv")
        write_report(fresh, [series], folder / "report.html")
        return plan, series

    # ---- Result

    def write(self, confirmed: tuple[Plan, Series] | None) -> None:
        """trials.json, tune.html, and best.conf."""
        folder = self._run.folder
        rows = [
            {"trial": t.number, **t.values, "difference": t.estimate.value,
             "low": t.estimate.low, "high": t.estimate.high, "failed": t.failed}
            for t in self.trials
        ]
        (folder / "trials.json").write_text(json.dumps(rows, indent=1) + "\n")
        if self.trials:
            base = self._run.plan.entries[BASE].label
            write_page(folder / "tune.html", self.trials, base, self.best, confirmed)
            best = folder / "bundle/teams" / self.best.key / "player.conf"
            (folder / "best.conf").write_bytes(best.read_bytes())

    def tell(self, confirmed: tuple[Plan, Series]) -> int:
        """The table of the confirmation, and where everything is."""
        self.write(confirmed)
        plan, series = confirmed
        best = self.best
        print("")
        for keyword, value in best.values.items():
            print(f"{keyword}: {value:g}")
        failed = sum(trial.failed for trial in self.trials)
        if failed:
            say("tune", f"{failed} matches failed and did not count; see {shown(self._run.folder)}")
        print(f"Trial {best.number} of {len(self.trials)} won by {best.estimate.value:+.2f} goals "
              "a match, the most of all. On fresh seeds:\n")
        Console(highlight=False, width=80).print(summary_table(plan, series))
        folder = shown(self._run.folder)
        say("tune", f"tune.html, best.conf and the confirmation's report are in {folder}/")
        return 0 if series.decision is Decision.BETTER else NOT_CONFIRMED
