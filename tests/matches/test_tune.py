"""A search for settings as a user starts it, with matches that a small program makes up."""

import json
import re
import shutil
import signal
import time
import unittest

from matches.experiments.tune import read_ranges
from matches.places import ROOT
from matches.words import Failure
from tests.matches.support import STUBS, MatchCase


@unittest.skipUnless(shutil.which("parallel"), "GNU parallel is not here")
class Tune(MatchCase):
    """./tune as a process. To the made-up matches passAreaX is the strength of a team."""

    def setUp(self) -> None:
        super().setUp()
        text = re.sub(r"(?m)^passAreaX.*", "passAreaX: 0.0", (ROOT / "player.conf").read_text())
        (self.folder / "base.conf").write_text(text)
        (self.folder / "one.ranges").write_text("passAreaX: -20.0 to 20.0\n")

    def run_it(self, out: str, *options: str, **variables: str) -> tuple[int, str]:
        """Status and words."""
        process = self.start_command(
            "tune", "one.ranges", "--conf", "base.conf", "--trials", "3", "--pairs", "4",
            "--real-time", "--half-cycles", "30", "--difference", "1", "--jobs", "4", "--out", out,
            *options, ONE_MATCH=str(STUBS / "one-match"), **variables,
        )
        if "STUB_MATCH" in variables:
            games = self.folder / out / "games"
            while not (games / "t0002-base-0002-1").exists() and process.poll() is None:
                time.sleep(0.02)
            process.send_signal(signal.SIGTERM)
        words = process.communicate()[0]
        return process.returncode, words

    def trials(self, out: str) -> list[dict[str, float]]:
        """What was tried, and what came out."""
        found: list[dict[str, float]] = json.loads((self.folder / out / "trials.json").read_text())
        return found

    def test_an_interruption_changes_nothing(self) -> None:
        status, words = self.run_it("whole")
        self.assertEqual(status, 0, words)
        status, words = self.run_it("parts", STUB_MATCH="slow")
        self.assertEqual(status, 130, words)
        self.assertIn("stopped; go on with --resume", words)
        self.assertLess(len(self.trials("parts")), 3)
        status, words = self.run_it("parts", "--resume")
        self.assertEqual(status, 0, words)
        self.assertEqual(self.trials("parts"), self.trials("whole"))
        played = (self.folder / "parts/finished").read_text().split()
        self.assertEqual(len(played), len(set(played)), "some matches were played twice")
        best = (self.folder / "parts/best.conf").read_text()
        self.assertEqual(best, (self.folder / "whole/best.conf").read_text())
        self.assertGreater(float(re.findall(r"(?m)^passAreaX: (\S+)", best)[-1]), 0)
        # The confirmation is on seeds that no trial has seen.
        confirmed = next((self.folder / "parts").glob("confirm-*/plan.json"))
        self.assertEqual(json.loads(confirmed.read_text())["seed"], 5)

    def test_ranges_that_cannot_be_read_are_named(self) -> None:
        path = self.folder / "wrong.ranges"
        for line, words in (
            ("passAreaX: 1 to", "is no range"), ("passAreaX: 2 to 1", "2 is not below 1"),
            ("# nothing", "names no keyword"),
        ):
            path.write_text(f"\n{line}\n")
            with self.assertRaisesRegex(Failure, words):
                read_ranges(path)


if __name__ == "__main__":
    unittest.main()
