#!/usr/bin/env python3
"""Prints one table from Google Benchmark JSON files: each figure of ours, each reference
measured in the same run, their ratio, how the cost grows with the size, and the goals.

Benchmark names are "<case>/<variant>[/<size>]": the variant "ours" is the figure, any other
variant ("ref_<what>") of the same case and size is a reference. Suffixes Google Benchmark adds
("manual_time", "real_time", "iterations:8", ...) are dropped. Times are the median of the
repetitions: CPU time, or for benchmarks that say so the time they measured themselves (manual
time) or wall-clock time (real time).
A counter "memory_bytes" becomes a figure of its own, "<case>_memory".

Usage: table.py [--markdown] result.json...
"""

import json
import math
import re
import statistics
import sys

# (case pattern, size pattern, reference pattern or None for an absolute limit, limit, text)
# Absolute limits are in seconds, or bytes for memory figures.
GOALS = [
    # The sort has a frame of its own even at 8,192 ports of one type; the references are there
    # to show what the straightforward ways cost.
    (r"portsort", r"64|1024|8192", None, 0.016, "<= 16 ms"),
    # The I/O page against its 22 drop-downs filled; pages whose bare fill is small next to Qt
    # showing their widgets against that shown fill.
    (r"iopage_show", r"1024", r"ref_combo_fill", 1.5, "<= 1.5x"),
    (r"(?!iopage_).*page_show", r"1024", r"ref_shown_fill", 1.5, "<= 1.5x"),
    (r"(?!parampage_profile_redraw).*page_.*|chart_.*", r"|1024", None, 0.016, "<= 16 ms"),
    # A preview redrawn on every edit leaves most of the frame to the rest of the page.
    (r"parampage_profile_redraw", r"", None, 0.004, "<= 4 ms (1/4 frame)"),
    (r"startup", r".*", None, 0.150, "<= 150 ms"),
    (r"startup_memory", r".*", None, 30 * 2**20, "<= 30 MiB"),
    (r"parser", r"console_discarded", None, 1e-6, "<= 1 us (1M lines/s)"),
    # A weld of 60.5 s simulated at least 1,000 times faster than real time.
    (r"weldrun_60s", r".*", None, 0.0605, "<= 60.5 ms (1000x real time)"),
    # A page show reads its record and a few lists, a save sends a command or two: each round
    # trip over the network leaves room.
    (r"network_(read|command)", r".*", None, 0.002, "<= 2 ms (1/8 frame)"),
    # The change history is appended to: a save costs the same with 10,000 entries behind it.
    (r"simulator_history_save", r".*", r"ref_10_entries", 1.5, "<= 1.5x"),
]

ADDED_SUFFIX = re.compile(
    r"^(manual_time|real_time|process_time|iterations:\d+|repeats:\d+|min_time:.*|"
    r"min_warmup_time:.*|threads:\d+)$")
UNIT_SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
# The port counts per type the scaling benchmarks run at; growth is judged between them.
SCALE = (64, 1024, 8192)


def warn(text):
    print("table: " + text, file=sys.stderr)


def split_name(name):
    parts = [p for p in name.split("/") if not ADDED_SUFFIX.match(p)]
    wall = any(p in ("manual_time", "real_time") for p in name.split("/"))
    if len(parts) < 2:
        warn("benchmark %r does not follow <case>/<variant>[/<size>]; shown as ours" % name)
        return name, "ours", "", wall
    return parts[0], parts[1], "/".join(parts[2:]), wall


def number(value):
    """A finite float, or None."""
    if isinstance(value, bool) or not isinstance(value, (int, float)):
        return None
    value = float(value)
    return value if math.isfinite(value) else None


