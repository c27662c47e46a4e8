"""Who takes part: finds out what the user means, and puts programs and settings together.

A team is named by a file of settings, an agent's binary, a packaged team's folder, or a git
revision of this repository.
"""

import hashlib
import os
import re
import shutil
import subprocess
from collections.abc import Sequence
from contextlib import ExitStack
from dataclasses import dataclass
from pathlib import Path

from matches.build import build, build_programs
from matches.experiments.plan import Entry, Plan
from matches.places import DEFAULT_CONF, IS_INSTALLED, ROOT
from matches.replay import page_of_viewer
from matches.settings import check_conf
from matches.words import Failure, say

KEYS = "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
SERVER_PROGRAMS = ("practice-server", "match-stats")
LONGEST_NAME = 15


@dataclass(frozen=True)
class Entrant:
    """A team before it has a key: its files, and how it is told."""

    label: str
    agent: Path | None
    """None for the program of this checkout."""
    conf: Path
    revision: str = ""
    folder: Path | None = None
    """A packaged team that is started by its own programs."""


# ---------------------------------------------------------------- what the user means


def find_entrant(command: str, text: str) -> Entrant:
    """Builds a revision if it has to; fails when the text is none of the four."""
    path = Path(text)
    if path.is_dir():
        return _packaged(path.resolve())
    if path.is_file() and os.access(path, os.X_OK):
        return Entrant(path.name, path.resolve(), DEFAULT_CONF, f"binary {_digest(path)}")
    if path.is_file():
        return Entrant(path.name.removesuffix(".conf"), None, path.resolve())
    commit = _git("rev-parse", "--verify", "--quiet", f"{text}^{{commit}}")
    if commit and not IS_INSTALLED:
        return _revision(command, text, commit)
    raise Failure(
        f"there is no '{text}'",
        "A team is a file of settings, an agent's binary, the folder of a packaged team, or a git\n"
        "revision of this repository.",
        status=2,
    )


def _packaged(folder: Path) -> Entrant:
    agent, conf = folder / "agent", folder / "player.conf"
    if os.access(agent, os.X_OK) and conf.is_file():
        return Entrant(folder.name, agent, conf, f"binary {_digest(agent)}")
    if os.access(folder / "start", os.X_OK):
        revision = f"folder {_digest(folder / 'start')}"
        return Entrant(folder.name, None, DEFAULT_CONF, revision, folder)
    raise Failure(f"'{folder}' is no packaged team", "One has a program `start` in it.", status=2)


def find_league_team(text: str) -> Entrant:
    """A packaged team that is started as a league does it, whatever is in the folder."""
    folder = Path(text).resolve()
    if not os.access(folder / "start", os.X_OK):
        raise Failure(
            f"'{text}' is no packaged team", "One is a folder with a program `start`.", status=2
        )
    revision = f"folder {_digest(folder / 'start')}"
    return Entrant(folder.name, None, DEFAULT_CONF, revision, folder)


def _revision(command: str, text: str, commit: str) -> Entrant:
    """The agent of a revision, built once in a worktree that is kept."""
    home = ROOT / ".cache/revisions" / commit[:12]
    source, folder = home / "source", home / "build"
    home.mkdir(parents=True, exist_ok=True)
    agent = folder / "agent"
    if not (home / "complete").exists():
        say(command, f"{text} is built once, into {home.relative_to(ROOT)}/")
        if not (source / "CMakeLists.txt").exists():
            _git("worktree", "prune")
            added = _git("worktree", "add", "--detach", "--force", str(source), commit)
            if added is None:
                raise Failure(f"git cannot make a worktree of '{text}'", f"Is {home} writable?")
        options = ["-DCMAKE_BUILD_TYPE=Release", "-DBUILD_TESTING=OFF", "-DBUILD_BENCH=OFF"]
        build(command, folder, ["agent"], options, source).release()
        (home / "complete").touch()
    return Entrant(text, agent, source / "player.conf", commit[:12])


def _git(*arguments: str) -> str | None:
    """What git answers; None when it fails or is not there."""
    try:
        run = subprocess.run(["git", "-C", ROOT, *arguments], capture_output=True, text=True)
    except OSError:
        return None
    return run.stdout.strip() if run.returncode == 0 else None


def _digest(path: Path) -> str:
    """Tells two versions of a program apart."""
    return hashlib.sha256(path.read_bytes()).hexdigest()[:12]


def own_revision() -> str:
    """Of the checkout that plays."""
    return _git("describe", "--always", "--dirty", "--abbrev=12") or "installed"


# ---------------------------------------------------------------- the folder of the experiment


