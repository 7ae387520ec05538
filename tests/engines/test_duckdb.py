"""DuckDB out of npm, on 100,000 lines."""

import json
import os
import pathlib
import shutil
import subprocess

from fleet import FleetTest

TIMES = 20_000
HERE = pathlib.Path(__file__).parent


def fetched():
    """The folder with the packages of package-lock.json, which npm fetches once.

    By npm install, because npm ci wants the lock to hold what other systems would need.
    """
    folder = pathlib.Path(os.environ["KV_DUCKDB"])
    mark = folder / "fetched"
    if not mark.exists() or mark.stat().st_mtime < (HERE / "package-lock.json").stat().st_mtime:
        folder.mkdir(parents=True, exist_ok=True)
        for file in ("package.json", "package-lock.json"):
            shutil.copy(HERE / file, folder)
        subprocess.run(["npm", "install", "--prefix", folder, "--ignore-scripts", "--no-audit", "--no-fund"],
                       check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        mark.touch()
    return folder


class DuckDB(FleetTest):
    needs = {"node": "nodejs", "npm": "npm"}

    def test_answers_from_the_lines_where_they_lie(self):
        (self.folder / "node_modules").symlink_to(fetched() / "node_modules")
        lines = self.run_text("kvstation simulate fleet --ndjson").splitlines()
        with open(self.folder / "rows.ndjson", "w", encoding="utf-8") as rows:
            for time in range(TIMES):
                for line in lines:
                    name = json.dumps(f"branch-{time}/")[:-1]
                    rows.write(line.replace('{"name":"', '{"name":' + name, 1) + "\n")
        self.run_block("duckdb")
