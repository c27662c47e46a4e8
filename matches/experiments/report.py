"""report.html: everything about a comparison in one file that opens anywhere."""

import datetime
import math
from collections.abc import Sequence
from html import escape
from importlib.resources import files
from pathlib import Path

from matches.experiments import charts
from matches.experiments.figures import figure_differences, frames, heat_of
from matches.experiments.plan import Game
from matches.experiments.rows import DROPPED
from matches.experiments.runs import Run
from matches.experiments.series import Series, bounds_of, goals_text, verdict
from matches.experiments.tables import elo_text, facts, interval_text
from matches.replay import make_replay, page_of_viewer
from matches.words import Failure

NAMES = {"possession": "possession, %", "domination": "domination, %", "metres": "metres run"}


def write_report(run: Run, found: Sequence[Series], path: Path) -> None:
    """Writes it at once or not at all."""
    sections = [_section(run, series) for series in found]
    overview = [_overview(run, found)] if len(found) > 1 else []
    body = "\n".join([*overview, *sections, _teams(run), _method(run)])
    title = " / ".join(entry.label for entry in run.plan.entries.values())
    template = files("matches.experiments").joinpath("report.template.html").read_text()
    page = template.replace("{{title}}", escape(title)).replace("{{body}}", body)
    new = path.with_name(path.name + ".new")
    new.write_text(page)
    new.replace(path)


def _labels(run: Run, series: Series) -> tuple[str, str]:
    entries = run.plan.entries
    return entries[series.first].label, entries[series.second].label


def _teams(run: Run) -> str:
    """What was compared."""
    rows = "".join(
        f"<tr><td><b>{escape(entry.label)}</b></td><td>{escape(entry.revision)}</td>"
        f"<td>{escape(entry.settings) or 'the usual ones'}</td></tr>"
        for entry in run.plan.entries.values()
    )
    return f"""<section><h2>Teams</h2><table><thead><tr><th>team</th><th>revision</th>
<th>settings that differ</th></tr></thead><tbody>{rows}</tbody></table></section>"""


def _overview(run: Run, found: Sequence[Series]) -> str:
    """All verdicts."""
    lines = "".join(
        f'<tr><td><a href="#{series.first}-{series.second}">{escape(_labels(run, series)[0])} '
        f"against {escape(_labels(run, series)[1])}</a></td>"
        f"<td class=number>{interval_text(series.difference)}</td>"
        f"<td>{escape(verdict(run.plan, series))}</td></tr>"
        for series in found
    )
    return f"""<section><h2>All comparisons</h2><table><thead><tr><th></th>
<th class=number>goal difference</th><th>verdict</th></tr></thead><tbody>{lines}</tbody></table>
</section>"""


def _section(run: Run, series: Series) -> str:
    """One comparison."""
    first, second = (escape(label) for label in _labels(run, series))
    title = f"""<section class=verdict id="{series.first}-{series.second}">
<h1><span class=first>{first}</span> against <span class=second>{second}</span></h1>
<p class=words>{escape(verdict(run.plan, series))}</p>{_tiles(series)}</section>"""
    parts = [title]
    if len(series.pairs) > 1:
        matches = [ours - theirs for pair in series.pairs for ours, theirs in pair.goals]
        parts.append(f"""<section><h2>Goal difference as it grew</h2>
{charts.growth(series.differences, run.plan.difference)}
<p class=note>The band is the 95&nbsp;% interval; the dashed lines are the smallest difference of
interest, {run.plan.difference:g} goals.</p>{charts.goal_bars(matches)}
{_fact_table(run, series)}</section>""")
        parts += [
            _telling(run, series, first),
            _figures(series, first, second),
            _heat(series, (first, second)),
        ]
    parts.append(_failed(run, series))
    return "\n".join(parts)


def _tiles(series: Series) -> str:
    def tile(name: str, value: str, more: str) -> str:
        return f"<div><b>{value}</b><span>{name}</span><small>{more}</small></div>"

    won, drawn, lost = series.tally
    difference, elo = series.difference, series.elo
    if math.isnan(difference.value):
        return ""
    return "<div class=tiles>" + "".join([
        tile("goals a match", goals_text(difference.value),
             f"{goals_text(difference.low)} to {goals_text(difference.high)}"),
        tile("Elo", elo_text(elo.value), f"{elo_text(elo.low)} to {elo_text(elo.high)}"),
        tile("likelihood of superiority", f"{100 * series.superiority:.1f}&nbsp;%", ""),
        tile("won, drawn, lost", f"{won} · {drawn} · {lost}", f"{len(series.pairs)} pairs"),
    ]) + "</div>"


def _fact_table(run: Run, series: Series) -> str:
    rows = "".join(
        f"<tr><td>{escape(name)}</td><td>{escape(value)}</td></tr>"
        for name, value in facts(run.plan, series)
    )
    return f"<table class=facts><tbody>{rows}</tbody></table>"


