"""Every control by mouse, keyboard and touch: it does what it says."""

import struct
from functools import partial

from made_logs import match, player, show, simple
from page import LOGS
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.select import Select
from support import PageTest

LOG = LOGS / "standard_v5.rcg.gz"
SWITCHES = {
    "cones": "c",
    "stamina": "r",
    "numbers": "u",
    "marks": "m",
    "trail": "t",
    "speed": "v",
    "offside": "o",
    "beliefs": "b",
    "trueSize": "x",
    "interpolate": "i",
}


class Controls(PageTest):
    """On a desk, with a real match open."""

    def setUp(self) -> None:
        super().setUp()
        self.page.open(LOG)

    def shows(self) -> int:
        """The show that is seen."""
        return int(self.page.state()["show"])

    def seek(self, show_index: int) -> None:
        self.page.js("viewer.seek(arguments[0])", show_index)
        self.page.frames()

    def test_steps_and_jumps(self) -> None:
        marks = self.page.state()["marks"]
        goal = next(mark["show"] for mark in marks if mark["kind"] == "goal")
        events = [mark["show"] for mark in marks]
        after = min(show_index for show_index in events if show_index > 100)
        before = max(show_index for show_index in events if show_index < 100)
        last = self.page.state()["shows"] - 1
        for keys, button, expected in (
            ([Keys.ARROW_RIGHT], "step-forward", 101),
            ([Keys.ARROW_LEFT], "step-back", 99),
            ([Keys.SHIFT, Keys.ARROW_RIGHT], None, 110),
            ([Keys.SHIFT, Keys.ARROW_LEFT], None, 90),
            (["e"], "event-next", after),
            ([Keys.SHIFT, "E"], "event-back", before),
            (["g"], "goal-next", goal - 40),
            ([Keys.SHIFT, "G"], "goal-back", 100),
            ([Keys.HOME], None, 0),
            ([Keys.END], None, last),
        ):
            self.seek(100)
            self.page.key(*keys)
            self.assertEqual(self.shows(), expected, keys)
            if button:
                self.seek(100)
                self.page.click(button)
                self.assertEqual(self.shows(), expected, button)
        self.seek(last)
        self.page.click("goal-back")
        self.assertEqual(self.shows(), goal - 40)

    def test_play_pause_and_speed(self) -> None:
        self.page.click("play")
        self.assertTrue(self.page.state()["playing"])
        self.assertEqual(self.page.find("play").get_attribute("aria-label"), "Pause")
        self.page.wait(lambda: self.shows() > 2, "the match to go on")
        self.page.key(" ")
        state = self.page.state()
        self.assertFalse(state["playing"])
        self.page.frames(10)
        self.assertEqual(self.shows(), state["show"])
        speeds = [option.text[:-1] for option in Select(self.page.find("speed")).options]
        self.assertEqual(speeds, ["0.25", "0.5", "1", "2", "4", "8", "16"])
        for value in (16, 0.25):
            self.page.pick("speed", f"{value:g}")
            self.page.frames()
            self.assertEqual(self.page.state()["speed"], value)
        self.page.find("pitch").click()
        self.page.key("]")
        self.assertEqual(self.page.state()["speed"], 0.5)
        self.page.key("[")
        self.assertEqual(self.page.state()["speed"], 0.25)

    def test_speed_is_kept_to(self) -> None:
        self.page.pick("speed", "4")
        self.page.js("document.getElementById('play').click()")
        passed = self.page.driver.execute_async_script("""
            const done = arguments[0];
            const [start, from] = [performance.now(), viewer.state().position];
            const passed = () => [performance.now() - start, viewer.state().position - from];
            setTimeout(() => done(passed()), 1500);""")
        self.assertAlmostEqual(passed[1] / (passed[0] / 100), 4, delta=0.6)

    def test_skipping_stoppages(self) -> None:
        goal = next(mark["show"] for mark in self.page.state()["marks"] if mark["kind"] == "goal")
        self.page.key("s")
        self.assertEqual(self.page.find("skip").get_attribute("aria-pressed"), "true")
        self.seek(goal)
        self.page.js(
            "viewer.seek(arguments[0]); document.getElementById('play').click()", goal + 19
        )
        self.page.wait(lambda: self.shows() > goal + 40, "the jump over the stoppage", 2)
        self.page.click("skip")
        self.assertFalse(self.page.state()["skipStoppages"])

    def test_what_is_shown(self) -> None:
        self.page.click("view")
        for name, key in SWITCHES.items():
            before = self.page.state()["options"][name]
            self.page.click(f"show-{name}")
            self.assertEqual(self.page.state()["options"][name], not before, name)
            self.page.key(key)
            self.assertEqual(self.page.state()["options"][name], before, key)
            self.assertEqual(self.page.find(f"show-{name}").is_selected(), before)
        self.page.find("show-cones").send_keys(Keys.ESCAPE)
        self.assertFalse(self.page.find("view-menu").is_displayed())
        for key, name in (("h", "heat"), ("k", "passes")):
            for expected in ("left", "right", "chosen", "off"):
                self.page.key(key)
                self.assertEqual(self.page.state()["options"][name], expected)
        self.page.click("tab-maps")
        for whose in ("left", "right", "chosen", "off"):
            self.page.click(f"heat-{whose}")
            self.page.click(f"passes-{whose}")
            options = self.page.state()["options"]
            self.assertEqual((options["heat"], options["passes"]), (whose, whose))

    def test_switches_change_the_picture(self) -> None:
        moved = {"l 7": player("l", 7, 0, 0, "0x3")}
        log = match(
            "(playmode 1 play_on)",
            "(team 1 A B 0 0)",
            *(show(time, (-20 + 2 * time, 25), moved) for time in range(1, 12)),
        )
        self.page.resize(1400, 900)
        self.page.open(self.file("a.rcg", log))
        self.page.js("viewer.seek(10)")
        for name in (*SWITCHES, "heat", "passes"):
            if name in ("interpolate", "beliefs", "passes", "speed"):
                continue
            self.page.frames()
            before = self.picture()
            if name == "heat":
                self.page.key("h")
            else:
                self.page.js("viewer.option(arguments[0])", name)
            self.page.frames()
            self.assertTrue(self.picture() != before, name)

    def picture(self) -> str:
        return str(self.page.js("return document.getElementById('pitch').toDataURL()"))

    def test_zoom_pan_and_follow(self) -> None:
        self.seek(50)
        self.page.click("zoom-in")
        self.assertAlmostEqual(self.page.state()["zoom"], 1.35, 3)
        self.page.click("zoom-out")
        self.assertEqual(self.page.state()["zoom"], 1)
        self.page.key("+")
        self.page.key("+")
        before = self.page.state()["centre"]
        self.page.drag((0, 14), (8, 10))
        after = self.page.state()["centre"]
        self.assertAlmostEqual(after["x"], before["x"] - 8, delta=0.6)
        self.assertAlmostEqual(after["y"], before["y"] + 4, delta=0.6)
        self.page.key("0")
        state = self.page.state()
        self.assertEqual((state["zoom"], state["centre"]), (1, {"x": 0, "y": 0}))
        self.page.key("f")
        self.page.frames()
        state, ball = self.page.state(), self.page.js("return viewer.positions().ball")
        self.assertEqual(state["follow"], "ball")
        self.assertAlmostEqual(state["centre"]["x"], ball["x"], delta=0.01)
        self.page.pick("follow", "6")
        self.page.frames()
        seven = self.page.js("return viewer.positions().players[6]")
        self.assertAlmostEqual(self.page.state()["centre"]["x"], seven["x"], delta=0.01)
        self.page.click("zoom-fit")
        self.assertEqual(self.page.state()["follow"], "none")

    def test_wheel_keeps_the_place_under_the_pointer(self) -> None:
        place = self.page.js("return viewer.screen(-30, 10)")
        self.page.driver.execute_cdp_cmd(
            "Input.dispatchMouseEvent", {"type": "mouseWheel", "deltaX": 0, "deltaY": -400, **place}
        )
        self.page.wait(lambda: self.page.state()["zoom"] > 1.5, "the wheel's zoom")
        moved = self.page.js("return viewer.screen(-30, 10)")
        self.assertAlmostEqual(moved["x"], place["x"], delta=1)
        self.assertAlmostEqual(moved["y"], place["y"], delta=1)

    def test_choosing_players(self) -> None:
        self.seek(50)
        players = self.page.js("return viewer.positions().players")
        self.page.press(players[0]["x"], players[0]["y"])
        self.assertEqual(self.page.state()["chosen"], [0])
        self.assertIn("Alpha 1", self.page.find("card").text)
        self.page.press(players[11]["x"], players[11]["y"], shift=True)
        self.assertEqual(self.page.state()["chosen"], [0, 11])
        self.page.key(Keys.SHIFT, "F")
        self.assertEqual(self.page.state()["follow"], 11)
        self.page.key("0")
        self.page.press(40, 30)
        self.assertEqual(self.page.state()["chosen"], [])
        self.page.key("n")
        self.page.key("n")
        self.page.key(Keys.SHIFT, "N")
        self.assertEqual(self.page.state()["chosen"], [0])
        self.page.key(Keys.ESCAPE)
        self.assertEqual(self.page.state()["chosen"], [])
        self.page.driver.find_elements(By.CSS_SELECTOR, "#line-up button")[15].click()
        self.page.frames()
        self.assertEqual(self.page.state()["chosen"], [15])

    def test_time_line_events_and_plot(self) -> None:
        goal = next(mark["show"] for mark in self.page.state()["marks"] if mark["kind"] == "goal")
        button = self.page.driver.find_element(By.CSS_SELECTOR, "#marks .goal")
        self.assertEqual(button.get_attribute("title"), "Goal for Beta, 0 : 1, cycle 371")
        button.click()
        self.page.frames()
        self.assertEqual(self.shows(), goal)
        slider = self.page.find("slider")
        self.assertIn("Cycle 371, Goal, Beta", str(slider.get_attribute("aria-valuetext")))
        box = slider.rect
        self.page.driver.execute_cdp_cmd(
            "Input.dispatchMouseEvent",
            {"type": "mouseMoved", "x": box["x"] + box["width"] / 2, "y": box["y"] + 10},
        )
        self.page.wait(lambda: "ycle" in self.page.find("tip").text, "the tip")
        slider.click()
        self.page.frames()
        self.assertAlmostEqual(self.shows(), 239, delta=3)
        self.page.click("plot")
        self.assertAlmostEqual(self.shows(), 220, delta=40)
        self.page.click("tab-events")
        self.page.find("events").find_element(By.XPATH, ".//button[contains(., 'Offside')]").click()
        self.page.frames()
        self.assertEqual(self.page.find("mode").text, "Offside, Alpha")

    def test_tabs_and_help(self) -> None:
        self.page.click("tab-match")
        for name in ("player", "maps", "events", "match"):
            self.page.driver.switch_to.active_element.send_keys(Keys.ARROW_RIGHT)
            self.assertTrue(self.page.find(f"pane-{name}").is_displayed(), name)
        self.page.find("pitch").click()
        self.page.key("?")
        self.assertIn("Play or pause", self.page.find("key-list").text)
        self.page.driver.switch_to.active_element.send_keys(Keys.ESCAPE)
        self.page.click("help")
        self.assertTrue(self.page.find("keys").is_displayed())

    def test_theme(self) -> None:
        before = self.page.pixel(-30, 30)
        self.page.key("d")
        self.assertLess(sum(self.page.pixel(-30, 30)), sum(before))
        self.page.click("theme")
        self.assertEqual(self.page.pixel(-30, 30), before)

    def test_picture_is_saved(self) -> None:
        self.seek(300)
        self.page.click("picture")
        path = self.page.downloads / "Alpha-Beta-cycle-272.png"
        self.page.wait(path.exists, "the picture")
        data = path.read_bytes()
        width, height = struct.unpack(">II", data[16:24])
        canvas = self.page.find("pitch").rect
        self.assertEqual(
            (data[:4], width, height),
            (b"\x89PNG", round(canvas["width"]), round(canvas["height"]) + 44),
        )

    def test_address_keeps_the_moment(self) -> None:
        self.seek(408)
        self.page.key("n")
        self.page.key("+")
        self.page.wait(lambda: "z=1.35" in self.page.driver.current_url, "the address")
        fragment = "#" + self.page.driver.current_url.split("#")[1]
        self.assertIn("t=371.9&p=l1", fragment)
        self.page.visit(fragment=fragment)
        self.page.open(LOG)
        state = self.page.state()
        self.assertEqual((state["show"], state["chosen"]), (408, [0]))
        self.assertAlmostEqual(state["zoom"], 1.35, 2)
        self.page.js("location.hash = '#t=100&f=ball&z=3'")
        self.page.frames(4)
        state = self.page.state()
        self.assertEqual((state["time"], state["follow"], state["zoom"]), (100, "ball", 3))

    def test_everything_has_a_name(self) -> None:
        unnamed = self.page.js("""
            const all = "button, select, input:not([hidden]), canvas:not([aria-hidden])";
            const named = (e) =>
                e.getAttribute("aria-label") || e.textContent.trim() || e.closest("label");
            return [...document.querySelectorAll(all)].filter((e) => !named(e))
                .map((e) => e.id || e.outerHTML);""")
        self.assertEqual(unnamed, [])


