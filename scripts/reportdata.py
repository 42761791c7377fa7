"""What `make report` has measured, as cases with their peers."""
import json
import pathlib
import statistics
import sys

from benchresults import read

ROOT = pathlib.Path(__file__).resolve().parent.parent
TABLE = ROOT / "benchmarks" / "report" / "cases.json"
LIMITS = {"copyFraction": "copy", "fillFraction": "fill", "readFraction": "read", "writtenOfCopy": "copy",
          "fmaFraction": "FMA"}
NEAR_LIMIT = 0.6
PEERS, ALONE = ".peers", ".alone"  # Beside the JSON file of a program; JSON as well.


class Spread:
    """The minimum, median and maximum of some runs."""

    def __init__(self, times):
        self.runs, self.minimum, self.median, self.maximum = len(times), min(times), statistics.median(times), max(times)


class Case:
    """A benchmark of ours: its times, its peers, and how many times as fast as the best of these it is."""

    def __init__(self, name, subsystem, result, cores):
        self.name, self.subsystem, self.cores = name, subsystem, cores
        self.given_name, self.elements = result.given_name, result.elements
        self.time = Spread(result.times)
        self.bytes_per_second = result.run.get("bytes_per_second")
        self.items_per_second = result.run.get("items_per_second")
        self.fractions = {key: result.run[key] for key in LIMITS if key in result.run}
        self.counters = result.run
        self.peers = []
        self.alone = None  # Times on one core, where they were taken.

    @property
    def best(self):
        """Words and times of the fastest peer, or None."""
        return min(self.peers, key=lambda peer: peer[1].median, default=None)

    @property
    def ratio(self):
        return self.best[1].median / self.time.median if self.peers else None

    @property
    def a_core(self):
        return self.ratio / self.cores if self.peers else None

    @property
    def ratio_alone(self):
        return self.best[1].median / self.alone.median if self.peers and self.alone else None

    @property
    def limit(self):
        """The limit of the machine that is nearest: which, and what fraction of it is reached."""
        key = max(self.fractions, key=self.fractions.get, default=None)
        return None if key is None else (LIMITS[key], self.fractions[key])


def load_table(file=TABLE):
    return json.loads(file.read_text())


def load_program(folder, program):
    """The cases of one program, by name, with the peers that were timed behind it."""
    file = folder / (program + ".json")
    cores = json.loads(file.read_text())["context"]["num_cpus"]
    cases = {name: Case(name, program.split("_")[0], result, cores) for name, result in read(file).items()}
    peers = folder / (program + PEERS)
    if peers.exists():
        for name, found in json.loads(peers.read_text()).items():
            cases[name].peers += [(peer["peer"], Spread(peer["seconds"])) for peer in found]
    alone = folder / (program + ALONE)
    if alone.exists():
        for name, result in read(alone).items():
            cases[name].alone = Spread(result.times)
    return cases


def add_standard_peers(cases, table):
    """Cases that are loops over the standard library become peers, and no cases of their own."""
    for words, standard, names in table["standard"]:
        for name in names:
            if standard in cases and name in cases:
                cases[name].peers.append((words, cases[standard].time))
    for _, standard, _ in table["standard"]:
        cases.pop(standard, None)


def load(folder, table):
    """All cases by name."""
    cases = {}
    for file in sorted(folder.glob("*_bench.json")):
        for name, case in load_program(folder, file.stem).items():
            if name in cases:
                sys.exit("two benchmarks are called %s" % name)
            cases[name] = case
    add_standard_peers(cases, table)
    return cases


def telling_cases(table):
    """The cases that stand for a family."""
    return [name for families in table["families"].values() for names in families.values() for name in names]


def missing(cases, table):
    """Cases that the table of families names and no benchmark has."""
    return [name for name in telling_cases(table) if name not in cases]


def reason(case, table):
    """Why a case is below what is asked of it: as recorded for names that begin so, or that it is at a limit."""
    for beginnings, text in table["reasons"]:
        if case.name.startswith(tuple(beginnings)):
            return text
    if case.limit and case.limit[1] >= NEAR_LIMIT:
        bound = "arithmetic" if case.limit[0] == "FMA" else "memory"
        return "at %.0f %% of %s: bound by %s" % (100 * case.limit[1], case.limit[0], bound)
    return "no reason recorded yet"