def _telling(run: Run, series: Series, first: str) -> str:
    """Largest win, largest loss, closest to the mean, with their logs."""
    matches = [
        (ours - theirs, row.game, f"{ours} : {theirs}", row.seed)
        for pair in series.pairs
        for row, (ours, theirs) in zip(pair.rows, pair.goals, strict=True)
    ]
    mean = series.difference.value
    chosen = {
        "largest win": max(matches, key=lambda match: match[0]),
        "closest to the mean": min(matches, key=lambda match: abs(match[0] - mean)),
        "largest loss": min(matches, key=lambda match: match[0]),
    }
    rows = ""
    for name, (difference, game, score, seed) in chosen.items():
        if difference * {"largest win": 1, "largest loss": -1}.get(name, 0) < 0 or (
            difference == 0 and name != "closest to the mean"
        ):
            continue
        folder = run.folder_of(game)
        there = (folder / "match.rcg.gz").exists() and not (folder / DROPPED).exists()
        side = "left" if Game.named(game).turn == 1 else "right"
        link = _links(run, game) if there else "log not kept"
        rows += (f"<tr><td>{name}</td><td class=number>{score}</td><td class=number>{seed}</td>"
                 f"<td>{side}</td><td>{link}</td></tr>")
    return f"""<section><h2>Matches to look at</h2><table><thead><tr><th></th>
<th class=number>result</th><th class=number>seed</th><th>{first} on the</th><th>replay</th></tr>
</thead>
<tbody>{rows}</tbody></table>
<p class=note>Pages and logs are beside this file. To play one of these matches again:
<code>./one-match GAME</code> in this folder, after its folder in games/ is removed.</p>
</section>"""


def _links(run: Run, game: str) -> str:
    """The log, and a page that shows it where the viewer was built."""
    log = run.folder_of(game) / "match.rcg.gz"
    viewer = page_of_viewer(run.folder / "bundle/bin")
    link = f'<a href="games/{game}/match.rcg.gz">game log</a>'
    if viewer is None:
        return link
    try:
        make_replay(viewer, log, log.with_name("replay.html"))
    except Failure:
        return link
    return f'<a href="games/{game}/replay.html"><b>watch</b></a>, {link}'


def _figures(series: Series, first: str, second: str) -> str:
    """Every figure of both teams."""
    ours, theirs = frames(series)
    found = figure_differences(ours, theirs)
    if not found:
        return ""
    order = sorted(found, key=lambda name: not found[name].is_real)
    rows = ""
    for name in order:
        difference = found[name]
        picture = charts.distributions(list(ours[name]), list(theirs[name]), name)
        mean = difference.estimate
        real = ' class="real"' if difference.is_real else ""
        p = "&lt; 0.001" if difference.corrected_p < 0.001 else f"{difference.corrected_p:.3f}"
        rows += (
            f"<tr{real}><td>{escape(NAMES.get(name, name.replace('_', ' ')))}</td>"
            f"<td class=number>{_number(ours[name].mean())}</td>"
            f"<td class=number>{_number(theirs[name].mean())}</td>"
            f"<td class=number>{_number(mean.value, '+')}</td>"
            f"<td class=number>{_number(mean.low, '+')} to {_number(mean.high, '+')}</td>"
            f"<td class=number>{p}</td><td class=picture>{picture}</td></tr>"
        )
    return f"""<section><h2>Every figure</h2><table class=figures><thead><tr><th></th>
<th class="number first">{first}</th><th class="number second">{second}</th>
<th class=number>difference</th><th class=number>interval</th><th class=number>p</th>
<th>matches</th></tr></thead><tbody>{rows}</tbody></table>
<p class=note>{len(found)} figures are looked at together, and among so many one differs by chance
easily. So p is corrected after Holm, and the intervals are widened after Bonferroni: with 95&nbsp;%
confidence all of them hold the true difference. Bold rows differ (p below 0.05). Means are of a
match.</p></section>"""


def _number(value: float, sign: str = "") -> str:
    """Three or four digits that count, never an exponent."""
    size = abs(value)
    digits = 0 if size >= 100 else 1 if size >= 10 else 2
    text = f"{value:{sign},.{digits}f}"
    return text if any(digit in text for digit in "123456789") else "0"


def _heat(series: Series, names: tuple[str, str]) -> str:
    heat = heat_of(series)
    if not heat:
        return ""
    maps = charts.heat_maps(heat["first"], heat["second"], heat["ball"], names)
    return f"""<section><h2>Where they were</h2>{maps}
<p class=note>In play, all counted matches together, in cells of 5 by 5 metres.</p></section>"""


def _failed(run: Run, series: Series) -> str:
    if not series.failed:
        return ""
    rows = "".join(
        f'<tr><td><a href="games/{row.game}/">{row.game}</a></td><td class=number>{row.seed}</td>'
        f"<td>{escape(row.played.fault)}</td></tr>"
        for row in series.failed
    )
    return f"""<section><h2>Matches that failed</h2><table><thead><tr><th>match</th>
<th class=number>seed</th><th>what went wrong</th></tr></thead><tbody>{rows}</tbody></table>
<p class=note>Their pairs do not count in anything above.</p></section>"""


def _method(run: Run) -> str:
    plan = run.plan
    bounds = bounds_of(plan)
    shared = (
        f" The {len(plan.comparisons)} comparisons share the false alarms, "
        f"{100 * bounds.false_alarm:.2g}&nbsp;% each."
        if len(plan.comparisons) > 1 else ""
    )
    pace = "synchronous" if plan.synchronous else "in real time"
    today = datetime.datetime.now().strftime("%Y-%m-%d %H:%M")
    return f"""<section class=method><h2>How this was found</h2>
<p>Two halves of {plan.half_cycles} cycles, {pace}, seeds from {plan.seed}, on revision
{escape(plan.revision)}. Matches come in pairs of one seed with the sides swapped; a pair is one
observation. A sequential test (two generalised probability ratio tests, spread unknown) decides
after each pair: teams that are equal are called different in at most
{100 * plan.error:g}&nbsp;% of such experiments, and a difference of {plan.difference:g} goals is
missed in at most {100 * plan.error:g}&nbsp;%.{shared} Intervals are Student's for a fixed number of
pairs; a test that stops early makes them cover a little less than they say. Elo comes from the mean
score. All matches are in <a href="results.csv">results.csv</a>. Written {today}.</p></section>"""
