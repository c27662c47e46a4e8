"""How long a match in real time takes."""

STEP = 0.1  # seconds
KICK_OFF_WAIT = 7.0  # until all have joined, and the pause after it
HALF_TIME = 5.0
AFTER_THE_END = 2.0
STOPPAGES = 0.25  # of the playing time, before anything is known of this match


def expected_duration(half_cycles: int) -> float:
    """Seconds a match takes: the playing time, breaks, and the usual stoppages."""
    playing = 2 * half_cycles * STEP
    return KICK_OFF_WAIT + playing * (1 + STOPPAGES) + HALF_TIME + AFTER_THE_END