class Touch(PageTest):
    """On other screens."""

    def test_a_phone_held_upright(self) -> None:
        self.page.resize(360, 740, 2, touch=True)
        self.page.open(LOG)
        self.assertLessEqual(self.page.js("return document.documentElement.scrollWidth"), 360)
        pitch = self.page.find("pitch").rect
        self.assertAlmostEqual(pitch["width"], 360, delta=1)
        self.assertLess(pitch["y"] + pitch["height"], 500)
        for name in ("play", "step-back", "goal-next", "speed", "view", "help"):
            box = self.page.js(
                "const b = document.getElementById(arguments[0]).getBoundingClientRect();"
                "return [b.left, b.right, b.height]",
                name,
            )
            self.assertTrue(box[0] >= 0 and box[1] <= 360 and box[2] >= 32, (name, box))

        def pinch() -> None:
            x, y = pitch["width"] / 2, pitch["y"] + pitch["height"] / 2
            self.page.touch("touchStart", (x - 30, y), (x + 30, y))
            for distance in range(30, 91, 10):
                self.page.touch("touchMove", (x - distance, y), (x + distance, y))
            self.page.touch("touchEnd")

        pinch()
        self.page.wait(lambda: self.page.state()["zoom"] > 2, "the pinch's zoom")
        self.page.click("zoom-fit")
        seven = self.page.js(
            "const p = viewer.positions().players[6]; return viewer.screen(p.x, p.y)"
        )
        self.page.touch("touchStart", (seven["x"], seven["y"]))
        self.page.touch("touchEnd")
        self.page.wait(lambda: self.page.state()["chosen"] == [6], "the touched player")

    def fits(self, density: float) -> bool:
        """Whether the canvas has a pixel for each of the screen's."""
        return bool(
            self.page.js(
                "const c = document.getElementById('pitch');"
                "return Math.abs(c.width - c.getBoundingClientRect().width * arguments[0]) < 1.5",
                density,
            )
        )

    def test_the_window_may_change(self) -> None:
        self.page.open(self.file("a.rcg", simple(20)))
        for width, height, density in ((1600, 900, 1), (700, 500, 2), (390, 844, 3), (844, 390, 3)):
            self.page.resize(width, height, density)
            self.page.wait(partial(self.fits, density), f"the canvas at {width}x{height}")
            self.page.frames()
            corners = [
                self.page.js("return viewer.screen(arguments[0], arguments[1])", *corner)
                for corner in ((-52.5, -34), (52.5, 34))
            ]
            box = self.page.js(
                "const b = document.getElementById('pitch').getBoundingClientRect();"
                "return [b.left, b.top, b.right, b.bottom]"
            )
            self.assertTrue(box[0] < corners[0]["x"] < corners[1]["x"] < box[2])
            self.assertTrue(box[1] < corners[0]["y"] < corners[1]["y"] < box[3])
            ratio = (corners[1]["x"] - corners[0]["x"]) / (corners[1]["y"] - corners[0]["y"])
            self.assertAlmostEqual(ratio, 105 / 68, 3)
