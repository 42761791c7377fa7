"""The pages of `make report`, as Markdown."""
import statistics

from benchresults import seconds
from reportdata import Spread, reason, telling_cases

HEADER = ("case", "minimum", "median", "maximum", "rate", "of the limit", "best peer", "its median", "ratio", "a core")
BELOW = ("case", "best peer", "ratio", "a core", "one core", "reason")
GENERATED = "<!-- Written by `make report`: changes by hand are lost. -->\n"


def markdown_table(header, rows, left=1, last_left=False):
    """The first `left` columns to the left, and the last one if wanted; the others to the right."""
    rules = [":--" if column < left else "--:" for column in range(len(header))]
    if last_left:
        rules[-1] = ":--"
    return "\n".join("| %s |" % " | ".join(row) for row in [header, rules, *rows]) + "\n"


def code(name):
    return "`%s`" % name


def times_as_fast(ratio):
    if ratio is None:
        return ""
    return "%.2f" % ratio if ratio < 9.995 else "%.0f" % ratio


def rate(case):
    if case.bytes_per_second:
        return "%.3g GB/s" % (case.bytes_per_second / 1e9)
    return "%.3g M/s" % (case.items_per_second / 1e6) if case.items_per_second else ""


def of_limit(case):
    return "%.0f %% of %s" % (100 * case.limit[1], case.limit[0]) if case.limit else ""


def cells(case):
    """What stands of a case in a row, its name first."""
    best = case.best
    peer = (best[0], seconds(best[1].median)) if best else ("none", "")
    spread = [seconds(value) for value in (case.time.minimum, case.time.median, case.time.maximum)]
    return [code(case.name), *spread, rate(case), of_limit(case), *peer, times_as_fast(case.ratio),
            times_as_fast(case.a_core)]


def is_large(case):
    """Neither a call on one element, nor a point of a curve, nor one of a pair with a recipe."""
    return not case.name.endswith("OfOneElement") and case.subsystem not in ("report", "recipes")


def compared(cases):
    return [case for case in cases.values() if case.peers and is_large(case)]


def machine_section(cases, facts):
    rows = [(key, value) for key, value in facts["machine"].items()]
    rows.append(("compiler", facts["compiler"]))
    peers = ["%s %s" % (name, version) for name, version in facts["versions"].items() if version]
    absent = [name for name, version in facts["versions"].items() if not version]
    rows.append(("peers", ", ".join(peers) + "; the standard library of the compiler"
                 + ("; not at hand: " + ", ".join(absent) if absent else "")))
    rates = {}
    for case in cases.values():
        if case.limit and case.bytes_per_second and case.limit[0] != "FMA":
            rates.setdefault(case.limit[0], []).append(case.bytes_per_second / case.limit[1] / 1e9)
    for key, words in (("copy", "parallel memcpy"), ("fill", "parallel memset"), ("read", "parallel search for a NaN")):
        if key in rates:
            spread = Spread(rates[key])
            rows.append((words, "%.1f, %.1f, %.1f GB/s (minimum, median, maximum over the programs)"
                         % (spread.minimum, spread.median, spread.maximum)))
    rows.append(("when", "%s, commit %s; load at the start %.1f" % (facts["date"], facts["commit"], facts["load"])))
    return "## Machine\n\n" + markdown_table(("what", "is"), rows, 2)


def summary_section(cases):
    rows = []
    for subsystem in list(dict.fromkeys(case.subsystem for case in compared(cases))) + [None]:
        ratios = [case.a_core for case in compared(cases) if subsystem in (None, case.subsystem)]
        if ratios:
            rows.append((subsystem or "all", str(len(ratios)), "%.2f" % statistics.median(ratios),
                         *(str(sum(low <= ratio < high for ratio in ratios))
                           for low, high in ((2, float("inf")), (1, 2), (0, 1)))))
    header = ("subsystem", "cases with a peer", "median ratio a core", "2 and more", "1 to 2", "below 1")
    return "## In short\n\n" + markdown_table(header, rows)


