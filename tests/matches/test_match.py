"""Whole matches among stubs: played, cut short, and spoilt."""

import signal
import unittest

from matches.judge import faults
from matches.match import Match
from matches.processes import wait_until
from matches.words import Failure
from tests.matches.support import STUBS, MatchCase, environment, processes_with


class PlayedMatch(MatchCase):
    """Match.run."""

    def test_full_match_with_the_teams_on_the_other_sides(self) -> None:
        with environment(STUB_SERVER="late"):
            outcome = self.play()
        self.assertEqual(faults(outcome), [])
        self.assertTrue(outcome.finished)
        self.assertEqual((outcome.left.name, outcome.left.goals), ("Left", 1))
        self.assertEqual((outcome.right.name, outcome.right.goals), ("Right", 2))
        self.assertEqual(outcome.cycles, 40)
        keeper = outcome.left.players[0]
        assert keeper.usage is not None and keeper.server is not None
        self.assertGreater(keeper.usage.peak_kilobytes, 1000)
        self.assertAlmostEqual(outcome.left.in_time or 0, 0.99)
        # 130 were sent and 118 executed; of the 12, 2 turn_necks were spare.
        self.assertEqual(keeper.lacking("dash", "turn", "turn_neck"), 10)
        rows = (outcome.folder / "players.csv").read_text().splitlines()
        self.assertEqual(len(rows), 23)

    def test_a_player_that_ends_before_the_kick_off_ends_it_with_its_words(self) -> None:
        with environment(STUB_AGENT="Right:3:0:3"), self.assertRaises(Failure) as caught:
            self.play()
        self.assertEqual(caught.exception.what, "Right 3 ended with status 3 before the kick-off")
        self.assertIn("the stub has had enough", caught.exception.advice)

    def test_players_that_are_lost_later_are_faults(self) -> None:
        with environment(STUB_AGENT="Left:7:5:-9", STUB_SERVER="drop=4"):
            outcome = self.play(half_cycles=50)
        self.assertTrue(outcome.finished)
        found = [
            "the server lost Left 4",
            "Left 7 was killed by signal 9 (SIGKILL) before the match was over",
            "the server lost Right 4",
        ]
        self.assertEqual(faults(outcome), found)

    def test_a_server_that_fails_is_blamed(self) -> None:
        with environment(STUB_SERVER="crash=5"), self.assertRaises(Failure) as caught:
            self.play()
        self.assertEqual(caught.exception.what, "the practice server ended with status 1")
        self.assertIn("the stub crashed", caught.exception.advice)

    def test_two_at_once_have_ports_and_folders_of_their_own(self) -> None:
        first = Match(self.settings(), STUBS, self.folder)
        with environment(STUB_SERVER="mute"):  # without monitors it works too
            outcome = self.play()
        self.assertTrue(outcome.finished)
        self.assertEqual(outcome.folder.name, "match-2")
        self.assertEqual(first.folder.name, "match")
        first.stop()
        self.assertEqual(first.run(None, lambda _: None).cycles, 0)


class Command(MatchCase):
    """./play as a process."""

    def test_kill_leaves_no_process(self) -> None:
        mark = f"MARK={self.folder}"
        options = ["--half-cycles", "5000", "--busy", "1"]
        play = self.start_command("play", *options, MARK=str(self.folder))
        # That is play, guard, server, loop and 22 players.
        self.assertTrue(wait_until(lambda: len(processes_with(mark)) >= 26, 60))
        play.kill()
        self.assertTrue(wait_until(lambda: not processes_with(mark), 3))

    def test_interrupt_prints_the_table_of_what_was_played(self) -> None:
        play = self.start_command("play", "--half-cycles", "5000", "--keep", "kept")
        assert play.stdout is not None
        for line in play.stdout:
            if "cycle" in line and "of 10000" in line:
                break
        play.send_signal(signal.SIGINT)
        words = play.stdout.read()
        self.assertEqual(play.wait(), 130)
        self.assertNotIn("FAULT", words)
        self.assertRegex(words, r"Left 2 : 1 Right  stopped after \d+ cycles")
        self.assertIn("commands in time", words)
        self.assertIn("commands carried out", (self.folder / "kept/table.txt").read_text())


if __name__ == "__main__":
    unittest.main()
