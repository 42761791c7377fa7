"""What the scripts share that time NumPy and SciPy on the arrays of the benchmarks, by one thread.

A script declares its peers by functions of the benchmarks' names, which take their template arguments, types as those
of NumPy, and return the number of elements and a call:

    @peer("arange", "colon", "intColon")
    def ascending(T):
        return LARGE, lambda: numpy.arange(LARGE, dtype=T)

None says that there is no peer for these arguments; a third entry, that the call is the same as others with that key,
and is timed once. So the shapes come from the names, and the number of elements is
held against that of the benchmark. Arrays are filled before: those of numpy.zeros would be one page of zeros.

usage: SCRIPT [--json FILE] [RESULTS...]    of the benchmarks, JSON files or folders
"""
import argparse
import ctypes
import importlib
import json
import math
import os
import pathlib
import re
import statistics
import subprocess
import sys
import time

from benchresults import number, parts, read, seconds, table, tidy
from reportdata import load_table, telling_cases

for variable in ("OMP_NUM_THREADS", "OPENBLAS_NUM_THREADS", "MKL_NUM_THREADS"):
    os.environ[variable] = "1"

RUNS = 5
SHORTEST = 0.02  # Seconds of a run: it repeats a short call.
# A call that takes longer is made once, unless its case stands for a family in the report and no other peer is twice as
# fast.
LONGEST = 1.0
BENCHMARKS = pathlib.Path(__file__).resolve().parent.parent / "benchmarks"


def need(module):
    try:
        return importlib.import_module(module)
    except ImportError:
        package = module.split(".")[0]
        sys.exit("%s is missing: install the package python3-%s, or take a Python that has it" % (package, package))


def opencv():
    """OpenCV on one thread, or None: its functions are peers where it is at hand."""
    try:
        module = importlib.import_module("cv2")
    except ImportError:
        return None
    module.setNumThreads(1)
    return module


numpy = need("numpy")

TYPES = {"bool": numpy.bool_, "signed char": numpy.int8, "unsigned char": numpy.uint8, "short": numpy.int16,
         "int": numpy.int32, "unsigned int": numpy.uint32, "long long": numpy.int64, "unsigned long long": numpy.uint64,
         "float": numpy.float32, "double": numpy.float64, "float2": numpy.complex64, "double2": numpy.complex128}
WORDS = {"true": True, "false": False}
declared = {}


def constant(name, file):
    """A constant of a benchmark's source, such as largeCount of support/bench.hpp."""
    return number(re.search(r"\b%s = ([^;,]+)" % name, (BENCHMARKS / file).read_text()).group(1))


def peer(words, *names):
    """Declares a function to be a peer, called `words`, of the benchmarks with these names."""
    def declare(function):
        for name in names:
            declared.setdefault(name, []).append((words, function))
        return function
    return declare


def filled(dtype, *shape):
    return numpy.full(shape, 1, dtype)


def argument(text):
    value = number(text)
    return value if value is not None else TYPES.get(text, WORDS.get(text, text))


def keep_freed_memory():
    """Lets the C library keep what is freed: the benchmarks write to arrays that are there, without page faults."""
    try:
        library = ctypes.CDLL(None)
        library.mallopt(-4, 0)  # M_MMAP_MAX
        library.mallopt(-1, -1)  # M_TRIM_THRESHOLD
    except (OSError, AttributeError):
        pass


def times(call, is_enough):
    """Seconds of each run, after one to warm up. `is_enough` is asked whether one is, if that is long."""
    def once(turns):
        start = time.perf_counter()
        for _ in range(turns):
            call()
        return (time.perf_counter() - start) / turns
    call()  # It meets new memory, which can take longer than all else.
    first = once(1)
    if first > LONGEST and is_enough(first):
        return [first]
    if first >= SHORTEST:
        return [first] + [once(1) for _ in range(RUNS - 1)]
    turns = math.ceil(SHORTEST / first)
    return [once(turns) for _ in range(RUNS)]


def measured(name, elements, known, stands_for_family=True):
    """Words and times of each peer of a benchmark. `elements` is how many that one works on, or None if not known;
    `known` keeps the times of calls with a key."""
    function, arguments, others = parts(name)
    best = math.inf
    for words, make in declared.get(function, []):
        made = make(*map(argument, arguments + others))
        if made is None:
            continue
        count, call, *key = made
        if elements not in (None, count):
            sys.exit("%s works on %d elements, and its peer %s on %d" % (name, elements, words, count))
        del made
        if not key or (words, *key) not in known:
            known[(words, *key)] = times(call, lambda first: not stands_for_family or first > 2 * best)
        del call  # With its arrays, before the next ones are made.
        best = min(best, *known[(words, *key)])
        yield words, known[(words, *key)]


def listed(script):
    """The names of the benchmarks beside a script, as their programs tell them."""
    folder = BENCHMARKS.parent / "out" / "cpu" / "benchmarks"
    for program in sorted(folder.glob(script.parent.name + "_*_bench")):
        told = subprocess.run([program, "--benchmark_list_tests"], check=True, capture_output=True, text=True).stdout
        for line in told.splitlines():
            yield tidy(line)


def main(script):
    """Times the declared peers of the given results, or of all benchmarks beside this script, and prints a table."""
    parser = argparse.ArgumentParser(description=sys.modules["__main__"].__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--json", metavar="FILE", help="write the times to FILE")
    parser.add_argument("results", nargs="*", help="JSON files of the benchmarks, or folders of them")
    options = parser.parse_args()
    numpy.seterr(all="ignore")
    keep_freed_memory()
    ours = {name: result for place in options.results for name, result in read(place).items()}
    cores = os.cpu_count()
    found, known, telling = {}, {}, telling_cases(load_table())
    rows = [("benchmark", "peer", "its minimum", "median", "maximum", "ours", "ratio", "a core")]
    for name in ours or dict.fromkeys(listed(pathlib.Path(script))):
        for words, spent in measured(name, ours[name].elements if ours else None, known, name in telling):
            found.setdefault(name, []).append({"peer": words, "seconds": spent})
            row = [name, words, *map(seconds, (min(spent), statistics.median(spent), max(spent))), "", "", ""]
            if ours:
                ratio = statistics.median(spent) / ours[name].median
                row[5:] = seconds(ours[name].median), "%.2f" % ratio, "%.2f" % (ratio / cores)
            rows.append(tuple(row))
    if options.json:
        pathlib.Path(options.json).write_text(json.dumps(found))
    print(table(rows))
