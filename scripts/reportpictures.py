"""The pictures of `make report`."""
import io
import math
import re

import matplotlib
from PIL import Image

matplotlib.use("Agg")
from matplotlib import pyplot  # noqa: E402

COLOURS = ("#4477aa", "#66ccee", "#228833", "#ccbb44", "#ee6677", "#aa3377", "#bb5566", "#004488", "#999933")
SIZES = (("copySizes", "copy", "GB/s"), ("colonSizes", "Colon", "GB/s"), ("castSizes", "cast to float", "GB/s"),
         ("sumSizes", "sum", "GB/s"), ("cumSumSizes", "cumulative sum", "GB/s"),
         ("transposeSizes", "transpose", "GB/s"), ("sortSizes", "sort", "M elements/s"),
         ("gatherSizes", "gather, shuffled", "M elements/s"),
         ("interpolationSizes", "interpolation, 1000 points", "M elements/s"),
         ("convolutionSizes", "convolution, 16 taps", "M elements/s"))


def bars(cases, table):
    """One bar a case that stands for a family: label, ratio by the core, colour of its subsystem."""
    for (subsystem, families), colour in zip(table["families"].items(), COLOURS):
        for family, names in families.items():
            chosen = [cases[name] for name in names if name in cases and cases[name].peers]
            for case in chosen:
                label = family if len(chosen) == 1 else table["labels"].get(case.name) or labelled(family, case.name)
                yield subsystem, label, case.a_core, colour


def labelled(family, name):
    """The family, with what tells its cases apart."""
    inside = re.search(r"<(.*)>", name)
    return "%s  %s" % (family, re.sub("KernelType|Generator", "", inside.group(1))) if inside else name


def save(figure, file):
    """With few colours, which makes the file a third as large."""
    drawn = io.BytesIO()
    figure.savefig(drawn, dpi=110, metadata={"Software": None})
    pyplot.close(figure)
    Image.open(drawn).convert("RGB").quantize(96).save(file, optimize=True)


def ratios(cases, table, file):
    drawn = list(bars(cases, table))
    columns = 2 if len(drawn) > 20 else 1
    # A row more for each subsystem's name.
    rows = []
    for subsystem, label, value, colour in drawn:
        if not rows or rows[-1][0] != subsystem:
            rows.append((subsystem, None, None, colour))
        rows.append((subsystem, label, value, colour))
    height = max(1, math.ceil(len(rows) / columns))
    figure, axes = pyplot.subplots(1, columns, figsize=(7 * columns, 1.1 + 0.19 * height), squeeze=False, sharex=True)
    most = max([value for _, _, value, _ in drawn] + [4])
    least = min([value for _, _, value, _ in drawn] + [0.5])
    for column, axis in enumerate(axes[0]):
        part = rows[column * height:(column + 1) * height]
        if part and column and part[0][1] is not None:
            part.insert(0, (part[0][0] + ", continued", None, None, part[0][3]))
        labels = []
        for place, (subsystem, label, value, colour) in enumerate(part):
            labels.append(subsystem.upper() if label is None else label)
            if label is not None:
                axis.barh(place, math.log10(value), color=colour, height=0.72)
                shown = "%.2f" % value if value < 10 else "%.0f" % value
                axis.text(math.log10(value) + (0.02 if value >= 1 else -0.02), place, shown, va="center",
                          ha="left" if value >= 1 else "right", fontsize=6.5,
                          bbox={"facecolor": "white", "edgecolor": "none", "pad": 0.6})
        axis.set_yticks(range(len(part)), labels, fontsize=7)
        for tick, row in zip(axis.get_yticklabels(), part):
            if row[1] is None:
                tick.set_fontweight("bold")
                tick.set_color(row[3])
        axis.set_ylim(height + 0.5, -0.8)
        axis.set_xlim(math.log10(least) - 0.25, math.log10(most) + 0.3)
        ticks = [tick for tick in (0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 50, 100) if least / 1.5 <= tick <= 1.5 * most]
        axis.set_xticks([math.log10(tick) for tick in ticks], ["%g" % tick for tick in ticks], fontsize=8)
        axis.axvline(0, color="black", linewidth=0.8)
        axis.axvline(math.log10(2), color="black", linewidth=0.8, linestyle="--")
        axis.set_xlabel("times as fast as the best peer, by the core", fontsize=8)
        for side in ("top", "right", "left"):
            axis.spines[side].set_visible(False)
        axis.tick_params(axis="y", length=0)
    figure.tight_layout()
    save(figure, file)


def sizes(cases, file):
    columns = 5
    figure, axes = pyplot.subplots(2, columns, figsize=(15, 6))
    for axis, (function, title, unit) in zip(axes.flat, SIZES):
        points = sorted(((case.elements, case) for name, case in cases.items() if name.startswith(function + "/")),
                        key=lambda point: point[0])
        factor = points[0][1].bytes_per_second * points[0][1].time.median / points[0][0] / 1e9 if (
            points and unit == "GB/s") else 1e-6
        for label, colour, marker, time in (("gpuruntime, all cores", COLOURS[0], "o", lambda case: case.time),
                                            ("NumPy, one core", COLOURS[4], "s", lambda case: case.best and case.best[1])):
            with_time = [(count, time(case)) for count, case in points if time(case)]
            if not with_time:
                continue
            counts = [count for count, _ in with_time]
            axis.plot(counts, [factor * count / spread.median for count, spread in with_time], color=colour,
                      marker=marker, markersize=3.5, linewidth=1.3, label=label)
            axis.fill_between(counts, [factor * count / spread.maximum for count, spread in with_time],
                              [factor * count / spread.minimum for count, spread in with_time], color=colour, alpha=0.2)
        axis.set_xscale("log", base=2)
        axis.set_yscale("log")
        axis.set_xticks([2**exponent for exponent in (10, 14, 18, 22, 26)])
        axis.yaxis.set_major_locator(matplotlib.ticker.LogLocator(subs=(1, 2, 5)))
        axis.yaxis.set_major_formatter(matplotlib.ticker.FuncFormatter(lambda value, _: "%g" % value))
        axis.yaxis.set_minor_formatter(matplotlib.ticker.NullFormatter())
        axis.grid(True, which="major", linewidth=0.4)
        axis.set_title(title, fontsize=10)
        axis.set_ylabel(unit, fontsize=8)
        axis.tick_params(labelsize=8)
        axis.set_xlabel("elements", fontsize=8)
    handles, labels = axes.flat[0].get_legend_handles_labels()
    if handles:
        figure.legend(handles, labels, fontsize=9, loc="upper center", ncol=2, frameon=False)
    figure.tight_layout(rect=(0, 0, 1, 0.96))
    save(figure, file)


def draw(cases, table, folder):
    folder.mkdir(parents=True, exist_ok=True)
    ratios(cases, table, folder / "benchmark-ratios.png")
    sizes(cases, folder / "benchmark-sizes.png")
