"""./package: a folder of the team that a league can run, or a Debian package of everything."""

import argparse
import os
import re
import shutil
import subprocess
import tarfile
from pathlib import Path

from matches import options
from matches.build import build
from matches.places import DEFAULT_CONF, IS_INSTALLED, ROOT
from matches.settings import check_conf
from matches.words import Failure, say, shown

ABOUT = """\
Makes a folder, and a tarball of it, with which a league plays for the team on
another machine without building: the player (which needs no library), its
settings, the programs `start` and `kill`, and a README. Or, with --deb, a Debian
package of all programs, launchers and manual pages.
"""

LEAGUE = ROOT / "matches" / "league"


def _parser() -> options.Parser:
    parser = options.Parser("package", "TEAMNAME [option ...] | --deb", ABOUT)
    add = parser.add_argument
    add("name", metavar="TEAMNAME", nargs="?", type=options.team_name, help="name of the team")
    add(
        "--conf",
        type=options.readable_file,
        default=DEFAULT_CONF,
        metavar="FILE",
        help="settings of the team (player.conf)",
    )
    add("--deb", action="store_true", help="make a Debian package instead")
    add("--out", type=Path, default=ROOT / "dist", metavar="DIR", help="where to (dist)")
    return parser


def main(arguments: list[str]) -> int:
    """Makes one or the other; returns the exit status."""
    given = _parser().parse_args(arguments)
    if given.deb == bool(given.name):
        raise Failure("give either TEAMNAME or --deb", "Try ./package --help", status=2)
    if IS_INSTALLED:
        raise Failure("an installed copy has no sources to build from", "Use a checkout.")
    try:
        given.out.mkdir(parents=True, exist_ok=True)
    except OSError as error:
        raise Failure(f"cannot write into '{given.out}': {error.strerror}") from error
    if given.deb:
        _make_deb(given.out)
    else:
        _make_folder(given)
    return 0


def _make_folder(given: argparse.Namespace) -> None:
    programs = ROOT / "build-package"
    build("package", programs, ["agent", "check-conf"], ["--preset", "package"]).release()
    for warning in check_conf(programs, given.conf).warnings:
        say("package", warning)
    folder: Path = given.out / given.name
    if folder.exists() and not (folder / "start").exists():
        raise Failure(
            f"'{shown(folder)}' is there and no team's folder", "Choose another place with --out."
        )
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()
    shutil.copy(programs / "agent", folder / "agent")
    shutil.copy(given.conf, folder / "player.conf")
    for source in LEAGUE.iterdir():
        text = source.read_text().replace("@TEAM@", given.name)
        (folder / source.name).write_text(text.replace("@MACHINE@", os.uname().machine))
    for path in (folder, *folder.iterdir()):
        is_program = path.is_dir() or path.name in ("agent", "start", "kill")
        path.chmod(0o755 if is_program else 0o644)
    tarball = given.out / f"{given.name}.tar.gz"
    with tarfile.open(tarball, "w:gz") as archive:
        archive.add(folder, given.name, filter=_owned_by_nobody_here)
    size = tarball.stat().st_size / 1e6
    say("package", f"{shown(folder)}/ and {shown(tarball)} ({size:.1f} MB)")


def _owned_by_nobody_here(entry: tarfile.TarInfo) -> tarfile.TarInfo:
    entry.uid = entry.gid = 0
    entry.uname = entry.gname = "root"
    return entry


def _make_deb(out: Path) -> None:
    folder = ROOT / "build"
    build("package", folder, ["all"], ["--preset", "play"]).release()
    run = subprocess.run(
        ["cpack", "-G", "DEB", "-B", str(out.resolve())],
        cwd=folder,
        capture_output=True,
        text=True,
    )
    made = re.search(r"package: (\S+\.deb) generated", run.stdout)
    if run.returncode != 0 or made is None:
        raise Failure("cpack could not make the package", (run.stderr or run.stdout).strip())
    shutil.rmtree(out / "_CPack_Packages", ignore_errors=True)
    say("package", f"{shown(Path(made[1]))}; install it with: apt-get install {made[1]}")
