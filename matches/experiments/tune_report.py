"""tune.html: what was tried, in one file."""

from collections.abc import Sequence
from dataclasses import dataclass
from html import escape
from importlib.resources import files
from pathlib import Path

from matches.experiments import charts
from matches.experiments.arithmetic import Estimate
from matches.experiments.plan import Plan
from matches.experiments.series import Series, goals_text, verdict
from matches.experiments.tables import interval_text


@dataclass(frozen=True)
class Trial:
    """Settings that were tried, and by how much they won."""

    number: int
    key: str
    values: dict[str, float]
    estimate: Estimate
    failed: int


def write_page(
    path: Path,
    trials: Sequence[Trial],
    base: str,
    best: Trial,
    confirmed: tuple[Plan, Series] | None,
) -> None:
    """Writes it at once or not at all."""
    body = "\n".join([_head(base, best, len(trials), confirmed), _pictures(trials, best),
                      _table(trials, best)])
    template = files("matches.experiments").joinpath("report.template.html").read_text()
    new = path.with_name(path.name + ".new")
    new.write_text(template.replace("{{title}}", "tune").replace("{{body}}", body))
    new.replace(path)


def _head(base: str, best: Trial, count: int, confirmed: tuple[Plan, Series] | None) -> str:
    settings = ", ".join(f"{k}: {v:g}" for k, v in best.values.items())
    if confirmed is None:
        words = "The search goes on; nothing is confirmed yet."
    else:
        plan, series = confirmed
        words = (
            f"On fresh seeds: {interval_text(series.difference)} goals a match; "
            f"{verdict(plan, series)}. "
        )
    link = "" if confirmed is None else f'<a href="confirm-{best.key}/report.html">Its report</a>'
    return f"""<section><h1>{count} settings against <span class=second>{escape(base)}</span></h1>
<p class=words><b>{escape(settings)}</b></p><p>{escape(words)}{link}</p></section>"""


def _pictures(trials: Sequence[Trial], best: Trial) -> str:
    pictures = "".join(
        charts.tried([(t.values[name], t.estimate) for t in trials], best.values[name], name)
        for name in best.values
    )
    growth = charts.tried(
        [(float(t.number), t.estimate) for t in trials], float(best.number), "number of the trial"
    )
    return f"""<section><h2>What was tried</h2>{pictures}{growth}
<p class=note>Each point is a trial with its 95&nbsp;% interval; the filled one won by the most. The
largest of many is large by luck in part: only the confirmation on fresh seeds counts.</p></section>"""


def _table(trials: Sequence[Trial], best: Trial) -> str:
    names = list(best.values)
    head = "".join(f"<th class=number>{escape(name)}</th>" for name in names)
    rows = "".join(
        f"<tr{' class=real' if t is best else ''}><td class=number>{t.number}</td>"
        + "".join(f"<td class=number>{t.values[name]:g}</td>" for name in names)
        + f"<td class=number>{goals_text(t.estimate.value)}</td>"
        f"<td class=number>{goals_text(t.estimate.low)} to {goals_text(t.estimate.high)}</td></tr>"
        for t in sorted(trials, key=lambda t: -t.estimate.value)
    )
    return f"""<section><h2>All trials</h2><table><thead><tr><th class=number>trial</th>{head}
<th class=number>goals a match</th><th class=number>interval</th></tr></thead>
<tbody>{rows}</tbody></table></section>"""
