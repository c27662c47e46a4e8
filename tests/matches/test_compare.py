"""Comparisons as a user starts them, with matches that a small program makes up."""

import csv
import os
import re
import shutil
import signal
import subprocess
import time
import unittest

from matches.experiments.entrants import Entrant, difference_of, entries_of, find_entrant
from matches.places import ROOT
from matches.words import Failure
from tests.matches.support import STUBS, MatchCase, processes_with

CONF = ROOT / "player.conf"


@unittest.skipUnless(shutil.which("parallel"), "GNU parallel is not here")
class Compare(MatchCase):
    """./compare as a process."""

    def setUp(self) -> None:
        super().setUp()
        self.conf("strong", 14)
        self.conf("base", 0)

    def conf(self, name: str, strength: float) -> None:
        """Settings that the made-up matches understand as strength."""
        text = re.sub(r"(?m)^passAreaX.*", f"passAreaX: {strength}", CONF.read_text())
        (self.folder / f"{name}.conf").write_text(text)

    def start(self, *options: str, **variables: str) -> subprocess.Popen[str]:
        """Starts it, by default with the two teams."""
        stub = str(STUBS / "one-match")
        teams = () if "--out" in options else ("strong.conf", "base.conf", "--out", "run")
        usual = ("--real-time", "--half-cycles", "30") if teams else ()
        return self.start_command("compare", *teams, *usual, *options, ONE_MATCH=stub, **variables)

    def run_it(self, *options: str, **variables: str) -> tuple[int, str]:
        """Status and words."""
        process = self.start(*options, **variables)
        words = process.communicate()[0]
        return process.returncode, words

    def finished(self, run: str = "run") -> list[str]:
        """The matches in the order in which they ended."""
        return (self.folder / run / "finished").read_text().split()

    def results(self, run: str = "run") -> str:
        """The table of the matches, which is to be the same however they were played."""
        return (self.folder / run / "results.csv").read_text()

    def test_jobs_and_interruptions_change_nothing(self) -> None:
        status, words = self.run_it("--jobs", "1")
        self.assertEqual(status, 0, words)
        self.assertIn("verdict                     strong is better than base", words)
        wanted = self.results()
        shutil.move(self.folder / "run", self.folder / "first")

        process = self.start("--jobs", "1", STUB_MATCH="slow")
        while not (self.folder / "run/jobs.log").exists():
            time.sleep(0.02)
        process.send_signal(signal.SIGTERM)
        words = process.communicate()[0]
        self.assertEqual(process.returncode, 130, words)

        process = self.start("--resume", "--jobs", "5", STUB_MATCH="slow")
        while not (self.folder / "run/finished").exists() or len(self.finished()) < 8:
            time.sleep(0.05)
            self.assertIsNone(process.poll())
        process.send_signal(signal.SIGINT)
        words = process.communicate()[0]
        self.assertEqual(process.returncode, 130, words)
        self.assertIn("stopped; go on with --resume", words)
        # A match that lost its logs, as by a copy that was cut off, does not count.
        spoilt = self.finished()[0]
        (self.folder / "run/games" / spoilt / "match.rcg.gz").write_bytes(b"")
        status, words = self.run_it("--resume", "--jobs", "5")
        self.assertEqual(status, 0, words)
        self.assertEqual(self.results(), wanted)
        played = self.finished()
        played.remove(spoilt)
        self.assertEqual(len(played), len(set(played)), "some matches were played twice")
        self.assertEqual(self.run_it("--resume")[0], 0)
        self.assertEqual(len(self.finished()), len(played) + 1)

        counted = {row["match"] for row in csv.DictReader(wanted.splitlines())}
        kept = {path.parent.name for path in self.folder.glob("run/games/*/match.rcg.gz")}
        page = (self.folder / "run/report.html").read_text()
        links = set(re.findall(r'href="games/([^/]*)/match.rcg.gz"', page))
        self.assertEqual(len(links), 3)
        self.assertLessEqual(links, kept & counted)
        self.assertLess(len(kept), 14)
        self.assertIn("<p class=words>strong is better than base</p>", page)

    def test_failed_matches_are_told_and_broken_ones_tried_again(self) -> None:
        options = ("--jobs", "4", "--matches", "8")
        status, words = self.run_it(*options, STUB_MATCH="break=A-B-0003-2")
        self.assertEqual(status, 1, words)
        self.assertIn("compare: some matches could not be played", words)
        log = (self.folder / "run/jobs.log").read_text()
        self.assertRegex(log, r"\t1\t0\t./one-match A-B-0003-2")
        status, words = self.run_it("--resume", STUB_MATCH="fail=A-B-0003-2")
        self.assertEqual(status, 3, words)
        self.assertIn("FAILED: A-B-0003-2: A 3 was killed", words)
        self.assertIn("run/games/A-B-0003-2/", words)
        self.assertIn("matches that failed         1 (not counted)", words)
        self.assertIn("pairs of matches            3", words)
        rows = list(csv.DictReader(self.results().splitlines()))
        self.assertEqual([row["status"] for row in rows].count("failed"), 1)
        # More matches than at first, in the same folder.
        status, words = self.run_it("--resume", "--matches", "20")
        self.assertIn("pairs of matches            9", words)

    def test_what_goes_wrong_just_once_is_played_again(self) -> None:
        process = self.start_command(
            "compare", "strong.conf", "base.conf", "--out", "run", "--half-cycles", "20",
            "--matches", "4", STUB_AGENT="strong:3:5:7", STUB_ONCE=str(self.folder / "once"),
        )
        words = process.communicate()[0]
        self.assertEqual(process.returncode, 3, words)
        self.assertRegex(words, r"STUMBLED: A-B-000\d-\d: strong 3 ended with status 7")
        self.assertIn("matches played twice        1", words)
        (first,) = self.folder.glob("run/games/*/first-try")
        self.assertIn("had enough", (first / "left/player-3.err").read_text()
                      if first.parent.name.endswith("1")
                      else (first / "right/player-3.err").read_text())
        rows = list(csv.DictReader(self.results().splitlines()))
        self.assertEqual([row["status"] for row in rows], 4 * ["played"])

    def test_listed_commands_stand_alone(self) -> None:
        status, words = self.run_it("--list", "--matches", "4")
        commands = [line for line in words.splitlines() if "one-match" in line]
        self.assertEqual((status, len(commands)), (0, 4))
        for command in reversed(commands):
            subprocess.run(command, shell=True, check=True, cwd="/")
        status, words = self.run_it("--resume")
        self.assertEqual((status, len(self.finished())), (3, 4), words)

    def test_of_many_teams_each_meets_the_first_or_every_other(self) -> None:
        self.conf("weak", -14)
        teams = ["base.conf", "strong.conf", "weak.conf"]
        usual = ["--real-time", "--half-cycles", "30", "--matches", "100", "--jobs", "4"]
        words = self.run_it(*teams, *usual, "--all", "--out", "three")[1]
        for verdict in ("base is worse than strong", "base is better than weak",
                        "strong is better than weak"):
            self.assertIn(verdict, words)

    def test_kill_leaves_no_process(self) -> None:
        mark = f"MARK={self.folder}"
        process = self.start("--jobs", "3", STUB_MATCH="slow", MARK=str(self.folder))
        while not (self.folder / "run/finished").exists():
            time.sleep(0.05)
        process.kill()
        process.communicate()
        end = time.monotonic() + 10
        while processes_with(mark) and time.monotonic() < end:
            time.sleep(0.1)
        self.assertEqual(processes_with(mark), [])

    def test_folders_in_use_are_left_alone(self) -> None:
        self.run_it("--matches", "4")
        self.assertIn("holds an experiment already", self.run_it("--matches", "4")[1])
        words = self.run_it("--seed", "7", "--resume")[1]
        self.assertIn("holds another experiment: strong.conf base.conf", words)
        self.assertIn("no experiment", self.run_it("--out", "nowhere", "--resume")[1])


