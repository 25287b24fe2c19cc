"""Reports lines and functions of a part of the sources that no test covers.

Usage: coverage.py LCOV-FILE PART PERCENT

PART is how the names of its files begin. Fails when less than PERCENT of the lines are covered.
"""

import re
import sys
from collections import defaultdict


def read(report, part):
    """The lines of each file with how often they were run, and the functions likewise."""
    lines, functions, at = defaultdict(dict), defaultdict(dict), {}
    for entry in report:
        key, _, value = entry.rstrip("\n").partition(":")
        if key == "SF":
            name = value[value.find(part) :] if part in value else None
        elif name is None:
            continue
        elif key == "DA":
            line, count = value.split(",")[:2]
            lines[name][int(line)] = lines[name].get(int(line), 0) + int(count)
        elif key == "FN":
            line, function = value.split(",", 1)
            at[function] = int(line)
        elif key == "FNDA":
            count, function = value.split(",", 1)
            place = (at[function], plain(function))
            functions[name][place] = functions[name].get(place, 0) + int(count)
    return lines, functions


def plain(function):
    """A function's own name out of its linker name, as far as that is easily told."""
    names = re.findall(r"\d+([A-Za-z_]\w*)", function) if function.startswith("_Z") else []
    return names[-1] if names else function


def ranges(numbers):
    """[1, 2, 3, 7] as "1-3, 7"."""
    spans = []
    for number in sorted(numbers):
        if spans and spans[-1][1] == number - 1:
            spans[-1][1] = number
        else:
            spans.append([number, number])
    return ", ".join(str(first) if first == last else f"{first}-{last}" for first, last in spans)


def main():
    part, wanted = sys.argv[2], float(sys.argv[3])
    with open(sys.argv[1], encoding="utf-8") as report:
        lines, functions = read(report, part)
    total = sum(len(counts) for counts in lines.values())
    reached = sum(count > 0 for counts in lines.values() for count in counts.values())
    for name in sorted(lines):
        missed = [line for line, count in lines[name].items() if count == 0]
        if missed:
            print(f"{name}: not covered: {ranges(missed)}")
        uncalled = defaultdict(list)
        for (line, function), count in sorted(functions[name].items()):
            if count == 0:
                uncalled[line].append(function)
        for line, names in uncalled.items():
            print(f"{name}:{line}: not called: {', '.join(names)}")
    percent = 100 * reached / total if total else 0
    print(f"{reached} of {total} lines are covered, {percent:.1f}%; {wanted:g}% are required")
    return 0 if percent >= wanted else 1


if __name__ == "__main__":
    sys.exit(main())
