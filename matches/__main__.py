"""Runs one command: python3 -m matches COMMAND [ARGUMENT ...]."""

import importlib
import os
import sys

from matches.words import Failure, complain

COMMANDS = {
    "play": "matches.play",
    "scene": "matches.scene",
    "team": "matches.team",
    "replay": "matches.replay",
    "package": "matches.package",
    "build": "matches.build",
    "compare": "matches.experiments.compare",
    "tune": "matches.experiments.tune",
    "tournament": "matches.experiments.tournament",
    "one-match": "matches.experiments.one_match",
}
"""The module of each command."""


def main(arguments: list[str]) -> int:
    """The exit status of the command."""
    if not arguments or arguments[0] not in COMMANDS:
        sys.stderr.write(f"usage: python3 -m matches {{{','.join(COMMANDS)}}} ...\n")
        return 2
    command, *rest = arguments
    try:
        status: int = importlib.import_module(COMMANDS[command]).main(rest)
        sys.stdout.flush()
        return status
    except Failure as failure:
        complain(rest[0] if command == "build" else command, failure)
        return failure.status
    except KeyboardInterrupt:
        sys.stderr.write("\n")
        return 130
    except BrokenPipeError:  # who reads our words has gone, as `head` does
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return 141


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
