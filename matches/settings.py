"""What a match depends on, and the settings of a team: its player.conf, checked beforehand."""

import shutil
import subprocess
from dataclasses import dataclass
from pathlib import Path

from matches.words import Failure, say, shown


@dataclass(frozen=True)
class TeamSettings:
    """One of the two teams: its name, its player.conf, and the program that plays."""

    name: str
    conf: Path
    agent: Path | None = None  # the one among the programs


@dataclass(frozen=True)
class MatchSettings:
    """Everything that a match depends on."""

    left: TeamSettings
    right: TeamSettings
    half_cycles: int = 300
    seed: int = 1
    lossy: int | None = None  # the seed of a bad network
    busy: int = 0  # programs that only keep the processor busy
    port: int | None = None  # a free one
    keep: Path | None = None  # a free folder
    plans: bool = False  # whether the players log what they believe
    watch: bool = False  # whether browsers may look on
    fast: bool = False  # the server's clock waits for the players
    speed: int | None = None  # and goes at most so many times as fast as in real time


@dataclass(frozen=True)
class Values:
    """What a file of settings says where the command line may say otherwise."""

    team_name: str
    port: int
    say_mark: str


@dataclass(frozen=True)
class Checked:
    """A file of settings without errors."""

    values: Values
    warnings: list[str]


def check_conf(programs: Path, conf: Path) -> Checked:
    """Fails with file, line, keyword and what is allowed when the player would refuse the file."""
    keywords = ["teamname", "serverPort", "sayID"]
    run = subprocess.run(
        [programs / "check-conf", shown(conf), *keywords],
        capture_output=True,
        text=True,
        errors="replace",
    )
    complaints = run.stderr.splitlines()
    if run.returncode != 0:
        error, *warnings = reversed(complaints or [f"{shown(conf)}: check-conf failed"])
        raise Failure(
            error,
            "\n".join([*reversed(warnings), "All settings are in the README and in player.conf."]),
        )
    name, port, mark = run.stdout.splitlines()
    return Checked(Values(name, int(port), mark[:1]), complaints)


def warn_of_settings(command: str, programs: Path, *teams: TeamSettings) -> None:
    """Checks the settings of the teams and tells of what looks wrong; fails as check_conf does."""
    for conf in {team.conf for team in teams}:
        for warning in check_conf(programs, conf).warnings:
            say(command, warning)


def make_team_folder(folder: Path, conf: Path, name: str, port: int, mark: str) -> None:
    """A player reads player.conf where it stands, so a team gets a folder with its own.

    The say marks of two teams differ: both would otherwise believe each other's ball reports.
    """
    text = conf.read_bytes()
    if text and not text.endswith(b"\n"):
        text += b"\n"
    text += (
        f'\n# Set for this match; later lines win.\nteamname: "{name}"\n'
        f'serverPort: {port}\nsayID: "{mark}"\n'
    ).encode()
    folder.mkdir(parents=True, exist_ok=True)
    for old in [*folder.glob("player-*.out"), *folder.glob("player-*.err")]:
        old.unlink()
    shutil.rmtree(folder / "agentplanlog", ignore_errors=True)
    (folder / "player.conf").write_bytes(text)