def load(paths):
    """{(case, variant, size): {"seconds": [...], "memory": [...], "error": str}}, context."""
    samples = {}
    order = []
    context = {}
    for path in paths:
        try:
            with open(path, encoding="utf-8") as f:
                data = json.load(f)
        except (OSError, ValueError) as e:
            warn("%s: %s" % (path, e))
            continue
        if not isinstance(data, dict) or not isinstance(data.get("benchmarks"), list):
            warn("%s: no benchmark list" % path)
            continue
        if isinstance(data.get("context"), dict) and not context:
            context = data["context"]
        entries = [b for b in data["benchmarks"] if isinstance(b, dict)]
        # The median when the run had repetitions, else the plain runs.
        medians = {b.get("run_name") for b in entries
                   if b.get("run_type") == "aggregate" and b.get("aggregate_name") == "median"}
        for b in entries:
            run_name = b.get("run_name", b.get("name"))
            if not isinstance(run_name, str):
                continue
            if run_name in medians:
                if b.get("run_type") != "aggregate" or b.get("aggregate_name") != "median":
                    continue
            elif b.get("run_type") == "aggregate":
                continue
            case, variant, size, wall = split_name(run_name)
            key = (case, variant, size)
            if key not in samples:
                samples[key] = {"seconds": [], "memory": [], "error": None}
                order.append(key)
            entry = samples[key]
            if b.get("error_occurred"):
                entry["error"] = str(b.get("error_message", "error"))
                continue
            scale = UNIT_SECONDS.get(b.get("time_unit", "ns"))
            value = number(b.get("real_time" if wall else "cpu_time"))
            if scale is None or value is None:
                warn("%s: no usable time" % run_name)
                continue
            entry["seconds"].append(value * scale)
            memory = number(b.get("memory_bytes"))
            if memory is not None:
                entry["memory"].append(memory)
    figures = {}
    figure_order = []
    for key in order:
        entry = samples[key]
        case, variant, size = key
        values = [("", entry["seconds"])]
        if entry["memory"]:
            values.append(("_memory", entry["memory"]))
        for suffix, data in values:
            k = (case + suffix, variant, size)
            if k not in figures:
                figure_order.append(k)
            figures[k] = {"value": statistics.median(data) if data else None,
                          "error": entry["error"], "memory": suffix == "_memory"}
    return figures, figure_order, context


def size_number(size):
    return int(size) if size.isdigit() else None


def fmt_value(value, memory):
    if value is None:
        return "-"
    if memory:
        return "%.1f MiB" % (value / 2**20)
    for unit, scale in (("s", 1.0), ("ms", 1e-3), ("us", 1e-6)):
        if abs(value) >= scale:
            return "%.3g %s" % (value / scale, unit)
    return "%.3g ns" % (value / 1e-9)


def fmt_ratio(ratio):
    # Enough digits that a ratio just over a limit does not print as the limit.
    if ratio is None:
        return "-"
    if ratio < 0.1:
        return "%.3gx" % ratio
    if ratio < 10:
        return "%.3fx" % ratio
    return "%.1fx" % ratio


def goals_for(case, size):
    return [g for g in GOALS if re.fullmatch(g[0], case) and re.fullmatch(g[1], size)]


