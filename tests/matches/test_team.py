"""The ways in which a team's match ends, among stubs."""

import re
import signal
import unittest

from tests.matches.support import MatchCase, free_port


class Ends(MatchCase):
    """./team as a process: its words, its status, and the statistics."""

    def team(self, port: int, stop_at: str = "", **variables: str) -> tuple[int, str]:
        """Status and words of a team that plays on the port."""
        process = self.start_command("team", "localhost", "Mine", "--port", str(port), **variables)
        assert process.stdout is not None
        words = ""
        for line in process.stdout:
            words += line
            if stop_at and stop_at in line:
                process.send_signal(signal.SIGINT)
        return process.wait(), words

    def check(self, result: tuple[int, str], status: int, words: str) -> None:
        """The status, and one complaint with these words."""
        self.assertEqual(result[0], status, result[1])
        self.assertEqual(len(re.findall(words, result[1])), 1, result[1])

    def test_no_server(self) -> None:
        self.check(self.team(free_port()), 3, "no server answers at localhost, port")

    def test_no_host(self) -> None:
        process = self.start_command("team", "no-such-host.invalid", "Mine")
        words = process.communicate()[0]
        self.check((process.returncode, words), 3, "there is no host 'no-such-host.invalid'")

    def test_refused(self) -> None:
        port = free_port()
        self.start_server(port, STUB_SERVER="full")
        self.check(self.team(port), 4, "refused the team")

    def test_full_time_with_statistics(self) -> None:
        port = free_port()
        self.start_server(port)
        result = self.team(port)
        self.check(result, 0, "team: full time")
        self.assertRegex(result[1], r"dash +1100 +1100")
        self.assertIn("after 200 cycles", result[1])

    def test_server_falls_silent(self) -> None:
        port = free_port()
        self.start_server(port, half_cycles=1000, STUB_SERVER="silent=30")
        result = self.team(port)
        self.check(result, 5, "fell silent in cycle (29|30)")
        self.assertRegex(result[1], r"dash +1100 +1100")

    def test_players_killed(self) -> None:
        port = free_port()
        self.start_server(port)
        result = self.team(port, STUB_AGENT="Mine:4:20:-11")
        self.check(result, 6, "player 4 was killed by signal 11")
        self.assertIn("the stub has had enough", result[1])
        self.assertRegex(result[1], r"dash +1000 +1000")

    def test_stopped_by_the_user(self) -> None:
        port = free_port()
        self.start_server(port, half_cycles=5000)
        self.check(self.team(port, stop_at="Ctrl-C"), 130, "stopped by the user")


if __name__ == "__main__":
    unittest.main()