def families_section(cases, table):
    text = ["## Families\n"]
    for subsystem, families in table["families"].items():
        rows = [[code(family) if number == 0 else "", *cells(cases[name])]
                for family, names in families.items()
                for number, name in enumerate(name for name in names if name in cases)]
        if rows:
            text += ["### %s\n" % subsystem, markdown_table(("family", *HEADER), rows, 2)]
    return "\n".join(text)


def megabytes(count):
    return "" if count is None else "%.1f MB" % (count / 1e6)


def spread_of(times):
    spread = Spread(times)
    return " / ".join(seconds(value) for value in (spread.minimum, spread.median, spread.maximum))


def numbers_section(cases, facts):
    exports, libraries, builds = facts["exports"], facts["libraries"], facts["buildTimes"]

    def build(backend):
        timed = builds.get(backend)
        if not timed:
            return "not measured"
        return "%.0f s (%d jobs, %s, %s)" % (timed["seconds"], timed["jobs"], timed["processor"], timed["date"])

    def size(backend, key):
        return megabytes((libraries[backend] or {}).get(key)) or "not built"

    rows = [("size of the library's file", size("cpu", "file"), size("cuda", "file")),
            ("of that code and constants", size("cpu", "text"), size("cuda", "text")),
            ("full build of the library, no compiler cache", build("cpu"), build("cuda")),
            ("families", str(exports["families"]), "the same"),
            ("exported operations, a member of a family each", str(exports["operations"]), "the same"),
            ("exported names", str(exports["names"]), "the same")]
    for count, words in (("1", "one element"), (str(1 << 20), "2^20 elements")):
        calls = facts["firstCalls"][count]
        rows += [("first call of a process, on " + words, spread_of(calls["first"]), "not run"),
                 ("second call, on " + words, spread_of(calls["second"]), "not run"),
                 ("whole process with two calls, on " + words, spread_of(calls["process"]), "not run")]
    ones = sorted((case for case in cases.values() if case.name.endswith("OfOneElement")),
                  key=lambda case: case.time.median)
    if ones:
        rows.append(("call on one element, families below", "%s to %s" % (
            seconds(ones[0].time.median), seconds(ones[-1].time.median)), "not run"))
    calls = ", ".join("%s %s" % (code(case.name.replace("OfOneElement", "")), seconds(case.time.median)) for case in ones)
    return ("## Numbers\n\nTimes are minimum / median / maximum of %d processes. The cuda backend is compiled and linked "
            "where nvcc is; it has not run on a GPU yet.\n\n" % len(facts["firstCalls"]["1"]["first"])
            + markdown_table(("what", "cpu", "cuda"), rows) + "\nCalls on one element, medians: %s.\n" % calls)


def recipes_section(cases, table):
    rows = []
    for name, words in table["recipes"].items():
        if name in cases:
            figures = cases[name].counters
            spreads = [" / ".join(seconds(figures[who + what]) for what in ("Minimum", "Median", "Maximum"))
                       for who in ("families", "recipe")]
            rows.append((words, *spreads, *("%+.1f %%" % (100 * (figures["recipe" + what] / figures["families" + what] - 1))
                                            for what in ("Median", "Minimum")), table["recipeReasons"].get(name, "")))
    if not rows:
        return ""
    header = ("recipe", "the families alone", "the recipe", "overhead, medians", "minima", "")
    return ("## Recipes\n\nThe same work by a recipe and by calls of the families, on 2^24 elements, in 11 turns in one "
            "program; minimum / median / maximum. The recipes take their memory of a workspace, unless said.\n\n"
            + markdown_table(header, rows, last_left=True))


def below_rows(cases, table):
    """Those that are below twice as fast by the core, the slowest first."""
    return [(code(case.name), case.best[0], times_as_fast(case.ratio), times_as_fast(case.a_core),
             times_as_fast(case.ratio_alone), reason(case, table))
            for case in sorted(cases, key=lambda case: case.a_core) if case.a_core < 2]


