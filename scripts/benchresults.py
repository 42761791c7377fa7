"""Reading the JSON files that the benchmarks write."""
import json
import pathlib
import re
import statistics
import sys

SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
CONSTANTS = {"K": 1 << 10, "M": 1 << 20}  # The names of sizes in the benchmarks' template arguments.


def number(text):
    """The integer that an expression of C++ constants gives, such as `(1UL << 26) - 1`, or None. 2^26 is read too."""
    plain = re.sub(r"\b(\d+)U?L*\b", r"\1", text).replace("^", "**")
    if not re.fullmatch(r"(?:\d+|[KM]\b|<<|\*\*|[-+*/() ])+", plain) or not re.search(r"\d|[KM]", plain):
        return None
    return eval(plain, {"__builtins__": {}}, CONSTANTS)


def size(value):
    """An integer as people write it: large powers of two as such."""
    for offset, rest in ((0, ""), (1, " - 1")):
        whole = value + offset
        if whole >= 4096 and whole & (whole - 1) == 0:
            return "2^%d%s" % (whole.bit_length() - 1, rest)
    return str(value)


def parts(name):
    """The function, template arguments and other arguments of a benchmark's name: f<A, B>/8 gives f, [A, B], [8]."""
    function, angled, others = re.fullmatch(r"(\w+)(?:<(.*)>)?((?:/[^/]+)*)", name.strip()).groups()
    arguments, depth = [""], 0
    for token in re.findall(r"<<|.", angled or ""):
        depth += {"<": 1, "(": 1, ">": -1, ")": -1}.get(token, 0)
        if token == "," and depth == 0:
            arguments.append("")
        else:
            arguments[-1] += token
    return function, [argument.strip() for argument in arguments] if angled else [], others.split("/")[1:]


def tidy(name):
    """A benchmark's name with its sizes worked out, without scopes and without how it is measured:
    f<Input::random, (1 << 26)>/real_time is f<random, 2^26>."""
    function, arguments, others = parts(re.sub(r"/(repeats:\d+|iterations:\d+|real_time|min_time:[\d.]+)(?=/|$)", "", name))
    shown = []
    for argument in arguments:
        value = number(argument)
        shown.append(re.sub(r"\w+::", "", argument) if value is None else size(value))
    return function + ("<%s>" % ", ".join(shown) if shown else "") + "".join("/" + other for other in others)


class Result:
    """One benchmark: its median time in seconds, what was reported with it, and its noise."""

    def __init__(self, runs):
        def times(kept):
            return [run["real_time"] * SECONDS[run["time_unit"]] for run in kept]
        single = [run for run in runs if run.get("run_type", "iteration") == "iteration"]
        medians = [run for run in runs if run.get("aggregate_name") == "median"]
        spreads = [run for run in runs if run.get("aggregate_name") == "stddev"]
        self.run = (medians or single)[0]
        self.given_name = self.run.get("run_name", self.run["name"])  # As --benchmark_filter takes it.
        self.times = times(single)
        self.median = times(medians)[0] if medians else statistics.median(self.times)
        if spreads:
            spread = times(spreads)[0]
        else:
            spread = statistics.stdev(self.times) if len(single) > 1 else None
        # Standard deviation as a fraction of the median; None for a single run.
        self.noise = None if spread is None else spread / self.median
        # Elements of one call; None where a benchmark reports none.
        rate = single[0].get("items_per_second") if single else None
        self.elements = None if rate is None else round(rate * self.times[0])


def read(place):
    """The results by tidy name, of one JSON file or of all in a folder."""
    place = pathlib.Path(place)
    runs = {}
    for file in sorted(place.glob("*.json")) if place.is_dir() else [place]:
        try:
            reported = json.loads(file.read_text())["benchmarks"]
        except (OSError, ValueError, KeyError) as error:
            sys.exit("%s is no result of a benchmark: %s" % (file, error))
        for run in reported:
            if run.get("error_occurred"):
                sys.exit("%s: %s: %s" % (file, run["name"], run.get("error_message", "failed")))
            runs.setdefault(tidy(run.get("run_name", run["name"])), []).append(run)
    if not runs:
        sys.exit("%s holds no results" % place)
    return {name: Result(kept) for name, kept in runs.items()}


def seconds(value):
    for unit, factor in (("s", 1.0), ("ms", 1e-3), ("us", 1e-6)):
        if value >= factor:
            return "%.3g %s" % (value / factor, unit)
    return "%.3g ns" % (value / 1e-9)


def table(rows):
    """Rows of cells as aligned text; the first column to the left, the others to the right."""
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    return "\n".join("  ".join([row[0].ljust(widths[0])] + [cell.rjust(width) for cell, width in
                                                             zip(row[1:], widths[1:])]).rstrip() for row in rows)
