"""Holds the report's reading against small results, and its table of families against the headers."""
import json
import pathlib
import re
import stat
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "scripts"))
import reportdata  # noqa: E402
import reportpage  # noqa: E402
from benchresults import parts, tidy  # noqa: E402

TABLE = {"families": {"build": {"F": ["f<double, 2^26>"], "G": ["g"]}}, "recipes": {}, "recipeReasons": {},
         "standard": [["std::sort", "plain", ["g"]]], "reasons": [[["f<"], "bound by memory"]]}


def runs(name, milliseconds, **counters):
    """What the framework writes for a repeated benchmark: each run, and aggregates that are no runs."""
    single = [{"name": name, "run_name": name, "run_type": "iteration", "real_time": time, "time_unit": "ms",
               "items_per_second": 1e3 * 1e6 / time, **counters} for time in milliseconds]
    median = dict(single[0], run_type="aggregate", aggregate_name="median", real_time=sorted(milliseconds)[2])
    return single + [median, dict(median, aggregate_name="stddev", real_time=0.001)]


class Report(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def write(self, program, *results):
        told = {"context": {"num_cpus": 4}, "benchmarks": [run for result in results for run in result]}
        (self.folder / (program + ".json")).write_text(json.dumps(told))

    def cases(self):
        self.write("build_f_bench",
                   runs("f<double, (1UL << 26)>/repeats:5/real_time", (12, 10, 14, 11, 30), bytes_per_second=8e9,
                        copyFraction=0.8, fmaFraction=0.9),
                   runs("g/repeats:5/real_time", (1, 1, 1, 1, 1)), runs("plain/repeats:5/real_time", (3, 3, 3, 3, 3)))
        (self.folder / ("build_f_bench" + reportdata.PEERS)).write_text(json.dumps({
            "f<double, 2^26>": [{"peer": "slow", "seconds": [0.2]}, {"peer": "quick", "seconds": [0.05, 0.048, 0.9]}],
            "g": [{"peer": "array", "seconds": [0.02]}]}))
        return reportdata.load(self.folder, TABLE)

    def test_names_are_told_apart_by_their_arguments(self):
        for given, expected in (
                ("f<Input::random, (1 << 26)>", "f<random, 2^26>"), ("f<double, 1, (1UL << 26) - 1>", "f<double, 1, 2^26 - 1>"),
                ("f<double, 64 * M, 256 * K>", "f<double, 2^26, 2^18>"), ("f<const double*, 1 << 25>", "f<const double*, 2^25>"),
                ("f<std::vector<double>, 100>/1024", "f<vector<double>, 100>/1024")):
            self.assertEqual(tidy(given), expected)
            self.assertEqual(tidy(expected), expected)
        self.assertEqual(parts("f<vector<A, B>, 2^26 - 1>/8"), ("f", ["vector<A, B>", "2^26 - 1"], ["8"]))

    def test_a_case_has_its_spread_its_limit_and_its_best_peer(self):
        cases = self.cases()
        self.assertEqual(sorted(cases), ["f<double, 2^26>", "g"])  # The loop over std is a peer.
        case = cases["f<double, 2^26>"]
        self.assertEqual((case.time.minimum, case.time.median, case.time.maximum), (0.010, 0.012, 0.030))
        self.assertEqual(case.elements, 1000000)
        self.assertEqual(case.limit, ("FMA", 0.9))
        self.assertEqual(case.best[0], "quick")
        self.assertAlmostEqual(case.a_core, 0.05 / 0.012 / 4)
        self.assertEqual(cases["g"].best[0], "std::sort")
        self.assertEqual(cases["g"].cores, 4)

    def test_what_is_below_twice_stands_with_its_reason(self):
        below = reportpage.below_section(self.cases(), TABLE)
        self.assertRegex(below, r"`f<double, 2\^26>` \| quick \| 4.17 \| 1.04 \|  \| bound by memory")
        self.assertRegex(below, r"`g` \| std::sort \| 3.00 \| 0.75 \|  \| no reason recorded yet")

    def test_two_programs_with_one_name_and_cases_that_are_gone_are_noticed(self):
        self.assertEqual(reportdata.missing({}, TABLE), ["f<double, 2^26>", "g"])
        self.cases()
        self.write("build_h_bench", runs("g/repeats:5/real_time", (1, 1, 1, 1, 1)))
        with self.assertRaises(SystemExit):
            reportdata.load(self.folder, TABLE)

    def test_every_family_has_a_row(self):
        listed = [family for families in reportdata.load_table()["families"].values() for family in families]
        declared = {family for header in (ROOT / "include" / "gpuruntime").glob("*/*.hpp") for family in re.findall(
            r"^ .*GPURUNTIME_FAMILY_TAKES(?:_\w+)?\((\w+),", header.read_text(encoding="utf-8"), re.MULTILINE)}
        self.assertEqual(sorted(declared), sorted(listed))

    def test_a_program_that_fails_leaves_the_pages_as_they_were(self):
        build, docs = self.folder / "build", self.folder / "docs"
        (build / "benchmarks").mkdir(parents=True)
        docs.mkdir()
        (docs / "benchmarks.md").write_text("old")
        for name, code in (("report_firstcall", "echo 1; echo 1"), ("build_f_bench", "echo out of memory; exit 3")):
            program = build / "benchmarks" / name
            program.write_text("#!/bin/sh\n%s\n" % code)
            program.chmod(program.stat().st_mode | stat.S_IXUSR)
        told = subprocess.run([sys.executable, "-B", ROOT / "scripts" / "report.py", build, "--docs", docs, "--results",
                               self.folder / "results"], capture_output=True, text=True, check=False)
        if "no Python here has" in told.stderr:
            self.skipTest(told.stderr)
        self.assertIn("out of memory", told.stderr)
        self.assertEqual(told.returncode, 1)
        self.assertEqual([file.name for file in docs.iterdir()], ["benchmarks.md"])
        self.assertEqual((docs / "benchmarks.md").read_text(), "old")


if __name__ == "__main__":
    unittest.main()
