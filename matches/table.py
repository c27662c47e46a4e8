"""The tables of a match, 80 columns wide."""

from typing import Any

from rich import box
from rich.console import Group, RenderableType
from rich.table import Table
from rich.text import Text

from matches.judge import faults
from matches.players import KINDS
from matches.results import MatchOutcome, PlayerResult, TeamResult

WIDTH = 80
LOSABLE = ("dash", "turn", "turn_neck")
"""Commands of which each that is sent should be carried out."""


def percent(share: float | None) -> str:
    """A share from 0 to 1."""
    return "-" if share is None else f"{100 * share:.1f}%"


def _ratio(part: float, whole: float) -> str:
    return percent(part / whole if whole else None)


def _figure_rows(team: TeamResult) -> dict[str, str]:
    """What the game log tells of a team; docs/statistics.md says what the figures mean."""
    if not team.figures:
        return {}
    f: dict[str, Any] = team.figures
    return {
        "possession": percent(f["possession"] / 100),
        "shots (on target)": f"{f['shots']} ({f['shots_on_target']})",
        "passes arrived": f"{f['passes_arrived']} of {f['passes']}",
        "interceptions": str(f["interceptions"]),
        "penalty-area entries": str(f["area_entries"]),
        "set pieces, offsides": f"{f['set_pieces']}, {f['offsides']}",
        "distance run": f"{f['metres'] / 1000:.2f} km",
    }


def team_table(outcome: MatchOutcome) -> Table:
    """Both teams side by side, a row a figure."""
    table = Table(box=box.SIMPLE_HEAD, pad_edge=False, show_edge=False)
    table.add_column("")
    for team in outcome.teams:
        table.add_column(team.name, justify="right", min_width=15)
    rows = [
        {
            "goals": str(team.goals),
            **_figure_rows(team),
            "commands in time": percent(team.in_time),
            "commands lost": _loss(team.players),
            "CPU a player": f"{team.cpu_seconds / max(1, len(team.players)):.2f} s",
        }
        for team in outcome.teams
    ]
    for name in rows[0] | rows[1]:
        table.add_row(name, *(row.get(name, "-") for row in rows))
    return table


def _loss(players: list[PlayerResult]) -> str:
    lacking = sum(player.lacking(*LOSABLE) for player in players)
    return _ratio(lacking, sum(player.sent(*LOSABLE) for player in players))


def player_table(team: TeamResult) -> Table:
    """What each player of a team did and took."""
    table = Table(
        title=f"{team.name}: commands carried out",
        title_justify="left",
        title_style="bold",
        box=None,
        padding=(0, 1, 0, 0),
    )
    titles = ("no", *KINDS[:4], "neck", "catch", "move", "view", "lost", "late", "CPU s", "MB")
    for title in titles:
        table.add_column(title, justify="right", min_width=5 if title in KINDS else None)
    for player in team.players:
        table.add_row(str(player.number), *_player_cells(player))
    return table


def _player_cells(player: PlayerResult) -> list[str]:
    view, usage = player.server, player.usage
    counts = [str(view.executed.get(kind, 0)) if view else "-" for kind in KINDS]
    return [
        *counts,
        _loss([player]),
        _ratio(view.late, view.answers) if view else "-",
        f"{usage.cpu_seconds:.2f}" if usage else "-",
        f"{usage.peak_kilobytes / 1024:.1f}" if usage else "-",
    ]


def headline(outcome: MatchOutcome) -> Text:
    """The result."""
    left, right = outcome.teams
    text = Text(f"{left.name} {left.goals} : {right.goals} {right.name}", style="bold")
    when = "after" if outcome.finished else "stopped after"
    return text.append(f"  {when} {outcome.cycles} cycles", style="not bold")


def verdict(outcome: MatchOutcome) -> Text:
    """The faults, or that there were none."""
    found = faults(outcome)
    if found:
        return Text("\n".join(f"FAULT: {fault}." for fault in found), style="red")
    lossy = "the losses are in proportion" if outcome.network else "no command was refused"
    return Text(f"All 22 players came through, {lossy}.", style="green")


def report(outcome: MatchOutcome, players: bool) -> Group:
    """All that is told of a match; the teams come last, so that they stay on the screen."""
    parts: list[RenderableType] = []
    if players:
        for team in outcome.teams:
            parts += [player_table(team), ""]
    parts += [headline(outcome), "", team_table(outcome), ""]
    if outcome.server_usage:
        parts.append(f"The practice server took {outcome.server_usage.cpu_seconds:.2f} s of CPU.")
    if outcome.pace:
        steps, seconds = outcome.pace
        parts.append(f"{steps} steps in {seconds:.2f} s, {steps / seconds:.0f} a second.")
    if outcome.network:
        parts.append(Text(outcome.network.replace("link to", "to")))
    parts.append(verdict(outcome))
    return Group(*parts)
