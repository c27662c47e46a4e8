"""The course of one team's match on a server that is not ours, and the ways in which it ends."""

import time
from dataclasses import dataclass
from pathlib import Path

from matches import players as teams
from matches.judge import ended_how
from matches.locks import Lock
from matches.monitor import Monitor, Sight
from matches.players import TEAM_SIZE, Eleven, Player
from matches.processes import Nursery

NO_SERVER, REFUSED, LOST, DIED = 3, 4, 5, 6

JOINING = 1.0  # seconds until the next player starts all the same
SILENCE = 1.2  # seconds without a step after which the server is asked whether it is there;
ANSWER = 0.4  # and so long it may take: a player gives up after 2 s, without its statistics
AFTERWARDS = 1.0  # seconds that the team stays after full time


@dataclass(frozen=True)
class Ending:
    """Why it is over: the exit status, what is said, and what to do next."""

    status: int
    words: str
    advice: str = ""


@dataclass(frozen=True)
class Where:
    """The server."""

    host: str
    address: str
    port: int

    def __str__(self) -> str:
        return f"{self.host}, port {self.port}"


class Team:
    """The course of one team's match."""

    def __init__(self, where: Where, name: str, folder: Path) -> None:
        self._where = where
        self._name = name
        self._folder = folder
        self._monitor = Monitor(where.address, where.port)
        self._before: frozenset[tuple[str, int]] = frozenset()
        self._joined: set[int] = set()
        self._began = self._heard = self._asked = time.monotonic()
        self.players: list[Player] = []
        self.stopped_by = 0  # the number of a signal

    def stop(self, number: int) -> None:
        """To be called by the handler of a signal."""
        self.stopped_by = number

    @property
    def sight(self) -> Sight:
        """The newest that is known of the match."""
        return self._monitor.sight

    def run(self, agent: Path, build: Lock | None) -> Ending:
        """Starts the players, waits for an end, stops them, and tells why it ended."""
        with Nursery() as nursery:
            eleven = Eleven(self._folder, agent, self._where.host, self._name)
            self._wait(0.25)  # in which a server that is there answers
            self._before = self._ours()
            self.players = eleven.start(nursery, self._has_joined)
            if build is not None:
                build.release()
            ending = self._play()
            teams.stop(self.players)
            self._monitor.close()
        return ending

    # ---- Start

    def _wait(self, seconds: float) -> None:
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            self._look()
            time.sleep(0.02)

    def _has_joined(self, number: int, players: list[Player]) -> None:
        self.players = players
        start = time.monotonic()
        patience = JOINING if self.sight.steps else 0.4 if number == 1 else 0.05
        while len(self._joined) < number and time.monotonic() - start < patience:
            if self.stopped_by or not players[-1].program.runs():
                return
            self._wait(0.02)

    def _ours(self) -> frozenset[tuple[str, int]]:
        """Those on the pitch that carry the team's name."""
        teams_here = self.sight.teams
        side = "lr"[teams_here.index(self._name)] if self._name in teams_here else ""
        return frozenset(player for player in self.sight.present if player[0] == side)

    # ---- Course

    def _look(self) -> None:
        steps = self.sight.steps
        sight = self._monitor.look()
        now = time.monotonic()
        if sight.steps > steps:
            self._heard = self._asked = now
            self._joined |= {number for _, number in self._ours() - self._before}
        elif now - self._heard > SILENCE and now - self._asked > ANSWER / 3:
            self._monitor.greet()
            self._asked = now

    def _play(self) -> Ending:
        full_time = 0.0
        while not self.stopped_by:
            self._wait(0.1)
            running = [player for player in self.players if player.program.runs()]
            if self.sight.is_over:
                full_time = full_time or time.monotonic()
                if not running or time.monotonic() - full_time > AFTERWARDS:
                    break
            elif not running or self._server_is_gone():
                break
        return self._ending()

    def _server_is_gone(self) -> bool:
        return self.sight.steps > 0 and time.monotonic() - self._heard > SILENCE + ANSWER

    # ---- End

    def _ending(self) -> Ending:
        where, sight = self._where, self.sight
        if self.stopped_by:
            return Ending(128 + self.stopped_by, "stopped by the user")
        died = self._died()
        if died:
            return died
        if sight.steps == 0:
            return Ending(
                NO_SERVER,
                f"no server answers at {where}",
                "Is it running there, and does a firewall let UDP pass?",
            )
        if not self._joined:
            return self._refused()
        if sight.is_over:
            return self._full_time()
        if self._server_is_gone():
            return Ending(LOST, f"the server at {where} fell silent in cycle {sight.cycle}")
        return Ending(
            LOST,
            f"the players lost the server at {where} in cycle {sight.cycle}, "
            "which goes on without them",
            "Is the network between the two well?",
        )

    def _full_time(self) -> Ending:
        numbers = {number for _, number in self._ours()}
        gone = sorted(self._joined - numbers)
        if len(self._joined) < TEAM_SIZE:
            return Ending(LOST, f"full time, but only {len(self._joined)} of {TEAM_SIZE} played")
        if gone:
            return Ending(LOST, f"full time, but the server lost {_listed(gone)} before")
        return Ending(0, "full time")

    def _died(self) -> Ending | None:
        bad = [player for player in self.players if player.program.status not in (None, 0)]
        if not bad:
            return None
        kinds = dict.fromkeys(ended_how(player.program.status) for player in bad)
        who = _listed([player.number for player in bad])
        words = f"{who} {' or '.join(kinds)}"
        if len(bad) > 1:
            words = words.replace(" was ", " were ")
        return Ending(DIED, words, bad[0].words or "Nothing was said.")

    def _refused(self) -> Ending:
        names = [name for name in self.sight.teams if name]
        if len(names) == 2 and self._name not in names:
            cause = f"{names[0]} and {names[1]} are on the pitch already"
        elif len(self._before) == TEAM_SIZE:
            cause = f"a team {self._name} is complete already"
        else:
            cause = "it does not say why"
        return Ending(REFUSED, f"the server at {self._where} refused the team: {cause}")


def _listed(numbers: list[int]) -> str:
    if len(numbers) == TEAM_SIZE:
        return "all players"
    return ("player " if len(numbers) == 1 else "players ") + ", ".join(map(str, numbers))
