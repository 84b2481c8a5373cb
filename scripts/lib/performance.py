"""Prints docs/performance.md from what scripts/bench has measured in the folder given."""

import glob
import json
import os
import statistics
import sys

# Ratio to the hand-written equivalent that each row is meant to stay below: at its largest size, or at those named.
AIMS = {
    "update, nothing due": {"10000": 0.5, "60000": 0.5},
    "update, all due, default print": 1.0,
    "update, all due, %.2f": 1.0,
    "update, all due, limits and %.2f": 1.1,
    "update, all due, past of 240 against none": 1.05,
    "draw, collapsed": 1.2,
    "draw, counters in view": 1.15,
    "draw, counters with bars in view": 1.15,
    "draw, counters under one parent out of view": 2,
    "draw, open groups of 100 out of view": 2,
    "filter, key press": 4,
    "filter, steady frame": 1.5,
    "table, draw": 1.3,
    "table, refresh": 1.15,
    "table, sort": 1.2,
    "comparison, draw 10,000 rows": 1.3,
    "comparison, bring in snapshots of 10,000": 2,
    "snapshot, take": {"100": 1.2, "10000": 1.2},
    "snapshot, scan files of 100 entries": 1.05,
    "create in groups of 100": 3,
    "create under one parent": 3,
    "remove all, groups of 100": 3,
    "remove all, one parent": 3,
    "remove one by one from one parent, first to last": 2,
    "remove one by one from one parent, last to first": 2,
    "remove one by one from one parent, at random": 2,
    "find a path of three names": 3,
    "collect warnings": {"10000": 1.5, "60000": 1.5},
    "metrics, publish": 1.5,
    "metrics, publish with limits": 1.5,
}

MEMORY_AIMS = {
    "memory per counter, stores just grown": ("memory per counter, name and functor apart, stores just grown", 450),
    "memory per counter, stores just full": ("memory per counter, name and functor apart, stores just full", 380),
    "memory of a past": ("memory of a counter's past, its samples apart", 32),
}

WITHOUT_AIM = ["choose a preset"]

UNITS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def median(values):
    return statistics.median(values)


def read_rows(folder):
    """{row: {size: {"ours": [ns], "hand": [ns]}}} of processor times, {name: [bytes]}, {name: [ns]} of what has no
    equivalent, each in the order of the passes, and the machine."""
    rows, memory, alone, context = {}, {}, {}, {}
    for path in sorted(glob.glob(os.path.join(folder, "times.*.json"))):
        with open(path, encoding="utf-8") as file:
            report = json.load(file)
        context = report["context"]
        for run in report["benchmarks"]:
            name, _, rest = run["run_name"].partition("/")
            nanoseconds = run["cpu_time"] * UNITS[run["time_unit"]]
            if "bytes" in run:
                memory.setdefault(name, []).append(run["bytes"])
            if name.startswith("metrics, "):
                alone.setdefault(name, []).append(nanoseconds)
            side, _, size = rest.partition("/")
            if side in ("ours", "hand"):
                times = rows.setdefault(name, {}).setdefault(size.split("/")[0], {})
                times.setdefault(side, []).append(nanoseconds)
    return rows, memory, alone, context


