"""Scenes: small text files that say who stands where, and what counts as success.

Read with :func:`read_scene`; docs/scenes.md describes the language.
"""

import random
import re
from collections.abc import Callable
from dataclasses import dataclass, field
from pathlib import Path

from matches.conditions import Area, Condition, read_condition
from matches.words import Failure, shown

SET_PIECES = "kick_off kick_in corner_kick goal_kick free_kick indirect_free_kick".split()
MODES = frozenset(["play_on", *(f"{mode}_{side}" for mode in SET_PIECES for side in "lr")])
NUMBER = re.compile(r"([+-]?\d+(?:\.\d+)?)(?:(?:±|\+-)(\d+(?:\.\d+)?))?")
AREAS = {
    "pitch": Area(-52.5, -34, 52.5, 34),
    "left_half": Area(-52.5, -34, 0, 34),
    "right_half": Area(0, -34, 52.5, 34),
    "left_penalty_area": Area(-52.5, -20.16, -36, 20.16),
    "right_penalty_area": Area(36, -20.16, 52.5, 20.16),
    "left_goal_area": Area(-52.5, -9.16, -47, 9.16),
    "right_goal_area": Area(47, -9.16, 52.5, 9.16),
}
LONGEST = 3000


@dataclass(frozen=True)
class Spread:
    """A number, or a range around it."""

    middle: float
    width: float = 0.0

    def draw(self, chance: random.Random) -> float:
        """One number of the range, all equally likely."""
        return self.middle + self.width * chance.uniform(-1, 1)


@dataclass(frozen=True)
class Item:
    """The ball or a player: where it is put, and how it moves."""

    x: Spread
    y: Spread
    facing: Spread | None = None
    speed: tuple[Spread, Spread] | None = None


@dataclass(frozen=True)
class Placed:
    """An item in one trial; speeds in metres a cycle, `facing` in degrees."""

    x: float
    y: float
    facing: float | None
    vx: float
    vy: float


@dataclass(frozen=True)
class SetUp:
    """How one trial begins."""

    mirrored: bool
    ball: Placed
    players: dict[tuple[str, int], Placed]


@dataclass
class Scene:
    """What a file says. Players are named by the side's letter and the number."""

    name: str
    about: str = ""
    mode: str = "play_on"
    lasts: int = 100
    mirror: bool = False
    ball: Item | None = None
    players: dict[tuple[str, int], Item] = field(default_factory=dict)
    areas: dict[str, Area] = field(default_factory=lambda: dict(AREAS))
    success: list[Condition] = field(default_factory=list)
    failure: list[Condition] = field(default_factory=list)

    def draw(self, chance: random.Random) -> SetUp:
        """Where everything is in one trial."""
        mirrored = self.mirror and chance.random() < 0.5
        assert self.ball is not None
        return SetUp(
            mirrored,
            _place(self.ball, mirrored, chance),
            {who: _place(item, mirrored, chance) for who, item in self.players.items()},
        )


def _place(item: Item, mirrored: bool, chance: random.Random) -> Placed:
    flip = -1.0 if mirrored else 1.0
    x, y = item.x.draw(chance), item.y.draw(chance)
    vx, vy = (part.draw(chance) for part in item.speed or (Spread(0), Spread(0)))
    facing = None if item.facing is None else flip * item.facing.draw(chance)
    return Placed(x, flip * y, facing, vx, flip * vy)


class Words:
    """The words of a line, taken one after the other; a ValueError says what is wrong."""

    def __init__(self, line: str) -> None:
        self.line = line
        self._words = line.split()

    def take(self, what: str) -> str:
        """The next word, whatever it is."""
        if not self._words:
            raise ValueError(f"{what} is missing at the end")
        return self._words.pop(0)

    def take_if(self, word: str) -> bool:
        """Whether this word comes next, which is then taken."""
        found = bool(self._words) and self._words[0] == word
        if found:
            self._words.pop(0)
        return found

    def number(self, what: str) -> Spread:
        """A number such as 10, -2.5 or 10±2."""
        word = self.take(what)
        match = NUMBER.fullmatch(word)
        if match is None:
            raise ValueError(f"{what} cannot be '{word}'; write a number such as 10, -2.5 or 10±2")
        return Spread(float(match[1]), float(match[2] or 0))

    def whole(self, what: str, low: int, high: int) -> int:
        """A whole number from low to high."""
        word = self.take(what)
        if not re.fullmatch(r"\d{1,6}", word) or not low <= int(word) <= high:
            raise ValueError(f"{what} cannot be '{word}'; write a number from {low} to {high}")
        return int(word)

    def end(self) -> None:
        """Nothing may come any more."""
        if self._words:
            raise ValueError(f"what does '{' '.join(self._words)}' mean there?")


