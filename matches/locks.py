"""Locks on folders, so that two commands do not write into the same one.

A lock is the kernel's own on an open file: it goes with the process, however that ends.
"""

import fcntl
import os
from pathlib import Path

from matches.words import Failure, shown


class Lock:
    """A lock on the file ``.lock`` in a folder."""

    def __init__(self, folder: Path) -> None:
        """Makes the folder where it is missing; fails in one line where it cannot be written."""
        path = folder / ".lock"
        try:
            folder.mkdir(parents=True, exist_ok=True)
            self._file = os.open(path, os.O_RDWR | os.O_CREAT | os.O_CLOEXEC, 0o666)
        except OSError as error:
            raise Failure(
                f"cannot write into '{shown(folder)}': {error.strerror}",
                "Use a checkout and folders that belong to you.",
            ) from error

    def take(self, shared: bool = False, wait: bool = False) -> bool:
        """True when the lock is ours; may be called again to change its kind."""
        kind = fcntl.LOCK_SH if shared else fcntl.LOCK_EX
        try:
            fcntl.flock(self._file, kind | (0 if wait else fcntl.LOCK_NB))
        except BlockingIOError:
            return False
        return True

    def release(self) -> None:
        """May be called twice."""
        if self._file >= 0:
            os.close(self._file)
            self._file = -1

    def __enter__(self) -> "Lock":
        return self

    def __exit__(self, *_: object) -> None:
        self.release()


def lock_keep_folder(wanted: Path | None, default: Path) -> tuple[Path, Lock]:
    """Takes the folder of a match: the wanted one, else the first free of match, match-2, ..."""
    if wanted is not None:
        lock = Lock(wanted)
        if not lock.take():
            lock.release()
            raise Failure(
                f"another match writes into '{shown(wanted)}'", "Choose another with --keep."
            )
        return wanted, lock
    number = 1
    while True:
        folder = default if number == 1 else default.with_name(f"{default.name}-{number}")
        lock = Lock(folder)
        if lock.take():
            return folder, lock
        lock.release()
        number += 1
