"""Finds UDP ports that nobody uses, and keeps them for one match."""

import os
import socket
import tempfile
from pathlib import Path

from matches.locks import Lock
from matches.words import Failure

HOST = "127.0.0.1"
FIRST = 6000
BLOCK = 10
"""Ports that belong to a match: players, the trainer above, the coach, the bad network, ..."""


def is_free(port: int) -> bool:
    """Whether a server could listen there now."""
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
        try:
            probe.bind((HOST, port))
        except OSError:
            return False
    return True


def _lock_of(port: int) -> Lock:
    # One folder for each user: the files in it belong to who made them.
    folder = Path(tempfile.gettempdir()) / f"match-ports-{os.getuid()}" / str(port)
    return Lock(folder)


def take_port(wanted: int | None, needed: int) -> tuple[int, Lock]:
    """The first of `needed` free ports in a row: the wanted one, else one that is found."""
    candidates = range(FIRST, 65000, BLOCK) if wanted is None else [wanted]
    for first in candidates:
        lock = _lock_of(first)
        if lock.take() and all(is_free(port) for port in range(first, first + needed)):
            return first, lock
        lock.release()
        if wanted is not None:
            taken = next((p for p in range(first, first + needed) if not is_free(p)), first)
            raise Failure(
                f"UDP port {taken} is in use",
                "Choose another with --port, or leave it out and a free one is found.",
            )
    raise Failure("no UDP port from 6000 up is free", "Is another program holding all of them?")
