#!/usr/bin/env python3
"""report.py [BUILD]: runs every benchmark of a build folder (out/cpu) and its peers, and writes docs/benchmarks.md,
docs/benchmarks-all.md and their pictures.

Each program runs alone, and its peers right behind it, so that both meet the same machine. What they measure lies in
out/report. If any of them fails, nothing is written.

    --only REGEX        the programs whose names match, for a trial; the pages then hold no more than these
    --docs FOLDER       where the pages go
    --results FOLDER    where the measurements go, out/report
    --again             measures nothing: the pages from the measurements that are there
"""
import argparse
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

from reportdata import ALONE, PEERS, ROOT, load, load_program, load_table, missing, telling_cases

NEEDED = ("numpy", "scipy", "matplotlib")
SHORTEST = "0.05"  # Seconds of a repetition, for the short cases.
started = time.monotonic()


def python_with_packages():
    """This Python, or the system's, whichever has the packages; Debian's packages come to the latter."""
    for python in (sys.executable, "/usr/bin/python3"):
        check = "import " + ", ".join(NEEDED)
        if subprocess.run([python, "-c", check], stderr=subprocess.DEVNULL, check=False).returncode == 0:
            return python
    sys.exit("report: no Python here has %s: install the packages python3-numpy, python3-scipy and python3-matplotlib"
             % ", ".join(NEEDED))


def run(command, log):
    """Runs a program; ends with its output if it fails. Returns the seconds that it took."""
    start = time.monotonic()
    with open(log, "w", encoding="utf-8") as file:
        code = subprocess.run([str(word) for word in command], stdout=file, stderr=subprocess.STDOUT,
                              check=False).returncode
    if code:
        told = pathlib.Path(log).read_text(encoding="utf-8", errors="replace").splitlines()[-20:]
        sys.exit("\n".join(told + ["report: %s failed with %d. The pages stay as they were." % (command[0], code)]))
    return time.monotonic() - start


def benchmark(program, results, *more):
    return [*more, program, "--benchmark_out=%s" % results, "--benchmark_out_format=json",
            "--benchmark_min_time=" + SHORTEST]


def measure_alone(program, results, telling, log):
    """Times once more, on one core, what is slower than its peer by the core, of the cases that stand for a family."""
    slow = [case for name, case in load_program(results, program.name).items()
            if name in telling and case.peers and case.a_core < 1]
    if not slow:
        return 0
    names = "|".join(re.sub(r"([][(){}.*+?^$|\\])", r"\\\1", re.sub(r"/repeats:.*", "", case.given_name))
                     for case in slow)
    core = str(min(os.sched_getaffinity(0)))
    return run([*benchmark(program, results / (program.name + ALONE), "taskset", "-c", core),
                "--benchmark_filter=^(%s)/" % names], log)


def measure(programs, results, telling):
    for number, program in enumerate(programs, 1):
        spent = time.monotonic() - started
        print("[%2d/%d] %-52s" % (number, len(programs), program.name), end="", flush=True)
        log = results / "log.txt"
        file = results / (program.name + ".json")
        ours = run(benchmark(program, file), log)
        subsystem = program.name.split("_")[0]
        script = ROOT / "benchmarks" / subsystem / (subsystem + "_peers.py")
        theirs = alone = 0
        if script.exists():
            theirs = run([sys.executable, "-B", script, "--json", results / (program.name + PEERS), file], log)
            alone = measure_alone(program, results, telling, log)
        print("%5.0f s, peers %4.0f s, on one core %3.0f s; since the start %d:%02d min"
              % (ours, theirs, alone, *divmod(int(spent + ours + theirs + alone), 60)), flush=True)


def parse():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", nargs="?", default=ROOT / "out" / "cpu", type=pathlib.Path)
    parser.add_argument("--only", metavar="REGEX", default="")
    parser.add_argument("--docs", metavar="FOLDER", default=ROOT / "docs", type=pathlib.Path)
    parser.add_argument("--results", metavar="FOLDER", default=ROOT / "out" / "report", type=pathlib.Path)
    parser.add_argument("--again", action="store_true")
    return parser.parse_args()


def main():
    options = parse()
    python = python_with_packages()
    if python != sys.executable:
        os.execv(python, [python, "-B", *sys.argv])
    import reportmachine  # These need the packages.
    import reportpage
    import reportpictures

    results = options.results
    table = load_table()
    if not options.again:
        programs = [program for program in sorted((options.build / "benchmarks").glob("*_bench"))
                    if re.search(options.only, program.name)]
        if not programs:
            sys.exit("report: %s holds no such benchmarks: build them first" % options.build)
        results.mkdir(parents=True, exist_ok=True)
        for old in filter(pathlib.Path.is_file, results.iterdir()):
            old.unlink()
        facts = reportmachine.collect(options.build, options.build / "benchmarks" / "report_firstcall")
        (results / "facts").write_text(json.dumps(facts))
        measure(programs, results, telling_cases(table))
    cases = load(results, table)
    facts = json.loads((results / "facts").read_text())
    if not options.only and not options.again and missing(cases, table):
        sys.exit("report: no benchmark is called %s, which cases.json names" % ", ".join(missing(cases, table)))
    with tempfile.TemporaryDirectory() as folder:  # All pages, or none.
        made = pathlib.Path(folder)
        reportpictures.draw(cases, table, made / "images")
        (made / "benchmarks.md").write_text(reportpage.page(cases, table, facts), encoding="utf-8")
        (made / "benchmarks-all.md").write_text(reportpage.complete(cases, table, facts), encoding="utf-8")
        for file in filter(pathlib.Path.is_file, made.rglob("*")):
            target = options.docs / file.relative_to(made)
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(file.read_bytes())
    print("report: %s" % (options.docs / "benchmarks.md"))


if __name__ == "__main__":
    main()
