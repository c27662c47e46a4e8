"""The parts of the package that need no match."""

import io
import os
import random
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

from rich.console import Console

from matches import play
from matches.build import first_errors
from matches.locks import Lock, lock_keep_folder
from matches.monitor import Sight, read_show
from matches.places import ROOT
from matches.players import KINDS
from matches.ports import take_port
from matches.processes import Nursery, Usage, end_all, wait_until
from matches.progress import Progress, in_words, time_left
from matches.repeat import difference, fingerprint
from matches.results import MatchOutcome, PlayerResult, ServerView, TeamResult
from matches.settings import check_conf
from matches.table import report
from matches.words import Failure
from tests.matches.support import MatchCase, environment, processes_with

FIGURES = (
    "shots shots_on_target passes passes_arrived interceptions area_entries set_pieces offsides"
).split()
SHOW = (
    b"(show 271 (pm 3) (tm Alpha null 2 1) ((b) -14.7 -20.9 0.7 0.1) "
    b"((l 1) 0 0x9 -46.1 -3.1 0 0 58.1 -88 (v h 90) (fp 0 0) (s 8000 1 1 129100) (c 0 65)) "
    b"((r 11) 1 0 -26.9 -22.1 0.3 0.05 10.5 -4.6 (v h 90) (s 6087.08 0.95 1 128113))\0"
)


class Options(unittest.TestCase):
    """What is said of wrong options."""

    def test_wrong_options_end_with_2(self) -> None:
        cases = {
            "--port 70000": "--port takes a whole number from 1 to 65534, not '70000'",
            "--left a.b": "--left takes 1 to 15 letters, digits, - or _, not 'a.b'",
            "--left-conf nowhere": "--left-conf: cannot read 'nowhere': No such file",
            "--right-agent /etc/passwd": "--right-agent: '/etc/passwd' cannot be executed",
            "--half-cycles": "--half-cycles needs a value",
            "--halves 3": "there is no option --halves",
            "--right Left": "the two teams need different names",
            "--repeat-check": "--repeat-check needs --fast",
            "--speed 2": "--speed needs --fast",
            "--fast --lossy 1": "--fast and --lossy do not go together",
        }
        for line, words in cases.items():
            with self.assertRaises(Failure) as caught:
                play.main(line.split())
            self.assertIn(words, caught.exception.what)
            self.assertEqual(caught.exception.status, 2)


class Repeat(MatchCase):
    """Whether two matches were the same."""

    def test_the_first_line_that_differs_is_named(self) -> None:
        one, other = self.folder / "one", self.folder / "other"
        for folder in (one, other):
            folder.mkdir()
            (folder / "match.rcg").write_bytes(b"ULG5\n(show 1)\n")
            (folder / "match.rcl").write_bytes(b"0,1\t(referee play_on)\n")
        self.assertIsNone(difference(one, other))
        self.assertEqual(fingerprint(one), fingerprint(other))
        (other / "match.rcl").write_bytes(b"0,1\t(referee play_on)\n0,2\t(referee goal_l_1)\n")
        self.assertEqual(difference(one, other), "line 2 of match.rcl")
        (other / "match.rcg").write_bytes(b"ULG5\n(show 2)\n")
        self.assertEqual(difference(one, other), "line 2 of match.rcg")


class Locks(MatchCase):
    """Folders and ports that are in use."""

    def test_a_folder_in_use_is_left_alone_until_its_owner_is_gone(self) -> None:
        folder = self.folder / "kept"
        holder = subprocess.Popen(
            [
                sys.executable,
                "-c",
                "import pathlib, sys, time; from matches.locks import Lock\n"
                "lock = Lock(pathlib.Path(sys.argv[1])); lock.take()\n"
                "print(flush=True); time.sleep(60)",
                str(folder),
            ],
            env={**os.environ, "PYTHONPATH": str(ROOT)},
            stdout=subprocess.PIPE,
        )
        assert holder.stdout is not None
        holder.stdout.readline()
        with holder:
            with self.assertRaises(Failure) as caught:
                lock_keep_folder(folder, self.folder / "match")
            self.assertIn("another match writes into", caught.exception.what)
            first, lock = lock_keep_folder(None, folder)
            self.assertEqual(first.name, "kept-2")
            lock.release()
            holder.kill()
        lock_keep_folder(folder, folder)[1].release()

    def test_a_folder_that_cannot_be_written(self) -> None:
        (self.folder / "file").touch()
        with self.assertRaises(Failure) as caught:
            Lock(self.folder / "file" / "below")
        self.assertIn("cannot write into", caught.exception.what)

    def test_ports(self) -> None:
        first, first_lock = take_port(None, 2)
        second, second_lock = take_port(None, 2)
        self.assertGreaterEqual(abs(second - first), 2)
        with self.assertRaises(Failure) as caught:
            take_port(first, 1)
        self.assertIn(f"UDP port {first} is in use", caught.exception.what)
        first_lock.release()
        second_lock.release()


class Processes(MatchCase):
    """Programs that don't want to end."""

    def test_all_end_with_what_they_started(self) -> None:
        stubborn = "trap '' INT TERM; sleep 60 & echo up; while :; do sleep 60; done"
        with environment(MARK=str(self.folder)), Nursery() as nursery:
            out = self.folder / "out"
            program = nursery.start(["/bin/sh", "-c", stubborn], self.folder, out)
            self.assertTrue(wait_until(lambda: out.read_text() == "up\n", 5))
            end_all([program], signal.SIGINT, patience=0.2)
            self.assertEqual(program.status, -signal.SIGKILL)
            mortal = nursery.start(["/bin/sh", "-c", "sleep 60 & exit 7"], self.folder, out)
            self.assertTrue(wait_until(lambda: not mortal.runs(), 5))
            self.assertEqual(mortal.status, 7)
        time.sleep(0.1)
        self.assertEqual(processes_with(f"MARK={self.folder}"), [])

    def test_a_program_that_is_none(self) -> None:
        with Nursery() as nursery, self.assertRaises(Failure):
            nursery.start(["/etc/passwd"], self.folder, self.folder / "out")


