#!/usr/bin/env python3
"""Turns the raw results of scripts/compare-peers.sh into one table and its JSON.

usage: compare-peers-report.py WORK_DIR OUT_JSON

WORK_DIR holds, per contender C (ours, qtquick, painter):
  C-scroll-R.json   frame statistics of round R (the programs' common JSON)
  C-idle.json       frame statistics of the idle run
  C-scroll.calls    GL calls of a traced scroll run, one name per line
  C-idle-short.calls, C-idle-long.calls   traced idle runs of two lengths
  C-heap.json       heap bytes per row and per plain view (when the contender has objects)
and settings.json (frames, warm-up, rounds, traced frames, heap instances).
"""
import json
import math
import os
import re
import statistics
import sys

CONTENDERS = [("ours", "this framework"), ("qtquick", "Qt Quick"), ("painter", "QPainter GL2")]
DRAW = re.compile(r"^(glDraw|glMultiDraw)")


def load(path):
    if not os.path.exists(path):
        return None
    with open(path) as f:
        return json.load(f)


def measured(stats):
    """The section after the warm-up: the one whose name is not in parentheses."""
    for section in stats["sections"]:
        if not section["section"].startswith("(") and section["section"] != "all":
            return section
    raise SystemExit("no measured section in the statistics")


def nearest_rank(sorted_values, q):
    n = len(sorted_values)
    return sorted_values[min(max(math.ceil(q * n) - 1, 0), n - 1)]


def read_calls(path):
    with open(path) as f:
        return [line.strip() for line in f if line.strip()]


def gl_only(names):
    return [n for n in names if n.startswith("gl") and not n.startswith("glX")]


def per_frame_window(names, warmup, frames):
    """Draws and GL calls per frame over the frames after the warm-up, frames being
    delimited by buffer swaps."""
    frame = 0
    draws = calls = 0
    for name in names:
        if name.startswith("glXSwapBuffers"):
            frame += 1
            continue
        if warmup <= frame < warmup + frames and name.startswith("gl") and not name.startswith("glX"):
            calls += 1
            if DRAW.match(name):
                draws += 1
    if frame < warmup + frames:
        raise SystemExit(f"the trace holds {frame} swaps, fewer than {warmup + frames}")
    return draws / frames, calls / frames


def per_frame_difference(short, long, frames):
    """Draws and GL calls per frame as the difference of two runs `frames` apart:
    it needs no swap to delimit frames, so it holds for frames that draw nothing."""
    a, b = gl_only(short), gl_only(long)
    draws = sum(1 for n in b if DRAW.match(n)) - sum(1 for n in a if DRAW.match(n))
    return max(draws, 0) / frames, max(len(b) - len(a), 0) / frames


