"""A stand-in for the live bridge: serves the page, an event stream, and takes commands."""

import json
import queue
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

from made_logs import embed
from page import page_file

TOKEN = "secret-of-this-run"


class Bridge:
    """Serves on a free port of the loopback until it is closed."""

    def __init__(self, port: int = 0) -> None:
        bridge = self

        class Handler(BaseHTTPRequestHandler):
            """Answers for the bridge."""

            protocol_version = "HTTP/1.1"

            def log_message(self, *_: object) -> None:
                """Says nothing."""

            def do_GET(self) -> None:
                """The page or the event stream."""
                if self.path == "/events":
                    bridge.stream(self)
                elif self.path == "/":
                    page = embed(page_file().read_text(encoding="utf-8"), bridge.source)
                    self.answer(200, page, "text/html")
                else:
                    self.answer(404, "nothing here")

            def do_POST(self) -> None:
                """A command."""
                body = self.rfile.read(int(self.headers["Content-Length"]))
                if self.headers["X-Token"] != TOKEN:
                    self.answer(403, "wrong token")
                    return
                bridge.commands.append(json.loads(body))
                if bridge.refusal:
                    self.answer(409, bridge.refusal)
                else:
                    self.send_response(204)
                    self.send_header("Connection", "close")
                    self.end_headers()

            def answer(self, status: int, text: str, kind: str = "text/plain") -> None:
                """A whole answer."""
                data = text.encode()
                self.send_response(status)
                self.send_header("Content-Type", f"{kind}; charset=utf-8")
                self.send_header("Content-Length", str(len(data)))
                # A connection that is kept would go on talking to a bridge that was closed.
                self.send_header("Connection", "close")
                self.end_headers()
                self.wfile.write(data)

        self.commands: list[dict[str, object]] = []
        self.refusal = ""
        self.source = {"live": "/events", "commands": "/command", "token": TOKEN}
        self.history: list[tuple[str, str]] = []
        self.listeners: list[queue.Queue[tuple[str, str] | None]] = []
        self.lock = threading.Lock()
        self.server = ThreadingHTTPServer(("127.0.0.1", port), Handler)
        self.server.daemon_threads = True
        self.port = self.server.server_address[1]
        threading.Thread(
            target=self.server.serve_forever, kwargs={"poll_interval": 0.02}, daemon=True
        ).start()

    @property
    def address(self) -> str:
        """Where the page is."""
        return f"http://127.0.0.1:{self.port}/"

    def stream(self, handler: BaseHTTPRequestHandler) -> None:
        """Sends the history and then every event as it comes."""
        handler.send_response(200)
        handler.send_header("Content-Type", "text/event-stream")
        handler.end_headers()
        events: queue.Queue[tuple[str, str] | None] = queue.Queue()
        with self.lock:
            for event in self.history:
                events.put(event)
            self.listeners.append(events)
        while (item := events.get()) is not None:
            kind, data = item
            lines = "".join(f"data: {line}\n" for line in data.split("\n"))
            try:
                handler.wfile.write(f"event: {kind}\n{lines}\n".encode())
                handler.wfile.flush()
            except OSError:
                break
        handler.close_connection = True

    def send(self, kind: str, data: str) -> None:
        """An event for everybody, now and later."""
        with self.lock:
            if kind == "reset":
                self.history.clear()
            self.history.append((kind, data))
            for listener in self.listeners:
                listener.put((kind, data))

    def close(self) -> None:
        """Ends all streams and stops listening."""
        with self.lock:
            for listener in self.listeners:
                listener.put(None)
        self.server.shutdown()
        self.server.server_close()
