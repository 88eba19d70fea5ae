"""Checks benchmark counters against the limits of checks.tsv.

Usage: check_ratios.py RESULTS_DIR CHECKS_TSV
RESULTS_DIR holds one Google Benchmark JSON file per program (PROGRAM.json).
Prints one line per check with PASS, FAIL or MISSING; exits 1 unless all pass.
"""
import json
import os
import sys


def load(results_dir, program, cache):
    if program not in cache:
        path = os.path.join(results_dir, program + ".json")
        try:
            with open(path, encoding="utf-8") as f:
                cache[program] = json.load(f).get("benchmarks", [])
        except (OSError, ValueError):
            cache[program] = None
    return cache[program]


def main(argv):
    if len(argv) != 3:
        print(__doc__)
        return 2
    results_dir, checks_path = argv[1], argv[2]
    cache = {}
    failed = 0
    rows = []
    with open(checks_path, encoding="utf-8") as f:
        for line in f:
            if not line.strip() or line.startswith("#"):
                continue
            program, bench, counter, test, limit, what = line.rstrip("\n").split("\t", 5)
            limit = float(limit)
            value = None
            for b in load(results_dir, program, cache) or []:
                name = b.get("name", "")
                if (name == bench or name.startswith(bench + "/")) and counter in b:
                    value = float(b[counter])
                    break
            if value is None:
                verdict = "MISSING"
            elif (test == "<=" and value <= limit) or (test == ">=" and value >= limit):
                verdict = "PASS"
            else:
                verdict = "FAIL"
            failed += verdict != "PASS"
            shown = "-" if value is None else f"{value:.4g}"
            rows.append((verdict, shown, f"{test} {limit:g}", what))
    width = max((len(r[1]) for r in rows), default=1)
    for verdict, shown, test, what in rows:
        print(f"{verdict:7}  {shown:>{width}}  {test:<9}  {what}")
    print(f"\n{len(rows) - failed} of {len(rows)} checks pass")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
