"""Looks on at a match as a monitor does, on any server of the field."""

import re
import select
import socket
from contextlib import suppress
from dataclasses import dataclass, field, replace

MODES = (
    "none before_kick_off time_over play_on kick_off_l kick_off_r kick_in_l kick_in_r free_kick_l "
    "free_kick_r corner_kick_l corner_kick_r goal_kick_l goal_kick_r goal_l goal_r drop_ball "
    "offside_l offside_r penalty_kick_l penalty_kick_r first_half_over pause human_judge "
    "foul_charge_l foul_charge_r foul_push_l foul_push_r foul_multiple_attack_l "
    "foul_multiple_attack_r foul_ballout_l foul_ballout_r back_pass_l back_pass_r "
    "free_kick_fault_l free_kick_fault_r catch_fault_l catch_fault_r indirect_free_kick_l "
    "indirect_free_kick_r penalty_setup_l penalty_setup_r penalty_ready_l penalty_ready_r "
    "penalty_taken_l penalty_taken_r penalty_miss_l penalty_miss_r penalty_score_l "
    "penalty_score_r illegal_defense_l illegal_defense_r"
).split()
"""The word of each play mode by its number."""

HEAD = re.compile(rb"\(show (\d+) \(pm (\d+)\) \(tm (\S+) (\S+) (\d+) (\d+)")
PLAYER = re.compile(rb"\(\(([lr]) (\d+)\) \S+ (?:0x)?([0-9a-fA-F]+) ")
LARGEST = 65536


@dataclass(frozen=True)
class Sight:
    """The match at one step, as a spectator knows it."""

    cycle: int = 0
    mode: str = ""
    teams: tuple[str, str] = ("", "")
    score: tuple[int, int] = (0, 0)
    present: frozenset[tuple[str, int]] = field(default_factory=frozenset)
    """Side (l or r) and number of each player on the pitch."""
    steps: int = 0
    """Steps seen so far, also those in which the clock stood."""

    @property
    def has_begun(self) -> bool:
        """Whether the kick-off of the first half is over."""
        return self.cycle > 0 or self.mode not in ("", "before_kick_off")

    @property
    def is_over(self) -> bool:
        """Whether it has been played to its end."""
        return self.mode == "time_over"


def read_show(datagram: bytes) -> Sight | None:
    """What a show says; None when the datagram is something else."""
    head = HEAD.match(datagram)
    if head is None:
        return None
    mode = int(head[2])
    names = [head[i].decode(errors="replace") for i in (3, 4)]
    left, right = ("" if name == "null" else name for name in names)
    return Sight(
        int(head[1]),
        MODES[mode] if mode < len(MODES) else "",
        (left, right),
        (int(head[5]), int(head[6])),
        frozenset(
            (side.decode(), int(number))
            for side, number, state in PLAYER.findall(datagram)
            if int(state, 16) != 0
        ),
    )


class Monitor:
    """One spectator. Without an answer from the server it just sees nothing."""

    def __init__(self, address: str, port: int) -> None:
        self._address = (address, port)
        self._socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self._socket.setblocking(False)
        self.sight = Sight()
        self.greet()

    def greet(self) -> None:
        """Asks to look on. A server that is there answers at once."""
        with suppress(OSError):
            self._socket.sendto(b"(dispinit version 5)\0", self._address)

    def look(self) -> Sight:
        """The newest that is known; takes everything that has come since the last look."""
        newest = b""
        steps = self.sight.steps
        while True:
            try:
                datagram, sender = self._socket.recvfrom(LARGEST)
            except BlockingIOError:
                break
            except OSError:  # nobody listens there, as the kernel has been told
                continue
            self._address = sender  # each monitor has a port of its own at the server
            if HEAD.match(datagram):
                newest = datagram
                steps += 1
        sight = read_show(newest)
        if sight is not None:
            self.sight = replace(sight, steps=steps)
        return self.sight

    def wait(self, seconds: float) -> None:
        """Until something comes, or so long."""
        select.select([self._socket], [], [], seconds)

    def discard(self, side: str, number: int) -> None:
        """Takes a player (of side l or r) off the pitch; only after something has been seen."""
        command = f"(dispdiscard {1 if side == 'l' else -1} {number})"
        self._socket.sendto(command.encode() + b"\0", self._address)

    def close(self) -> None:
        """Says goodbye."""
        with suppress(OSError):
            self._socket.sendto(b"(dispbye)\0", self._address)
        self._socket.close()
