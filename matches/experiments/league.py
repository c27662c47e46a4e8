"""A match among teams that come as folders with the programs `start` and `kill`, as leagues have it.

`start HOST BASEDIR NUMBER` runs in the foreground, called once for each number from 1 (the
goalkeeper) to 12 (a coach) from another folder; `kill` ends everything of the team. Such teams play
on the field's usual port, and `kill` may end every program of a name; so a match gets a network and
processes of its own from the kernel where that is allowed. Else matches wait for each other.
"""

import fcntl
import os
import shutil
import socket
import struct
import subprocess
import sys
import time
from collections.abc import Iterator
from contextlib import contextmanager
from dataclasses import dataclass
from pathlib import Path

from matches.duration import expected_duration
from matches.experiments.plan import Entry, Game, Plan
from matches.experiments.rows import Played
from matches.judge import ended_how
from matches.locks import Lock
from matches.monitor import Monitor
from matches.players import TEAM_SIZE, Eleven
from matches.ports import FIRST, HOST, take_port
from matches.processes import Nursery, Program, end_all, wait_until
from matches.results import read_figures
from matches.settings import make_team_folder
from matches.words import Failure, MatchFailure, last_words

APART = "MATCH_HAS_OWN_NETWORK"
COACH = 12
PATIENCE = {1: 6.0}
"""Seconds until the next program of a team starts, unless the player has joined before;"""
USUAL_PATIENCE = 3.0
AFTERWARDS = 5.0
"""Seconds between the end of a match and `kill`."""
SILENCE = 60.0
SIOCSIFFLAGS = 0x8914
IFF_UP = 1


def is_needed(plan: Plan, game: Game) -> bool:
    """Whether this match cannot be played among agents on our own server."""
    return bool(plan.server) or any(plan.entries[key].kind == "league" for key in game.sides)


# ---------------------------------------------------------------- a network of its own

# New namespaces for users, network and processes; the proc file system shows the new processes.
UNSHARE = ["unshare", "--map-root-user", "--net", "--pid", "--fork", "--kill-child", "--mount-proc"]


def go_apart(arguments: list[str]) -> None:
    """Starts this program again with its own network and processes; returns where it cannot."""
    if APART in os.environ or not shutil.which(UNSHARE[0]):
        return
    if subprocess.run([*UNSHARE, "true"], stderr=subprocess.DEVNULL).returncode != 0:
        return
    again = [*UNSHARE, sys.executable, "-P", "-m", "matches", "one-match", *arguments]
    os.execvpe(again[0], again, {**os.environ, APART: "1"})


@contextmanager
def _usual_port() -> Iterator[None]:
    """The field's usual port, for us alone."""
    if APART in os.environ:
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
            fcntl.ioctl(probe, SIOCSIFFLAGS, struct.pack("16sh14x", b"lo", IFF_UP))
        yield
        return
    lock: Lock | None = None
    while lock is None:
        try:
            lock = take_port(FIRST, 3)[1]
        except Failure:
            time.sleep(1)
    with lock:
        yield


# ---------------------------------------------------------------- the match


@dataclass
class _Team:
    """One side: its programs, by the number of the player."""

    entry: Entry
    base: Path
    folder: Path
    programs: list[Program]

    def start(self, nursery: Nursery, game: "_LeagueMatch", side: str) -> None:
        """One after the other; the next when the player before has joined."""
        self.folder.mkdir(parents=True, exist_ok=True)
        if self.entry.kind == "agent":
            make_team_folder(
                self.folder, self.base / "player.conf", self.entry.name, FIRST, "vw"[side == "r"]
            )
            eleven = Eleven(self.folder, self.base / "agent", HOST, self.entry.name)
            started = eleven.start(nursery, lambda number, _: game.await_player(side, number))
            self.programs = [player.program for player in started]
            return
        for number in range(1, COACH + 1):
            out = self.folder / f"start-{number}.out"
            command = [str(self.base / "start"), HOST, str(self.base), str(number)]
            self.programs.append(nursery.start(command, self.folder, out))
            if number <= TEAM_SIZE:
                game.await_player(side, number)

    def stop(self, nursery: Nursery) -> None:
        """As a league does it."""
        if self.entry.kind == "league" and (self.base / "kill").exists():
            out = self.folder / "kill.out"
            killer = nursery.start([self.base / "kill"], self.base, out)
            wait_until(lambda: not killer.runs(), 5)
        end_all(self.programs, patience=1)