def settings_of(conf: Path) -> dict[str, str]:
    """Keywords and values, as they stand there; the last of a keyword wins."""
    text = conf.read_text(errors="replace")
    found = re.findall(r"^[ \t]*([A-Za-z]\w*)[ \t]*:[ \t]*(.*?)[ \t\r]*$", text, re.MULTILINE)
    return dict(found)


def difference_of(conf: Path) -> str:
    """Where settings differ from the usual ones."""
    usual = settings_of(DEFAULT_CONF)
    found = settings_of(conf)
    changed = [f"{k}={v}" for k, v in sorted(found.items()) if usual.get(k) != v]
    return " ".join(changed)


def _team_name(label: str) -> str:
    """What a server takes as the name of a team."""
    return re.sub(r"[^A-Za-z0-9_-]", "_", label)[:LONGEST_NAME]


def entries_of(entrants: Sequence[Entrant], keys: Sequence[str] = KEYS) -> dict[str, Entry]:
    """Gives each a key, and names that tell them apart."""
    labels = [entrant.label for entrant in entrants]
    entries = {}
    own = own_revision()
    for key, entrant in zip(keys, entrants, strict=False):
        label, name = entrant.label, _team_name(entrant.label)
        if labels.count(label) > 1:
            label = f"{label} ({key})"
        if [_team_name(other) for other in labels].count(name) > 1:
            name = f"{name[: LONGEST_NAME - 1 - len(key)]}-{key}"
        entries[key] = Entry(
            key, label, name,
            "league" if entrant.folder else "agent",
            entrant.revision or own,
            "" if entrant.folder else difference_of(entrant.conf),
        )
    return entries


LAUNCHER = """\
#!/bin/sh
# Plays one match of this experiment: one-match GAME
cd "$(dirname "$0")" || exit 1
for python in /usr/bin/python3 python3; do
    if "$python" -IS -c 'import sys; sys.exit(sys.version_info < (3, 11))' 2>/dev/null; then
        PYTHONPATH=bundle exec "$python" -P -m matches one-match . "$1"
    fi
done
echo "one-match: there is no Python 3.11 or newer" >&2
exit 1
"""


class Bundle:
    """Programs and settings of an experiment: all that another machine needs."""

    def __init__(self, command: str, run: Path) -> None:
        """Builds what has changed, and copies it."""
        self._run = run
        self._command = command
        self.folder = run / "bundle"
        programs, build_lock = build_programs(command)
        with ExitStack() as stack:
            if build_lock is not None:
                stack.enter_context(build_lock)
            (self.folder / "bin").mkdir(parents=True, exist_ok=True)
            for name in (*SERVER_PROGRAMS, "agent", "check-conf"):
                _copy(programs / name, self.folder / "bin" / name)
            if (viewer := page_of_viewer(programs)) is not None:
                _copy(viewer, self.folder / "bin/viewer.html")
        self._copy_package()

    def _copy_package(self) -> None:
        package = self.folder / "matches"
        shutil.rmtree(package, ignore_errors=True)
        source = Path(__file__).resolve().parent.parent
        shutil.copytree(source, package, ignore=shutil.ignore_patterns("__pycache__"))
        launcher = self._run / "one-match"
        # A program of another kind may stand in for a match.
        given = os.environ.get("ONE_MATCH")
        launcher.write_text(Path(given).read_text() if given else LAUNCHER)
        launcher.chmod(0o755)

    def check(self, plan: Plan) -> None:
        """Fails where the server cannot do what is wanted."""
        server = self.folder / "bin/practice-server"
        told = subprocess.run([server, "--help"], capture_output=True, text=True).stdout
        if plan.synchronous and "--synchronous" not in told:
            raise Failure(
                "the practice server cannot play faster than real time", "Try --real-time"
            )

    def add(self, key: str, entrant: Entrant) -> None:
        """A team's files."""
        target = self.folder / "teams" / key
        if entrant.folder is not None:
            shutil.copytree(entrant.folder, target, symlinks=True, dirs_exist_ok=True)
            return
        for warning in check_conf(self.folder / "bin", entrant.conf).warnings:
            say(self._command, warning)
        target.mkdir(parents=True, exist_ok=True)
        shutil.copy(entrant.conf, target / "player.conf")
        _copy(entrant.agent or self.folder / "bin/agent", target / "agent")


def _copy(source: Path, target: Path) -> None:
    """The new file gets the name at once: the old one may be running."""
    try:
        new = target.with_name(target.name + ".new")
        shutil.copy(source, new)
        new.replace(target)
    except OSError as error:
        raise Failure(f"cannot copy {source}: {error.strerror}") from error
