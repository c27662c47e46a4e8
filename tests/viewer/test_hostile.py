"""Broken and hostile files: a message, the rest of the match, and never a script."""

import base64
import gzip
import random

from made_logs import embed, match, packed, player, show, simple
from page import LOGS, page_file
from support import PageTest

MARKUP = "<img src=x onerror=window.hit=1>"


class Broken(PageTest):
    """Files that are no match, or one with faults."""

    def message_for(self, name: str, content: str | bytes) -> str:
        """Opens a file that cannot be shown as it is and answers what the page says."""
        self.page.visit()
        self.page.choose([self.file(name, content)])
        self.page.wait(self.page.message, f"a message for {name}")
        return self.page.message()

    def test_files_that_are_no_game_log(self) -> None:
        cases: list[tuple[str | bytes, str]] = [
            ("", "no game log"),
            ("hello\n", "no game log"),
            (b"\x89PNG\r\n\x1a\n\x00", "no game log"),
            ("ULG3\n\x01", "version that the viewer does not read"),
            ("[\n{}", "JSON"),
            ("ULG5\n", "no step"),
            ("ULG5", "no step"),
            (gzip.compress(b""), "no game log"),
            ("ULG5\n" + "(" * 3_000_000, "line without end"),
        ]
        for content, expected in cases:
            self.assertIn(expected, self.message_for("match.rcg", content))
            self.assertEqual(self.page.state()["shows"], 0)

    def test_a_log_that_was_cut_off_is_shown_up_to_there(self) -> None:
        data = (LOGS / "standard_v4.rcg.gz").read_bytes()
        self.assertIn(
            "cut off; it is shown up to cycle",
            self.message_for("cut.rcg.gz", data[: len(data) // 2]),
        )
        self.assertGreater(self.page.state()["shows"], 40)
        plain = gzip.decompress(data)
        self.assertIn(
            "1 record that cannot be read", self.message_for("cut.rcg", plain[: len(plain) // 2])
        )

    def test_records_with_wrong_numbers_are_left_out(self) -> None:
        good = [show(time) for time in range(1, 6)]
        for wrong in (
            show(6).replace(" 0 0 0 0)", " NaN 0 0 0)", 1),
            show(6).replace("0x1", "0xZZ", 1),
            show(6, (1e30, 0)),
            show(6).replace("(show 6", "(show six"),
            show(6).replace("(show 6", "(show -6"),
            show(2),
            show(6)[:400],
            show(6, moved={"l 1": player("l", 12, 0, 0)}),
            show(6, moved={"l 1": player("x", 1, 0, 0)}),
            "(team 6 A B)",
            "(show",
            "show)",
            show(6).replace("((b)", "((c)"),
            "(playmode soon play_on)",
            "(msg 6 x)",
        ):
            text = self.message_for(
                "wrong.rcg",
                match("(playmode 1 play_on)", "(team 1 A B 0 0)", *good, wrong, show(7)),
            )
            self.assertIn("1 record that cannot be read is left out (line 10: ", text)
            state = self.page.state()
            self.assertEqual((state["shows"], state["badRecords"]), (6, 1), wrong[:60])

    def test_random_damage_never_stops_the_page(self) -> None:
        chance = random.Random(7)
        whole = gzip.decompress((LOGS / "standard_v5.rcg.gz").read_bytes())
        lines = [line for line in whole.splitlines(keepends=True) if not line.startswith(b"(msg")][
            :60
        ]
        for _ in range(15):
            data = bytearray(b"".join(lines))
            for _ in range(chance.randrange(1, 60)):
                place = chance.randrange(5, len(data))
                change = chance.randrange(3)
                if change == 0:
                    data[place] = chance.randrange(256)
                elif change == 1:
                    del data[place : place + chance.randrange(200)]
                else:
                    data[place:place] = bytes(
                        chance.randrange(256) for _ in range(chance.randrange(9))
                    )
            self.page.js(
                """
                window.done = false;
                const bytes = Uint8Array.from(atob(arguments[0]), (c) => c.charCodeAt(0));
                viewer.open([new File([bytes], "a.rcg")]).then(() => { window.done = true; });""",
                base64.b64encode(data).decode(),
            )
            self.page.wait(lambda: self.page.js("return window.done"), "the damaged log")
            finite = self.page.js("""
                for (let show = 0; show < viewer.state().shows; show += 7) { viewer.seek(show); }
                return Object.values(viewer.positions().ball).every(Number.isFinite);""")
            self.assertTrue(finite)
            self.page.frames()


class Markup(PageTest):
    """Names and texts that look like a page."""

    def assert_no_script(self) -> None:
        """Nothing of the markup became part of the page."""
        self.page.frames(4)
        self.assertIsNone(self.page.js("return window.hit ?? null"))
        self.assertEqual(
            self.page.js("return document.querySelectorAll('img, iframe, object').length"), 0
        )

    def test_names_with_markup_stay_text(self) -> None:
        log = match(
            "(playmode 1 play_on)",
            f"(team 1 {MARKUP} Beta 0 0)",
            show(1),
            show(2),
            f"(team 3 {MARKUP} Beta 1 0)",
            f'(msg 3 1 "(chapter {MARKUP})")',
            show(3),
            f'(msg 3 1 "(result 202611211650 {MARKUP})")',
        )
        self.page.open(
            self.file(f"{MARKUP}.rcg", log),
            self.file("a.rcl", f"1,0\tRecv {MARKUP}_1: (say {MARKUP})\n"),
        )
        self.page.js("viewer.seek(2)")
        self.page.key("n")
        for tab in ("match", "player", "maps", "events"):
            self.page.click(f"tab-{tab}")
            self.assert_no_script()
        self.assertEqual(self.page.find("name-left").text, MARKUP)
        self.assertIn(f"Goal for {MARKUP}", self.page.find("events").text)
        self.page.click("tab-player")
        self.assertIn(f"(say {MARKUP})", self.page.find("card").text)
        self.assertIn(MARKUP, self.message_after_opening(f"{MARKUP}.rcg", MARKUP))
        self.assert_no_script()

    def message_after_opening(self, name: str, content: str) -> str:
        self.page.choose([self.file(name, content)])
        self.page.wait(self.page.message, "a message")
        return self.page.message()

    def test_embedded_text_cannot_end_its_element(self) -> None:
        page = page_file().read_text(encoding="utf-8")
        name = "</script><script>window.hit = 1</script>"
        log = simple(3, "</script>").encode()
        self.page.visit(
            self.file("a.html", embed(page, {"name": name, "rcg": packed(log)})).as_uri()
        )
        self.page.wait(lambda: self.page.state()["shows"] == 3, "the match")
        self.assertEqual(self.page.driver.title, name)
        self.assert_no_script()

    def test_a_damaged_embedded_match_is_told(self) -> None:
        page = page_file().read_text(encoding="utf-8")
        for source in ({"rcg": "###"}, {"rcg": packed(b"no log")}, {"rcg": ""}):
            self.page.visit(self.file("a.html", embed(page, source)).as_uri())
            self.page.wait(self.page.message, "a message")

    def test_the_policy_stops_foreign_script_and_requests(self) -> None:
        blocked = self.page.driver.execute_async_script("""
            const done = arguments[0];
            const caught = [];
            document.addEventListener("securitypolicyviolation",
                (event) => caught.push(event.effectiveDirective));
            const tries = [
                () => document.body.appendChild(document.createElement("script"))
                    .append("window.hit = 1"),
                () => { document.body.innerHTML = "<b>x</b>"; },
                () => { new Image().src = "http://127.0.0.1:9/x.png"; },
                () => fetch("http://127.0.0.1:9/").catch(() => {}),
            ];
            for (const one of tries) { try { one(); } catch {} }
            setTimeout(() => done(caught), 300);""")
        self.page.errors()
        self.assertEqual(
            set(blocked) & {"img-src", "connect-src", "require-trusted-types-for"},
            {"img-src", "connect-src", "require-trusted-types-for"},
        )
        self.assert_no_script()
