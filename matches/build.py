"""Builds the programs with CMake, one build of a folder at a time.

As a command: ``python3 -m matches build FOLDER TARGET CMAKE_OPTION ...``, for ./check and ./fuzz.
"""

import os
import re
import shutil
import subprocess
import sys
import time
from collections import deque
from pathlib import Path

from matches.locks import Lock
from matches.places import ROOT, given_programs
from matches.words import Failure, say

ERROR_LINE = re.compile(rb"error:|Error |No space left|undefined reference|FAILED:")


def missing_tools() -> list[str]:
    """The Debian packages that a build lacks here."""
    wanted = {"g++": shutil.which("g++"), "cmake": shutil.which("cmake")}
    wanted["make"] = shutil.which("make") or shutil.which("ninja")
    packages = [name for name, found in wanted.items() if not found]
    if not Path("/usr/include/zlib.h").exists():
        packages.append("zlib1g-dev")
    return packages


def missing_extras() -> list[str]:
    """The packages without which a build leaves out the viewer and watch."""
    wanted = {"esbuild": shutil.which("esbuild"), "pkg-config": shutil.which("pkg-config")}
    packages = [name for name, found in wanted.items() if not found]
    if not Path("/usr/include/httplib.h").exists():
        packages.append("libcpp-httplib-dev")
    return packages


def _may_install() -> bool:
    """Whether packages can be installed here without asking for a password."""
    if not shutil.which("apt-get"):
        return False
    if os.geteuid() == 0:
        return True
    sudo = shutil.which("sudo")
    return sudo is not None and subprocess.run([sudo, "-n", "true"], capture_output=True).returncode == 0


def install(why: str, packages: list[str]) -> None:
    """Installs Debian packages as root or through sudo; the script says what goes wrong."""
    if packages and subprocess.run([ROOT / "scripts/install", why, *packages]).returncode != 0:
        raise Failure("cannot build without " + " ".join(packages))


def build_programs(command: str) -> tuple[Path, Lock | None]:
    """The folder of the programs, up to date, and a lock that keeps others from rebuilding them.

    Players are to be started under the lock; afterwards it may be released.
    """
    given = given_programs()
    if given is not None:
        return given, None
    return ROOT / "build", build(command, ROOT / "build", ["all"], ["--preset", "play"])


def build(command: str, folder: Path, targets: list[str], options: list[str]) -> Lock:
    """Configures and builds some targets; the lock that is returned is a shared one."""
    extras = missing_extras()
    if extras and not _may_install():
        say(command, f"without viewer and watch, which need {' '.join(extras)}")
        extras = []
    install("to build", missing_tools() + extras)
    lock = Lock(folder)
    if not lock.take():
        say(command, f"waiting for another build in {folder.name}/")
        lock.take(wait=True)
    _forget_moved_sources(folder)
    if not (folder / "CMakeCache.txt").exists() and not shutil.which("make"):
        options = ["-G", "Ninja", *options]
    say(command, f"building into {folder.name}/")
    started = time.monotonic()
    log = folder / "build.log"
    with log.open("wb") as out:
        _run_step(["cmake", "-S", str(ROOT), "-B", str(folder), *options], out.fileno(), log)
        jobs = str(os.cpu_count() or 1)
        make = ["cmake", "--build", str(folder), "--parallel", jobs, "--target", *targets]
        _run_step(make, out.fileno(), log)
    say(command, f"built in {time.monotonic() - started:.0f} s")
    lock.take(shared=True, wait=True)
    return lock


def _forget_moved_sources(folder: Path) -> None:
    """A build folder remembers where its sources were; after a move or a copy it has to forget."""
    cache = folder / "CMakeCache.txt"
    if not cache.exists():
        return
    if f"CMAKE_HOME_DIRECTORY:INTERNAL={ROOT}\n" not in cache.read_text(errors="replace"):
        cache.unlink()
        shutil.rmtree(folder / "CMakeFiles", ignore_errors=True)


def _run_step(arguments: list[str], log_file: int, log: Path) -> None:
    """Runs one program into the log, with its percentage on a line of the terminal."""
    words: deque[bytes] = deque(maxlen=4000)
    shows = sys.stdout.isatty()
    process = subprocess.Popen(
        arguments, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT
    )
    assert process.stdout is not None
    for line in process.stdout:
        os.write(log_file, line)
        words.append(line)
        if shows and (percent := re.match(rb"\[[^\]]*\]", line)):
            sys.stdout.write("\r" + percent[0].decode())
            sys.stdout.flush()
    if shows:
        sys.stdout.write("\r" + " " * 12 + "\r")
    if process.wait() != 0:
        sys.stdout.flush()
        sys.stderr.write(first_errors(list(words)))
        raise Failure("the build failed", f"The first errors stand above, everything in {log}")


def first_errors(lines: list[bytes], most: int = 40) -> str:
    """The lines that tell why a build failed, each with a few that follow; else the last ones."""
    shown: dict[int, bytes] = {}
    for number, line in enumerate(lines):
        if ERROR_LINE.search(line):
            shown |= dict(enumerate(lines[number : number + 5], number))
        if len(shown) >= most:
            break
    chosen = list(shown.values())[:most] or lines[-most:]
    return b"".join(chosen).decode(errors="replace")


def main(arguments: list[str]) -> int:
    """Builds for a script, which goes on when this has ended well."""
    command, folder, target, *options = arguments
    build(command, ROOT / folder, [target], options).release()
    return 0
