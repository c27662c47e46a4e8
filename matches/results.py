"""What is known of a match that was played: from the server, the players, and the game log."""

import csv
import json
import subprocess
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

from matches.players import KINDS, Player
from matches.processes import Usage
from matches.words import Failure

SIDES = ("left", "right")


@dataclass(frozen=True)
class ServerView:
    """How the server saw one player."""

    executed: dict[str, int] = field(default_factory=dict)
    answers: int = 0
    late: int = 0
    refused: int = 0
    spare_turn_necks: int = 0
    lost: bool = False
    missed: int = 0
    """Cycles in which the server waited for it in vain."""


@dataclass(frozen=True)
class PlayerResult:
    """One player of the match; `server` is None when it never joined."""

    number: int
    status: int | None
    ended_early: bool
    usage: Usage | None
    queued: dict[str, int] | None
    server: ServerView | None

    def lacking(self, *kinds: str) -> int:
        """Commands that it queued and the server did not execute.

        The second neck turns of a cycle, which the rules void, are not among them.
        """
        if self.queued is None or self.server is None:
            return 0
        missing = sum(self.queued[kind] - self.server.executed.get(kind, 0) for kind in kinds)
        return missing - (self.server.spare_turn_necks if "turn_neck" in kinds else 0)

    def sent(self, *kinds: str) -> int:
        """Commands of these kinds that it queued."""
        return 0 if self.queued is None else sum(self.queued[kind] for kind in kinds)


@dataclass(frozen=True)
class TeamResult:
    """A team, its players in order, and its figures from the game log."""

    name: str
    goals: int
    players: list[PlayerResult]
    figures: dict[str, Any]

    @property
    def in_time(self) -> float | None:
        """The share of answers that came before their cycle was over."""
        views = [player.server for player in self.players if player.server]
        answers = sum(view.answers for view in views)
        return 1 - sum(view.late for view in views) / answers if answers else None

    @property
    def cpu_seconds(self) -> float:
        """Of all players together."""
        return sum(player.usage.cpu_seconds for player in self.players if player.usage)


@dataclass(frozen=True)
class MatchOutcome:
    """A match that was played, to its end or not."""

    folder: Path
    left: TeamResult
    right: TeamResult
    cycles: int
    finished: bool
    interrupted: bool
    """Stopped on our user's wish."""
    server_usage: Usage | None
    network: str
    """What the bad network did; empty without one."""
    pace: tuple[int, float] | None = None
    """In synchronous mode: steps, and the seconds that they took."""

    @property
    def teams(self) -> tuple[TeamResult, TeamResult]:
        """Left, right."""
        return self.left, self.right


@dataclass(frozen=True)
class ServerResults:
    """The results file of the practice server, by side."""

    cycles: int = 0
    finished: bool = False
    names: tuple[str, str] = ("", "")
    score: tuple[int, int] = (0, 0)
    players: dict[tuple[str, int], ServerView] = field(default_factory=dict)
    pace: tuple[int, float] | None = None


def read_server_results(path: Path) -> ServerResults:
    """Nothing was played when the file is not there."""
    try:
        data = json.loads(path.read_text(errors="replace"))
    except FileNotFoundError:
        return ServerResults()
    except ValueError as error:
        raise Failure(f"the server's results in {path} cannot be read: {error}") from error
    views = {
        (str(player["side"]), int(player["unum"])): ServerView(
            executed=player["executed"],
            answers=player["answers"],
            late=player["late"],
            refused=player["refused"],
            spare_turn_necks=player["spare_turn_necks"],
            lost=player["lost"],
            missed=player.get("missed", 0),
        )
        for player in data["players"]
    }
    left, right = (name or "" for name in data["teams"])
    goals_left, goals_right = data["score"]
    return ServerResults(
        data["cycles"],
        data["finished"],
        (left, right),
        (goals_left, goals_right),
        views,
        (data["steps"], data["seconds"]) if data.get("steps") else None,
    )


def read_figures(programs: Path, log: Path) -> tuple[dict[str, Any], dict[str, Any]]:
    """The figures of both sides from the game log; none when it tells of no match."""
    if not log.exists():
        return {}, {}
    try:
        run = subprocess.run(
            [programs / "match-stats", "--json", log], capture_output=True, text=True
        )
        match = json.loads(run.stdout)[0]
    except (OSError, ValueError, IndexError):
        return {}, {}
    return match["left"], match["right"]


def team_result(
    name: str, players: list[Player], server: ServerResults, figures: tuple[dict[str, Any], ...]
) -> TeamResult:
    """Puts together what is known of one team, on whichever side the server had it."""
    side = server.names.index(name) if name in server.names else None
    results = []
    for player in players:
        counts = player.counts
        key = ("lr"[side], player.number) if side is not None else None
        results.append(
            PlayerResult(
                player.number,
                player.program.status,
                player.ended_early,
                player.usage,
                counts.queued if counts else None,
                server.players.get(key) if key else None,
            )
        )
    if side is None:
        return TeamResult(name, 0, results, {})
    return TeamResult(name, server.score[side], results, figures[side])


def write_players(outcome: MatchOutcome, path: Path) -> None:
    """A row a player, for spreadsheets and scripts."""
    counted = [f"{kind}_{what}" for kind in KINDS for what in ("queued", "executed")]
    with path.open("w", newline="") as file:
        rows = csv.writer(file)
        start = ["team", "number", "status", "ended_early", "cpu_s", "peak_kb"]
        rows.writerow([*start, *counted, "refused", "answers", "late", "lost"])
        for team in outcome.teams:
            for player in team.players:
                rows.writerow([team.name, *_player_row(player)])


def _player_row(player: PlayerResult) -> list[object]:
    usage = player.usage
    view = player.server or ServerView()
    row: list[object] = [player.number, player.status, int(player.ended_early)]
    row += [usage.cpu_seconds, usage.peak_kilobytes] if usage else ["", ""]
    for kind in KINDS:
        row += [player.queued[kind] if player.queued else "", view.executed.get(kind, "")]
    return [*row, view.refused, view.answers, view.late, int(view.lost)]