class Spectator(unittest.TestCase):
    """What a monitor is sent."""

    def test_show(self) -> None:
        sight = read_show(SHOW)
        assert sight is not None
        self.assertEqual((sight.cycle, sight.mode, sight.score), (271, "play_on", (2, 1)))
        self.assertEqual(sight.teams, ("Alpha", ""))
        self.assertEqual(sight.present, {("l", 1)})

    def test_garbled_shows_are_borne(self) -> None:
        dice = random.Random(1)
        for _ in range(3000):
            text = bytearray(SHOW)
            for _ in range(dice.randrange(1, 8)):
                text[dice.randrange(len(text))] = dice.randrange(256)
            read_show(bytes(text[: dice.randrange(len(text) + 1)]))


class TimeLeft(unittest.TestCase):
    """The line of progress."""

    def test_time_left_is_about_right(self) -> None:
        """Simulates matches of a step at a time, with stoppages, and looks at a third of each."""
        dice = random.Random(2)
        for _ in range(50):
            half, share = dice.choice([300, 3000]), dice.uniform(0.0, 0.6)
            sight, guess, asked_at = Sight(mode="play_on"), 0.0, 0
            while sight.cycle < 2 * half:
                stands = dice.random() < share / (1 + share)
                steps = sight.steps + 1 + (50 if sight.cycle == half and not stands else 0)
                sight = Sight(sight.cycle + (not stands), "play_on", steps=steps)
                if not guess and sight.cycle > half * 2 // 3:
                    guess, asked_at = time_left(sight, half, 0), sight.steps
            really = (sight.steps - asked_at) * 0.1
            self.assertLess(abs(guess - really), 0.12 * really + 3)

    def test_the_line_is_cut_to_the_terminal(self) -> None:
        for width in (20, 40, 80, 200):
            out = io.StringIO()
            console = Console(file=out, force_terminal=True, width=width, color_system=None)
            with Progress(3000, console) as progress:
                teams = ("Left" + 11 * "x", "Right" + 10 * "x")
                progress.show(Sight(2500, "goal_kick_l", teams, (10, 12)))
                line = progress._line(Sight(2500, "goal_kick_l", teams, (10, 12)))
            self.assertEqual(len(console.render_lines(line)), 1)

    def test_half_time_is_called_so(self) -> None:
        teams = ("A", "B")
        for cycle, mode, words in (
            (0, "before_kick_off", "before the kick-off"),
            (300, "before_kick_off", "half time"),
            (5, "free_kick_fault_r", "free kick fault B"),
            (600, "time_over", "full time"),
        ):
            self.assertEqual(in_words(Sight(cycle, mode, teams), 300), words)


class Tables(unittest.TestCase):
    """They fit a terminal of 80 columns and 24 rows."""

    def test_width_and_order(self) -> None:
        counts = dict.fromkeys(KINDS, 12000)
        view = ServerView(counts, 6000, 6000, 0, 0, False)
        players = [
            PlayerResult(number, 0, False, Usage(123.45, 99999), counts, view)
            for number in range(1, 12)
        ]
        figures = dict.fromkeys(FIGURES, 1000) | {"possession": 100.0, "metres": 123456.7}
        left, right = (TeamResult(15 * letter, 100, players, figures) for letter in "lr")
        outcome = MatchOutcome(Path(), left, right, 6000, True, False, Usage(99999.0, 1), "")
        for shows_players in (False, True):
            out = io.StringIO()
            Console(file=out, width=80).print(report(outcome, shows_players))
            lines = out.getvalue().splitlines()
            self.assertLessEqual(max(map(len, lines)), 80)
            self.assertNotIn("…", out.getvalue())
            self.assertTrue(any(line.startswith("goals") for line in lines[-22:]))
            self.assertTrue(any("100 : 100" in line for line in lines[-22:]))


class Building(unittest.TestCase):
    """What is shown of a build that failed."""

    def test_the_first_errors_are_shown(self) -> None:
        lines = [b"[%d%%] Building\n" % i for i in range(90)]
        lines[40:40] = [b"a.cpp:3: error: no such thing\n", b"   3 | thing\n", b"     | ^~~~~\n"]
        shown = first_errors(lines)
        self.assertTrue(shown.startswith("a.cpp:3: error: no such thing\n   3 | thing\n"))
        self.assertLess(len(shown.splitlines()), 10)
        self.assertIn("cannot find it", first_errors([b"CMake: cannot find it\n"]))


@unittest.skipUnless("PROGRAMS" in os.environ, "needs check-conf")
class Settings(unittest.TestCase):
    """Settings are checked by the player's own table."""

    def test_errors_and_warnings(self) -> None:
        programs = Path(os.environ["PROGRAMS"])
        with tempfile.NamedTemporaryFile("w", suffix=".conf") as file:
            file.write('sayID: "xyz"\nteamname: "Mine"\n')
            file.flush()
            checked = check_conf(programs, Path(file.name))
            self.assertEqual((checked.values.team_name, checked.values.say_mark), ("Mine", "x"))
            self.assertIn("sayID", checked.warnings[0])
            file.write("passAreaX: 0,5\n")
            file.flush()
            with self.assertRaises(Failure) as caught:
                check_conf(programs, Path(file.name))
            self.assertIn(".conf:3: error: passAreaX: takes a number", caught.exception.what)


if __name__ == "__main__":
    unittest.main()
