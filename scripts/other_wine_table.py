#!/usr/bin/env python3
"""The closing table of scripts/other_wine.sh: other_wine_table.py LOG, a run of ctest with
--output-on-failure. Exits 1 unless all tests passed but for the cases named here, and those failed.
"""
import re
import sys

# What fails there for a fault of that Wine: the test, its case, and the reason that
# docs/other-wine.md goes into.
KNOWN = {
    ("win32/basket_monitors", "WindowMonitors.OpensInTheMiddleOfTheHostsMonitorWhollyInItsWorkArea"):
        "every monitor is where the first is",
    ("win32/basket_monitors",
     "WindowMonitors.AHostAcrossTwoMonitorsHasItOnTheOneThatShowsMoreOfTheHost"):
        "every monitor is where the first is",
    ("win32/basket_monitors", "WindowMonitors.AHostOutsideAllMonitorsHasItOnTheNearest"):
        "every monitor is where the first is",
    ("win32/basket_monitors", "WindowMonitors.FurtherBasketsStepAsideAndStayOnTheMonitor"):
        "every monitor is where the first is",
    ("win32/print_pages", "landscape"): "a queue's defaults are not kept",
}

RESULT = re.compile(r"^ *\d+/\d+ Test +#\d+: +(\S+) \.+ *\**(.*\S) +([0-9.]+) sec *$")
# one case of a test program, and one of a test script
CASE = re.compile(r"^\[  FAILED  \] ([^\s,]+\.[^\s,]+)|^FAILED: ([^:]+)")
# what either says at its end; without it a run has broken off, and what failed says nothing
CLOSING = re.compile(r"^ *(\d+) FAILED TESTS?$|^\d+ checks passed, (\d+) failed$")


def read(lines):
    """[test, result, seconds, failed cases, how many failures were seen, how many the test tells]"""
    tests = []
    for line in lines:
        line = line.rstrip("\n")
        if result := RESULT.match(line):
            tests.append([*result.groups(), set(), 0, None])
            continue
        if not tests:
            continue
        test = tests[-1]
        if case := CASE.match(line):
            name = case.group(1) or case.group(2)
            # a test program names its failed cases once more at the end, a script does not
            test[4] += case.group(2) is not None or name not in test[3]
            test[3].add(name)
        elif closing := CLOSING.match(line):
            test[5] = int(closing.group(1) or closing.group(2))
    return tests


def judge(test, result, cases, seen, told):
    """What the table says of a test, and whether it passed, failed or is known."""
    known = {case: why for (name, case), why in KNOWN.items() if name == test}
    if result == "Passed":
        cases = set()
    elif result != "Failed" or seen == 0 or seen != told:
        return f"{result.lower()}, not to its end", "failed"
    if unknown := sorted(cases - known.keys()):
        return "failed: " + ", ".join(unknown), "failed"
    if healed := sorted(known.keys() - cases):
        return "passes now, named as a fault of that Wine: " + ", ".join(healed), "failed"
    if cases:
        return f"known ({len(cases)}): " + "; ".join(sorted(set(known.values()))), "known"
    return "passed", "passed"


def main():
    with open(sys.argv[1], encoding="utf-8", errors="replace") as log:
        tests = read(log)
    counts = {"passed": 0, "failed": 0, "known": 0}
    for name, result, seconds, cases, seen, told in sorted(tests, key=lambda test: test[0]):
        text, kind = judge(name, result, cases, seen, told)
        counts[kind] += 1
        print(f"  {name:<36} {seconds:>8} s  {text}")
    print(f"{len(tests)} tests: " + ", ".join(f"{n} {kind}" for kind, n in counts.items()))
    return 0 if tests and counts["failed"] == 0 else 1


if __name__ == "__main__":
    sys.exit(main())
