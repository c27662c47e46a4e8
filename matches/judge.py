"""Whether a match went well: the faults that make ./play end with 1."""

import signal

from matches.results import MatchOutcome, PlayerResult

LONG_ENOUGH = 100
"""Cycles in which somebody must have kicked the ball."""

# A bad network loses 10 % of the commands outright and up to 4 % cut or garbled. Of a command and
# one that is late by a cycle (10 %), or is decided on a report that is late (10 %), only one
# counts: at most 34 %. The rest is for chance.
LEAST_LOSS = 0.05
MOST_LOSS = 0.40


def ended_how(status: int | None) -> str:
    """An exit status in words."""
    if status is None:
        return "does not end"
    if status < 0:
        return f"was killed by signal {-status} ({signal.Signals(-status).name})"
    return f"ended with status {status}"


def faults(outcome: MatchOutcome) -> list[str]:
    """A sentence each; empty when all 22 players came through."""
    found: list[str] = []
    if not outcome.finished and not outcome.interrupted:
        found.append(f"the match ended in cycle {outcome.cycles}, before its time")
    for team in outcome.teams:
        for player in team.players:
            found += _faults_of(f"{team.name} {player.number}", player, bool(outcome.network))
    if outcome.network:
        found += _faults_of_network(outcome)
    if outcome.cycles >= LONG_ENOUGH and not any(
        player.server and player.server.executed.get("kick")
        for team in outcome.teams
        for player in team.players
    ):
        found.append("nobody ever kicked the ball")
    return found


def _faults_of(who: str, player: PlayerResult, lossy: bool) -> list[str]:
    found = []
    if player.ended_early:
        found.append(f"{who} {ended_how(player.status)} before the match was over")
    elif player.status != 0:
        found.append(f"{who} {ended_how(player.status)}")
    if player.server is None:
        found.append(f"{who} never joined the match")
    else:
        if player.server.lost and not player.ended_early:
            found.append(f"the server lost {who}")
        if player.server.missed > 0:
            found.append(f"the server waited in vain for {who} {player.server.missed} times")
        if player.server.refused > 0 and not lossy:
            found.append(f"the server refused {player.server.refused} commands of {who}")
    return found


def _faults_of_network(outcome: MatchOutcome) -> list[str]:
    players = [player for team in outcome.teams for player in team.players]
    gone = sum(player.lacking("dash", "turn") for player in players)
    sent = sum(player.sent("dash", "turn") for player in players)
    if LEAST_LOSS * sent <= gone <= MOST_LOSS * sent and sent > 0:
        return []
    return [f"of {sent} dashes and turns {gone} were lost, which is out of proportion"]
