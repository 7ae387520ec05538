"""What needs nothing but a program."""

import contextlib
import pathlib
import re
import sqlite3
import unittest

from fleet import STATIONS, FleetTest, blocks, expected_record


class Document(unittest.TestCase):
    def test_has_no_commands_that_no_test_runs(self):
        tests = "".join(path.read_text(encoding="utf-8") for path in pathlib.Path(__file__).parent.glob("test_*.py"))
        self.assertEqual(set(re.findall(r'_block\("(.+?)"\)', tests)), set(blocks("sh")))


class Tool(FleetTest):
    def test_shows_the_fields_asked_for(self):
        self.run_block("table")

    def test_tells_the_columns(self):
        self.run_block("columns")

    def test_tells_who_came_and_who_went(self):
        self.run_block("differences")


class Parallel(FleetTest):
    needs = {"parallel": "parallel"}

    def test_spreads_a_list_over_processes(self):
        self.run_block("stations")
        self.run_block("parallel")
        self.assert_rows("rows.ndjson")


class SQLite(FleetTest):
    needs = {"sqlite3": "sqlite3"}

    def test_answers_from_the_file_that_the_tool_wrote(self):
        self.run_block("sqlite")
        with contextlib.closing(sqlite3.connect(self.folder / "fleet.db")) as database:
            database.row_factory = sqlite3.Row
            rows = list(database.execute("SELECT * FROM stations"))
        self.assertEqual(sorted(row["name"] for row in rows), sorted(STATIONS))
        for row in rows:
            for field, value in expected_record(row["name"]).items():
                expected = bytes.fromhex(value["hex"]) if isinstance(value, dict) else value
                self.assertEqual(row[field], expected, f"{row['name']}: {field}")