def below_section(cases, table):
    """Of the cases that stand for a family."""
    telling = telling_cases(table)
    rows = below_rows([case for case in compared(cases) if case.name in telling], table)
    text = ("## Below 2 times by the core\n\nOf the families' cases above; the others stand in "
            "[benchmarks-all.md](benchmarks-all.md). What is below 1 by the core was timed again on one core alone: "
            "\"one core\" is how many times as fast as the peer that was. Reasons that name no fraction of a limit are "
            "read from the code, not measured.\n\n")
    return text + (markdown_table(BELOW, rows, 2, last_left=True) if rows else "None.\n")


HOW = """## How it was measured

- A benchmark calls a family through its public interface and waits for it: at least 5 repetitions of at least 0.05
  seconds each. A peer's script does the same work on arrays of the same size right behind it, in 5 runs of at least 0.02
  seconds. But what takes more than a second runs once if its case does not stand for a family in the tables above, or if
  another peer is twice as fast.
- Our calls use all cores, peers one. *Ratio* is the peer's median by ours; *a core* divides it by the number of our cores.
- *Of the limit*: bytes read and written, as a fraction of a parallel memcpy (copy), of a parallel memset where nothing
  is read (fill), of a parallel search for a NaN where next to nothing is written (read); or products, as a fraction of a
  loop of multiply-adds in registers (FMA). Measured at the start of each program; the nearest limit is shown. Stores
  past the caches can pass 100 %.
- Peers write to arrays that are there, where they take one, and keep the memory that they free. In what their rules
  differ stands in the scripts: `benchmarks/*/*_peers.py`.
- Of several peers the fastest is shown. Sizes: 2^26 elements, or 8192 x 8192, unless the name says another.
- A name's last argument, `true` or `false`: with an index (sorts), the whole chain of calls that a caller needs (`find1D`,
  `isMember2Arg`), clockwise (`rot90`). `double2` as a kind of index is a range, `const double*` a list.
"""


def page(cases, table, facts):
    pictures = ("![Bars: how many times as fast as its best peer a family is, by the core]"
                "(images/benchmark-ratios.png)\n\n"
                "## Throughput over size\n\nOurs on all cores, NumPy on one, 2^10 to 2^27 elements; `double`, the "
                "convolution `float`.\n\n![Curves of throughput over size, ours and NumPy's](images/benchmark-sizes.png)\n")
    sections = [GENERATED + "# Speed\n\n`make report` measures all of this anew and writes this page. Every case stands "
                "in [benchmarks-all.md](benchmarks-all.md).\n",
                machine_section(cases, facts), summary_section(cases), pictures, families_section(cases, table),
                recipes_section(cases, table), numbers_section(cases, facts), below_section(cases, table), HOW]
    return "\n".join(section for section in sections if section)


def complete(cases, table, facts):
    """Every case, and every peer of it."""
    text = [GENERATED + "# Every case\n\nMeasured on %s (%s). What the columns say stands in "
            "[benchmarks.md](benchmarks.md).\n" % (facts["machine"]["processor"], facts["date"])]
    for subsystem in dict.fromkeys(case.subsystem for case in cases.values() if case.subsystem != "recipes"):
        chosen = [case for case in cases.values() if case.subsystem == subsystem]
        text += ["## %s\n" % subsystem, markdown_table(HEADER, [cells(case) for case in chosen])]
        peers = [(code(case.name), words, str(time.runs),
                  *(seconds(value) for value in (time.minimum, time.median, time.maximum)))
                 for case in chosen for words, time in case.peers]
        if peers:
            text += ["Peers:\n", markdown_table(("case", "peer", "runs", "minimum", "median", "maximum"), peers, 2)]
    telling = telling_cases(table)
    rows = below_rows([case for case in compared(cases) if case.name not in telling], table)
    if rows:
        text += ["## Below 2 times by the core\n\nThose that do not stand in benchmarks.md.\n",
                 markdown_table(BELOW, rows, 2, last_left=True)]
    return "\n".join(text)
