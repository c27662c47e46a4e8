"""A live match through a stand-in for the bridge."""

import json

from bridge import Bridge
from made_logs import match, show
from page import LOGS
from support import PageTest

START = match("(playmode 1 play_on)", "(team 1 Alpha Beta 0 0)").rstrip("\n")


class LiveMatch(PageTest):
    """The page connected to the stand-in."""

    def setUp(self) -> None:
        super().setUp()
        self.bridge = Bridge()
        self.addCleanup(lambda: self.bridge.close())

    def begin(self, steps: int = 0) -> None:
        """Opens the page with a match that has so many steps already."""
        self.bridge.send(
            "status",
            json.dumps({"server": "connected", "host": "example", "port": 6000, "version": 5}),
        )
        self.bridge.send("log", START)
        for time in range(1, steps + 1):
            self.bridge.send("log", show(time))
        self.page.visit(self.bridge.address)
        self.page.wait(lambda: self.page.state()["shows"] == steps, "the history")

    def wait_shown(self, show_index: int) -> None:
        self.page.wait(lambda: self.page.state()["position"] == show_index, f"show {show_index}")

    def test_steps_are_shown_as_they_come(self) -> None:
        self.begin()
        self.page.wait(lambda: "example:6000" in self.page.find("live-status").text, "the status")
        for time in range(1, 5):
            self.bridge.send("log", show(time, (time, 2)))
            self.wait_shown(time - 1)
            self.page.frames()
            self.assertEqual(self.page.js("return viewer.positions().ball.x"), time)
        self.bridge.send("log", "(playmode 5 goal_l)\n(team 5 Alpha Beta 1 0)\n" + show(5))
        self.wait_shown(4)
        self.page.frames()
        self.assertEqual(self.page.find("score").text, "1 : 0")

    def test_who_comes_late_goes_back_and_catches_up(self) -> None:
        self.begin(50)
        self.wait_shown(49)
        self.assertTrue(self.page.state()["atLive"])
        self.page.js("viewer.seek(10)")
        self.bridge.send("log", show(51))
        self.page.wait(lambda: self.page.state()["shows"] == 51, "the next step")
        state = self.page.state()
        self.assertEqual((state["atLive"], state["show"] < 20), (False, True))
        self.page.click("go-live")
        self.wait_shown(50)
        self.page.js("viewer.seek(20)")
        self.page.key("l")
        self.wait_shown(50)

    def test_a_new_match_forgets_the_old_one(self) -> None:
        self.begin(5)
        self.page.key("n")
        self.bridge.send("reset", "")
        self.bridge.send("log", START.replace("Alpha", "Gamma"))
        self.bridge.send("log", show(1, (7, 7)))
        self.page.wait(lambda: self.page.state()["shows"] == 1, "the new match")
        self.wait_shown(0)
        self.page.frames()
        self.assertEqual(self.page.find("name-left").text, "Gamma")
        self.assertEqual(self.page.state()["chosen"], [0])

    def test_a_bridge_that_ends_and_comes_back(self) -> None:
        self.begin(5)
        self.bridge.close()
        self.page.wait(
            lambda: "trying again" in self.page.find("live-status").text, "the loss to be told"
        )
        self.page.key("n")
        self.assertEqual(self.page.state()["shows"], 5, "what was seen stays")
        history = self.bridge.history
        self.bridge = Bridge(self.bridge.port)
        self.bridge.history = [*history, ("log", show(6))]
        self.page.wait(lambda: self.page.state()["shows"] == 6, "the history again", 15)
        self.bridge.send("log", show(7))
        self.wait_shown(6)
        self.page.errors()

    def test_commands(self) -> None:
        self.begin(3)
        self.wait_shown(2)
        self.page.click("live-kick-off")
        self.page.click("live-drop-ball")
        self.assertTrue(self.page.find("hint").is_displayed())
        self.page.press(10, -5)
        self.page.click("live-free-right")
        self.page.press(-20, 8)
        self.page.click("live-move")
        self.page.drag((-28, 3), (-20, 10))
        self.page.wait(lambda: len(self.bridge.commands) >= 4, "the commands")
        self.page.frames(10)
        kick_off, drop, free_kick, *moves = self.bridge.commands
        self.assertEqual(kick_off, {"command": "kick_off"})
        self.assertEqual(
            (drop["command"], free_kick["command"], free_kick["side"]),
            ("drop_ball", "free_kick", "r"),
        )
        for command, x, y in ((drop, 10, -5), (free_kick, -20, 8), (moves[-1], -20, 10)):
            self.assertAlmostEqual(float(str(command["x"])), x, delta=0.3)
            self.assertAlmostEqual(float(str(command["y"])), y, delta=0.3)
        self.assertEqual(
            {(move["command"], move["side"], move["unum"]) for move in moves},
            {("move_player", "l", 7)},
        )

    def test_a_refusal_is_told_as_text(self) -> None:
        self.begin(1)
        self.bridge.refusal = "the match <b>runs</b> already"
        self.page.click("live-kick-off")
        self.page.wait(self.page.message, "the refusal")
        self.assertEqual(self.page.message(), "the match <b>runs</b> already")
        self.page.click("message-close")
        self.assertEqual(self.page.message(), "")
        self.page.errors()

    def test_what_the_server_says_is_told(self) -> None:
        self.begin(1)
        status: dict[str, object] = {"server": "waiting", "host": "x", "port": 6000, "version": 5}
        self.bridge.send("status", json.dumps(status | {"text": "the server is silent"}))
        self.page.wait(
            lambda: "the server is silent" in self.page.find("live-status").text, "why it waits"
        )
        answer = "the server answers: (error no_such_player)"
        self.bridge.send("status", json.dumps(status | {"server": "connected", "text": answer}))
        self.page.wait(self.page.message, "the answer to a command")
        self.assertEqual(self.page.message(), answer)
        self.page.click("message-close")

    def test_who_may_only_look_on_has_no_buttons(self) -> None:
        self.bridge.source = {"live": "/events"}
        self.begin(2)
        self.wait_shown(1)
        self.assertTrue(self.page.find("live-status").is_displayed())
        self.assertFalse(self.page.find("live-referee").is_displayed())

    def test_broken_events_do_no_harm(self) -> None:
        self.begin(2)
        for kind, data in (
            ("status", "{"),
            ("log", "(show"),
            ("log", ""),
            ("log", "(show 3 ((b) x)"),
            ("other", "x"),
        ):
            self.bridge.send(kind, data)
        self.bridge.send("log", show(3))
        self.page.wait(lambda: self.page.state()["shows"] == 3, "the step after them")

    def test_a_replay_has_no_live_controls(self) -> None:
        self.page.open(LOGS / "standard_v4.rcg.gz")
        for name in ("live", "go-live", "live-kick-off"):
            self.assertFalse(self.page.find(name).is_displayed(), name)
