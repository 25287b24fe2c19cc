"""Counts of instructions: they waver less than times where other programs have work for the machine."""

import re
import shutil
import subprocess
import sys

GROUPS = ("replace", "merge", "report", "get")
SIZES = (1, 100, 1000)


class Counts:
    """Instructions of what was measured, by group and size. Without any, `reason` says why."""

    def __init__(self, program, folder, groups=GROUPS, sizes=SIZES):
        self.counts = {}
        self.reason = ""
        for group in groups:
            print("counting", group, *sizes, file=sys.stderr)
            lines = count_by_processor(program, group, sizes) or count_by_callgrind(program, folder, group, sizes)
            if not lines:
                self.reason = "this machine has neither a counter of instructions that may be read nor valgrind"
                return
            for size, what, count in lines:
                self.counts.setdefault((group, int(size)), {})[what] = int(count)

    def ratios(self, group, what, other):
        return {size: counts[what] / counts[other] for (name, size), counts in self.counts.items()
                if name == group and what in counts and other in counts}

    def ratios_to_calls_alone(self, group):
        return {size: counts["plugin"] / (counts["floor"] - counts["reading"])
                for (name, size), counts in self.counts.items() if name == group}


def count_by_processor(program, group, sizes):
    """Returns triples of a size, what was counted, and the count; none where the processor's counter cannot be read."""
    done = subprocess.run([program, "count", group, *map(str, sizes)], capture_output=True, text=True)
    return [line.split() for line in done.stdout.splitlines()] if done.returncode == 0 else []


def count_by_callgrind(program, folder, group, sizes):
    """The same by valgrind's tool; none without it."""
    if not shutil.which("valgrind"):
        return []
    profiles = folder / "profiles"
    shutil.rmtree(profiles, ignore_errors=True)
    profiles.mkdir(parents=True)
    done = subprocess.run(["valgrind", "--tool=callgrind", "--instr-atstart=no", "--collect-atstart=no",
                           f"--callgrind-out-file={profiles / 'profile'}", program, "count", group, *map(str, sizes)],
                          capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"{done.stderr}{group}: exit status {done.returncode} under valgrind")
    texts = [file.read_text() for file in profiles.iterdir()]
    return [found.groups() for text in texts
            if (found := re.search(r"Client Request: (\d+) (\w+)\n.*?^totals: (\d+)", text, re.DOTALL | re.MULTILINE))]


def add_instructions(table, counts, calls_alone, parse):
    table.heading("instructions")
    if counts.reason:
        table.heading(f"left out: {counts.reason}")
    for group in GROUPS:
        table.row(group, "plug-in / floor", counts.ratios(group, "plugin", "floor"))
        table.row(group, "plug-in / calls alone", counts.ratios_to_calls_alone(group), calls_alone)
        table.row(group, "plug-in / libyang parses JSON", counts.ratios(group, "plugin", "parse_json"), parse.get(group))
        table.row(group, "plug-in / stylesheet", counts.ratios(group, "plugin", "stylesheet"))
