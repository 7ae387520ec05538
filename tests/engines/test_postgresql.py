"""A server of the test's own, which hears nobody but this machine's users who reach its folder."""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile

from fleet import STATIONS, FleetTest, expected_record, text_of

# Where Debian has each version's server.
SERVERS = sorted(pathlib.Path("/usr/lib/postgresql").glob("*/bin"), key=lambda path: int(path.parent.name))


class Server:
    """A cluster in a temporary folder. Root starts it as the user whom the package made, as it refuses root."""

    def __init__(self):
        self._folder = tempfile.mkdtemp(prefix="fleet-")
        self._as_user = []
        if os.geteuid() == 0:
            shutil.chown(self._folder, "postgres")
            self._as_user = ["runuser", "-u", "postgres", "--"]
        self._run("initdb", "-U", "fleet", "--auth=trust", "--encoding=UTF8", "--locale=C", "--no-sync")
        self._run("pg_ctl", "-w", "-l", f"{self._folder}/log", "-o", f"-c listen_addresses= -k {self._folder} -F", "start")

    def _run(self, program, *arguments):
        command = [*self._as_user, str(SERVERS[-1] / program), "-D", f"{self._folder}/data", *arguments]
        subprocess.run(command, check=True, cwd="/", stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)

    def environment(self):
        return {"PGHOST": self._folder, "PGUSER": "fleet", "PGDATABASE": "postgres"}

    def stop(self):
        self._run("pg_ctl", "-w", "-m", "immediate", "stop")
        shutil.rmtree(self._folder)


class PostgreSQL(FleetTest):
    needs = {"psql": "postgresql", str(SERVERS[-1] / "postgres") if SERVERS else "postgres": "postgresql"}

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        server = Server()
        cls.addClassCleanup(server.stop)
        cls.environment |= server.environment()

    def test_copies_rows_and_finds_them_by_version_and_product(self):
        self.run_block("postgresql")
        rows = [json.loads(line) for line in
                self.run_text("psql -X -At -c 'SELECT row_to_json(stations) FROM stations'").splitlines()]
        self.assertEqual(sorted(row["name"] for row in rows), sorted(STATIONS))
        for row in rows:
            self.assertIsNone(row["collectedAt"])
            for field, value in expected_record(row["name"]).items():
                expected = None if value == "" else text_of(value)
                self.assertEqual(row[field], expected, f"{row['name']}: {field}")
        self.run_text("psql -X -q -v ON_ERROR_STOP=1 -f load.sql")
        self.assertEqual(self.run_text("psql -X -At -c 'SELECT count(*) FROM stations'"), f"{len(STATIONS)}\n")
