"""The viewer's page in a headless browser, for the tests and the measurements."""

import os
import pathlib
import shutil
import tempfile
import time
from collections.abc import Callable, Iterable
from typing import Any

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.remote.webelement import WebElement
from selenium.webdriver.support.select import Select

ROOT = pathlib.Path(__file__).resolve().parents[2]
LOGS = ROOT / "tests" / "logs"
FLAGS = (
    "--headless=new",
    "--no-sandbox",
    "--disable-gpu",
    "--disable-quic",
    "--no-first-run",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-sync",
    "--hide-scrollbars",
    "--force-color-profile=srgb",
)


def page_file() -> pathlib.Path:
    """The built page; the variable VIEWER names it."""
    return pathlib.Path(os.environ.get("VIEWER", ROOT / "build-release" / "viewer.html")).resolve()


class Page:
    """One browser with the page open. Use it with `with`."""

    def __init__(self, width: int = 960, height: int = 640) -> None:
        self.profile = tempfile.mkdtemp(prefix="viewer-profile-")
        self.downloads = pathlib.Path(tempfile.mkdtemp(prefix="viewer-downloads-"))
        # Selenium has types for a part of its calls only.
        options: Any = webdriver.ChromeOptions()
        for flag in (*FLAGS, f"--user-data-dir={self.profile}"):
            options.add_argument(flag)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        options.add_experimental_option(
            "prefs", {"download.default_directory": str(self.downloads)}
        )
        self.driver: Any = webdriver.Chrome(
            options=options, service=Service(shutil.which("chromedriver") or "chromedriver")
        )
        self.driver.set_script_timeout(30)
        self.resize(width, height)

    def __enter__(self) -> "Page":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def close(self) -> None:
        """Ends the browser and removes what it wrote."""
        self.driver.quit()
        shutil.rmtree(self.profile, ignore_errors=True)
        shutil.rmtree(self.downloads, ignore_errors=True)

    def resize(self, width: int, height: int, density: float = 1, touch: bool = False) -> None:
        """Gives the window this size in CSS pixels."""
        self.driver.execute_cdp_cmd(
            "Emulation.setDeviceMetricsOverride",
            {"width": width, "height": height, "deviceScaleFactor": density, "mobile": touch},
        )
        self.driver.execute_cdp_cmd("Emulation.setTouchEmulationEnabled", {"enabled": touch})

    def visit(self, address: str | None = None, fragment: str = "") -> None:
        """Loads the page anew, without a match."""
        self.driver.get("about:blank")
        self.driver.get((address or page_file().as_uri()) + fragment)
        self.wait(lambda: self.js("return !!window.viewer"), "the page's own script")

    def js(self, script: str, *arguments: object) -> Any:
        """Runs a piece of script and answers what it returns."""
        return self.driver.execute_script(script, *arguments)

    def state(self) -> dict[str, Any]:
        """What the page says about itself."""
        return dict(self.js("return window.viewer.state()"))

    def frames(self, count: int = 2) -> None:
        """Waits until so many frames were drawn."""
        self.driver.execute_async_script(
            "let left = arguments[0]; const done = arguments[1];"
            "const next = () => left-- > 0 ? requestAnimationFrame(next) : done(); next();",
            count,
        )

    def wait(self, condition: Callable[[], Any], what: str, seconds: float = 10) -> Any:
        """Waits until the condition holds."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            value = condition()
            if value:
                return value
            time.sleep(0.02)
        raise AssertionError(f"waited {seconds} s in vain for {what}")

    def find(self, name: str) -> WebElement:
        """The element with this id."""
        element: WebElement = self.driver.find_element(By.ID, name)
        return element

    def click(self, name: str) -> None:
        """Clicks the element with this id and waits for the picture."""
        self.find(name).click()
        self.frames()

    def key(self, *keys: str) -> None:
        """Presses keys on the page, held together."""
        self.driver.find_element(By.TAG_NAME, "body").send_keys(*keys)
        self.frames()

    def pick(self, name: str, value: str) -> None:
        """Takes a value of a list and waits for the picture."""
        choice: Any = Select(self.find(name))
        choice.select_by_value(value)
        self.frames()

    def choose(self, files: Iterable[pathlib.Path]) -> None:
        """Chooses files as with the page's button."""
        self.find("files").send_keys("\n".join(str(file) for file in files))

    def open(self, *files: pathlib.Path) -> None:
        """Chooses files and waits until the game log among them was read."""
        self.choose(files)
        self.wait(lambda: self.js("return viewer.timings().loadedMs >= 0"), "the log")
        self.frames()

    def message(self) -> str:
        """The text of the message that is shown, "" when there is none."""
        element = self.find("message")
        return element.text if element.is_displayed() else ""

    def errors(self) -> list[str]:
        """Errors in the browser's console since the last call."""
        return [
            str(entry["message"])
            for entry in self.driver.get_log("browser")
            if entry["level"] == "SEVERE"
        ]

    def pixel(self, x: float, y: float) -> tuple[int, int, int]:
        """The colour of the pitch's canvas at a place in metres."""
        red, green, blue = self.js(
            """
            const place = viewer.screen(arguments[0], arguments[1]);
            const canvas = document.getElementById("pitch");
            const box = canvas.getBoundingClientRect();
            const density = canvas.width / box.width;
            const x = Math.round((place.x - box.left) * density);
            const y = Math.round((place.y - box.top) * density);
            return [...canvas.getContext("2d").getImageData(x, y, 1, 1).data.slice(0, 3)];""",
            x,
            y,
        )
        return red, green, blue

    def press(self, x: float, y: float, shift: bool = False) -> None:
        """Clicks the place of the pitch, in metres."""
        place = self.js("return viewer.screen(arguments[0], arguments[1])", x, y)
        self.mouse("mousePressed", place, shift)
        self.mouse("mouseReleased", place, shift)
        self.frames()

    def drag(self, start: tuple[float, float], end: tuple[float, float]) -> None:
        """Drags from one place of the pitch to another, in metres."""
        places = [
            self.js("return viewer.screen(arguments[0], arguments[1])", *place)
            for place in (start, end)
        ]
        self.mouse("mousePressed", places[0])
        for part in (0.3, 0.6, 1.0):
            self.mouse(
                "mouseMoved",
                {
                    axis: places[0][axis] + part * (places[1][axis] - places[0][axis])
                    for axis in ("x", "y")
                },
            )
        self.mouse("mouseReleased", places[1])
        self.frames()

    def mouse(self, kind: str, place: dict[str, float], shift: bool = False) -> None:
        """One event of the mouse at a point of the window."""
        self.driver.execute_cdp_cmd(
            "Input.dispatchMouseEvent",
            {
                "type": kind,
                "x": place["x"],
                "y": place["y"],
                "button": "left",
                "buttons": 1,
                "clickCount": 1,
                "modifiers": 8 if shift else 0,
            },
        )

    def touch(self, kind: str, *fingers: tuple[float, float]) -> None:
        """Fingers on the window, in pixels."""
        self.driver.execute_cdp_cmd(
            "Input.dispatchTouchEvent",
            {
                "type": kind,
                "touchPoints": [
                    {"x": x, "y": y, "id": index} for index, (x, y) in enumerate(fingers)
                ],
            },
        )