def show_time(nanoseconds):
    for unit, factor in (("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= factor:
            return f"{nanoseconds / factor:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def aim_of(name, size, largest):
    aims = AIMS.get(name, {})
    return (aims if isinstance(aims, dict) else {largest: aims}).get(size, "")


def print_rows(rows):
    print("| what | size | ours | by hand | ratio | from, to | aim |")
    print("|---|--:|--:|--:|--:|--:|--:|")
    for name, sizes in sorted(rows.items()):
        in_order = sorted(sizes, key=lambda size: int(size or 0))
        for size in in_order:
            ours, hand = sizes[size]["ours"], sizes[size]["hand"]
            ratios = sorted(mine / theirs for mine, theirs in zip(ours, hand))
            print(f"| {name} | {int(size):,} |" if size else f"| {name} | |",
                  f"{show_time(median(ours))} | {show_time(median(hand))} | {median(ratios):.2f} |",
                  f"{ratios[0]:.2f}, {ratios[-1]:.2f} | {aim_of(name, size, in_order[-1])} |")


def print_metrics(alone):
    """What offering counters to Prometheus costs, where that was built."""
    if "metrics, no copy due" not in alone:
        return
    print(f"| metrics: a frame without a copy due | {median(alone['metrics, no copy due']):.1f} ns | 50 ns |")
    for what in ("", " with limits"):
        share = median(alone["metrics, copy and scrape" + what]) / 1e9
        print(f"| metrics: 10,000 counters{what} copied and scraped each second, the reading client included | "
              f"{share:.2%} of a core | 1 % |")


def hidden_cost(rows):
    """Nanoseconds that each line out of view adds to a frame."""
    times = rows["draw, open groups of 100 out of view"]["60000"]
    return (median(times["ours"]) - median(times["hand"])) / 60600


WHERE_LIMITS_LIE = """
## Where an aim is missed or near, and why

- *draw, counters in view*: 1.05 to 1.16 from run to run; what it adds is the tree around the lines.
- *collect warnings*, at 60,000: the list of counters is read in order, but the counters themselves lie all over the
  memory. Fetching each of them some steps ahead took a third off, and laying what is printed of limits into a pool of
  its own, no longer between the counters, a fifth. What else runs on the machine, and takes its share of the cache,
  moves the ratio by a third.
- *snapshot, take* and *snapshot, scan files*: both sides keep a record, ours with values of any kind, 72 bytes an
  entry against 40 by hand. Ours writes a file without a name and names it when it is whole, by hand one that is
  renamed: a killed process leaves nothing to look for, which was a tenth of the time for 100.
- *comparison, bring in snapshots*, of few: each caption's row has to be found and made, which the copies by hand
  aren't held to.
- *table, sort*: before each value the number of rows is asked and the getter looked for, since a getter may shrink the
  rows or change the columns; by hand neither is.
- *the stripped library*: three quarters are code at `-O3`, an eighth are tables for exceptions. `-O2` makes it 380
  KiB, `-Os` 260; calls inside the library that don't go through its table of symbols spare another 5 KiB.
- *filter, key press*: by hand every path is kept in lower case, some 4 MB at 60,000, and all lines are of one height.
  The panel keeps neither: it reads each name, and lines of any height stay where they are.
- *memory per counter*, stores full: 224 bytes are the `Counter` that the host makes, with the functor that is left out
  here, 96 its slot, with the name, and its times, 18 what its removal needs, taken when it is made, and some 80 its
  node and what finds it: nodes stand in 102,400 slots by then. Just grown, half of the slots of counters are empty, too.
- *update, all due, past of 240 against none*: 23 instructions beside 620. At 60,000 a sample also goes into memory
  that was last touched 240 samples ago; the line behind it is fetched ahead for the counters that come next, and the
  wider a block of counters is, the less often there is none: blocks of 256 made it 1.10, of 2,048 1.04. Fetching ahead
  the counters that are sampled next took 30 % off both sides, and most of what moved the ratio from run to run.
- *metrics, publish*: by hand a vector of 400 KB is made each time, and costs 70 to 190 µs, as memory is kept
  or mapped anew.

## Tried, without a gain

- *update, nothing due*, times in blocks of 16: GCC unrolls a loop of 16 before it looks for instructions that take four
  numbers at once, and then finds none: 10 µs at 10,000 counters where blocks of 32 take 2.
- *table, sort*, a loop of its own for merging in place of `std::merge`, which calls `memmove` for the rest of each pair
  of runs: 1.39 to 1.43 at 100,000 rows with either.
- *update, all due, past of 240 against none*, at 60,000: fetching two lines ahead in place of one, or the line of the
  cursors, too; blocks of 4,096: the same within the noise.
"""


def read_numbers(folder, name):
    with open(os.path.join(folder, name), encoding="utf-8") as file:
        return [line.split() for line in file]


def check_complete(rows, memory):
    """Ends the program if something wasn't measured: half a page would pass for the whole one."""
    missing = [name for name in [*AIMS, *WITHOUT_AIM] if name not in rows]
    missing += [name for name, sizes in rows.items() if any(len(sides) < 2 for sides in sizes.values())]
    missing += [name for name in MEMORY_AIMS if name not in memory]
    if missing:
        sys.exit("No page is written. Not measured: " + "; ".join(missing))


def main(folder):
    rows, memory, alone, context = read_rows(folder)
    check_complete(rows, memory)
    compiled = [float(seconds) for seconds in read_numbers(folder, "compile.txt")[0]]
    stripped = os.path.getsize(os.path.join(folder, "stripped.so"))
    print("# What it costs\n")
    print("Written by `scripts/bench`: each row holds the library against what a host would write by hand for the")
    print("same result: the fastest plain code, to be read in `bench/`. Both are measured one soon after the other, in")
    print("each of several passes. The ratio is what counts: its median, its lowest and its highest of the passes. An")
    print("aim between these two is neither met nor missed for sure. Times are the medians of one machine's processor")
    print(f"times ({context['num_cpus']} cores, {context['mhz_per_cpu']} MHz).\n")
    print_rows(rows)
    print("\n| what | measured | aim |")
    print("|---|--:|--:|")
    print(f"| a counter out of view, added to a frame | {hidden_cost(rows):.1f} ns | 10 ns |")
    for name, (title, aim) in MEMORY_AIMS.items():
        print(f"| {title} | {median(memory[name]):.0f} bytes | {aim} bytes |")
    print(f"| the stripped library | {stripped / 1024:.0f} KiB | 250 KiB |")
    print(f"| compiling `statistics.h`, against its standard headers alone | {compiled[0] / compiled[1]:.2f} | 1.3 |")
    print_metrics(alone)
    print("| allocations in a steady frame, update and draw (held by a test) | 0 | 0 |")
    print(WHERE_LIMITS_LIE, end="")
    print("\n## Instructions\n")
    print("Counted by valgrind's callgrind: the same on every machine with the same compiler, so that a later change")
    print("can be held against them exactly.\n")
    print("| one frame of | instructions |")
    print("|---|--:|")
    titles = {
        "update-idle": "update, 60,000 counters, nothing due",
        "update-due": "update, 10,000 counters, all due, default print",
        "draw-hidden": "draw, 60,000 counters in open groups, 40 lines in view",
        "draw-table": "draw, a table of 100,000 rows by 5 columns, 40 in view",
    }
    for scene, count in read_numbers(folder, "instructions.txt"):
        print(f"| {titles[scene]} | {int(count):,} |")


if __name__ == "__main__":
    main(sys.argv[1])
