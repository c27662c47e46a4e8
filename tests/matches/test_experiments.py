"""Series, figures, heat maps, tuning and tournaments, without playing."""

import random
import re
import tempfile
import unittest
from pathlib import Path

from matches.experiments.figures import figure_differences, frames, heat_of
from matches.experiments.heat import COLUMNS, LENGTH, ROWS, WIDTH, cell_of, count_places
from matches.experiments.plan import Entry, Game, Plan
from matches.experiments.rows import FAILED, PLAYED, Played, Row, drop_logs, read_row
from matches.experiments.sequential import Decision
from matches.experiments.series import assess
from matches.experiments.tournament import standings
from matches.experiments.tune import read_ranges
from matches.words import Failure


def plan_of(keys: str, pairs: int = 100) -> Plan:
    """Of teams that are called as their keys."""
    entries = {key: Entry(key, key, key, "agent", "", "") for key in keys}
    return Plan(entries, [(keys[0], keys[1])], pairs, 1, 300, True, "", "")


def rows_of(plan: Plan, rng: random.Random, gain: float = 0) -> dict[str, Row]:
    """Made-up results of all matches; the first team scores `gain` more on average."""
    rows = {}
    for game in plan.games("A", "B"):
        means = {key: 0.05 + (gain / 30 if key == "A" else 0) for key in game.sides}
        goals = [sum(rng.random() < means[key] for _ in range(30)) for key in game.sides]
        figures = {
            side: {"name": key, "goals": goals[i], "shots": goals[i] + rng.randint(0, 5), "cards": 0}
            for i, (side, key) in enumerate(zip(("left", "right"), game.sides, strict=True))
        }
        heat = {what: [rng.randint(0, 3) for _ in range(COLUMNS * ROWS)]
                for what in ("ball", "left", "right")}
        played = Played("", 600, (goals[0], goals[1]), figures)
        rows[str(game)] = Row(str(game), plan.seed_of(game), PLAYED, played, heat)
    return rows


class OfSeries(unittest.TestCase):
    """Which matches count."""

    def test_the_order_in_which_matches_end_does_not_matter(self) -> None:
        rng = random.Random(4)
        for _ in range(20):
            plan = plan_of("AB")
            rows = rows_of(plan, rng, rng.choice((0, 0.8, -0.8)))
            whole = assess(plan, "A", "B", lambda game: rows.get(str(game)))
            needed = {row.game for pair in whole.pairs for row in pair.rows}
            names = list(rows)
            rng.shuffle(names)
            there: dict[str, Row] = {}
            for name in names:
                there[name] = rows[name]
                found = assess(plan, "A", "B", lambda game: there.get(str(game)))
                if found.is_settled:
                    self.assertLessEqual(needed, set(there))
                    self.assertEqual((found.decision, found.pairs), (whole.decision, whole.pairs))
                else:
                    self.assertFalse(needed <= set(there))

    def test_sums_against_plain_ones_with_failed_matches(self) -> None:
        rng = random.Random(6)
        plan = plan_of("AB", 30)
        rows = rows_of(plan, rng)
        for name in ("A-B-0003-2", "A-B-0010-1", "A-B-0010-2"):
            rows[name] = Row(name, 1, FAILED, Played("A 3 was killed"))
        found = assess(plan, "A", "B", lambda game: rows.get(str(game)), sequential=False)
        self.assertEqual(len(found.pairs), 28)
        self.assertEqual(len(found.failed), 3)
        won = ours = theirs = 0
        for pair in set(range(1, 31)) - {3, 10}:
            one = rows[f"A-B-{pair:04d}-1"].played.goals
            two = rows[f"A-B-{pair:04d}-2"].played.goals
            won += (one[0] > one[1]) + (two[1] > two[0])
            ours += one[0] + two[1]
            theirs += one[1] + two[0]
        self.assertEqual(found.tally[0], won)
        self.assertEqual(found.goals, (ours, theirs))
        self.assertAlmostEqual(found.difference.value, (ours - theirs) / 56)

    def test_figures_and_places_follow_the_team_not_the_side(self) -> None:
        plan = plan_of("AB", 40)
        rows = rows_of(plan, random.Random(7), 1.0)
        series = assess(plan, "A", "B", lambda game: rows.get(str(game)), sequential=False)
        first, second = frames(series)
        plain = [
            row.played.figures[side]["shots"]
            for row in rows.values() for side in ("left", "right")
            if row.played.figures[side]["name"] == "A"
        ]
        self.assertEqual(list(first["shots"]), plain)
        self.assertEqual(first["goals"].sum(), series.goals[0])
        self.assertEqual(second["goals"].sum(), series.goals[1])
        found = figure_differences(first, second)
        self.assertEqual(set(found), {"goals", "shots"}, "a figure that never varies tells nothing")
        self.assertTrue(found["goals"].is_real)
        heat = heat_of(series)
        one, two = (rows[f"A-B-0001-{turn}"].heat for turn in (1, 2))
        self.assertEqual(
            sum(heat["first"]),
            sum(sum(row.heat["left" if row.game.endswith("1") else "right"])
                for row in rows.values()),
        )
        single = assess(plan_of("AB", 1), "A", "B", lambda game: rows.get(str(game)), False)
        last = COLUMNS * ROWS - 1
        for cell in (0, 17, last):
            ball = heat_of(single)["ball"][cell]
            self.assertEqual(ball, one["ball"][cell] + two["ball"][last - cell])

    def test_equal_results_in_all_pairs_are_no_difference(self) -> None:
        plan = plan_of("AB")
        row = Row("", 1, PLAYED, Played("", 600, (2, 1)))
        found = assess(plan, "A", "B", lambda _: row)
        self.assertIs(found.decision, Decision.SAME)
        self.assertTrue(found.all_equal)