class _LeagueMatch:
    """The course of one match."""

    def __init__(self, run: Path, plan: Plan, game: Game, folder: Path) -> None:
        self._plan = plan
        self._seed = plan.seed_of(game)
        self._bin = run / "bundle/bin"
        self._folder = folder
        folder.mkdir(parents=True, exist_ok=True)
        self._teams = [
            _Team(plan.entries[key], run / "bundle/teams" / key, folder / side, [])
            for key, side in zip(game.sides, ("left", "right"), strict=True)
        ]
        self._monitor: Monitor

    def play(self, nursery: Nursery) -> Played:
        """To the end, or until nothing happens any more."""
        server = nursery.start(self._server_command(), self._folder, self._folder / "server.out")
        time.sleep(0.5)
        if not server.runs():
            raise Failure("the server did not start", last_words(server.out))
        self._monitor = Monitor(HOST, FIRST)
        for team, side in zip(self._teams, "lr", strict=True):
            team.start(nursery, self, side)
        self._watch(server)
        sight = self._monitor.sight
        time.sleep(min(AFTERWARDS, AFTERWARDS if self._plan.server else 0.5))
        for team in self._teams:
            team.stop(nursery)
        self._monitor.close()
        wait_until(lambda: not server.runs(), 15 if sight.is_over else 0.2)
        end_all([server])
        left, right = read_figures(self._bin, self._folder / "match.rcg")
        fault = self._fault(server)
        return Played(fault, sight.cycle, sight.score, {"left": left, "right": right})

    def _server_command(self) -> list[str | Path]:
        plan = self._plan
        if not plan.server:
            return [
                self._bin / "practice-server", "--port", str(FIRST), "--address", HOST,
                "--half-cycles", str(plan.half_cycles), "--seed", str(self._seed),
                "--log", "match", "--scoreboard", "plain",
                *(["--synchronous"] if plan.synchronous else []),
            ]
        options = {
            "half_time": str(plan.half_cycles // 10),
            "port": str(FIRST),
            "auto_mode": "true",
            "synch_mode": "true" if plan.synchronous else "false",
            "game_log_version": "5",
        }
        for log in ("game_log", "text_log"):
            options |= {
                f"{log}_dir": str(self._folder),
                f"{log}_fixed": "true",
                f"{log}_fixed_name": "match",
                f"{log}_dated": "false",
                f"{log}_compression": "0",
            }
        return [Path(plan.server), *(f"server::{name}={value}" for name, value in options.items())]

    def await_player(self, side: str, number: int) -> None:
        """Until the player is on the pitch, or has had its time."""
        end = time.monotonic() + PATIENCE.get(number, USUAL_PATIENCE)
        while (side, number) not in self._monitor.look().present and time.monotonic() < end:
            time.sleep(0.02)

    def _watch(self, server: Program) -> None:
        started = heard = time.monotonic()
        steps = 0
        limit = 2 * expected_duration(self._plan.half_cycles) + SILENCE
        while server.runs() and not self._monitor.look().is_over:
            now = time.monotonic()
            if self._monitor.sight.steps > steps:
                steps, heard = self._monitor.sight.steps, now
            if now - heard > SILENCE or now - started > limit:
                return
            time.sleep(0.05)

    def _fault(self, server: Program) -> str:
        sight = self._monitor.sight
        found = []
        if not sight.is_over:
            found.append(f"the match ended in cycle {sight.cycle}, before its time")
        if server.status not in (0, None):
            found.append(f"the server {ended_how(server.status)}")
        for team, side in zip(self._teams, "lr", strict=True):
            there = sum(1 for player in sight.present if player[0] == side)
            if there < TEAM_SIZE:
                found.append(f"{team.entry.name} had {there} of {TEAM_SIZE} players at the end")
        return "; ".join(found)


def play(run: Path, plan: Plan, game: Game, folder: Path) -> Played:
    """Plays one match."""
    with _usual_port(), Nursery() as nursery:
        played = _LeagueMatch(run, plan, game, folder).play(nursery)
    if not played.cycles:
        raise MatchFailure(played.fault or "nothing was played")
    return played
