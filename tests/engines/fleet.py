"""The stations of docs/fleet.md, what stands in it as commands and outputs, and what must come out of them."""

import json
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
STATIONS = ("metaframe-session", "windows-11-utf8", "windows-7-chinese", "windows-7-workstation", "windows-98-japanese")
SECONDS = 120

_BLOCK = re.compile(r"^```(\w+) (\S+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def blocks(language):
    """The document's blocks in that language, by their names."""
    document = (PROJECT / "docs/fleet.md").read_text(encoding="utf-8")
    return {name: text for found, name, text in _BLOCK.findall(document) if found == language}


def expected_record(station):
    """The station's record, which was derived by hand: a field that its file leaves out is an empty text or 0."""
    schema = json.loads((PROJECT / "docs/station-row.schema.json").read_text(encoding="utf-8"))
    fields = schema["properties"]["fields"]["properties"]
    empty = {name: "" if field["$ref"] == "#/$defs/text" else 0 for name, field in fields.items()}
    text = (PROJECT / "stations" / station / "expected.json").read_text(encoding="utf-8")
    return empty | json.loads(text)["record"]


def text_of(value):
    """A value of expected.json as text: with U+FFFD in the place of bytes that are no character."""
    return value["text"] if isinstance(value, dict) else value


class FleetTest(unittest.TestCase):
    """Runs blocks of the document in a folder of its own, where they find what it speaks of."""

    # Programs that must be there, and the package that has each.
    needs = {}

    @classmethod
    def setUpClass(cls):
        for program, package in cls.needs.items():
            if shutil.which(program) is None:
                print(f"{cls.__name__}: Skipped\n{program} is missing: install the package {package}", flush=True)
                raise unittest.SkipTest(f"{program} is missing")
        cls.scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.scratch.cleanup)
        cls.folder = pathlib.Path(cls.scratch.name)
        (cls.folder / "fleet").mkdir()
        for station in STATIONS:
            (cls.folder / "fleet" / station).symlink_to(PROJECT / "stations" / station)
        for language in ("sql", "python", "js"):
            for name, text in blocks(language).items():
                (cls.folder / name).write_text(text, encoding="utf-8")
        tool = pathlib.Path(os.environ["KVSTATION_PROGRAM"]).resolve().parent
        # Debian's Python has Debian's packages, whatever others there are.
        cls.environment = dict(os.environ, PATH=f"{tool}:/usr/bin:{os.environ['PATH']}", LC_ALL="C.UTF-8")

    def run_text(self, script):
        """Runs a shell's text, which must do well without a word on standard error, and gives its output."""
        done = subprocess.run(["sh", "-eu"], input=script, cwd=self.folder, env=self.environment, timeout=SECONDS,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8", check=False)
        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)
        return done.stdout

    def run_block(self, name):
        """Runs a block, which must print what the document says."""
        self.assertEqual(self.run_text(blocks("sh")[name]), blocks("text").get(name, ""))

    def start_block(self, name):
        """Runs a block until the test is over."""
        log = open(self.folder / f"{name}.log", "ab")
        self.addCleanup(log.close)
        process = subprocess.Popen(["sh", "-euc", "exec " + blocks("sh")[name]], cwd=self.folder, env=self.environment,
                                   stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        self.addCleanup(process.wait, SECONDS)
        self.addCleanup(process.terminate)

    def assert_rows(self, file):
        """Each station is there once, with every field as it must be."""
        lines = (self.folder / file).read_text(encoding="utf-8").splitlines()
        rows = {row["name"]: row for row in map(json.loads, lines)}
        self.assertEqual(len(lines), len(STATIONS))
        for station in STATIONS:
            self.assertEqual(rows[station]["fields"], expected_record(station), station)
