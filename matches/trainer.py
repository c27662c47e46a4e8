"""A trainer: sets up ball, players and play mode on a server, and sees everything."""

import re
import socket
from contextlib import suppress

from matches.conditions import Moving, Sight
from matches.words import Failure

ANSWER = 2.0  # seconds that a server may take for an answer
STEP = 10.0  # and for a step; players that are loaded slowly hold it up
N = r"(-?[\d.]+(?:e[+-]?\d+)?)"
BALL = re.compile(rf"\(\(b\) {N} {N} {N} {N}\)")
PLAYER = re.compile(rf'\(\(p "([^"]+)" (\d+)(?: goalie)?\) {N} {N} {N} {N} ')
REFEREE = re.compile(r"\(hear \d+ referee (\w+)\)")
LARGEST = 8192


def read_sight(datagram: str, teams: dict[str, str]) -> Sight | None:
    """What a see_global or an answer to look says; `teams` are the letters of the sides."""
    ball = BALL.search(datagram)
    time = re.match(r"\((?:see_global|ok look) (\d+) ", datagram)
    if ball is None or time is None:
        return None
    players = {
        (teams[match[1]], int(match[2])): Moving(*map(float, match.groups()[2:]))
        for match in PLAYER.finditer(datagram)
        if match[1] in teams
    }
    return Sight(int(time[1]), Moving(*map(float, ball.groups())), players)


class Trainer:
    """The connection to a server's trainer port, with eye and ear open."""

    def __init__(self, address: str, port: int, teams: dict[str, str], waits: bool) -> None:
        """`waits`: the server is synchronous, and waits for us in every cycle."""
        self._teams = teams
        self._waits = waits
        self._socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self._address = (address, port)
        self._owes_answer = False
        self.sight: Sight | None = None
        self.words: list[str] = []
        """The referee's since the last cycle."""
        self._ask("(init (version 7.08))", "(init ok)")
        for command in ("ear", "eye"):
            self._ask(f"({command} on)", f"(ok {command} on)")

    def tell(self, command: str) -> None:
        """A command whose answer does not matter unless it is an error."""
        self._socket.sendto(command.encode() + b"\0", self._address)

    def look(self) -> Sight:
        """What is there now, whatever the clock does."""
        seen = read_sight(self._ask("(look)", "(ok look"), self._teams)
        assert seen is not None
        return seen

    def next_cycle(self) -> None:
        """Waits until a step is over; on a synchronous server, until we are to act."""
        if self._owes_answer:
            self.tell("(done)")
        self.words = []
        ready = "(think)" if self._waits else "(see_global"
        self._socket.settimeout(STEP)
        while not self._take().startswith(ready):
            pass
        self._owes_answer = self._waits

    def close(self) -> None:
        """Goes away; the server notices it by itself."""
        with suppress(OSError):
            self._socket.close()

    def _ask(self, command: str, answer: str) -> str:
        self.tell(command)
        self._socket.settimeout(ANSWER)
        while True:
            said = self._take()
            if said.startswith(answer):
                return said

    def _take(self) -> str:
        try:
            datagram, self._address = self._socket.recvfrom(LARGEST)
        except OSError as error:
            raise Failure("the practice server does not answer the trainer any more") from error
        said = datagram.rstrip(b"\0\n").decode(errors="replace")
        if said.startswith("(error"):
            raise Failure(f"the practice server refused a command of the trainer: {said}")
        if said.startswith("(see_global"):
            self.sight = read_sight(said, self._teams)
        elif heard := REFEREE.fullmatch(said):
            self.words.append(heard[1])
        return said
