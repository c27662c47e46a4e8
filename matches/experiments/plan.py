"""What is to be played: the teams that take part, and the matches, each with a name of its own.

A plan is a file; the programs and settings that it names lie beside it. Needs the standard library
alone, because it is read on every machine that plays.
"""

import json
import re
from collections.abc import Iterator
from dataclasses import asdict, dataclass, field
from pathlib import Path
from typing import Any

from matches.words import Failure

FILE = "plan.json"
NAME = re.compile(r"([A-Za-z0-9]+)-([A-Za-z0-9]+)-(\d+)-([12])")


@dataclass(frozen=True)
class Entry:
    """A team that takes part; its files are in the folder of its key."""

    key: str
    """Letters and digits: A, B, ..."""
    label: str
    """What the user calls it."""
    name: str
    """The team's name in a match."""
    kind: str
    """"agent": an agent with a player.conf; "league": a folder with start and kill."""
    revision: str
    """Where the program is from."""
    settings: str
    """In which settings it differs from the usual ones."""


@dataclass(frozen=True, order=True)
class Game:
    """One match: the pair tells the seed; in the second match of a pair the sides are swapped."""

    first: str
    second: str
    pair: int
    turn: int

    def __str__(self) -> str:
        """Its name, also that of its folder."""
        return f"{self.first}-{self.second}-{self.pair:04d}-{self.turn}"

    @property
    def sides(self) -> tuple[str, str]:
        """The keys of the team on the left and of the one on the right."""
        return (self.first, self.second) if self.turn == 1 else (self.second, self.first)

    @staticmethod
    def named(name: str) -> "Game":
        """The match of this name."""
        found = NAME.fullmatch(name)
        if found is None:
            raise Failure(f"'{name}' is no name of a match", "One is A-B-0001-1.", status=2)
        return Game(found[1], found[2], int(found[3]), int(found[4]))


@dataclass(frozen=True)
class Plan:
    """Everything that the results depend on."""

    entries: dict[str, Entry]
    comparisons: list[tuple[str, str]]
    pairs: int
    """At most so many are played of each comparison."""
    seed: int
    """Of the first pair; the next has the next."""
    half_cycles: int
    synchronous: bool
    server: str
    """The path of another server; empty for the practice server."""
    revision: str
    """Of the checkout that plays."""
    error: float = 0.05
    """Bound of both kinds of wrong verdicts."""
    difference: float = 0.5
    """The smallest goal difference of interest."""
    keep_logs: str = "telling"
    words: list[str] = field(default_factory=list)
    """The command line, as far as it says what is played."""

    def games(self, first: str, second: str, begin: int = 1) -> Iterator[Game]:
        """The matches of a comparison, in the order in which they count."""
        for pair in range(begin, self.pairs + 1):
            for turn in (1, 2):
                yield Game(first, second, pair, turn)

    def seed_of(self, game: Game) -> int:
        """Where the server's random numbers start."""
        return self.seed + game.pair - 1

    def save(self, run: Path) -> None:
        """Writes it at once or not at all."""
        new = run / (FILE + ".new")
        new.write_text(json.dumps(asdict(self), indent=1) + "\n")
        new.replace(run / FILE)

    @staticmethod
    def load(run: Path) -> "Plan":
        """Fails when the folder has none."""
        try:
            data: dict[str, Any] = json.loads((run / FILE).read_text())
            data["entries"] = {key: Entry(**entry) for key, entry in data["entries"].items()}
            data["comparisons"] = [(first, second) for first, second in data["comparisons"]]
            return Plan(**data)
        except FileNotFoundError as error:
            raise Failure(f"there is no experiment in '{run}'") from error
        except (ValueError, TypeError, KeyError) as error:
            raise Failure(f"'{run / FILE}' cannot be read: {error}") from error
