"""What the tests share: programs that stand in for the real ones, and folders to play in."""

import os
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest
from collections.abc import Iterator
from contextlib import contextmanager
from pathlib import Path

from matches.match import Match
from matches.places import ROOT
from matches.results import MatchOutcome
from matches.settings import MatchSettings, TeamSettings

STUBS = Path(__file__).parent / "stubs"
CONF = ROOT / "player.conf"


@contextmanager
def environment(**values: str) -> Iterator[None]:
    """Sets variables of the environment for a while."""
    before = dict(os.environ)
    os.environ.update(values)
    try:
        yield
    finally:
        os.environ.clear()
        os.environ.update(before)


def free_port() -> int:
    """A UDP port that nobody uses now."""
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
        probe.bind(("127.0.0.1", 0))
        return int(probe.getsockname()[1])


def processes_with(mark: str) -> list[int]:
    """Processes whose environment holds the mark."""
    found = []
    for entry in Path("/proc").iterdir():
        try:
            if entry.name.isdigit() and mark.encode() in (entry / "environ").read_bytes():
                found.append(int(entry.name))
        except OSError:
            continue
    return found


class MatchCase(unittest.TestCase):
    """A folder of its own, and the stubs first on the path of programs."""

    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def settings(self, half_cycles: int = 20) -> MatchSettings:
        """Of a short match in the folder."""
        return MatchSettings(TeamSettings("Left", CONF), TeamSettings("Right", CONF), half_cycles)

    def play(self, half_cycles: int = 20) -> MatchOutcome:
        """Plays among the stubs."""
        return Match(self.settings(half_cycles), STUBS, self.folder).run(None, lambda _: None)

    def start_command(self, *arguments: str, **variables: str) -> subprocess.Popen[str]:
        """Starts a command of the package among the stubs, in the folder."""
        process = subprocess.Popen(
            [sys.executable, "-m", "matches", *arguments],
            cwd=self.folder,
            env={**os.environ, "PYTHONPATH": str(ROOT), "PROGRAMS": str(STUBS), **variables},
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
        )
        self.addCleanup(process.kill)
        return process

    def start_server(self, port: int, half_cycles: int = 100, **variables: str) -> None:
        """A server that starts the clock as soon as anybody has joined."""
        server = subprocess.Popen(
            [STUBS / "practice-server", "--port", str(port), "--half-cycles", str(half_cycles)],
            env={**os.environ, **variables},
        )
        self.addCleanup(server.wait)
        self.addCleanup(server.send_signal, signal.SIGKILL)
        time.sleep(0.2)
