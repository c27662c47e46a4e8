"""One match of an experiment: python3 -m matches one-match RUN GAME.

Runs wherever the folder of the experiment has been sent. It leaves the folder of the match, or
nothing at all. Ends with 0 when there is a row, also of a match that failed on the pitch; with 75
when the disk is full; with another status when this machine could not play, so that the match may
be tried again, here or elsewhere. Needs the standard library alone.
"""

import errno
import gzip
import os
import resource
import shutil
import signal
import sys
import time
from dataclasses import replace
from pathlib import Path
from types import FrameType
from typing import NoReturn

from matches.experiments import league, rows
from matches.experiments.heat import count_places
from matches.experiments.plan import Game, Plan
from matches.experiments.rows import FAILED, PLAYED, Played, Row
from matches.judge import faults
from matches.match import Match
from matches.monitor import Sight
from matches.settings import MatchSettings, TeamSettings
from matches.words import Failure, MatchFailure

DISK_FULL = 75
LEAST_FREE = 2_000_000  # bytes; with fewer, what was written is not to be trusted
LOGS = ("match.rcg", "match.rcl")
PARENT = os.getppid()


def main(arguments: list[str]) -> int:
    """Plays; returns the exit status."""
    if len(arguments) != 2:
        raise Failure("usage: one-match RUN GAME", status=2)
    run, game = Path(arguments[0]).resolve(), Game.named(arguments[1])
    plan = Plan.load(run)
    if rows.read_row(run / rows.FOLDER / str(game)) is not None:
        return 0
    if league.is_needed(plan, game):
        league.go_apart(arguments)
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, _end)
    work = run / "running" / str(game)
    try:
        _play_and_keep(run, plan, game, work)
    except OSError as error:
        sys.stderr.write(f"one-match: {game}: {error}\n")
        return DISK_FULL if error.errno in (errno.ENOSPC, errno.EDQUOT) else 1
    finally:
        shutil.rmtree(work, ignore_errors=True)
    return 0


def _end(number: int, _frame: FrameType | None) -> NoReturn:
    """Unwinds, which ends the match's programs; further signals change nothing."""
    for other in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(other, signal.SIG_IGN)
    raise SystemExit(128 + number)


def _play_and_keep(run: Path, plan: Plan, game: Game, work: Path) -> None:
    """The folder of the match gets its name when everything is in it."""
    started = time.monotonic()
    shutil.rmtree(work, ignore_errors=True)
    new = work / "done"
    row = _play(run, plan, game, work / "match", new)
    if row.status == FAILED and plan.synchronous:
        # One seed gives one match, so what goes wrong just once was a machine out of breath.
        again = work / "again"
        second = _play(run, plan, game, work / "match", again)
        if second.status == PLAYED:
            new.replace(again / rows.FIRST_TRY)
            row, new = replace(second, stumbled=row.played.fault), again
    row = replace(row, files=_sizes(new))
    used = [resource.getrusage(who) for who in (resource.RUSAGE_CHILDREN, resource.RUSAGE_SELF)]
    cpu = sum(usage.ru_utime + usage.ru_stime for usage in used)
    row.write(new, time.monotonic() - started, cpu)
    if shutil.disk_usage(work).free < LEAST_FREE:
        raise OSError(errno.ENOSPC, os.strerror(errno.ENOSPC))
    done = run / rows.FOLDER / str(game)
    done.parent.mkdir(exist_ok=True)
    shutil.rmtree(done, ignore_errors=True)
    new.replace(done)


def _play(run: Path, plan: Plan, game: Game, folder: Path, kept: Path) -> Row:
    """Plays, and keeps the logs: of a match that failed everything there is."""
    shutil.rmtree(folder, ignore_errors=True)
    kept.mkdir(parents=True)
    try:
        played = (
            league.play(run, plan, game, folder)
            if league.is_needed(plan, game)
            else _play_agents(run, plan, game, folder)
        )
    except MatchFailure as failure:
        played = Played(fault=": ".join([failure.what, *failure.advice.splitlines()[:1]]))
    heat: dict[str, list[int]] = {}
    if played.fault:
        shutil.copytree(folder, kept, dirs_exist_ok=True, ignore=shutil.ignore_patterns(".lock"))
    else:
        heat = count_places(run / "bundle/bin/match-stats", folder / LOGS[0])
    if plan.keep_logs != "none" or played.fault:
        for name in LOGS:
            _compress(folder / name, kept / f"{name}.gz")
            (kept / name).unlink(missing_ok=True)
    status = FAILED if played.fault else PLAYED
    return Row(str(game), plan.seed_of(game), status, played, heat=heat)


def _sizes(folder: Path) -> dict[str, int]:
    """Of all files in it."""
    files = sorted(path for path in folder.rglob("*") if path.is_file())
    return {str(path.relative_to(folder)): path.stat().st_size for path in files}


def _play_agents(run: Path, plan: Plan, game: Game, folder: Path) -> Played:
    """Among agents of the usual form."""
    left, right = (
        TeamSettings(plan.entries[key].name, teams / "player.conf", teams / "agent")
        for key in game.sides
        for teams in [run / "bundle/teams" / key]
    )
    settings = MatchSettings(
        left,
        right,
        plan.half_cycles,
        plan.seed_of(game),
        keep=folder,
        fast=plan.synchronous,
    )
    outcome = Match(settings, run / "bundle/bin", folder).run(None, _heed_parent)
    goals = (outcome.left.goals, outcome.right.goals)
    figures = {"left": outcome.left.figures, "right": outcome.right.figures}
    return Played("; ".join(faults(outcome)), outcome.cycles, goals, figures)


def _heed_parent(_sight: Sight) -> None:
    """Ends the match when whoever wanted it is gone."""
    if os.getppid() != PARENT:
        raise SystemExit(128 + signal.SIGHUP)


def _compress(log: Path, target: Path) -> None:
    """Without a date, so that equal matches have equal files."""
    if not log.exists():
        return
    with log.open("rb") as source, target.open("wb") as file, gzip.GzipFile(
        "", "wb", 6, file, mtime=0
    ) as out:
        shutil.copyfileobj(source, out, 1 << 20)
