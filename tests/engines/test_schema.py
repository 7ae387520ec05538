"""The JSON Schema of a line of --ndjson, by a validator of other people's."""

import copy
import json

from fleet import PROJECT, FleetTest

try:
    import jsonschema
except ImportError:
    jsonschema = None


def with_value(row, path, value):
    """The row with another value at the path of members."""
    changed = copy.deepcopy(row)
    place = changed
    for member in path[:-1]:
        place = place[member]
    place[path[-1]] = value
    return changed


def without(row, member):
    return {name: value for name, value in row.items() if name != member}


class Schema(FleetTest):
    needs = {} if jsonschema else {"python3-jsonschema's module": "python3-jsonschema"}

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        schema = json.loads((PROJECT / "docs/station-row.schema.json").read_text(encoding="utf-8"))
        jsonschema.Draft202012Validator.check_schema(schema)
        cls.validator = jsonschema.Draft202012Validator(schema)

    def rows(self, command):
        return [json.loads(line) for line in self.run_text(command).splitlines()]

    def assert_valid(self, rows):
        for row in rows:
            errors = [f"{error.json_path}: {error.message}" for error in self.validator.iter_errors(row)]
            self.assertEqual(errors, [], row["name"])

    def test_describes_the_rows_of_all_described_stations(self):
        rows = self.rows(f"kvstation simulate '{PROJECT}/stations' --ndjson")
        self.assertEqual(len(rows), len(list(PROJECT.glob("stations/*/station.json"))))
        self.assert_valid(rows)

    def test_describes_the_rows_of_decoded_records(self):
        station = PROJECT / "stations/windows-98-japanese"
        self.run_text(f"kvstation simulate '{station}' --raw a.bin; kvstation simulate '{station}' --json >b.json")
        collected = {"collected": {"at": "2026-11-22T12:00:00Z", "library": "1.2.0.0"}}
        record = json.loads((self.folder / "b.json").read_text(encoding="utf-8"))
        (self.folder / "c.json").write_text(json.dumps(record | collected), encoding="utf-8")
        rows = self.rows("kvstation decode a.bin b.json c.json --ndjson --code-page 932")
        self.assertEqual([row["name"] for row in rows], ["a", "b", "c"])
        self.assertEqual(rows[2]["collected"], collected["collected"])
        self.assert_valid(rows)

    def test_describes_a_row_of_full_fields_and_no_longer_ones(self):
        last = json.loads(self.run_text("kvstation layout --json"))[-1]
        for page, byte in ((1252, b"\xe4"), (932, b"\x81"), (65001, b"\xff")):
            (self.folder / "full.bin").write_bytes(byte * (last["offset"] + last["width"]))
            [row] = self.rows(f"kvstation decode full.bin --ndjson --code-page {page}")
            self.assert_valid([row])
            self.assertEqual(isinstance(row["fields"]["szOS"], str), page == 1252)
            for field, value in row["fields"].items():
                if isinstance(value, dict):
                    more = {**value, "hex": value["hex"] + " 41"}
                elif isinstance(value, int):
                    more = value + (1 << 32)
                elif page == 1252:
                    more = value + "x"
                else:
                    continue  # two bytes are one character
                self.assertFalse(self.validator.is_valid(with_value(row, ["fields", field], more)), field)

    def test_describes_rows_of_some_fields(self):
        rows = self.rows("kvstation simulate fleet --ndjson --field szOS --field dwSessionId")
        self.assertEqual(list(rows[0]["fields"]), ["szOS", "dwSessionId"])
        self.assert_valid(rows)

    def test_refuses_what_is_no_row(self):
        [row] = self.rows("kvstation simulate fleet/windows-98-japanese --ndjson")
        half = row["fields"]["szDefaultBrowser"]
        self.assertEqual(set(half), {"text", "hex"})
        for place, value in (
            (["name"], 1), (["source"], None), (["codePage"], "932"), (["codePage"], 31), (["tool"], "new"),
            (["extra"], 1), (["fields"], {}), (["fields"], None), (["fields", "szNothing"], ""),
            (["fields", "szOS"], "x" * 82), (["fields", "szOS"], 5), (["fields", "szOS"], None),
            (["fields", "dwSessionId"], "0"), (["fields", "dwSessionId"], -1), (["fields", "dwSessionId"], 1 << 32),
            (["fields", "dwCurrentMhz"], 1 << 31), (["fields", "dwCurrentMhz"], 0.5),
            (["fields", "szDefaultBrowser", "hex"], "4"), (["fields", "szDefaultBrowser", "hex"], "41 4g"),
            (["fields", "szDefaultBrowser", "hex"], "41 " * 51 + "41"), (["fields", "szDefaultBrowser", "more"], ""),
            (["fields", "szDefaultBrowser"], {"text": half["text"]}), (["collected"], "today"),
            (["collected"], {"by": "me"}), (["collected"], {"at": "2026-11-22"}), (["collected"], {"tool": "new"}),
        ):
            with self.subTest(place=place, value=value):
                wrong = with_value(row, place, value)
                self.assertFalse(self.validator.is_valid(wrong))
        for member in ("name", "source", "codePage", "tool", "collected", "fields"):
            with self.subTest(without=member):
                self.assertFalse(self.validator.is_valid(without(row, member)))
