"""Where sources, programs and the folders of matches are."""

import os
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
"""The checkout, or the data folder of an installed copy."""

IS_INSTALLED = not (ROOT / "CMakeLists.txt").is_file()
"""An installed copy has no sources, and its programs are in the bin folder beside it."""

DEFAULT_CONF = ROOT / "player.conf"

LAUNCHER = os.environ.get("LAUNCHER", "")
"""How the user called us, for the usage line."""


def given_programs() -> Path | None:
    """The folder of programs that need no building; None when they are to be built."""
    given = os.environ.get("PROGRAMS")
    if given:
        return Path(given).resolve()
    return ROOT.parent.parent / "bin" if IS_INSTALLED else None


def work_folder() -> Path:
    """The folder below which matches leave their files; the user's own, unless we build ours."""
    return ROOT if given_programs() is None else Path.cwd()