def main(work, out_path):
    settings = load(os.path.join(work, "settings.json"))
    results = {}
    for key, _ in CONTENDERS:
        rounds = [load(os.path.join(work, f"{key}-scroll-{r}.json")) for r in range(1, settings["rounds"] + 1)]
        times = sorted(t for s in rounds for t in measured(s)["frameMs"])
        idle = load(os.path.join(work, f"{key}-idle.json"))
        r = {
            "meanMs": statistics.fmean(times),
            "p50Ms": nearest_rank(times, 0.50),
            "p99Ms": nearest_rank(times, 0.99),
            "roundMeansMs": [measured(s)["meanMs"] for s in rounds],
            "coldStartMs": statistics.median(s["firstSwapMs"] for s in rounds),
            "coldStartRoundsMs": [s["firstSwapMs"] for s in rounds],
            "idleMeanMs": measured(idle)["meanMs"],
        }
        r["draws"], r["glCalls"] = per_frame_window(
            read_calls(os.path.join(work, f"{key}-scroll.calls")), settings["warmup"], settings["traceFrames"]
        )
        r["idleDraws"], r["idleGlCalls"] = per_frame_difference(
            read_calls(os.path.join(work, f"{key}-idle-short.calls")),
            read_calls(os.path.join(work, f"{key}-idle-long.calls")),
            settings["traceFrames"],
        )
        own = measured(rounds[0])
        # Only the framework counts its own calls, behind its GL state cache.
        if "glCallsPerFrame" in own:
            r["ownDraws"] = statistics.fmean(measured(s)["drawsPerFrame"] for s in rounds)
            r["ownGlCalls"] = statistics.fmean(measured(s)["glCallsPerFrame"] for s in rounds)
            r["ownPixels"] = statistics.fmean(
                measured(s)["renderedPixelsPerFrame"] + measured(s)["compositedPixelsPerFrame"] for s in rounds
            )
            r["ownStateRequests"] = statistics.fmean(measured(s)["stateRequestsPerFrame"] for s in rounds)
            r["ownStateFiltered"] = r["ownStateRequests"] - statistics.fmean(
                measured(s)["stateForwardedPerFrame"] for s in rounds
            )
        heap = load(os.path.join(work, f"{key}-heap.json"))
        if heap:
            r["rowBytes"], r["viewBytes"] = heap["rowBytes"], heap["viewBytes"]
        results[key] = r

    quick_mean, quick_p99 = results["qtquick"]["meanMs"], results["qtquick"]["p99Ms"]
    # (figure, key, unit/format, goal text, goal test on our value)
    figures = [
        ("frame time mean", "meanMs", "ms", "<= 0.5x Qt Quick", lambda v: v <= 0.5 * quick_mean),
        ("frame time p50", "p50Ms", "ms", "", None),
        ("frame time p99", "p99Ms", "ms", "<= 0.5x Qt Quick", lambda v: v <= 0.5 * quick_p99),
        ("draws per frame", "draws", "", "<= 6", lambda v: v <= 6),
        ("GL calls per frame", "glCalls", "", "<= 90", lambda v: v <= 90),
        ("GL calls per frame, own counter", "ownGlCalls", "", "<= 90", lambda v: v <= 90),
        ("draws per frame, own counter", "ownDraws", "", "", None),
        ("GL state changes asked per frame", "ownStateRequests", "", "", None),
        ("  of which the state cache filtered", "ownStateFiltered", "", "", None),
        ("pixels written per frame, own counter", "ownPixels", "px", "", None),
        ("idle: draws per frame", "idleDraws", "", "0", lambda v: v == 0),
        ("idle: GL calls per frame", "idleGlCalls", "", "0", lambda v: v == 0),
        ("idle: frame time mean", "idleMeanMs", "ms", "", None),
        ("heap bytes per row", "rowBytes", "B", "", None),
        ("heap bytes per plain view", "viewBytes", "B", "<= 300", lambda v: v <= 300),
        ("cold start to first swap", "coldStartMs", "ms", "< 2000 ms", lambda v: v < 2000),
    ]
    table = []
    for name, key, unit, goal, test in figures:
        row = {"figure": name, "unit": unit, "goal": goal}
        for c, _ in CONTENDERS:
            row[c] = results[c].get(key)
        q = row["qtquick"]
        for c in ("ours", "painter"):
            row[c + "ToQtQuick"] = row[c] / q if row[c] is not None and q else None
        row["met"] = test(row["ours"]) if test and row["ours"] is not None else None
        table.append(row)

    def cell(v, digits=1):
        if v is None:
            return "-"
        if abs(v) >= 1000:
            return f"{v:,.0f}"
        return f"{v:.{digits}f}"

    header = ["figure", "ours", "Qt Quick", "QPainter", "ours/QtQ", "QP/QtQ", "goal", "met"]
    lines = []
    for row in table:
        unit = f" ({row['unit']})" if row["unit"] else ""
        met = "-" if row["met"] is None else ("yes" if row["met"] else "no")
        lines.append(
            [row["figure"] + unit, cell(row["ours"]), cell(row["qtquick"]), cell(row["painter"]),
             cell(row["oursToQtQuick"], 2), cell(row["painterToQtQuick"], 2), row["goal"] or "-", met]
        )
    widths = [max(len(str(x)) for x in col) for col in zip(header, *lines)]
    text = "| " + " | ".join(h.ljust(w) for h, w in zip(header, widths)) + " |\n"
    text += "|" + "|".join("-" * (w + 2) for w in widths) + "|\n"
    for line in lines:
        text += "| " + " | ".join(str(x).ljust(w) for x, w in zip(line, widths)) + " |\n"
    print(text, end="")
    print(
        f"{settings['rounds']} rounds of {settings['frames']} frames after {settings['warmup']} warm-up frames; "
        f"calls traced over {settings['traceFrames']} frames; heap over {settings['heapInstances']} instances"
    )
    with open(out_path, "w") as f:
        json.dump({"settings": settings, "table": table, "contenders": results, "text": text}, f, indent=2)
        f.write("\n")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        raise SystemExit(__doc__)
    main(sys.argv[1], sys.argv[2])
