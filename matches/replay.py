"""./replay: one page that shows a match anywhere, made from its game log."""

import base64
import gzip
import json
import os
import shutil
import subprocess
from pathlib import Path

from matches import options
from matches.build import build_programs
from matches.places import IS_INSTALLED, ROOT
from matches.words import Failure, say, shown

ABOUT = """\
Makes one page (HTML) of a game log, which shows the match in any browser, without
a network. The text log (.rcl) beside it goes into the page too, and what the
players believed, when the match was played with --plans.
"""

STATUS = "Opens the page where there is a desktop. Ends with 1 when something failed.\n"

EMPTY_SOURCE = '<script id="source" type="application/json">null</script>'
GZIP = b"\x1f\x8b"
PAGE_LIMIT = 64 * 1024 * 1024  # bytes; some browsers open no larger page


def page_of_viewer(programs: Path) -> Path | None:
    """The viewer without a match; None when it was left out of the build."""
    places = [programs / "viewer.html"]
    if IS_INSTALLED:
        places.append(ROOT / "viewer.html")
    return next((place for place in places if place.is_file()), None)


def _packed(data: bytes) -> str:
    """As the page takes it: gzip, then base64."""
    packed = data if data.startswith(GZIP) else gzip.compress(data, mtime=0)
    return base64.b64encode(packed).decode()


def _read_log(log: Path) -> bytes:
    """The game log's bytes as they are; fails on what is none."""
    try:
        data = log.read_bytes()
        head = gzip.open(log).read(5) if data.startswith(GZIP) else data[:5]
    except (OSError, EOFError) as error:
        raise Failure(f"cannot read {shown(log)}: {error}") from error
    if head not in (b"ULG4\n", b"ULG5\n", b"ULG6\n"):
        raise Failure(
            f"{shown(log)} is no game log of version 4, 5 or 6",
            "Such a file begins with ULG and its version.",
        )
    return data


def _stem(log: Path) -> str:
    return log.name.removesuffix(".gz").removesuffix(".rcg")


def _text_log(log: Path) -> Path | None:
    """The text log beside the game log."""
    names = (f"{_stem(log)}.rcl", f"{_stem(log)}.rcl.gz")
    return next((log.with_name(name) for name in names if log.with_name(name).is_file()), None)


def _plans(folder: Path) -> list[dict[str, str]]:
    """What the players of both sides drew and believed."""
    return [
        {"name": f"{side}/{file.name}", "text": _packed(file.read_bytes())}
        for side in ("left", "right")
        for file in sorted((folder / side / "agentplanlog").glob("*.log"))
    ]


def make_replay(viewer: Path, log: Path, page: Path) -> None:
    """Writes the page of a game log."""
    source: dict[str, object] = {"name": log.name, "rcg": _packed(_read_log(log))}
    if text_log := _text_log(log):
        source["rcl"] = _packed(text_log.read_bytes())
    if plans := _plans(log.parent):
        source["plans"] = plans
    # In a script element only "<" could end the text early.
    text = json.dumps(source).replace("<", "\\u003c")
    html = viewer.read_text(encoding="utf-8")
    if EMPTY_SOURCE not in html:
        raise Failure(f"{shown(viewer)} is no viewer", "Build it again.")
    filled = html.replace(EMPTY_SOURCE, EMPTY_SOURCE.replace("null", text), 1)
    draft = page.with_name(page.name + ".new")
    try:
        draft.write_text(filled, encoding="utf-8")
        draft.replace(page)
    except OSError as error:
        raise Failure(f"cannot write {shown(page)}: {error.strerror}", "Try -o FILE") from error


def _open(page: Path) -> None:
    """Shows the page, if there is a desktop to show it on."""
    has_desktop = os.environ.get("DISPLAY") or os.environ.get("WAYLAND_DISPLAY")
    opener = shutil.which("xdg-open")
    if has_desktop and opener:
        subprocess.Popen([opener, str(page)], stdin=subprocess.DEVNULL, start_new_session=True)


def _parser() -> options.Parser:
    parser = options.Parser("replay", "FILE.rcg[.gz] [-o OUT.html]", ABOUT, STATUS)
    parser.add_argument("log", type=options.readable_file, metavar="FILE", help="the game log")
    parser.add_argument(
        "-o", type=Path, metavar="OUT", dest="page", help="the page (FILE.html beside the log)"
    )
    return parser


def main(arguments: list[str]) -> int:
    """Makes the page; returns the exit status."""
    given = _parser().parse_args(arguments)
    programs, build = build_programs("replay")
    if build is not None:
        build.release()
    viewer = page_of_viewer(programs)
    if viewer is None:
        raise Failure("the viewer was left out of the build", "Install esbuild and start again.")
    page = given.page or given.log.with_name(f"{_stem(given.log)}.html")
    make_replay(viewer, given.log, page)
    size = page.stat().st_size
    say("replay", f"{shown(page)} ({size / 1e6:.1f} MB) shows the match in any browser")
    if size > PAGE_LIMIT:
        say("replay", "it is too large for some browsers; leave out the plan logs")
    _open(page)
    return 0
