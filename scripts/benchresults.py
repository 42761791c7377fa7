"""Reading the JSON files that the benchmarks write."""
import json
import pathlib
import re
import statistics
import sys

SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


class Result:
    """One benchmark: its median time in seconds, what was reported with it, and its noise."""

    def __init__(self, runs):
        def times(kept):
            return [run["real_time"] * SECONDS[run["time_unit"]] for run in kept]
        single = [run for run in runs if run.get("run_type", "iteration") == "iteration"]
        medians = [run for run in runs if run.get("aggregate_name") == "median"]
        spreads = [run for run in runs if run.get("aggregate_name") == "stddev"]
        self.run = (medians or single)[0]
        self.median = times(medians)[0] if medians else statistics.median(times(single))
        if spreads:
            spread = times(spreads)[0]
        else:
            spread = statistics.stdev(times(single)) if len(single) > 1 else None
        # Standard deviation as a fraction of the median; None for a single run.
        self.noise = None if spread is None else spread / self.median


def read(place):
    """The results by name, of one JSON file or of all in a folder."""
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
            name = re.sub(r"/(repeats:\d+|real_time|min_time:[\d.]+)(?=/|$)", "", run.get("run_name", run["name"]))
            runs.setdefault(name, []).append(run)
    if not runs:
        sys.exit("%s holds no results" % place)
    return {name: Result(kept) for name, kept in runs.items()}


def seconds(value):
    for unit, size in (("s", 1.0), ("ms", 1e-3), ("us", 1e-6)):
        if value >= size:
            return "%.3g %s" % (value / size, unit)
    return "%.3g ns" % (value / 1e-9)


def table(rows):
    """Rows of cells as aligned text; the first column to the left, the others to the right."""
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    return "\n".join("  ".join([row[0].ljust(widths[0])] + [cell.rjust(width) for cell, width in
                                                             zip(row[1:], widths[1:])]).rstrip() for row in rows)
