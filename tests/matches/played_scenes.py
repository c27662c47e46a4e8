"""Plays every scene that comes with us a few times, with the real programs.

``python3 -m unittest tests.matches.played_scenes``; the programs are in the folder PROGRAMS. The
trials are the same in every run. The bounds are wide: they are to notice a scene that is broken,
not a team that plays a little better.
"""

import os
import unittest
from pathlib import Path

from matches.places import ROOT
from matches.ports import take_port
from matches.processes import Nursery
from matches.scenefile import read_scene
from matches.settings import TeamSettings
from matches.training import Training, TrainingSettings
from tests.matches.support import CONF, MatchCase

TRIALS = 8
LEAST_AND_MOST = {  # successes
    "breakaway": (3, 8),
    "corner": (1, 8),
    "free-kick": (3, 8),
    "goal-kick": (2, 8),
    "kick-in": (3, 8),
    "kick-off": (2, 8),
    "shot-from-the-edge": (2, 8),
}


class Played(MatchCase):
    """Scenes in synchronous mode."""

    def play_scene(self, name: str, trials: int = TRIALS, real_time: bool = False) -> Training:
        programs = Path(os.environ.get("PROGRAMS", ROOT / "build")).resolve()
        teams = (TeamSettings("Left", CONF), TeamSettings("Right", CONF))
        settings = TrainingSettings(*teams, trials, seed=1, real_time=real_time)
        port, lock = take_port(None, 2)
        scene = read_scene(ROOT / "scenes" / f"{name}.scene")
        with lock, Nursery() as nursery:
            training = Training(scene, settings, programs, self.folder, port, nursery)
            training.start()
            training.play(lambda _: None, lambda: False)
            training.finish()
        self.assertEqual(len(training.verdicts), trials)
        self.assertNotIn("has not said (done)", (self.folder / "server.out").read_text())
        return training

    def test_every_scene(self) -> None:
        for path in sorted((ROOT / "scenes").glob("*.scene")):
            with self.subTest(path.stem):
                training = self.play_scene(path.stem)
                log = training.log.read_bytes()
                self.assertEqual(log.count(b'"(chapter ' + path.stem.encode()), TRIALS)
                wins = sum(verdict.success for verdict in training.verdicts)
                least, most = LEAST_AND_MOST.get(path.stem, (0, TRIALS))
                self.assertTrue(least <= wins <= most, f"{wins} of {TRIALS} succeeded")

    def test_the_same_seed_gives_the_same_log(self) -> None:
        first = self.play_scene("cross").log.read_bytes()
        self.assertEqual(self.play_scene("cross").log.read_bytes(), first)

    def test_real_time(self) -> None:
        self.play_scene("breakaway", trials=1, real_time=True)


if __name__ == "__main__":
    unittest.main()
