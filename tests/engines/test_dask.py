"""A scheduler and two workers, which are processes of their own."""

from fleet import FleetTest

WAIT_FOR_BOTH = """python3 -c '
from distributed import Client
with Client(scheduler_file="scheduler.json") as client:
    client.wait_for_workers(2, timeout=60)'"""


class Dask(FleetTest):
    needs = {"dask-scheduler": "python3-distributed"}

    def test_spreads_a_list_over_workers(self):
        self.start_block("dask-scheduler")
        for _ in range(2):
            self.start_block("dask-worker")
        self.run_text(WAIT_FOR_BOTH)
        self.run_block("stations")
        self.run_block("dask")
        self.assert_rows("rows.ndjson")