class OfFiles(unittest.TestCase):
    """Rows, plans, ranges, places."""

    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def test_a_row_counts_only_with_all_that_belongs_to_it(self) -> None:
        (self.folder / "match.rcg.gz").write_bytes(b"12345")
        row = Row("A-B-0001-1", 1, PLAYED, Played("", 600, (1, 0)), files={"match.rcg.gz": 5})
        self.assertIsNone(read_row(self.folder))
        row.write(self.folder, 1.0, 2.0)
        found = read_row(self.folder)
        assert found is not None
        self.assertEqual((found.played, found.cpu_seconds), (row.played, 2.0))
        (self.folder / "match.rcg.gz").write_bytes(b"123")
        self.assertIsNone(read_row(self.folder))
        drop_logs(self.folder, row)
        self.assertIsNotNone(read_row(self.folder))
        self.assertFalse((self.folder / "match.rcg.gz").exists())
        (self.folder / "row.json").write_text("{")
        self.assertIsNone(read_row(self.folder))

    def test_a_plan_is_read_as_it_was_written(self) -> None:
        plan = plan_of("ABC")
        plan.save(self.folder)
        self.assertEqual(Plan.load(self.folder), plan)
        for game in plan.games("A", "C"):
            self.assertEqual(Game.named(str(game)), game)
        with self.assertRaises(Failure):
            Game.named("A-B-1")

    def test_ranges_of_a_search(self) -> None:
        path = self.folder / "ranges"
        path.write_text("# tried\n\nkickPower: 10 to 80 whole # N\nareaX:-20.5 to 3\n")
        power, area = read_ranges(path)
        self.assertEqual((power.whole, power.low, power.text(30)), (True, 10, "30.0"))
        self.assertEqual((area.whole, area.low, area.high), (False, -20.5, 3))
        for line, words in (("areaX: 1", "is no range"), ("areaX: 3 to 1", "is not below"),
                            ("areaX: - to 1.2.3", "is no range"), ("", "names no keyword")):
            path.write_text(line)
            with self.assertRaisesRegex(Failure, words):
                read_ranges(path)

    def test_places_on_the_grid(self) -> None:
        rng = random.Random(2)
        for _ in range(500):
            x, y = rng.uniform(-60, 60), rng.uniform(-40, 40)
            columns = [i for i in range(COLUMNS) if -LENGTH / 2 + 5 * i <= x]
            rows = [i for i in range(ROWS) if -WIDTH / 2 + WIDTH / ROWS * i <= y]
            plain = COLUMNS * (rows[-1] if rows else 0) + (columns[-1] if columns else 0)
            self.assertEqual(cell_of(x, y), plain)

    def test_places_are_counted_in_play_and_turned_for_the_right_side(self) -> None:
        names = ["playmode", "ball_x", "ball_y"]
        names += [f"{s}{n}_{what}" for s in "lr" for n in range(1, 12) for what in ("x", "y", "state")]
        here = ["10", "5", "1"]
        absent = ["0", "0", "0"]
        line = ["play_on", "50", "-30", *here, *(absent * 10), *here, *(absent * 10)]
        stopped = ["goal_l", *line[1:]]
        script = self.folder / "match-stats"
        text = "\n".join(",".join(row) for row in (names, *[line] * 10, *[stopped] * 10))
        script.write_text(f"#!/bin/sh\ncat <<'END'\n{text}\nEND\n")
        script.chmod(0o755)
        found = count_places(script, Path("log"))
        self.assertEqual({what: sum(counts) for what, counts in found.items()},
                         {"ball": 2, "left": 2, "right": 2})
        self.assertEqual(found["left"][cell_of(10, 5)], 2)
        self.assertEqual(found["right"][cell_of(-10, -5)], 2)


class OfTournaments(unittest.TestCase):
    """The table of a group."""

    def test_order_by_points_then_difference_then_goals(self) -> None:
        results = """A-B-0001-1 2:0  A-B-0001-2 1:1  A-C-0001-1 0:1
            A-C-0001-2 3:1  B-C-0001-1 5:0  B-C-0001-2 0:2"""
        matches = []
        for name, left, right in re.findall(r"(\S+) (\d):(\d)", results):
            played = Played("", 600, (int(left), int(right)))
            matches.append((Game.named(name), Row(name, 1, PLAYED, played)))
        failed = Row("C-D-0001-1", 1, FAILED, Played("did not come"))
        matches.append((Game.named("C-D-0001-1"), failed))
        table = standings({"A": "a", "B": "b", "C": "c", "D": "d"}, matches)
        self.assertEqual(
            [(row.team, row.points, row.scored, row.received, row.matches) for row in table],
            [("b", 7, 8, 3, 4), ("c", 6, 4, 8, 4), ("a", 4, 4, 5, 4), ("d", 0, 0, 0, 0)],
        )

    def test_equal_points(self) -> None:
        def order(*results: tuple[str, int, int]) -> str:
            matches = [
                (Game.named(name), Row(name, 1, PLAYED, Played("", 600, (left, right))))
                for name, left, right in results
            ]
            return "".join(s.team for s in standings({key: key for key in "ABX"}, matches))

        self.assertEqual(order(("A-X-0001-1", 1, 0), ("B-X-0001-1", 2, 0)), "BAX")
        self.assertEqual(order(("A-X-0001-1", 1, 0), ("B-X-0001-1", 3, 2)), "BAX")
        self.assertEqual(order(("A-X-0001-1", 1, 0), ("B-X-0001-2", 1, 3)), "BAX")


if __name__ == "__main__":
    unittest.main()
