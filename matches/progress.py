"""The line that tells, while a match is played, how it stands and how long it will take."""

import time
from types import TracebackType

from rich.console import Console
from rich.live import Live
from rich.progress_bar import ProgressBar
from rich.table import Table
from rich.text import Text

from matches.monitor import Sight
from matches.words import duration

STEP = 0.1  # seconds
KICK_OFF_WAIT = 7.0  # until all have joined, and the pause after it
HALF_TIME = 5.0
AFTER_THE_END = 2.0
STOPPAGES = 0.25  # of the playing time, before anything is known of this match
DOUBT = 300  # steps after which what was seen weighs as much as that


def expected_duration(half_cycles: int) -> float:
    """Seconds a match takes: the playing time, breaks, and the usual stoppages."""
    playing = 2 * half_cycles * STEP
    return KICK_OFF_WAIT + playing * (1 + STOPPAGES) + HALF_TIME + AFTER_THE_END


def time_left(sight: Sight, half_cycles: int, steps_begun: int) -> float:
    """Seconds to go, by the share of stoppages so far; `steps_begun` were there at the kick-off."""
    played = sight.cycle
    stood = max(0, sight.steps - steps_begun - played)
    share = (STOPPAGES * DOUBT + stood) / (DOUBT + played)
    left = (2 * half_cycles - played) * STEP * (1 + share) + AFTER_THE_END
    return left + (HALF_TIME if played < half_cycles else 0)


def in_words(sight: Sight, half_cycles: int) -> str:
    """The play mode as people say it."""
    left, right = sight.teams
    if sight.mode == "before_kick_off":
        return "half time" if sight.cycle > 0 else "before the kick-off"
    if sight.mode == "time_over":
        return "full time"
    mode, _, side = sight.mode.rpartition("_")
    if side in ("l", "r"):
        return f"{mode.replace('_', ' ')} {left if side == 'l' else right}"
    return sight.mode.replace("_", " ")


class Progress:
    """Shows a match as it goes on: one line on a terminal, a line per piece of news elsewhere."""

    def __init__(
        self, half_cycles: int, console: Console | None = None, fast: bool = False
    ) -> None:
        """In a fast match the steps seen do not tell how long it takes."""
        self._half = half_cycles
        self._fast = fast
        self._console = console or Console()
        self._live = Live(console=self._console, auto_refresh=False, transient=True)
        self._begun_at = 0
        self._news: tuple[object, ...] = ()
        self._shown = 0.0

    def __enter__(self) -> "Progress":
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

    def show(self, sight: Sight) -> None:
        """To be called as often as one likes."""
        if not sight.has_begun:
            self._begun_at = sight.steps
        if self._console.is_terminal:
            if time.monotonic() - self._shown >= 0.2:
                self._shown = time.monotonic()
                self._live.update(self._line(sight), refresh=True)
        elif (news := self._news_of(sight)) != self._news:
            self._news = news
            self._console.print(Text(self.text(sight)), soft_wrap=True)

    def _news_of(self, sight: Sight) -> tuple[object, ...]:
        breaks = ("before_kick_off", "time_over")
        pause = sight.mode if sight.mode in breaks else ""
        tenth = 5 * sight.cycle // self._half
        return (pause, tenth, sight.score, sight.teams)

    def text(self, sight: Sight) -> str:
        """How it stands, without the bar."""
        left, right = (name or "(nobody yet)" for name in sight.teams)
        score = f"{left} {sight.score[0]} : {sight.score[1]} {right}"
        if not sight.has_begun:
            return f"{score}  {len(sight.present)} of 22 players are there"
        mode = in_words(sight, self._half)
        return f"{score}  {mode}  cycle {sight.cycle} of {2 * self._half}  {self._left(sight)}"

    def _left(self, sight: Sight) -> str:
        if sight.is_over or self._fast:
            return ""
        return f"{duration(time_left(sight, self._half, self._begun_at))} left"

    def _line(self, sight: Sight) -> Table:
        """One line, cut to the terminal: the bar is what gives way first."""
        row = Table.grid(padding=(0, 1), expand=True)
        row.add_column(no_wrap=True, overflow="ellipsis")
        row.add_column(ratio=1, min_width=1)
        total = 2 * self._half
        bar = ProgressBar(total=total, completed=min(sight.cycle, total), width=None)
        row.add_row(Text(self.text(sight)), bar)
        return row
