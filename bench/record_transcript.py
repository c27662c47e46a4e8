"""Records what one player is told in a short match, and where everything truly was.

usage: scripts/python bench/record_transcript.py PROGRAMS TRANSCRIPT TRUTH

PROGRAMS is the folder of practice-server and agent. The two files are in the form that
`localisation` reads: a line of the transcript is a time in milliseconds, a tab and a datagram;
a row of the truth belongs to each sense_body.
"""

import re
import socket
import sys
import tempfile
import time
from pathlib import Path

from matches.monitor import LARGEST
from matches.places import DEFAULT_CONF
from matches.ports import HOST, take_port
from matches.processes import Nursery, wait_until
from matches.settings import make_team_folder

HALF_CYCLES = 30
RECORDED = 7  # the left team's player of this number
NUMBERS = r"(\S+) (\S+) (\S+) (\S+)"
BALL = re.compile(rf"\(\(b\) {NUMBERS}\)")
PLAYER = re.compile(rf"\(\(l {RECORDED}\) \S+ \S+ {NUMBERS} (\S+) (\S+)")


def bound_socket() -> socket.socket:
    """A datagram socket that never waits."""
    link = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    link.bind((HOST, 0))
    link.setblocking(False)
    return link


def arrivals(link: socket.socket) -> list[tuple[str, tuple[str, int]]]:
    """Everything that has come, with its sender."""
    found: list[tuple[str, tuple[str, int]]] = []
    while True:
        try:
            text, sender = link.recvfrom(LARGEST)
        except BlockingIOError:
            return found
        found.append((text.decode().rstrip("\0"), sender))


class Recorder:
    """Stands between one player and the server, and looks on as a monitor besides."""

    def __init__(self, port: int) -> None:
        self.inner, self.outer, self.monitor = (bound_socket() for _ in range(3))
        self.server = (HOST, port)
        self.player: tuple[str, int] | None = None
        self.transcript: list[str] = []
        self._rows: dict[str, str] = {}
        self._newest = ""
        self._of_bodies: list[tuple[str, str]] = []
        self._start = time.monotonic()
        self.monitor.sendto(b"(dispinit version 5)\0", self.server)

    def poll(self) -> None:
        """Passes on what has come: shows first, since they leave the server before the senses."""
        for show, _ in arrivals(self.monitor):
            self._keep_truth(show)
        for text, sender in arrivals(self.inner):
            self.player = sender
            self.outer.sendto(text.encode() + b"\0", self.server)
        for text, sender in arrivals(self.outer):
            self.server = sender
            self.transcript.append(f"{1000 * (time.monotonic() - self._start):.0f}\t{text}")
            if text.startswith("(sense_body "):
                self._of_bodies.append((text.split()[1], self._newest))
            if self.player:
                self.inner.sendto(text.encode() + b"\0", self.player)

    def _keep_truth(self, show: str) -> None:
        ball, player = BALL.search(show), PLAYER.search(show)
        if ball and player:
            cycle = show.split()[1]
            x, y, vx, vy, body, neck = player.groups()
            head = f"{float(body) + float(neck):g}"
            self._newest = " ".join([cycle, x, y, body, head, vx, vy, ball[1], ball[2]])
            self._rows[cycle] = self._newest

    def truth(self) -> list[str]:
        """A row for each sense_body: of its cycle, or of its moment while the clock stands at 0."""
        return [
            newest if cycle == "0" else self._rows.get(cycle, newest)
            for cycle, newest in self._of_bodies
        ]


def main(programs: Path, transcript: Path, truth: Path) -> None:
    """Plays, and writes both files."""
    port, lock = take_port(None, 1)
    with lock, tempfile.TemporaryDirectory() as name, Nursery() as nursery:
        folder = Path(name)
        numbers = {"--port": port, "--half-cycles": HALF_CYCLES, "--ready-cycles": 5, "--linger": 0}
        options = [str(part) for option in numbers.items() for part in option]
        server_program = str(programs.resolve() / "practice-server")
        server = nursery.start([server_program, *options], folder, folder / "server.out")
        time.sleep(0.3)
        recorder = Recorder(port)
        for side, team in enumerate(("Left", "Right")):
            for number in range(1, 12):
                home = folder / f"{team}-{number}"
                recorded = (side, number) == (0, RECORDED)
                door = recorder.inner.getsockname()[1] if recorded else port
                make_team_folder(home, DEFAULT_CONF, team, door, "vw"[side])
                goalie = ["-goalie"] if number == 1 else []
                agent = str(programs.resolve() / "agent")
                nursery.start([agent, HOST, team, *goalie], home, home / "out")
                for _ in range(100):
                    recorder.poll()
                    time.sleep(0.001)

        def is_over() -> bool:
            for _ in range(20):
                recorder.poll()
                time.sleep(0.001)
            return not server.runs()

        wait_until(is_over, 60)
    transcript.write_text("\n".join(recorder.transcript) + "\n")
    truth.write_text("\n".join(recorder.truth()) + "\n")


if __name__ == "__main__":
    main(*map(Path, sys.argv[1:4]))
