"""The check of the includes, on small trees of its own."""

from __future__ import annotations

import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "scripts"))

import check_includes  # noqa: E402


class CheckIncludes(unittest.TestCase):
    """Writes a tree and asks what is wrong with it."""

    def faults(self, table: str, files: dict[str, str]) -> list[str]:
        """What the check says about a tree of these files."""
        with tempfile.TemporaryDirectory() as name:
            root = Path(name)
            for path, text in {"scripts/floors.txt": table, "src/low/A.h": "", **files}.items():
                (root / path).parent.mkdir(parents=True, exist_ok=True)
                (root / path).write_text(text, encoding="utf-8")
            return check_includes.check(root)

    def test_an_include_that_points_up_is_named_with_its_line(self) -> None:
        files = {
            "src/low/sub/B.cpp": '#include <vector>\n\n  #  include "high/C.h" // so near\n',
            "src/high/C.h": '#include "low/A.h"\n#include "high/C.h"\n',
            "tests/t.cpp": '#include "high/C.h"\n#include "tests/t.cpp"\n',
        }
        table = "low: # nothing\nhigh: low\ntests: *\n"
        self.assertEqual(
            self.faults(table, files),
            ['src/low/sub/B.cpp:3: "high/C.h" points up: low may include nothing'],
        )

    def test_a_folder_may_skip_floors_only_where_the_table_says_so(self) -> None:
        table = "low:\nmiddle: low\nhigh: middle\n"
        faults = self.faults(table, {"src/high/C.cpp": '#include "low/A.h"\n'})
        self.assertEqual(len(faults), 1)
        self.assertIn("src/high/C.cpp:1", faults[0])

    def test_includes_start_at_a_root_and_folders_have_a_row(self) -> None:
        files = {
            "src/low/B.cpp": '#include "A.h"\n#include "src/low/A.h"\n',
            "unknown/C.cpp": "",
            "docs/readme.md": '#include "high/C.h"',
        }
        faults = self.faults("low:\n", files)
        self.assertEqual([fault.partition(" ")[0] for fault in faults],
                         ["src/low/B.cpp:1:", "src/low/B.cpp:2:", "unknown:"])

    def test_the_table_itself_points_down(self) -> None:
        for table in ("low: high\nhigh:\n", "low:\nlow:\n", "low\n"):
            with self.assertRaises(check_includes.TableError):
                self.faults(table, {})

    def test_this_tree(self) -> None:
        self.assertEqual(check_includes.check(ROOT), [])


if __name__ == "__main__":
    unittest.main()
