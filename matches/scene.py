"""./scene: plays a scene many times, and tells how often it goes well."""

import math
from collections import Counter
from contextlib import ExitStack
from pathlib import Path

from rich import box
from rich.console import Console
from rich.table import Table

from matches import options
from matches.build import build_programs
from matches.conditions import Verdict
from matches.locks import lock_keep_folder
from matches.places import work_folder
from matches.ports import take_port
from matches.processes import Nursery, Signals
from matches.scenefile import Scene, read_scene
from matches.settings import TeamSettings, warn_of_settings
from matches.training import Training, TrainingSettings
from matches.words import Failure, say, shown

ABOUT = """\
Plays a scene again and again: sets up ball and players as the file says, lets
them play until the trial is decided, and prints how many trials were a success.
Scenes are in scenes/; docs/scenes.md tells how to write one. Builds what has
changed first. Ctrl-C ends it early.
"""

STATUS = """\
Ends with 0 when the trials were played, however they ended; 1 when something
failed, 2 for a wrong option or scene, 130 after Ctrl-C.
"""

CONFIDENCE = 1.96  # 95 %


def _parser() -> options.Parser:
    parser = options.Parser("scene", "FILE [option ...]", ABOUT, STATUS)
    add, number = parser.add_argument, options.whole_number
    add("file", metavar="FILE", type=Path, help="the scene")
    add("--trials", type=number(1, 100000), default=100, metavar="N", help="how often (100)")
    add(
        "--seed",
        type=number(0, 999999999),
        default=1,
        metavar="N",
        help="where all chance starts: the same seed gives the same trials (1)",
    )
    options.add_team_options(parser)
    add("--real-time", action="store_true", help="ten cycles a second, as in a match; for looking")
    add(
        "--port",
        type=number(1, 65533),
        metavar="P",
        help="UDP port of the practice server, whose trainer takes the next (6000, or a free one)",
    )
    add(
        "--keep",
        type=Path,
        metavar="DIR",
        help="folder for the log (scene-trials, or scene-trials-2, ... when that is in use)",
    )
    return parser


def interval(successes: int, trials: int) -> tuple[float, float]:
    """Wilson's interval: where the true share lies, with 95 % confidence."""
    if trials == 0:
        return 0.0, 1.0
    share, z2 = successes / trials, CONFIDENCE**2 / trials
    middle = share + z2 / 2
    width = CONFIDENCE * math.sqrt(share * (1 - share) / trials + z2 / trials / 4)
    return max(0.0, (middle - width) / (1 + z2)), min(1.0, (middle + width) / (1 + z2))


def headline(scene: Scene, verdicts: list[Verdict]) -> str:
    """The share of successes in one line."""
    wins = sum(verdict.success for verdict in verdicts)
    low, high = interval(wins, len(verdicts))
    share = wins / len(verdicts) if verdicts else 0.0
    return (
        f"{scene.name}: {wins} of {len(verdicts)} trials succeeded, {share:.0%} "
        f"(95 % sure: {low:.0%} to {high:.0%})"
    )


def outcome_table(verdicts: list[Verdict]) -> Table:
    """How the trials ended, the most frequent end first."""
    table = Table(box=box.SIMPLE_HEAD, pad_edge=False, show_edge=False)
    table.add_column("decided by")
    for title in ("trials", "success", "cycles"):
        table.add_column(title, justify="right")
    for (why, success), count in Counter((v.why, v.success) for v in verdicts).most_common():
        cycles = [v.cycles for v in verdicts if (v.why, v.success) == (why, success)]
        mean = sum(cycles) / len(cycles)
        table.add_row(why, str(count), "yes" if success else "no", f"{mean:.0f}")
    return table


def main(arguments: list[str]) -> int:
    """Plays; returns the exit status."""
    given = _parser().parse_args(arguments)
    scene = read_scene(given.file)
    programs, build = build_programs("scene")
    settings = TrainingSettings(
        TeamSettings("Left", given.left_conf, given.left_agent),
        TeamSettings("Right", given.right_conf, given.right_agent),
        given.trials,
        given.seed,
        given.real_time,
    )
    warn_of_settings("scene", programs, settings.left, settings.right)
    signals = Signals()
    with ExitStack() as stack:
        folder, lock = lock_keep_folder(given.keep, work_folder() / "scene-trials")
        stack.enter_context(lock)
        port, port_lock = take_port(given.port, 2)
        stack.enter_context(port_lock)
        nursery = stack.enter_context(Nursery())
        training = Training(scene, settings, programs, folder.resolve(), port, nursery)
        say("scene", scene.about or scene.name)
        training.start()
        if build is not None:
            build.release()
        _play(training, settings.trials, signals)
    _tell(scene, training)
    return 128 + signals.number if signals.number else 0


def _play(training: Training, trials: int, signals: Signals) -> None:
    console = Console()
    with console.status("") as status:

        def watch(_: Verdict) -> None:
            done = training.verdicts
            wins = sum(verdict.success for verdict in done)
            status.update(f"trial {len(done)} of {trials}, {wins} succeeded")

        try:
            training.play(watch, lambda: signals.number != 0)
        finally:
            training.finish()


def _tell(scene: Scene, training: Training) -> None:
    if not training.verdicts:
        raise Failure("stopped before a trial was over", status=130)
    console = Console(highlight=False)
    console.print("")
    console.print(outcome_table(training.verdicts))
    console.print("")
    console.print(headline(scene, training.verdicts), style="bold", soft_wrap=True)
    say("scene", f"all trials are in {shown(training.log)}, each a chapter in the viewer")
