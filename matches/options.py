"""The options of the commands: their types, their help, and what is said of a wrong one."""

import argparse
import os
import re
from collections.abc import Callable
from pathlib import Path
from typing import NoReturn

from matches.places import DEFAULT_CONF, LAUNCHER
from matches.words import Failure


class Parser(argparse.ArgumentParser):
    """Reports errors in our own words."""

    def __init__(self, command: str, usage: str, description: str, epilog: str = "") -> None:
        super().__init__(
            prog=LAUNCHER or f"./{command}",
            usage=f"%(prog)s {usage}",
            description=description,
            epilog=epilog,
            allow_abbrev=False,
            add_help=False,
            formatter_class=_Formatter,
        )
        self.add_argument("--help", action="help", help="this text")

    def error(self, message: str) -> NoReturn:
        """Every complaint of argparse ends here."""
        text = message.removeprefix("argument ")
        text = text.replace("unrecognized arguments:", "there is no option")
        text = text.replace(": expected one argument", " needs a value")
        text = text.replace(": takes", " takes")
        raise Failure(text, f"Try {self.prog} --help", status=2)


def add_team_options(parser: Parser) -> None:
    """Settings and programs of both teams: left_conf, left_agent, right_conf, right_agent."""
    for side in ("left", "right"):
        parser.add_argument(
            f"--{side}-conf",
            type=readable_file,
            default=DEFAULT_CONF,
            metavar="FILE",
            help=f"settings of the {side} team (player.conf)",
        )
        parser.add_argument(
            f"--{side}-agent",
            type=program,
            metavar="FILE",
            help="the program that plays for it: called with host, team name and, for player 1, "
            "-goalie, in a folder with its player.conf (build/agent)",
        )


class _Formatter(argparse.RawDescriptionHelpFormatter):
    """One column for the options, wide enough for the longest."""

    def __init__(self, prog: str) -> None:
        super().__init__(prog, max_help_position=24, width=80)


def whole_number(low: int, high: int) -> Callable[[str], int]:
    """The type of an option that takes a number from low to high."""

    def convert(text: str) -> int:
        if not re.fullmatch(r"0|[1-9][0-9]{0,8}", text) or not low <= int(text) <= high:
            raise argparse.ArgumentTypeError(
                f"takes a whole number from {low} to {high}, not '{text}'"
            )
        return int(text)

    return convert


def team_name(text: str) -> str:
    """The server takes at most 15 characters, player.conf only these."""
    if not re.fullmatch(r"[A-Za-z0-9_-]{1,15}", text):
        raise argparse.ArgumentTypeError(f"takes 1 to 15 letters, digits, - or _, not '{text}'")
    return text


def say_mark(text: str) -> str:
    """The letter that marks a team's own say messages."""
    if not re.fullmatch(r"[A-Za-z0-9]", text):
        raise argparse.ArgumentTypeError(f"takes one letter or digit, not '{text}'")
    return text


def readable_file(text: str) -> Path:
    """A file that is there and can be read."""
    try:
        Path(text).open("rb").close()
    except OSError as error:
        raise argparse.ArgumentTypeError(f"cannot read '{text}': {error.strerror}") from error
    return Path(text).resolve()


def program(text: str) -> Path:
    """A file that can be executed."""
    path = Path(text).resolve()
    if not path.is_file():
        raise argparse.ArgumentTypeError(f"'{text}' is no file")
    if not os.access(path, os.X_OK):
        raise argparse.ArgumentTypeError(f"'{text}' cannot be executed; try chmod +x '{text}'")
    return path
