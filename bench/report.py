#!/usr/bin/env python3
"""Turns Google Benchmark JSON files into one Markdown table.

rows.tsv has one comparison per line (tab-separated, '#' starts a comment):
  operation  tivlib-benchmark  peer-benchmark  peer-label  metric  target
metric is 'time' (lower is better), 'rate' (bytes or items per second, higher is better) or
'counter:NAME[:lower]' (a user counter; higher is better unless ':lower' is given).
The ratio is always oriented so that above 1 means Tivlib is better; target is the least
ratio that passes (for example 0.87 for "within 1.15x", 3 for "at least 3x").
Benchmark names match exactly after the aggregate suffix (_median) is removed.
"""
import json
import re
import sys

# Suffixes Google Benchmark adds to a name for its run options.
OPTION_SUFFIX = re.compile(r"/(?:(?:min_time|min_warmup_time|repeats|iterations|threads):[^/]*"
                           r"|real_time|process_time|manual_time)")


def load(paths):
    figures = {}
    for path in paths:
        try:
            with open(path) as f:
                data = json.load(f)
        except (OSError, ValueError):
            continue
        for b in data.get("benchmarks", []):
            name = OPTION_SUFFIX.sub("", b.get("run_name", b["name"]))
            agg = b.get("aggregate_name")
            if agg and agg != "median":
                continue
            figures[name] = b
    return figures


def value(b, metric):
    if metric == "time":
        scale = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[b.get("time_unit", "ns")]
        return b["real_time"] * scale, False
    if metric == "rate":
        v = b.get("bytes_per_second") or b.get("items_per_second")
        return v, True
    parts = metric.split(":")
    return b.get(parts[1]), not (len(parts) > 2 and parts[2] == "lower")


def show(v, metric, b):
    if v is None:
        return "n/a"
    if metric == "time":
        return f"{v:,.0f} ns" if v >= 100 else f"{v:.1f} ns"
    if metric == "rate":
        if b.get("bytes_per_second"):
            return f"{v / 1e6:,.1f} MB/s"
        return f"{v / 1e6:,.2f} M/s"
    return f"{v:,.3g}"


def main():
    rows_path, paths = sys.argv[1], sys.argv[2:]
    figures = load(paths)
    print("| Operation | Tivlib | Peer or limit | Peer figure | Ratio | Target | Holds |")
    print("|---|---|---|---|---|---|---|")
    missing = 0
    with open(rows_path) as f:
        for line in f:
            line = line.rstrip("\n")
            if not line or line.startswith("#"):
                continue
            op, tiv, peer, label, metric, target = line.split("\t")[:6]
            tb, pb = figures.get(tiv), figures.get(peer)
            if peer == "-" and tb is not None:
                tv, _ = value(tb, metric)
                print(f"| {op} | {show(tv, metric, tb)} | - | - | - | - | - |")
                continue
            if tb is None or pb is None:
                missing += 1
                print(f"| {op} | n/a | {label} | n/a | n/a | {target} | not measured |")
                continue
            tv, higher = value(tb, metric)
            pv, _ = value(pb, metric)
            if not tv or not pv:
                ratio = None
            else:
                ratio = tv / pv if higher else pv / tv
            if target == "-":
                holds = "-"
            else:
                holds = "yes" if ratio is not None and ratio >= float(target) else "no"
            r = f"{ratio:.2f}" if ratio is not None else "n/a"
            goal = "-" if target == "-" else "≥ " + target
            print(f"| {op} | {show(tv, metric, tb)} | {label} | {show(pv, metric, pb)} | {r} | {goal} | {holds} |")
    print()
    print("Ratio above 1: Tivlib is faster (or smaller) than the peer or limit; "
          "figures of one run on one machine, medians of the repetitions.")
    return 0


if __name__ == "__main__":
    sys.exit(main())
