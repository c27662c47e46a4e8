"""Scenes: what a file may say, how trials vary, and when they are decided."""

import random
import unittest
from pathlib import Path

from matches.conditions import Course, Moving, Sight, judge
from matches.places import ROOT
from matches.scene import interval
from matches.scenefile import Scene, read_scene
from matches.trainer import read_sight
from matches.training import mark_chapters
from matches.words import Failure
from tests.matches.support import MatchCase

SMALL = "ball 0 0\nleft 9 -1 0\nright 2 5±1 0 facing 180\nsuccess goal left\n"


class SceneCase(MatchCase):
    """Scenes in a folder of its own."""

    def read(self, text: str) -> Scene:
        path = self.folder / "my scene.scene"
        path.write_text(text, encoding="utf-8")
        return read_scene(path)


class Files(SceneCase):
    """read_scene."""

    def test_every_item(self) -> None:
        scene = self.read(
            "about  What it shows   # not this\n\nmode free_kick_r\nlasts 60\nmirror\n"
            "area there 10 5 -10 -5\nball 1+-0.5 -2 speed .5 0\n".replace(" .5", " 0.5")
            + "left 9 20±2 8 facing -90±10 speed 0 1\nsuccess ball in there\nfailure time\n"
        )
        self.assertEqual((scene.name, scene.about), ("my-scene", "What it shows"))
        self.assertEqual((scene.mode, scene.lasts, scene.mirror), ("free_kick_r", 60, True))
        self.assertTrue(scene.areas["there"].holds(-9, 4))
        chance = random.Random(1)
        seen = [scene.draw(chance) for _ in range(300)]
        mirrored = sum(trial.mirrored for trial in seen)
        self.assertTrue(100 < mirrored < 200)
        for trial in seen:
            flip = -1 if trial.mirrored else 1
            nine = trial.players["l", 9]
            self.assertTrue(0.5 <= trial.ball.x <= 1.5 and trial.ball.y == -2 * flip)
            self.assertTrue(18 <= nine.x <= 22 and nine.y == 8 * flip and nine.vy == flip)
            self.assertTrue(-100 <= flip * (nine.facing or 0) <= -80)
        self.assertLess(min(trial.ball.x for trial in seen), 0.6)
        self.assertGreater(max(trial.ball.x for trial in seen), 1.4)

    def test_the_same_chance_gives_the_same_trial(self) -> None:
        scene = self.read(SMALL)
        self.assertEqual(scene.draw(random.Random("1 7")), scene.draw(random.Random("1 7")))
        self.assertNotEqual(scene.draw(random.Random("1 7")), scene.draw(random.Random("1 8")))

    def test_errors_name_file_line_and_what_to_write(self) -> None:
        for line, words in (
            ("keeper 1 0 0", "there is no item 'keeper'; items are about, mode"),
            ("ball 1 1", "there is one ball"),
            ("left 9 1 1", "the place of player 9 was told before"),
            ("left 12 1 1", "the player's number cannot be '12'; write a number from 1 to 11"),
            ("left 3 1", "y is missing at the end"),
            ("left 3 one 1", "x cannot be 'one'; write a number such as 10, -2.5 or 10±2"),
            ("left 3 56±2 0", "x is beyond 57.5 m"),
            ("left 3 1 1 looking 3", "what does 'looking 3' mean there?"),
            ("mode corner_kick", "there is no play mode 'corner_kick'; choose corner_kick_l"),
            ("lasts 0", "the number of cycles cannot be '0'"),
            ("area pitch 0 0 1 1", "'pitch' is known already"),
            ("success goal up", "a side is left or right, not 'up'"),
            ("failure ball in the_box", "there is no area 'the_box'; there are pitch"),
            ("failure ball near left", "a ball is in, out_of or with, not 'near'"),
            ("failure rain", "'rain' decides nothing; write goal, shot"),
        ):
            with self.subTest(line), self.assertRaises(Failure) as caught:
                self.read(SMALL + line + "\n")
            self.assertIn(f"my scene.scene:5: {words}", caught.exception.what)
            self.assertEqual(caught.exception.status, 2)

    def test_what_must_be_there(self) -> None:
        for without in ("ball", "left", "success"):
            lines = [line for line in SMALL.splitlines() if not line.startswith(without)]
            with self.subTest(without), self.assertRaises(Failure) as caught:
                self.read("\n".join(lines))
            self.assertIn("my scene.scene:3: the file ends without", caught.exception.what)
        with self.assertRaises(Failure):
            read_scene(self.folder / "none.scene")

    def test_all_that_come_with_us_can_be_read(self) -> None:
        scenes = [read_scene(path) for path in sorted((ROOT / "scenes").glob("*.scene"))]
        self.assertGreaterEqual(len(scenes), 12)
        for scene in scenes:
            self.assertTrue(scene.about, scene.name)


def sight(x: float, y: float, vx: float = 0.0, **players: float) -> Sight:
    """Ball, and players by side, number and x, on the ball's y: l9=3."""
    places = {(who[0], int(who[1:])): Moving(at, y) for who, at in players.items()}
    return Sight(1, Moving(x, y, vx), places)


