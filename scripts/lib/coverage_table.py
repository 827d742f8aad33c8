"""Prints gcovr's JSON summary as a table, per file and per folder: coverage_table.py SUMMARY.json LEAST_LINE_PERCENT"""

import collections
import json
import os
import sys

KINDS = ("line", "branch", "function")


def cells(entry):
    for kind in KINDS:
        covered, total = entry[kind + "_covered"], entry[kind + "_total"]
        percent = f"{100 * covered / total:6.1f} %" if total else "      - "
        yield f"{covered:6}/{total:<6}{percent}"


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        summary = json.load(file)
    if not summary["line_total"]:
        sys.exit("coverage: no lines were counted")
    width = max(len(entry["filename"]) for entry in summary["files"])
    print(f"{'':{width}}  " + "  ".join(f"{kind + 's' if kind != 'branch' else 'branches':^21}" for kind in KINDS))
    for entry in sorted(summary["files"], key=lambda entry: entry["filename"]):
        print(f"{entry['filename']:{width}}  " + "  ".join(cells(entry)))
    print(f"{'Total':{width}}  " + "  ".join(cells(summary)))
    print("\n| folder | " + " | ".join(f"{kind}{'es' if kind == 'branch' else 's'}" for kind in KINDS) + " |")
    print("|---|" + "---:|" * len(KINDS))
    folders = collections.defaultdict(collections.Counter)
    for entry in summary["files"]:
        counts = {f"{kind}_{what}": entry[f"{kind}_{what}"] for kind in KINDS for what in ("covered", "total")}
        folders[os.path.dirname(entry["filename"]).removesuffix("/internal")].update(counts)
    for folder, counts in sorted(folders.items()) + [("all", summary)]:
        shares = (f"{counts[kind + '_covered']} of {counts[kind + '_total']}, "
                  f"{100 * counts[kind + '_covered'] / max(1, counts[kind + '_total']):.1f} %" for kind in KINDS)
        print(f"| `{folder}` | " + " | ".join(shares) + " |")
    percent = 100 * summary["line_covered"] / summary["line_total"]
    if percent < float(sys.argv[2]):
        sys.exit(f"coverage: {percent:.2f} % of the lines are less than {sys.argv[2]} %")


main()
