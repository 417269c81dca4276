#!/usr/bin/env python3
"""Turns evaluators_bench JSON output into the README's ratio table.

For each curve: time per column of the evaluator on each window, how many
times faster it is than the general sampled evaluator and than the naive
per-column formula, how many times the floor (storing its points) it costs,
and how much its time per column varies from the smallest to the largest
window (median of the repetitions throughout)."""
import json
import sys
from collections import defaultdict

SIZES = ["161x101", "1920x1080", "16384x4096"]


def main(path):
    data = json.load(open(path))
    t = defaultdict(dict)  # (way, curve) -> size -> ns
    for b in data["benchmarks"]:
        if b.get("aggregate_name") not in (None, "median"):
            continue
        way, curve, size = b["run_name"].split("/")[:3]
        t[(way, curve)][size] = b["real_time"]
    curves = sorted({c for (_, c) in t})
    rows = {"logarithmic", "parabola", "hyperbola"}  # walked row by row: cost per row
    cols = {s: int(s.split("x")[0]) for s in SIZES}
    rws = {s: int(s.split("x")[1]) for s in SIZES}
    print("| curve | ns per column or row (small / HD / huge) | vs general | vs naive | vs floor | per-column spread |")
    print("|---|---|---|---|---|---|")
    for c in curves:
        ev = t[("Evaluator", c)]
        if not all(s in ev for s in SIZES):
            continue
        per = [ev[s] / (rws[s] if c in rows else cols[s]) for s in SIZES]
        def ratio(way, inverse=False):
            r = [(t[(way, c)][s] / ev[s]) if not inverse else (ev[s] / t[(way, c)][s]) for s in SIZES]
            return "%.1f-%.1fx" % (min(r), max(r))
        spread = max(per) / min(per) - 1
        print("| %s | %s | %s faster | %s faster | %s | %d%% |" % (
            c, " / ".join("%.1f" % p for p in per), ratio("General"), ratio("Naive"),
            ratio("Floor", inverse=True), round(spread * 100)))
    hd = SIZES[1]
    print()
    print("| curve | flush AVX2 | SSE2 | scalar (ns per column or row, %s) |" % hd)
    print("|---|---|---|---|")
    for c in curves:
        ways = [t[(w, c)].get(hd) for w in ("Evaluator", "FlushSSE2", "FlushScalar")]
        if None in ways:
            continue
        n = rws[hd] if c in rows else cols[hd]
        print("| %s | %s |" % (c, " | ".join("%.1f" % (w / n) for w in ways)))


if __name__ == "__main__":
    main(sys.argv[1] if len(sys.argv) > 1 else "build-bench/evaluators.json")
