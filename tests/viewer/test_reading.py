"""Real logs: every version plays to its end, and what is drawn is what the log says."""

import gzip
import json
import os
import pathlib
import random
import re
import subprocess
import unittest

from made_logs import embed, match, packed, show
from page import LOGS, page_file
from selenium.webdriver.common.keys import Keys
from support import PageTest

PLAYER = re.compile(r"\(\(([lr]) (\d+)\) \S+ (\S+) (\S+) (\S+) \S+ \S+ (\S+) (\S+)")
BALL = re.compile(r"\(\(b\) (\S+) (\S+) (\S+) (\S+)\)")
REAL_LOGS = [LOGS / f"standard_v{version}.rcg.gz" for version in (4, 5, 6)]


def shows_of(log: pathlib.Path) -> list[str]:
    """The show lines of a log."""
    with gzip.open(log, "rt", encoding="latin-1") as file:
        return [line for line in file if line.startswith("(show")]


class Reading(PageTest):
    """What comes out of a log."""

    def test_positions_are_those_of_the_log(self) -> None:
        chance = random.Random(1)
        for log in REAL_LOGS:
            lines = shows_of(log)
            self.page.visit()
            self.page.open(log)
            state = self.page.state()
            self.assertEqual((state["shows"], state["badRecords"]), (len(lines), 0))
            for index in chance.sample(range(len(lines)), 12):
                self.page.js("viewer.seek(arguments[0])", index)
                self.page.frames()
                drawn = self.page.js("return viewer.positions()")
                self.assertEqual(drawn["show"], index)
                x, y, *_ = map(float, BALL.search(lines[index]).groups())  # type: ignore[union-attr]
                self.assertAlmostEqual(drawn["ball"]["x"], x, 4)
                self.assertAlmostEqual(drawn["ball"]["y"], y, 4)
                players = PLAYER.findall(lines[index])
                self.assertEqual(len(players), 22)
                for (side, unum, bits, x, y, body, neck), seen in zip(
                    players, drawn["players"], strict=True
                ):
                    self.assertEqual((seen["side"], seen["unum"]), (side, int(unum)))
                    self.assertEqual(seen["onField"], int(bits, 16) & 1 == 1)
                    for name, value in (
                        ("x", float(x)),
                        ("y", float(y)),
                        ("body", float(body)),
                        ("head", float(body) + float(neck)),
                    ):
                        self.assertAlmostEqual(
                            seen[name], value, 3, f"{log.name} show {index} {side} {unum} {name}"
                        )

    def test_every_log_plays_to_its_end(self) -> None:
        for log in REAL_LOGS:
            self.page.visit()
            self.page.open(log)
            for _ in range(4):
                self.page.key("]")
            self.page.key(" ")
            self.assertTrue(self.page.state()["playing"])
            self.page.wait(lambda: not self.page.state()["playing"], f"the end of {log.name}")
            state = self.page.state()
            self.assertEqual((state["show"], state["mode"]), (state["shows"] - 1, "time_over"))
            self.assertEqual(self.page.message(), "")

    def test_pixels_show_ball_and_players(self) -> None:
        self.page.open(
            self.file(
                "a.rcg", match("(playmode 1 play_on)", "(team 1 A B 0 0)", show(1, (12.5, -20)))
            )
        )
        for option in ("numbers", "stamina", "marks"):
            self.page.js("viewer.option(arguments[0])", option)
        self.page.frames()
        self.assertEqual(self.page.pixel(12.5, -20), (255, 255, 255))
        for unum in range(1, 12):
            self.assertEqual(self.page.pixel(-4 * unum, 3 * unum - 18), (0xFF, 0xD2, 0x3F))
            self.assertEqual(self.page.pixel(4 * unum, 3 * unum - 18), (0x1F, 0x4F, 0xD1))
        red, green, blue = self.page.pixel(-30, 30)
        self.assertGreater(green, max(red, blue), "grass is green")

    def test_interpolation_lies_between_two_steps(self) -> None:
        self.page.open(
            self.file(
                "a.rcg",
                match(
                    "(playmode 1 play_on)",
                    "(team 1 A B 0 0)",
                    show(1, (0, 0)),
                    show(2, (2, 1)),
                    show(3, (40, 1)),
                ),
            )
        )
        self.page.js("viewer.seek(0.5)")
        self.page.frames()
        ball = self.page.js("return viewer.positions().ball")
        self.assertEqual((ball["x"], ball["y"]), (1, 0.5))
        self.page.key("i")
        self.assertEqual(self.page.js("return viewer.positions().ball.x"), 0)
        self.page.key("i")
        self.page.js("viewer.seek(1.5)")
        self.page.frames()
        self.assertEqual(
            self.page.js("return viewer.positions().ball.x"), 2, "a ball that was put there jumps"
        )

    def test_board_and_marks_tell_the_match(self) -> None:
        self.page.open(REAL_LOGS[1])
        state = self.page.state()
        goals = [mark for mark in state["marks"] if mark["kind"] == "goal"]
        self.assertEqual(
            [(mark["side"], mark["text"]) for mark in goals], [(1, "Goal for Beta, 0 : 1")]
        )
        self.page.js("viewer.seek(arguments[0])", goals[0]["show"] + 6)
        self.page.frames()
        self.assertEqual(self.page.find("score").text, "0 : 1")
        self.assertEqual(self.page.find("mode").text, "Goal, Beta")
        self.assertEqual(self.page.find("cycle").text, "Cycle 371 + 6")
        self.assertEqual(self.page.find("clock").text, "0:37")
        self.assertIn("Second half", [mark["text"] for mark in state["marks"]])
        self.assertIn("Offside, Alpha", [mark["text"] for mark in state["marks"]])

    def test_chapters_are_marks(self) -> None:
        self.page.open(
            self.file(
                "a.rcg",
                match(
                    "(playmode 1 play_on)",
                    "(team 1 A B 0 0)",
                    show(1),
                    '(msg 2 1 "(chapter Two against one)")',
                    show(2),
                ),
            )
        )
        chapters = [mark for mark in self.page.state()["marks"] if mark["kind"] == "chapter"]
        self.assertEqual(
            [(mark["show"], mark["text"]) for mark in chapters], [(1, "Two against one")]
        )

    def test_figures_are_those_of_match_stats(self) -> None:
        self.page.open(REAL_LOGS[1])
        self.page.key(Keys.END)
        rows = {row["label"]: (row["left"], row["right"]) for row in self.page.state()["figures"]}
        self.assertEqual(rows["Possession"], ("43.0 %", "57.0 %"))
        self.assertEqual(rows["Domination"], ("46.8 %", "53.2 %"))
        self.assertEqual(rows["Passes arrived"], ("0 of 3", "0 of 2"))
        self.assertEqual(rows["Shots (on target)"], ("0 (0)", "1 (1)"))
        self.assertEqual(rows["Stamina spent"], ("135796", "134767"))

    @unittest.skipUnless(
        os.environ.get("MATCH_STATS"), "MATCH_STATS does not name the program match-stats"
    )
    def test_figures_agree_with_match_stats(self) -> None:
        for log in REAL_LOGS:
            done = subprocess.run(
                [os.environ["MATCH_STATS"], "--json", str(log)], capture_output=True, check=True
            )
            told = json.loads(done.stdout)[0]
            self.page.visit()
            self.page.open(log)
            self.page.key(Keys.END)
            rows = {row["label"]: row for row in self.page.state()["figures"]}
            for side in ("left", "right"):
                one = told[side]
                expected = {
                    "Possession": f"{one['possession']:.1f} %",
                    "Domination": f"{one['domination']:.1f} %",
                    "Goals": str(one["goals"]),
                    "Interceptions": str(one["interceptions"]),
                    "Shots (on target)": f"{one['shots']} ({one['shots_on_target']})",
                    "Passes arrived": f"{one['passes_arrived']} of {one['passes']}",
                    "Tackles": str(one["tackles"]),
                    "Dribbles": str(one["dribbles"]),
                    "Penalty area entries": str(one["area_entries"]),
                    "Catches": str(one["catches"]),
                    "Set pieces": str(one["set_pieces"]),
                    "Offsides": str(one["offsides"]),
                    "Fouls": str(one["fouls"]),
                    "Distance run": f"{one['metres'] / 1000:.2f} km",
                    "Stamina spent": str(one["stamina_spent"]),
                }
                self.assertEqual(
                    {label: row[side] for label, row in rows.items()}, expected, log.name
                )

    def test_embedded_match_opens_with_its_parts(self) -> None:
        log = gzip.decompress(REAL_LOGS[1].read_bytes())
        commands = gzip.decompress((LOGS / "standard_v5.rcl.gz").read_bytes())
        source = {
            "name": "20261121-A-vs-B.rcg",
            "rcg": packed(log),
            "rcl": packed(commands),
            "plans": [
                {"name": "right/beliefs10.log", "text": packed(b"272 10 9 self (1,2) 0 0\n")}
            ],
        }
        text = embed(page_file().read_text(encoding="utf-8"), source)
        self.page.visit(self.file("replay.html", text).as_uri(), "#t=272&p=r10")
        self.page.wait(
            lambda: self.page.js("return viewer.timings().loadedMs >= 0"), "the embedded log"
        )
        self.page.wait(
            lambda: self.page.js("return viewer.beliefs(20).belief !== null"), "the beliefs"
        )
        self.page.frames()
        state = self.page.state()
        self.assertEqual((state["time"], state["chosen"], state["shows"]), (272, [20], 479))
        self.page.click("tab-player")
        card = self.page.find("card").text
        self.assertIn("Beta 10", card)
        expected = re.findall(rb"^272,0\tRecv Beta_10: (.*)$", commands, re.M)
        self.assertTrue(expected)
        for command in expected:
            self.assertIn(command.decode(), card)


if __name__ == "__main__":
    unittest.main()