class Decisions(SceneCase):
    """Conditions, on films of a few steps."""

    def decide(self, conditions: str, *steps: tuple[Sight, str], mode: str = "play_on") -> str:
        head = "lasts 4\nball 0 0\nleft 9 0 0\narea end 40 -10 60 10\n"
        scene = self.read(head + conditions)
        course = Course(steps[0][0], mode, started=mode == "play_on")
        for seen, words in steps:
            course.see(seen, words.split())
            verdict = judge(course, scene.success, scene.failure, scene.lasts)
            if verdict is not None:
                return f"{verdict.success} {verdict.why} {verdict.cycles}"
        return "open"

    def test_goals_words_and_the_end_of_time(self) -> None:
        still = (sight(0, 0), "")
        self.assertEqual(
            self.decide("success goal left", still, (sight(53, 0), "goal_l_3")), "True goal left 2"
        )
        goal_against = (sight(-53, 0), "goal_r_1")
        self.assertEqual(self.decide("success goal left", still, goal_against), "open")
        self.assertEqual(self.decide("success goal left", *[still] * 4), "False time 4")
        self.assertEqual(self.decide("success time", *[still] * 4), "True time 4")
        out = (sight(0, 34), "kick_in_l")
        self.assertEqual(self.decide("success time\nfailure stopped", out), "False stopped 1")
        self.assertEqual(self.decide("success mode kick_in_l", out), "True mode kick_in_l 1")
        set_piece = "success time\nfailure stopped"
        self.assertEqual(self.decide(set_piece, still, mode="corner_kick_l"), "open")
        taken = [still, (sight(1, 0), "play_on"), (sight(0, 35), "kick_in_r")]
        self.assertEqual(self.decide(set_piece, *taken, mode="corner_kick_l"), "False stopped 3")

    def test_areas(self) -> None:
        steps = [(sight(39, 0), ""), (sight(41, 0), ""), (sight(41, 11), "")]
        self.assertEqual(self.decide("success ball in end", *steps), "True ball in end 2")
        self.assertEqual(
            self.decide("success ball out_of end", *steps[1:]), "True ball out_of end 2"
        )

    def test_a_ball_is_with_a_side_after_two_cycles_alone(self) -> None:
        duel = (sight(0, 0, l9=0.5, r2=1.0), "")
        alone = (sight(0, 0, l9=1.5, r2=1.0), "")
        self.assertEqual(self.decide("success ball with right", duel, duel, duel), "open")
        self.assertEqual(
            self.decide("success ball with right", duel, alone, alone), "True ball with right 3"
        )
        self.assertEqual(self.decide("success ball with right 3", alone, alone), "open")
        self.assertEqual(
            self.decide("success ball with right 2", alone, alone), "True ball with right 2 2"
        )

    def test_a_shot_is_a_kick_towards_the_goal_that_reaches_it(self) -> None:
        before = sight(30, 0, l9=29.5)
        for after, answer in (
            (sight(32.5, 0, 2.35, l9=29.6), "True shot left 2"),
            (sight(31, 0, 0.9, l9=29.6), "open"),  # would stop before
            (sight(27.5, 0, -2.35, l9=29.6), "open"),  # away from the goal
            (sight(32.5, 11, 2.35, l9=29.6), "open"),  # more than 3 m beside a post
        ):
            self.assertEqual(self.decide("success shot left", (before, ""), (after, "")), answer)
        rolling = [(sight(30, 0, 2.5, l9=20), ""), (sight(32.4, 0, 2.35, l9=20), "")]
        self.assertEqual(self.decide("success shot left", *rolling), "open")


class Around(MatchCase):
    """The interval, the trainer's words, and the chapters of the log."""

    def test_wilsons_interval(self) -> None:
        for wins, trials, low, high in (
            (0, 10, 0.0, 0.278),
            (5, 10, 0.237, 0.763),
            (10, 10, 0.722, 1.0),
        ):
            found = interval(wins, trials)
            self.assertAlmostEqual(found[0], low, places=3)
            self.assertAlmostEqual(found[1], high, places=3)
        self.assertEqual(interval(0, 0), (0.0, 1.0))

    def test_what_a_trainer_sees(self) -> None:
        seen = read_sight(
            '(see_global 16 ((g r) 52.5 0) ((g l) -52.5 0) ((b) 1 2 0 -0.5) ((p "A" 1 goalie) '
            '-50 0 0 0 0 0) ((p "B.x" 2) -9.32755 5.00206 4.66001e-11 -1.05764e-11 90 0))',
            {"A": "l", "B.x": "r"},
        )
        assert seen is not None
        self.assertEqual((seen.cycle, seen.ball), (16, Moving(1, 2, 0, -0.5)))
        self.assertEqual(seen.players["l", 1], Moving(-50, 0))
        self.assertEqual(seen.players["r", 2].vx, 4.66001e-11)
        self.assertIsNone(read_sight("(ok move)", {}))

    def test_chapters_get_their_outcome(self) -> None:
        log = Path(self.folder / "scene.rcg")
        log.write_bytes(
            b'ULG5\n(msg 3 1 "(chapter cross 1)")\n(msg 9 1 "\xff chapter cross 1")\n'
            b'(msg 9 1 "(chapter cross 2)")\n'
        )
        scene = read_scene(ROOT / "scenes" / "cross.scene")
        course = Course(sight(0, 0), "play_on", started=True)
        course.see(sight(0, 0), ["kick_in_l"])
        verdict = judge(course, scene.success, scene.failure, scene.lasts)
        assert verdict is not None
        mark_chapters(log, [verdict])
        self.assertEqual(
            log.read_bytes(),
            b'ULG5\n(msg 3 1 "(chapter cross 1: failure, stopped)")\n'
            b'(msg 9 1 "\xff chapter cross 1")\n(msg 9 1 "(chapter cross 2)")\n',
        )


if __name__ == "__main__":
    unittest.main()
