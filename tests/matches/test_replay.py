"""The page of a match: what goes into it, and what is refused."""

import base64
import gzip
import json
import re
import tempfile
import unittest
from pathlib import Path

from matches.replay import EMPTY_SOURCE, make_replay
from matches.words import Failure

LOG = b"ULG5\n(team 1 A B 0 0)\n"


def unpacked(text: str) -> bytes:
    """What _packed has packed."""
    return gzip.decompress(base64.b64decode(text))


class ReplayTest(unittest.TestCase):
    """In a folder of its own, with a viewer that is nothing but its source line."""

    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.viewer = self.folder / "viewer.html"
        self.viewer.write_text(f"<html>{EMPTY_SOURCE}</html>")

    def source_of(self, log: Path) -> dict[str, object]:
        """What the page of the log holds."""
        page = self.folder / "page.html"
        make_replay(self.viewer, log, page)
        found = re.fullmatch(r"<html><script[^>]*>([^<]*)</script></html>", page.read_text())
        assert found
        source: dict[str, object] = json.loads(found[1])
        return source

    def test_holds_the_logs_plain_or_packed(self) -> None:
        plain = self.folder / "<a>.rcg"  # a name must not end the script element
        plain.write_bytes(LOG)
        (self.folder / "<a>.rcl.gz").write_bytes(gzip.compress(b"0,1\twords"))
        plans = self.folder / "right" / "agentplanlog"
        plans.mkdir(parents=True)
        (plans / "beliefs3.log").write_text("1 3 9 case pass\n")
        source = self.source_of(plain)
        self.assertEqual(unpacked(str(source["rcg"])), LOG)
        self.assertEqual(source["name"], "<a>.rcg")
        self.assertEqual(
            [(plan["name"], unpacked(plan["text"])) for plan in source["plans"]],  # type: ignore
            [("right/beliefs3.log", b"1 3 9 case pass\n")],
        )
        self.assertEqual(unpacked(str(source["rcl"])), b"0,1\twords")

        packed = self.folder / "b.rcg.gz"
        packed.write_bytes(gzip.compress(LOG))
        source = self.source_of(packed)
        self.assertEqual(unpacked(str(source["rcg"])), LOG)
        self.assertNotIn("rcl", source)

    def test_refuses_what_is_no_log_and_writes_nothing(self) -> None:
        log = self.folder / "a.rcg"
        for content in (b"", b"ULG3\nxx", b"words\n", b"\x1f\x8bcut", gzip.compress(b"words")):
            log.write_bytes(content)
            with self.assertRaises(Failure, msg=content):
                self.source_of(log)
        self.assertEqual(sorted(p.name for p in self.folder.iterdir()), ["a.rcg", "viewer.html"])


if __name__ == "__main__":
    unittest.main()