class Entrants(MatchCase):
    """What the user may mean by a team."""

    def test_labels_and_names_tell_teams_apart(self) -> None:
        long = "a-very-long-name-of-settings"
        given = [Entrant(label, None, CONF) for label in (long, long + "2", "x", "x")]
        entries = entries_of(given)
        self.assertEqual(len({entry.name for entry in entries.values()}), 4)
        self.assertEqual(len({entry.label for entry in entries.values()}), 4)
        for entry in entries.values():
            self.assertRegex(entry.name, r"^[A-Za-z0-9_-]{1,15}$")

    def test_settings_and_programs(self) -> None:
        conf = self.folder / "other.conf"
        conf.write_text(CONF.read_text() + "\ndribbleAreaX : 0.0  \n# passAreaX: 3\n")
        self.assertEqual(difference_of(conf), "dribbleAreaX=0.0")
        self.assertEqual(find_entrant("compare", str(conf)).label, "other")
        agent = self.folder / "agent"
        shutil.copy(STUBS / "agent", agent)
        self.assertEqual(find_entrant("compare", str(agent)).agent, agent.resolve())
        team = self.folder / "team"
        team.mkdir()
        with self.assertRaisesRegex(Failure, "is no packaged team"):
            find_entrant("compare", str(team))
        shutil.copy(STUBS / "agent", team / "start")
        self.assertEqual(find_entrant("compare", str(team)).folder, team.resolve())
        shutil.copy(STUBS / "agent", team / "agent")
        shutil.copy(CONF, team)
        self.assertEqual(find_entrant("compare", str(team)).agent, (team / "agent").resolve())
        with self.assertRaisesRegex(Failure, "there is no 'nothing-of-that-name'"):
            find_entrant("compare", "nothing-of-that-name")

    def test_the_launcher_finds_what_it_needs(self) -> None:
        run = subprocess.run(
            [ROOT / "compare", "--help"], capture_output=True, text=True, cwd=self.folder,
            env={**os.environ, "PATH": os.environ["PATH"]},
        )
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn("--difference GOALS", run.stdout)
        self.assertTrue(all(len(line) <= 80 for line in run.stdout.splitlines()))


if __name__ == "__main__":
    unittest.main()