def build_rows(figures, order):
    rows = []
    cases = []
    for case, variant, size in order:
        if variant == "ours" and (case, size) not in cases:
            cases.append((case, size))
    # References without an "ours" still show, so that a misnamed benchmark is noticed.
    for case, variant, size in order:
        if (case, size) not in cases:
            cases.append((case, size))
    for case, size in cases:
        ours = figures.get((case, "ours", size))
        memory = any(f["memory"] for (c, _, s), f in figures.items() if c == case and s == size)
        value = ours["value"] if ours else None
        first = {"figure": case, "size": size,
                 "ours": ("error: " + ours["error"]) if ours and ours["error"] and value is None
                 else fmt_value(value, memory)}
        lines = []
        goals = goals_for(case, size)
        for g in goals:
            if g[2] is None:
                met = None if value is None else value <= g[3]
                lines.append({"vs": "limit", "ref": fmt_value(g[3], memory), "ratio": "-",
                              "goal": g[4], "met": met})
        refs = [(v, f) for (c, v, s), f in figures.items()
                if c == case and s == size and v != "ours"]
        for variant, ref in refs:
            ratio = None
            if value is not None and ref["value"]:
                ratio = value / ref["value"]
            line = {"vs": variant, "ref": fmt_value(ref["value"], memory),
                    "ratio": fmt_ratio(ratio), "goal": "", "met": None}
            if ref["error"] and ref["value"] is None:
                line["ref"] = "error: " + ref["error"]
            for g in goals:
                if g[2] is not None and re.fullmatch(g[2], variant):
                    line["goal"] = g[4]
                    strict = g[4].startswith("<") and not g[4].startswith("<=")
                    if ratio is not None:
                        line["met"] = ratio < g[3] if strict else ratio <= g[3]
            lines.append(line)
        # Growth from the next smaller step of the port-count scale: no worse than n log n.
        # Other sizes (the 10,000-name sort) are there for their references, and a step as
        # small as 8,192 to 10,000 would judge noise.
        n = size_number(size)
        smaller = [size_number(s) for (c, v, s) in figures
                   if c == case and v == "ours" and size_number(s) in SCALE and n in SCALE
                   and size_number(s) < n]
        if n and smaller and value is not None:
            p = max(smaller)
            before = figures[(case, "ours", str(p))]["value"]
            if before:
                growth = value / before
                nlogn = (n * math.log(n)) / (p * math.log(p)) if p > 1 else float(n)
                lines.append({"vs": "ours at %d" % p, "ref": fmt_value(before, memory),
                              "ratio": fmt_ratio(growth),
                              "goal": "<= %.3gx (n log n)" % nlogn, "met": growth <= nlogn})
        if not lines:
            lines.append({"vs": "-", "ref": "", "ratio": "", "goal": "", "met": None})
        for i, line in enumerate(lines):
            row = dict(first) if i == 0 else {"figure": "", "size": "", "ours": ""}
            row.update(line)
            row["met"] = {True: "yes", False: "NO", None: ""}[line["met"]]
            rows.append(row)
    return rows


COLUMNS = [("figure", "figure"), ("size", "size"), ("ours", "ours"), ("vs", "against"),
           ("ref", "its value"), ("ratio", "ratio"), ("goal", "goal"), ("met", "met")]


def render(rows, markdown):
    out = []
    if markdown:
        out.append("| " + " | ".join(title for _, title in COLUMNS) + " |")
        out.append("|" + "|".join("---" for _ in COLUMNS) + "|")
        for row in rows:
            out.append("| " + " | ".join(str(row[k]) for k, _ in COLUMNS) + " |")
        return "\n".join(out)
    widths = [max(len(title), *(len(str(r[k])) for r in rows)) if rows else len(title)
              for k, title in COLUMNS]
    line = lambda cells: "  ".join(c.ljust(w) for c, w in zip(cells, widths)).rstrip()
    out.append(line([title for _, title in COLUMNS]))
    out.append(line(["-" * w for w in widths]))
    for row in rows:
        out.append(line([str(row[k]) for k, _ in COLUMNS]))
    return "\n".join(out)


def main(argv):
    markdown = "--markdown" in argv
    paths = [a for a in argv if a != "--markdown"]
    if not paths:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    figures, order, context = load(paths)
    if not figures:
        warn("no benchmark results")
        return 1
    load_avg = context.get("load_avg")
    if isinstance(load_avg, list):
        load_avg = ", ".join("%.2f" % x for x in load_avg if number(x) is not None)
    print("Run %s on %s: %s CPUs, load average %s; times are medians (CPU time unless wall)."
          % (context.get("date", "?"), context.get("host_name", "?"),
             context.get("num_cpus", "?"), load_avg or "?"))
    print()
    rows = build_rows(figures, order)
    print(render(rows, markdown))
    missed = sum(1 for r in rows if r["met"] == "NO")
    errors = sum(1 for f in figures.values() if f["error"])
    print()
    print("%d goal(s) missed, %d benchmark(s) failed." % (missed, errors))
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
