"""When a trial of a scene is decided: by what a trainer sees and what the referee says."""

import math
import re
from collections.abc import Callable, Mapping
from dataclasses import dataclass, field

BALL_DECAY = 0.94
KICKABLE = 1.085
REACH = KICKABLE + 0.4  # a ball that was kicked has moved on before it is seen
NARROW_MISS = 3.0  # metres beside a post that still make a shot
GOAL_LINE, POST = 52.5, 7.01
SIDES = {"left": "l", "right": "r"}

Take = Callable[[str], str]
TakeIf = Callable[[str], bool]


@dataclass(frozen=True)
class Area:
    """A rectangle of the pitch."""

    left: float
    top: float
    right: float
    bottom: float

    def holds(self, x: float, y: float) -> bool:
        """Whether the point lies in it."""
        return self.left <= x <= self.right and self.top <= y <= self.bottom


@dataclass(frozen=True)
class Moving:
    """Where something is, and its speed."""

    x: float
    y: float
    vx: float = 0.0
    vy: float = 0.0

    @property
    def mirrored(self) -> "Moving":
        """The same on the other side of the long axis."""
        return Moving(self.x, -self.y, self.vx, -self.vy)

    def distance(self, other: "Moving") -> float:
        """Metres between two places."""
        return math.hypot(self.x - other.x, self.y - other.y)


@dataclass(frozen=True)
class Sight:
    """Everything on the pitch at the end of a step. Players: side's letter and number."""

    cycle: int
    ball: Moving
    players: dict[tuple[str, int], Moving]

    @property
    def mirrored(self) -> "Sight":
        """The same on the other side of the long axis."""
        players = {who: place.mirrored for who, place in self.players.items()}
        return Sight(self.cycle, self.ball.mirrored, players)


@dataclass
class Course:
    """A trial so far: what was seen and heard, and what follows from it."""

    sight: Sight
    mode: str
    words: list[str] = field(default_factory=list)
    """The referee's since the last sight."""
    cycles: int = 0
    owner: tuple[str, int] | None = None
    """Who alone could kick the ball in this step and the one before."""
    kicker: str = ""
    """The side that seems to have kicked the ball in this step."""
    started: bool = False
    """Play is on, or has been."""
    _near: tuple[str, int] | None = None

    def see(self, sight: Sight, words: list[str]) -> None:
        """One step more."""
        before, self.sight = self.sight, sight
        self.words = words
        self.cycles += 1
        self.kicker = _kicker(before, sight)
        for word in words:
            if not word.startswith("goal_") or word.startswith("goal_kick"):
                self.mode = word
        self.started = self.started or self.mode == "play_on"
        near = _only_one_near(sight)
        self.owner = near if near and self._near and near[0] == self._near[0] else None
        self._near = near


def _only_one_near(sight: Sight) -> tuple[str, int] | None:
    """The nearest of those who can kick, if all of them are of one side."""
    near = sorted(
        (place.distance(sight.ball), who)
        for who, place in sight.players.items()
        if place.distance(sight.ball) <= KICKABLE
    )
    return near[0][1] if near and len({who[0] for _, who in near}) == 1 else None


def _kicker(before: Sight, now: Sight) -> str:
    """A ball that is not where and how it would roll was kicked by the nearest player."""
    vx, vy = before.ball.vx * BALL_DECAY, before.ball.vy * BALL_DECAY
    change = math.hypot(now.ball.vx - vx, now.ball.vy - vy)
    if change <= 0.05 + 0.1 * math.hypot(vx, vy) or not before.players:
        return ""
    reach, who = min((place.distance(before.ball), who) for who, place in before.players.items())
    return who[0] if reach <= REACH else ""


def is_shot(ball: Moving, side: str) -> bool:
    """Whether the ball, left alone, would cross the opponents' goal line near the goal."""
    towards = 1.0 if side == "l" else -1.0
    way = GOAL_LINE - towards * ball.x
    speed = towards * ball.vx
    if way <= 0 or speed <= 0 or way > speed / (1 - BALL_DECAY):
        return False
    return abs(ball.y + ball.vy / speed * way) <= POST + NARROW_MISS


@dataclass(frozen=True)
class Condition:
    """Something that decides a trial when it happens; `text` is what the file says."""

    text: str
    holds: Callable[[Course], bool]
    at_the_end: bool = False


def _goal(side: str) -> Callable[[Course], bool]:
    pattern = re.compile(rf"goal_{side}_\d+")
    return lambda course: any(pattern.fullmatch(word) for word in course.words)


def _shot(side: str) -> Callable[[Course], bool]:
    return lambda course: course.kicker == side and is_shot(course.sight.ball, side)


def _stopped(course: Course) -> bool:
    return course.started and course.mode != "play_on"


def read_condition(take: Take, take_if: TakeIf, areas: Mapping[str, Area]) -> Condition:
    """The condition that comes next in a line; a ValueError says what is wrong."""
    kind = take("what decides")
    if kind == "time":
        return Condition("time", lambda _: False, at_the_end=True)
    if kind == "stopped":
        return Condition("stopped", _stopped)
    if kind == "mode":
        mode = take("the play mode")
        return Condition(f"mode {mode}", lambda course: mode in course.words)
    if kind in ("goal", "shot"):
        side = _side(take)
        makes = _goal if kind == "goal" else _shot
        return Condition(f"{kind} {side}", makes(SIDES[side]))
    if kind == "ball":
        return _read_ball_condition(take, take_if, areas)
    raise ValueError(
        f"'{kind}' decides nothing; write goal, shot, ball in, ball out_of, ball with, mode, "
        "stopped or time"
    )


def _side(take: Take) -> str:
    side = take("the side")
    if side not in SIDES:
        raise ValueError(f"a side is left or right, not '{side}'")
    return side


def _read_ball_condition(take: Take, take_if: TakeIf, areas: Mapping[str, Area]) -> Condition:
    how = take("in, out_of or with")
    if how == "with":
        side = _side(take)
        letter = SIDES[side]
        for number in range(1, 12):
            if take_if(str(number)):
                who = (letter, number)
                return Condition(f"ball with {side} {number}", lambda course: course.owner == who)
        return Condition(
            f"ball with {side}", lambda course: bool(course.owner and course.owner[0] == letter)
        )
    if how not in ("in", "out_of"):
        raise ValueError(f"a ball is in, out_of or with, not '{how}'")
    name = take("the area")
    if name not in areas:
        raise ValueError(f"there is no area '{name}'; there are {', '.join(areas)}")
    area, inside = areas[name], how == "in"

    def holds(course: Course) -> bool:
        return area.holds(course.sight.ball.x, course.sight.ball.y) == inside

    return Condition(f"ball {how} {name}", holds)


@dataclass(frozen=True)
class Verdict:
    """How a trial has ended."""

    success: bool
    why: str
    cycles: int


def judge(
    course: Course, success: list[Condition], failure: list[Condition], lasts: int
) -> Verdict | None:
    """The first condition that holds, failures before successes; None: not decided yet."""
    for conditions, wins in ((failure, False), (success, True)):
        for condition in conditions:
            if condition.holds(course):
                return Verdict(wins, condition.text, course.cycles)
    if course.cycles < lasts:
        return None
    return Verdict(any(condition.at_the_end for condition in success), "time", course.cycles)
