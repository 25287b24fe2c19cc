"""Whole commands, as users call them: their processor time and the memory that they need, beside other programs that
read the same files."""

import filecmp
import json
import os
import resource
import shutil
import signal
import subprocess
import sys
from math import inf
from pathlib import Path
from statistics import median

SIZES = (1000, 10000, 100000)
LARGE = 100000
# Each command has turns until it has taken so many seconds, but no more turns than that.
ENOUGH_SECONDS, TURNS = 10, 8
# Nothing waits longer for one command: it counts as endless.
MOST_SECONDS = 60

# What each ratio may be at most.
PARSE = 1
LIMIT = 8
# Beside reading the device by the limit program. The latter two are a fifth and a third of what the commands took
# when they were measured first.
READING = {"small edit": 4, "small apply": 70, "get": 200}
GROWTH_OF_READING = 2.2
MEGABYTES = {"edit": 600, "get": 1000}
BASELINE = {"small apply": 1 / 5, "get": 1 / 3}


class Programs:
    """The programs, and the arguments that have them read a file of the measurements' folder."""

    def __init__(self, binaries, models, stylesheet, baseline):
        """`binaries` is the build's folder of programs; `baseline` is another ocifip to compare with, or None."""
        self.binaries = binaries
        self.stylesheet = stylesheet
        self.yanglint = ["yanglint", "-t", "edit", *sorted(map(str, models.glob("*.yang")))]
        self.baseline = baseline

    def commands(self, last):
        """The command lines by name. `last` says whether this is the largest size."""
        tool, limit = str(self.binaries / "ocifip"), str(self.binaries / "ocifip-limit")
        small = ["--device", "interfaces.json", "small-edit.json"]
        lines = {
            "edit": [tool, "edit", "--op", "replace", "edit.json"],
            "edit of XML": [tool, "edit", "--op", "replace", "edit.xml"],
            "edit on a device": [tool, "edit", "--op", "replace", "--device", "subinterfaces.json", "edit.json"],
            "small edit": [tool, "edit", *small],
            "small apply": [tool, "apply", "--save", "--device", "saved.json", "small-edit.json"],
            "get": [tool, "get", "--device", "interfaces.json", "/interfaces"],
            "report": [tool, "report", "native.json"],
            "device": [tool, "device", "interfaces.json"],
            "yanglint": [*self.yanglint, "edit.json"],
            "yanglint, XML": [*self.yanglint, "edit.xml"],
            "yanglint, native": [*self.yanglint, "native.json"],
            "xsltproc": ["xsltproc", self.stylesheet, "edit.xml"],
            "limit": [limit, "edit", "edit.json"],
            "limit reads device": [limit, "read", "interfaces.json"],
        }
        if last:
            lines["device, twice"] = [tool, "device", f"../{2 * LARGE}/interfaces.json"]
        if self.baseline:
            lines |= {f"baseline {name}": [self.baseline, *lines[name][1:]] for name in BASELINE}
        return lines


class Commands:
    """What the turns of each command took, by name and size: pairs of seconds and megabytes."""

    def __init__(self, programs, folder, sizes, most_turns=None):
        self.folder = folder
        self.most_turns = most_turns or TURNS
        self.turns = {}
        for size in sizes:
            self._measure(programs.commands(size == LARGE), size)

    def seconds(self, name):
        return {size: min(seconds for seconds, _ in turns) for size, turns in self._of(name).items()}

    def megabytes(self, name):
        return {size: max(peak for _, peak in turns) for size, turns in self._of(name).items()}

    def ratios(self, name, other):
        """The medians of the ratios of turns that both had; infinite when the first was stopped."""
        others = self._of(other)
        return {size: inf if turns[0][0] == inf else median(one / two for (one, _), (two, _) in zip(turns, others[size]))
                for size, turns in self._of(name).items() if size in others and others[size][0][0] != inf}

    def _of(self, name):
        return {size: turns for (command, size), turns in self.turns.items() if command == name}

    def _save(self):
        turns = [{"command": name, "size": size, "seconds": None if seconds == inf else seconds, "megabytes": peak}
                 for (name, size), turns in self.turns.items() for seconds, peak in turns]
        (self.folder.parent / "commands.json").write_text(json.dumps(turns, indent=1))

    def _measure(self, lines, size):
        compare_results(lines, self.folder / str(size))
        print("measuring commands", size, file=sys.stderr)
        for turn in range(self.most_turns):
            for name, line in lines.items():
                turns = self.turns.setdefault((name, size), [])
                if turn == 0 or sum(seconds for seconds, _ in turns) < ENOUGH_SECONDS:
                    turns.append(run(line, self.folder / str(size)))
                    self._save()


def run(line, folder, output="output"):
    """Returns the seconds of processor time and the megabytes of memory that a command needs."""
    if "saved.json" in line:  # the edit is applied to the same device each time
        shutil.copyfile(folder / "interfaces.json", folder / "saved.json")
    with open(folder / output, "wb") as out:
        process = subprocess.Popen(
            line, cwd=folder, stdout=out, stderr=subprocess.PIPE,
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_CPU, (MOST_SECONDS, MOST_SECONDS + 1)))
        message = process.stderr.read()
        _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    seconds = usage.ru_utime + usage.ru_stime
    if process.returncode == -signal.SIGXCPU:
        seconds = inf
    elif process.returncode != 0:
        sys.exit(f"{' '.join(line)}: exit status {process.returncode}\n{message.decode()}")
    return seconds, usage.ru_maxrss * 1024 / 1e6


def compare_results(lines, folder):
    """Ends the program if what is measured does not do the same job."""
    run(lines["edit"], folder, "expected")
    for name in ("edit of XML", "limit"):
        run(lines[name], folder)
        if not filecmp.cmp(folder / "output", folder / "expected", shallow=False):
            sys.exit(f"{folder}: {name} prints something else than edit")


def write_files(program, folder, sizes):
    wanted = [*sizes, *(2 * size for size in sizes if size == LARGE)]
    subprocess.run([program, "files", str(folder), *map(str, wanted)], check=True)


def add_commands(table, commands):
    table.heading("whole commands, beside other programs that read the same files")
    for name, other in (("edit", "yanglint"), ("edit of XML", "yanglint, XML"), ("report", "yanglint, native")):
        table.row(name, "/ yanglint parses it", commands.ratios(name, other), PARSE if name == "edit" else None, (LARGE,))
    table.row("edit of XML", "/ xsltproc", commands.ratios("edit of XML", "xsltproc"))
    table.row("edit", "/ limit program", commands.ratios("edit", "limit"), LIMIT, SIZES[1:])
    table.row("edit on a device", "/ edit", commands.ratios("edit on a device", "edit"))
    for name, target in READING.items():
        table.row(name, "/ limit program reads the device", commands.ratios(name, "limit reads device"), target, (LARGE,))
    if LARGE in commands.seconds("device, twice"):
        table.row("device", "of 200,000 / of 100,000", commands.ratios("device, twice", "device"), GROWTH_OF_READING)
    for name, target in BASELINE.items():
        table.row(name, "/ the baseline's", commands.ratios(name, f"baseline {name}"), target, (LARGE,))
    names = list(dict.fromkeys(name for name, _ in commands.turns))
    table.heading("whole commands, seconds")
    for name in names:
        table.row(name, "", commands.seconds(name))
    table.heading("whole commands, peak memory in megabytes")
    for name in names:
        table.row(name, "", commands.megabytes(name), MEGABYTES.get(name), (LARGE,))
