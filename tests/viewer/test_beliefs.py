"""What players believed and drew: found for the right cycle and drawn in the pitch's frame."""

from typing import Any

from made_logs import match, show
from support import PageTest

BELIEFS = """\
1 7 9 self (-10,5) 90 45
1 7 9 ball (3,-4) (1,0.5)
1 7 9 mate 9 (2,-6)
1 7 9 opponent 3 (20,1)
1 7 9 unknown 0 (12,12)
1 7 9 case pass to 9
1 7 9 surprise (1,1)
2 7 9 self (-11,5) 0 0
2 7 9 self (-12,5) 0 0
2 7 9 case second
nonsense
3 7 9 self (1e99,x) 0 0
"""
DRAWINGS = """\
1 7 8 ellipse (9,-6) 2 4
1 7 8 line (10,-5) (11.5,-5)
1 7 8 rectangle (-3,-3) 6 6
1 7 8 point (20,20)
1 7 8 text (30,10) here I go
1 7 8 spiral (1,1) 3
1 7 9 self (0,0) 0 0
2 7 8 line (0,0) (1,1)
2 7 8 line (0,0) (2,2)
"""


class Beliefs(PageTest):
    """A match of four steps with the files of a player 7."""

    def setUp(self) -> None:
        super().setUp()
        log = match("(playmode 1 play_on)", "(team 1 A B 0 0)", show(1), show(2), show(2), show(3))
        self.log = self.file("a.rcg", log)

    def open_for(self, side: str) -> None:
        """Opens the match with the files of one side, as a dropped folder gives them."""
        self.page.js(
            """
            window.done = false;
            const files = arguments[0].map(([name, text]) => {
                const file = new File([text], name.split("/").pop());
                Object.defineProperty(file, "webkitRelativePath", {value: name});
                return file;
            });
            viewer.open(files).then(() => { window.done = true; });""",
            [
                ["a.rcg", self.log.read_text()],
                [f"plans/{side}/beliefs7.log", BELIEFS],
                [f"plans/{side}/player7.log", DRAWINGS],
            ],
        )
        self.page.wait(lambda: self.page.js("return window.done"), "the files")

    def told(self, player: int) -> dict[str, Any]:
        return dict(self.page.js("return viewer.beliefs(arguments[0])", player))

    def test_both_sides_in_the_frame_of_the_pitch(self) -> None:
        for side, player, turn in (("left", 6, 1), ("right", 17, -1)):
            self.page.visit()
            self.open_for(side)
            told = self.told(player)
            half = 0 if turn == 1 else 180
            self.assertEqual(
                told["belief"],
                {
                    "self": {"x": -10 * turn, "y": 5 * turn, "body": half - 90, "head": half - 45},
                    "ball": {"x": 3 * turn, "y": -4 * turn, "vx": turn, "vy": 0.5 * turn},
                    "others": [
                        {"kind": "mate", "unum": 9, "x": 2 * turn, "y": -6 * turn},
                        {"kind": "opponent", "unum": 3, "x": 20 * turn, "y": turn},
                        {"kind": "unknown", "unum": 0, "x": 12 * turn, "y": 12 * turn},
                    ],
                    "case": "pass to 9",
                },
            )
            shapes = [
                (
                    shape["kind"],
                    shape["from"]["x"] * turn,
                    shape["from"]["y"] * turn,
                    shape["to"]["x"] * turn,
                    shape["to"]["y"] * turn,
                    shape["text"],
                )
                for shape in told["shapes"]
            ]
            self.assertEqual(
                shapes,
                [
                    ("ellipse", 9, -6, 11, -2, ""),
                    ("line", 10, -5, 11.5, -5, ""),
                    ("rectangle", -3, -3, 3, 3, ""),
                    ("point", 20, 20, 20, 20, ""),
                    ("text", 30, 10, 30, 10, "here I go"),
                ],
            )
            self.assertIsNone(self.told((player + 11) % 22)["belief"])

    def test_each_decision_of_a_stoppage_has_its_own(self) -> None:
        self.open_for("left")
        seen = []
        for index in (1, 2):
            self.page.js("viewer.seek(arguments[0])", index)
            told = self.told(6)
            seen.append(
                (
                    told["belief"]["self"]["x"],
                    told["belief"]["case"],
                    [shape["to"]["x"] for shape in told["shapes"]],
                )
            )
        self.assertEqual(seen, [(-11, "", [1]), (-12, "second", [2])])

    def test_they_are_drawn_for_chosen_players_only(self) -> None:
        self.open_for("right")
        self.page.frames()
        edge = (3, 0)
        before = self.page.pixel(*edge)
        for _ in range(18):
            self.page.key("n")
        self.assertEqual(self.page.state()["chosen"], [17])
        _, _, blue = self.page.pixel(*edge)
        self.assertGreater(blue, before[2] + 60, "the rectangle's edge")
        self.page.key("b")
        self.assertLess(self.page.pixel(*edge)[2], blue - 60)

    def test_files_dropped_alone_make_the_page_ask(self) -> None:
        self.page.open(self.log)
        self.page.choose([self.file("beliefs7.log", BELIEFS), self.file("player7.log", DRAWINGS)])
        self.page.wait(lambda: self.page.find("ask-right").is_displayed(), "the question")
        self.page.click("ask-right")
        self.page.wait(
            lambda: self.told(17)["belief"] is not None and self.told(17)["shapes"], "the beliefs"
        )

    def test_a_file_dropped_on_the_page_is_opened(self) -> None:
        self.page.js(
            """
            const transfer = new DataTransfer();
            transfer.items.add(new File([arguments[0]], "a.rcg"));
            document.getElementById("pitch").dispatchEvent(
                new DragEvent("drop", {dataTransfer: transfer, bubbles: true}));""",
            self.log.read_text(),
        )
        self.page.wait(lambda: self.page.state()["shows"] == 4, "the dropped log")
