"""The line that tells how an experiment stands, and how much of the machine it uses."""

import time
from pathlib import Path
from types import TracebackType

from rich.console import Console
from rich.live import Live
from rich.text import Text

from matches.experiments.series import Series, goals_text
from matches.words import duration

NEWS = 30.0  # seconds between lines where there is no terminal


class Processors:
    """The share of this machine's processors in use since it was made."""

    def __init__(self) -> None:
        self._began = self._read()

    @staticmethod
    def _read() -> tuple[int, int]:
        ticks = [int(t) for t in Path("/proc/stat").read_text().split("\n", 1)[0].split()[1:9]]
        return sum(ticks) - ticks[3] - ticks[4], sum(ticks)

    @property
    def share(self) -> float:
        """0 to 1."""
        busy, total = self._read()
        return (busy - self._began[0]) / max(1, total - self._began[1])


class Line:
    """One line on a terminal, a line now and then elsewhere."""

    def __init__(self, console: Console | None = None) -> None:
        self._console = console or Console(highlight=False)
        self._live = Live(console=self._console, auto_refresh=False, transient=True)
        self._shown = 0.0
        self._text = ""
        self._began = time.monotonic()
        self._done_before: int | None = None
        self.processors = Processors()

    def __enter__(self) -> "Line":
        if self._console.is_terminal:
            self._live.start()
        return self

    def __exit__(
        self,
        kind: type[BaseException] | None,
        error: BaseException | None,
        trace: TracebackType | None,
    ) -> None:
        self._live.stop()

    def restart(self) -> None:
        """Something else is counted from now on."""
        self._began = time.monotonic()
        self._done_before = None

    def show(self, text: str, done: int, total: int) -> None:
        """To be called as often as one likes; adds the time left."""
        if self._done_before is None:
            self._done_before = done
        text = f"{text}  {self._left(done, total)}"
        terminal = self._console.is_terminal
        now = time.monotonic()
        if now - self._shown < (0.2 if terminal else NEWS) or (not terminal and text == self._text):
            return
        self._shown, self._text = now, text
        if terminal:
            line = Text(text, no_wrap=True, overflow="ellipsis")
            self._live.update(line, refresh=True)
        else:
            self._console.print(text, soft_wrap=True)

    def _left(self, done: int, total: int) -> str:
        played = done - (self._done_before or 0)
        if played < 1:
            return f"{done} of {total} matches"
        seconds = (time.monotonic() - self._began) / played * (total - done)
        return f"{done} of {total} matches, at most {duration(seconds)} left"


def series_text(names: tuple[str, str], series: Series) -> str:
    """How a comparison stands."""
    head = f"{names[0]} - {names[1]}"
    if len(series.pairs) < 2:
        return f"{head}: no estimate yet"
    found = series.difference
    failed = f"  {len(series.failed)} failed" if series.failed else ""
    return (
        f"{head}: {goals_text(found.value)} goals [{goals_text(found.low)}, "
        f"{goals_text(found.high)}] after {len(series.pairs)} pairs{failed}"
    )
