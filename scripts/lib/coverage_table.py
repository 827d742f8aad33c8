"""Prints gcovr's JSON summary as a table: coverage_table.py SUMMARY.json LEAST_LINE_PERCENT"""

import json
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
    percent = 100 * summary["line_covered"] / summary["line_total"]
    if percent < float(sys.argv[2]):
        sys.exit(f"coverage: {percent:.2f} % of the lines are less than {sys.argv[2]} %")


main()
