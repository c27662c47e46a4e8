"""The eleven players of a team as programs: how they are started, and what they leave behind."""

import re
import signal
from collections.abc import Callable
from dataclasses import dataclass
from pathlib import Path

from matches.processes import Nursery, Program, Usage, end_all
from matches.words import last_words

TEAM_SIZE = 11
KINDS = ("kick", "dash", "turn", "say", "turn_neck", "catch", "move", "change_view")
"""The commands that are counted, as the server calls them, in the order of the statistics."""

ROW = re.compile(r"^(\w+)\s+queued: (\d+)\s+server received: (\d+)$", re.MULTILINE)


@dataclass(frozen=True)
class Counts:
    """Commands of each kind."""

    queued: dict[str, int]
    received: dict[str, int]


def read_counts(words: str) -> Counts | None:
    """The statistics that a player prints when it is interrupted; None when it printed none."""
    rows = ROW.findall(words)
    if len(rows) != len(KINDS):
        return None
    return Counts(
        {kind: int(row[1]) for kind, row in zip(KINDS, rows, strict=True)},
        {kind: int(row[2]) for kind, row in zip(KINDS, rows, strict=True)},
    )


@dataclass
class Player:
    """One player, and after its end what became of it."""

    number: int
    program: Program
    usage: Usage | None = None
    ended_early: bool = False

    @property
    def counts(self) -> Counts | None:
        """Its statistics."""
        return read_counts(self.program.out.read_text(errors="replace"))

    @property
    def words(self) -> str:
        """What it has said last, errors first."""
        return last_words(self.program.err) or last_words(self.program.out)


@dataclass(frozen=True)
class Eleven:
    """What a team's players need to start."""

    folder: Path
    agent: Path
    host: str
    name: str
    plans: bool = False  # whether they log what they believe

    def start(
        self,
        nursery: Nursery,
        has_joined: Callable[[int, list[Player]], None],
        count: int = TEAM_SIZE,
    ) -> list[Player]:
        """Starts the first `count` one after the other, the goalkeeper first.

        A server numbers players as they come, so `has_joined` waits after each until it is there.
        """
        players: list[Player] = []
        for number in range(1, count + 1):
            arguments = [str(self.agent), self.host, self.name]
            if number == 1:
                arguments.append("-goalie")
            out = self.folder / f"player-{number}.out"
            program = nursery.start(
                arguments,
                self.folder,
                out,
                out.with_suffix(".err"),
                {"AGENT_PLAN_LOG": "1" if self.plans else ""},
            )
            players.append(Player(number, program))
            has_joined(number, players)
        return players


def stop(players: list[Player]) -> None:
    """Interrupts all, which makes them print their statistics."""
    for player in players:
        player.usage = player.program.usage() if player.program.runs() else None
        player.ended_early = not player.program.runs()
    end_all([player.program for player in players], signal.SIGINT)