def _read_item(words: Words, may_face: bool) -> Item:
    x, y = words.number("x"), words.number("y")
    facing = words.number("the direction") if may_face and words.take_if("facing") else None
    speed = None
    if words.take_if("speed"):
        speed = (words.number("the speed along x"), words.number("the speed along y"))
    for value, most, what in ((x, 57.5, "x"), (y, 39.0, "y")):
        if abs(value.middle) + value.width > most:
            raise ValueError(f"{what} is beyond {most:g} m, where nobody can be")
    return Item(x, y, facing, speed)


def _read_mode(scene: Scene, words: Words) -> None:
    mode = words.take("the play mode")
    if mode not in MODES:
        raise ValueError(f"there is no play mode '{mode}'; choose {', '.join(sorted(MODES))}")
    scene.mode = mode


def _read_lasts(scene: Scene, words: Words) -> None:
    scene.lasts = words.whole("the number of cycles", 1, LONGEST)


def _read_mirror(scene: Scene, _words: Words) -> None:
    scene.mirror = True


def _read_ball(scene: Scene, words: Words) -> None:
    if scene.ball is not None:
        raise ValueError("there is one ball, and its place was told before")
    scene.ball = _read_item(words, may_face=False)


def _player_reader(side: str) -> Callable[[Scene, Words], None]:
    def read(scene: Scene, words: Words) -> None:
        number = words.whole("the player's number", 1, 11)
        if (side, number) in scene.players:
            raise ValueError(f"the place of player {number} was told before")
        scene.players[side, number] = _read_item(words, may_face=True)

    return read


def _read_area(scene: Scene, words: Words) -> None:
    name = words.take("the area's name")
    if name in AREAS:
        raise ValueError(f"'{name}' is known already; choose another name")
    x1, y1, x2, y2 = (words.number("a corner").middle for _ in range(4))
    scene.areas[name] = Area(min(x1, x2), min(y1, y2), max(x1, x2), max(y1, y2))


def _condition_reader(wins: bool) -> Callable[[Scene, Words], None]:
    def read(scene: Scene, words: Words) -> None:
        conditions = scene.success if wins else scene.failure
        conditions.append(read_condition(words.take, words.take_if, scene.areas))

    return read


READERS: dict[str, Callable[[Scene, Words], None]] = {
    "mode": _read_mode,
    "lasts": _read_lasts,
    "mirror": _read_mirror,
    "ball": _read_ball,
    "left": _player_reader("l"),
    "right": _player_reader("r"),
    "area": _read_area,
    "success": _condition_reader(True),
    "failure": _condition_reader(False),
}


def _read_line(scene: Scene, line: str) -> None:
    words = Words(line)
    item = words.take("")
    if item == "about":
        scene.about = line.removeprefix("about").strip()
        return
    reader = READERS.get(item)
    if reader is None:
        raise ValueError(f"there is no item '{item}'; items are about, {', '.join(READERS)}")
    reader(scene, words)
    words.end()


def read_scene(path: Path) -> Scene:
    """Fails with file, line and what to write instead."""
    try:
        lines = path.read_text(encoding="utf-8").splitlines()
    except (OSError, UnicodeDecodeError) as error:
        why = error.strerror if isinstance(error, OSError) else "it is no text in UTF-8"
        raise Failure(f"cannot read '{shown(path)}': {why}", "Scenes are in scenes/.", 2) from error
    scene = Scene(re.sub(r"[^A-Za-z0-9_-]", "-", path.stem))
    number = 0
    for number, line in enumerate(lines, 1):
        text = line.partition("#")[0].strip()
        try:
            if text:
                _read_line(scene, text)
        except ValueError as error:
            raise _failure(path, number, str(error)) from error
    missing = _missing(scene)
    if missing:
        raise _failure(path, max(1, number), missing)
    return scene


def _failure(path: Path, line: int, what: str) -> Failure:
    return Failure(f"{shown(path)}:{line}: {what}", "docs/scenes.md tells what a scene can say.", 2)


def _missing(scene: Scene) -> str:
    if scene.ball is None:
        return "the file ends without a line 'ball X Y'"
    if not any(side == "l" for side, _ in scene.players):
        return "the file ends without a player of the left team: 'left 9 20 5'"
    if not scene.success:
        return "the file ends without 'success ...': when has a trial gone well?"
    return ""
