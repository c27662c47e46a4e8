#!/usr/bin/python3
"""Measures the viewer's page in a headless browser with a long log.

usage: bench/viewer_bench.py [LOG.rcg.gz]

Makes a log of 20 MB by repeating a real one, opens it, and prints a line for each figure that the
page is held to. Needs chromium, chromedriver and Selenium; VIEWER names the page when it is not in
build-release.
"""

import gzip
import pathlib
import statistics
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tests" / "viewer"))

from bridge import Bridge  # noqa: E402
from made_logs import embed, long_log, match, packed, show  # noqa: E402
from page import LOGS, Page, page_file  # noqa: E402

SIZE = 20_000_000
SEEKS = 40
LIVE_STEPS = 60

# Stamps the moment of the choice, and the first frame after it that shows a step.
WATCH_FIRST_FRAME = """
window.firstFrame = null;
document.getElementById("files").addEventListener("change", () => {
    const start = performance.now();
    const look = () => viewer.state().shows > 0 && viewer.timings().firstFrameMs >= 0
        ? window.firstFrame = performance.now() - start : requestAnimationFrame(look);
    look();
}, {capture: true});
"""

# A click on the time line until the frame that shows the cycle is drawn.
CLICK_AND_SEE = """
const [part, done] = arguments;
const slider = document.getElementById("slider");
const show = Math.round(part * Number(slider.max));
const start = performance.now();
slider.value = String(show);
slider.dispatchEvent(new Event("input"));
const look = () => viewer.state().drawn === show
    ? done(performance.now() - start) : requestAnimationFrame(look);
requestAnimationFrame(look);
"""

# The wall clock at which each step of a live match stood where it was sent to.
STAMP_STEPS = """
window.stamps = new Map();
const look = () => {
    const {position, shows} = viewer.state();
    if (shows > 0 && position === shows - 1 && !stamps.has(shows)) {
        stamps.set(shows, performance.timeOrigin + performance.now());
    }
    requestAnimationFrame(look);
};
look();
"""


def renderer_memory(page: Page) -> float:
    """Megabytes that the page's process has for itself, after a collection."""
    page.driver.execute_cdp_cmd("HeapProfiler.collectGarbage", {})
    service = page.driver.service.process.pid
    parents = {}
    for entry in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            parents[int(entry.parent.name)] = int(entry.read_text().rsplit(")", 1)[1].split()[1])
        except (OSError, IndexError):
            continue

    def below(process: int) -> bool:
        while process in parents:
            if process == service:
                return True
            process = parents[process]
        return False

    most = 0.0
    for process in filter(below, list(parents)):
        try:
            if b"--type=renderer" not in pathlib.Path(f"/proc/{process}/cmdline").read_bytes():
                continue
            lines = pathlib.Path(f"/proc/{process}/smaps_rollup").read_text().splitlines()
        except OSError:
            continue
        most = max(
            most, sum(int(line.split()[1]) for line in lines if line.startswith("Private")) / 1024
        )
    return most


def report(name: str, value: float, unit: str, limit: float) -> None:
    """Prints a figure beside what it is held to."""
    print(f"{name:44} {value:8.1f} {unit:3} (held to {limit:g})")


def measure_open(page: Page, log: pathlib.Path) -> None:
    """First frame, whole log, seeking, frames and memory."""
    page.visit()
    empty = renderer_memory(page)
    page.js(WATCH_FIRST_FRAME)
    page.open(log)
    report(f"first frame, {log.suffix}", page.js("return window.firstFrame"), "ms", 1500)
    print(f"{'  the whole log read':44} {page.js('return viewer.timings().loadedMs'):8.1f} ms")
    seeks = [
        page.driver.execute_async_script(CLICK_AND_SEE, (7 * index % SEEKS + 0.5) / SEEKS)
        for index in range(SEEKS)
    ]
    report("a cycle after a click, median", statistics.median(seeks), "ms", 50)
    report("a cycle after a click, longest", max(seeks), "ms", 50)
    page.js("viewer.seek(100); document.getElementById('play').click()")
    page.frames(200)
    frames = page.js("return viewer.timings().frames.slice(-200)")
    report("script of a frame, median", statistics.median(frames), "ms", 4)
    report("script of a frame, 95 of 100", statistics.quantiles(frames, n=20)[-1], "ms", 8)
    memory = renderer_memory(page)
    report("memory of the page", memory, "MB", 200)
    print(f"{'  of it with no match':44} {empty:8.1f} MB")


def measure_live(page: Page) -> None:
    """From the moment the bridge sends a step until the frame that shows it is drawn."""
    bridge = Bridge()
    bridge.send("log", match("(playmode 1 play_on)", "(team 1 Alpha Beta 0 0)").rstrip())
    page.visit(bridge.address)
    page.wait(lambda: page.js("return viewer.state().version === 5"), "the header")
    page.js(STAMP_STEPS)
    sent = []
    for step in range(1, LIVE_STEPS + 1):
        sent.append(time.time() * 1000)
        bridge.send("log", show(step, (step / 10, 0)))
        time.sleep(0.1)
    page.wait(lambda: page.js("return stamps.size") == LIVE_STEPS, "the steps")
    seen = page.js("return [...stamps.values()]")
    bridge.close()
    late = sorted(end - start for start, end in zip(sent, seen, strict=True))
    report("a live step until it is seen, median", statistics.median(late), "ms", 50)
    report("a live step until it is seen, 95 of 100", late[int(0.95 * len(late))], "ms", 50)


def main() -> None:
    """Makes the logs and measures both, then the page with the log in it."""
    source = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else LOGS / "standard_v5.rcg.gz"
    data = long_log(source, SIZE)
    with tempfile.TemporaryDirectory() as folder, Page() as page:
        plain = pathlib.Path(folder) / "long.rcg"
        plain.write_bytes(data)
        zipped = pathlib.Path(folder) / "long.rcg.gz"
        zipped.write_bytes(gzip.compress(data))
        print(f"a log of {len(data) / 1e6:.1f} MB, {data.count(b'(show ')} steps")
        measure_open(page, plain)
        measure_open(page, zipped)
        text = embed(
            page_file().read_text(encoding="utf-8"), {"name": "long.rcg", "rcg": packed(data)}
        )
        embedded = pathlib.Path(folder) / "replay.html"
        embedded.write_text(text, encoding="utf-8")
        report("the page with the log in it", len(text) / 1e6, "MB", 5)
        page.visit(embedded.as_uri())
        page.wait(lambda: page.js("return viewer.timings().loadedMs >= 0"), "the embedded log", 30)
        report(
            "first frame of it, after its script began",
            page.js("return viewer.timings().firstFrameMs"),
            "ms",
            1500,
        )
        measure_live(page)


if __name__ == "__main__":
    main()
