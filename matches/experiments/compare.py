"""./compare: which of two or more teams is better, by how much, and how sure that is."""

import sys
import time
from argparse import Namespace
from dataclasses import replace
from itertools import combinations
from pathlib import Path

from rich.console import Console

from matches import options
from matches.experiments.common import (
    Wish,
    decimal,
    experiment_parser,
    fill,
    free_folder,
    open_run,
    tell_disk,
    tell_trouble,
)
from matches.experiments.engine import Where
from matches.experiments.entrants import KEYS, entries_of, find_entrant, own_revision
from matches.experiments.line import Line, series_text
from matches.experiments.plan import Plan
from matches.experiments.runs import Run
from matches.experiments.sequential import Decision
from matches.experiments.series import Series
from matches.experiments.tables import matches_of, summary_table, write_results
from matches.words import Failure, duration, say, shown

ABOUT = """\
Plays pairs of matches between teams, the same seed with the sides swapped,
until it is clear which one is better. A team is a file of settings, an agent's
binary, the folder of a packaged team, or a git revision of this repository.
"""

STATUS = """\
Ends with 0 when the verdict is clear, 3 when all matches were played and it is
not, 1 when something failed, 2 for a wrong option, 130 after Ctrl-C. What was
played is kept: start the same command with --resume to go on.
"""

UNDECIDED = 3
MATCHES = 400


def _parser() -> options.Parser:
    made = experiment_parser("compare", "TEAM TEAM ... [option ...]", ABOUT, STATUS)
    add, number = made.add_argument, options.whole_number
    add("teams", nargs="*", metavar="TEAM",
        help="settings, agent, packaged team or git revision; of more than two, each is compared "
        "with the first")
    add("--all", action="store_true", help="of more than two, compare every one with every other")
    add("--matches", type=number(2, 1000000), metavar="N",
        help=f"play at most so many of each comparison ({MATCHES}); with --resume more than before")
    add("--difference", type=decimal(0.01, 20), default=0.5, metavar="GOALS",
        help="the smallest mean goal difference of interest (0.5)")
    add("--error", type=decimal(0.0001, 0.4), default=0.05, metavar="P",
        help="bound for each of the two errors: calling equal teams different, and missing a "
        "difference of that size (0.05)")
    add("--list", action="store_true",
        help="play nothing; print one command for each match, for a batch scheduler")
    return made


def main(arguments: list[str]) -> int:
    """Compares; returns the exit status."""
    given = _parser().parse_args(arguments)
    if len(given.teams) < 2 and not (given.resume and given.out):
        raise Failure("compare takes two teams or more", "Try ./compare --help", status=2)
    if len(given.teams) > len(KEYS):
        raise Failure(f"compare takes at most {len(KEYS)} teams", status=2)
    wish = Wish(given.out, given.resume, Where(given.jobs or "", given.machines))
    words = _words_of(given) if given.teams else []
    usual = free_folder("-".join(Path(text).name.removesuffix(".conf") for text in given.teams))
    with open_run(wish, usual, lambda folder: _make(folder, given, words), words) as run:
        if given.matches and given.matches // 2 != run.plan.pairs:
            run.change_plan(replace(run.plan, pairs=given.matches // 2))
        if given.list:
            return _list(run)
        tell_disk(run.plan, len(run.plan.comparisons), run.folder, "compare")
        return _compare(run)


def _make(folder: Path, given: Namespace, words: list[str]) -> Plan:
    entrants = [find_entrant("compare", text) for text in given.teams]
    entries = entries_of(entrants)
    first, *others = entries
    plan = Plan(
        entries,
        list(combinations(entries, 2)) if given.all else [(first, other) for other in others],
        (given.matches or MATCHES) // 2,
        given.seed,
        given.half_cycles,
        not given.real_time,
        "",
        own_revision(),
        given.error,
        given.difference,
        given.keep_logs,
        words,
    )
    return fill("compare", folder, plan, entrants)


def _words_of(given: Namespace) -> list[str]:
    """What is played, as far as the user says it; where and how many is another matter."""
    names = ("seed", "half_cycles", "real_time", "all", "difference", "error", "keep_logs")
    return [*given.teams, *(f"{name}={getattr(given, name)}" for name in names)]


def _list(run: Run) -> int:
    """One command a match."""
    launcher = run.folder / "one-match"
    for first, second in run.plan.comparisons:
        for game in run.plan.games(first, second):
            if run.row_of(game) is None:
                print(f"{launcher} {game}")
    return 0


def _compare(run: Run) -> int:
    """Plays what is left, tells, writes."""
    plan = run.plan
    found: list[Series] = []
    interrupted = False
    began = time.monotonic()
    with Line() as line:
        try:
            for first, second in plan.comparisons:
                found.append(_play_one(run, first, second, line))
        except KeyboardInterrupt:
            interrupted = True
            run.refresh()
            found = [run.assess(first, second) for first, second in plan.comparisons]
    _tell(run, found)
    if run.seconds > 1:
        spent = duration(time.monotonic() - began)
        say("compare", f"{run.played} matches are there; this took {spent}, "
            f"{100 * line.processors.share:.0f} % of the processors in use")
    if interrupted:
        say("compare", "stopped; go on with --resume")
        return 130
    if any(series.missing and not series.is_settled for series in found):
        raise Failure(
            "some matches could not be played",
            f"{run.words}\nWhat parallel did is in {shown(run.folder / 'jobs.log')}. Start again "
            "with --resume.",
        )
    return 0 if all(series.decision is not Decision.OPEN for series in found) else UNDECIDED


def _play_one(run: Run, first: str, second: str, line: Line) -> Series:
    names = (run.plan.entries[first].label, run.plan.entries[second].label)
    line.restart()

    def watch(series: Series, done: int) -> None:
        run.prune(series)
        line.show(series_text(names, series), done, 2 * run.plan.pairs)

    series = run.play(first, second, watch)
    run.prune(series)
    return series


def _tell(run: Run, found: list[Series]) -> None:
    from matches.experiments.report import write_report

    write_results(run.plan, matches_of(found), run.folder / "results.csv")
    console = Console(width=None if sys.stdout.isatty() else 80, highlight=False)
    for series in found:
        console.print("")
        console.print(summary_table(run.plan, series))
        tell_trouble("compare", run, [*series.failed, *series.stumbled])
    console.print("")
    write_report(run, found, run.folder / "report.html")
    say("compare", f"results.csv and report.html are in {shown(run.folder)}/")
