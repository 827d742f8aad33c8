#!/usr/bin/env python3
"""The table of docs/performance.md from what scripts/bench.sh measured in one run.

Usage: bench_table.py FOLDER, which holds bench.json, memory.txt and verify.txt.
Of every benchmark the fastest repetition counts: what disturbs a run makes it slower, never faster.
"""

import collections
import json
import pathlib
import re
import sys


def fastest(path):
    times = collections.defaultdict(list)
    for run in json.loads(path.read_text())["benchmarks"]:
        if run["run_type"] == "iteration":
            if run.get("error_occurred"):
                sys.exit(f"{run['name']}: {run['error_message']}")
            scale = {"ns": 1.0, "us": 1e3, "ms": 1e6}[run["time_unit"]]
            times[run["name"]].append(run["cpu_time"] * scale)
    return {name: min(values) for name, values in times.items()}


def shown(nanoseconds):
    for limit, unit, divisor in ((1e3, "ns", 1), (1e6, "µs", 1e3), (float("inf"), "ms", 1e6)):
        if nanoseconds < limit:
            return f"{nanoseconds / divisor:.3g} {unit}"


def main():
    folder = pathlib.Path(sys.argv[1])
    time = fastest(folder / "bench.json")
    rows = []

    def faster(what, name, other, against, least):
        ratio = time[other] / time[name]
        rows.append((what, shown(time[name]), against, shown(time[other]), f"{ratio:.2f} × its speed",
                     f"≥ {least}", ratio >= least))

    def at_most(what, name, most):
        ratio = time[name] / time["BM_Floor/10"]
        rows.append((what, shown(time[name]), "the floor", shown(time["BM_Floor/10"]), f"{ratio:.2f} × its time",
                     f"≤ {most}" if most else "", ratio <= most if most else None))

    def per_item(what, name, few, many):
        one, other = time[f"{name}/{few}"] / few, time[f"{name}/{many}"] / many
        rows.append((f"{what}, per item of {many:,}", shown(other), f"of {few}", shown(one),
                     f"{other / one:.2f} × its time", "≤ 1.3", other / one <= 1.3))

    mebibyte = 1 << 20
    for hash_name in ("Sha256", "Sha1"):
        for size, least in ((mebibyte, 0.95), (64, 3), (400, 1.8)):
            label = "1 MiB" if size == mebibyte else f"{size} B"
            faster(f"{hash_name.upper().replace('SHA', 'SHA-')} of {label}", f"BM_{hash_name}/{size}",
                   f"BM_{hash_name}_libcrypto/{size}", "libcrypto", least)
    for name, what in (("Base64Encode", "Base64 of 1 MiB"), ("Base64Decode", "Base64 of 1 MiB, back")):
        faster(what, f"BM_{name}/{mebibyte}", f"BM_{name}_plain/{mebibyte}", "plain loop", 8)
        faster(what, f"BM_{name}/{mebibyte}", f"BM_{name}_libcrypto/{mebibyte}", "libcrypto", 6)
    for name, what in (("HexEncode", "hexadecimal text of 1 MiB"), ("HexDecode", "hexadecimal text, back")):
        faster(what, f"BM_{name}/{mebibyte}", f"BM_{name}_plain/{mebibyte}", "plain loop", 4)
    at_most("request of 10 items, all objects new", "BM_RequestNewObjects/10", 6)
    at_most("request of 10 items, objects kept", "BM_RequestKeptObjects/10", 2.5)
    at_most("the same, items taken out and put in again before", "BM_RequestItemsAgain/10", None)
    at_most("import of its document with response", "BM_XmlImport/10", 5)
    per_item("request, all objects new", "BM_RequestNewObjects", 100, 100000)
    per_item("request, objects kept", "BM_RequestKeptObjects", 100, 100000)
    per_item("decoding an item list", "BM_DecodeItemList", 100, 100000)
    per_item("ItemK", "BM_ItemByID", 100, 100000)
    per_item("RemoveItem by ID", "BM_RemoveItemByID", 100, 100000)

    memory = [float(number) for number in re.findall(r"[\d.]+", (folder / "memory.txt").read_text())]
    rows.append(("a cash item with a name of 20 characters", f"{memory[0]:.0f} bytes", "heap per item of 100,000",
                 f"{memory[3]:.0f} bytes", "", "≤ 400", max(memory[0], memory[1], memory[3]) <= 400))

    runs = collections.defaultdict(list)
    for line in (folder / "verify.txt").read_text().splitlines():
        jobs, milliseconds = line.split()
        runs[int(jobs)].append(int(milliseconds))
    jobs = max(runs)
    one, all_jobs = min(runs[1]), min(runs[jobs])
    rows.append((f"zel verify, 10,000 documents, {jobs} cores", f"{all_jobs} ms", "one core", f"{one} ms",
                 f"{one / all_jobs:.2f} × its speed", f"≥ {0.75 * jobs:.2f}", one / all_jobs >= 0.75 * jobs))

    print("| what | measured | against | measured | ratio | to reach | |\n|---|---:|---|---:|---:|---:|---|")
    for *cells, reached in rows:
        print("| " + " | ".join(cells) + " | " + {True: "yes", False: "**no**", None: ""}[reached] + " |")


if __name__ == "__main__":
    main()
