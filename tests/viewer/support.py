"""What the viewer's tests share: one browser for all of them, and files made for a test."""

import atexit
import pathlib
import tempfile
import unittest

from page import Page

_pages: list[Page] = []


def shared_page() -> Page:
    """The browser of this run; it starts when the first test needs it."""
    if not _pages:
        _pages.append(Page())
        atexit.register(_pages[0].close)
    return _pages[0]


class PageTest(unittest.TestCase):
    """A test with the page open and empty; it fails when the page's script reports an error."""

    page: Page
    folder: pathlib.Path

    def setUp(self) -> None:
        self.page = shared_page()
        self.page.resize(960, 640)
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        self.page.errors()
        self.page.visit()

    def tearDown(self) -> None:
        self.assertEqual(self.page.errors(), [])

    def file(self, name: str, content: str | bytes) -> pathlib.Path:
        """A file with this content."""
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path
