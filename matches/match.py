"""One match in its own folder, on ports that it finds itself, cleaned up whatever happens."""

from collections.abc import Callable
from contextlib import ExitStack
from pathlib import Path

from matches.game import Game
from matches.locks import Lock, lock_keep_folder
from matches.monitor import Sight
from matches.ports import take_port
from matches.processes import Nursery
from matches.results import MatchOutcome
from matches.settings import MatchSettings
from matches.words import Failure


class Match:
    """Plays one match. Several may run at once, in one process each."""

    def __init__(self, settings: MatchSettings, programs: Path, work: Path) -> None:
        """Takes folder and ports, so that what follows is ours alone."""
        self.settings = settings
        self._programs = programs
        self._stopping = False
        self.tell_address: Callable[[str], None] = lambda _: None
        """Called with the address of the page, when the match is watched in a browser."""
        self._locks = ExitStack()
        folder, lock = lock_keep_folder(settings.keep, work / "match")
        self._locks.enter_context(lock)
        self.folder = folder.resolve()
        try:
            needed = 1 if settings.lossy is None else 2
            self.port, port_lock = take_port(settings.port, needed)
            self._locks.enter_context(port_lock)
        except Failure:
            self._locks.close()
            raise

    def stop(self) -> None:
        """Ends the match soon, with an outcome; may be called by a signal handler."""
        self._stopping = True

    def run(self, build: Lock | None, watch: Callable[[Sight], None]) -> MatchOutcome:
        """Plays to the end. Fails, with a player's words, when one ends before the kick-off.

        The lock on the build is released when all have started; `watch` is called several times a
        second with what a spectator sees.
        """
        try:
            with Nursery() as nursery:
                game = Game(self.settings, self._programs, self.folder, self.port, nursery)
                game.watch = watch
                game.tell_address = self.tell_address
                game.wants_to_stop = lambda: self._stopping
                game.start()
                if build is not None:
                    build.release()
                game.play()
                return game.finish()
        finally:
            self._locks.close()
