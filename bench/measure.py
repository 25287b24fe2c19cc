"""Runs the benchmarks and sets their results against the targets.

Usage: measure.py [--smoke | --quick] [--baseline OCIFIP] PROGRAM FOLDER

Each group of benchmarks runs in a process of its own, the largest size in another. A repetition makes all
measurements of a size one right after the other; those of the sizes take turns in random order. A ratio of two
measurements of a size is the median of the repetitions' ratios, a time the least of them. The table goes to
standard output and to FOLDER/results.txt, a plot of the time per subinterface to FOLDER/results.svg, and what
Google Benchmark says to FOLDER/GROUP-SIZE.json. The files of whole commands are in FOLDER/files.

With --smoke only few subinterfaces are mapped, and once: it tells whether the benchmarks work, and not how long
anything takes. With --quick there are 10,000 subinterfaces at most. OCIFIP is another build of the tool that commands
are compared with.
"""

import argparse
import json
import subprocess
import sys
import time
from pathlib import Path
from statistics import median

from agent import SIZES as AGENT_SIZES
from agent import Requests, add_agent, idle_kilobytes
from commands import SIZES as COMMAND_SIZES
from commands import Commands, Programs, add_commands, write_files
from instructions import Counts, add_instructions
from plot import write_plot

ROOT = Path(__file__).resolve().parent.parent
SIZES = (1, 100, 1000, 10000, 100000)
# Every trace line differs from every other: a recording of more would need many gigabytes.
TRACED_SIZES = SIZES[:4]
REQUESTS = ("replace", "merge", "report", "get")
WHOLE_REQUESTS = ("whole-merge", "whole-report")
GROUPS = {**{request: SIZES for request in REQUESTS},
          **{f"traced-{request}": TRACED_SIZES for request in REQUESTS},
          **{request: TRACED_SIZES for request in WHOLE_REQUESTS},
          "growth": (10000, 1000000), "small-edit": SIZES, "idle-callback": (1,), "load": (1,)}
REPETITIONS, REPETITIONS_OF_LARGE, REPETITIONS_OF_MILLION = 25, 5, 3
MILLION, MEMORY_OF_MILLION = 1000000, 12e9  # bytes that must be available
SMOKE_SIZES = (1, 100)
QUICK_SIZE = 10000  # the largest
SMALL, LARGE = 1000, 100000  # growth is what the larger costs against the smaller

# What each ratio may be at most.
FLOOR = 1.3
CALLS_ALONE = 1.25  # by instructions
PARSE = {"replace": 0.33, "report": 0.45}
GROWTH_TO_MILLION = 1.15
STYLESHEET = 1 / 3
GROWTH = 1.2
SMALL_EDIT = 1.2
IDLE_CALLBACK = 2
LOAD_MILLISECONDS = 2


class Results:
    """The repetitions of what was measured, by group and size: seconds by name."""

    def __init__(self, files):
        self.repetitions = {}
        for group, file in files:
            for run in json.loads(file.read_text())["benchmarks"]:
                if run["run_type"] == "iteration":
                    key = (group, int(run["name"].split("/")[0]))
                    self.repetitions.setdefault(key, []).append(run)

    def of_group(self, group, *names):
        """The repetitions of a group by size; none when it does not measure all of these."""
        return {size: runs for (name, size), runs in sorted(self.repetitions.items())
                if name == group and all(what in runs[0] for what in names)}

    def least(self, group, what):
        """The times of a measurement by size."""
        return {size: min(run[what] for run in runs) for size, runs in self.of_group(group, what).items()}

    def ratios(self, group, what, other):
        return {size: median(run[what] / run[other] for run in runs)
                for size, runs in self.of_group(group, what, other).items()}

    def ratios_to_calls_alone(self, group):
        """What the plug-in costs over the floor without the reading of the recording."""
        return {size: median(run["plugin"] / (run["floor"] - run["reading"]) for run in runs)
                for size, runs in self.of_group(group, "plugin").items()}


class Table:
    """Rows of a measure at several sizes, with the most that it may be."""

    def __init__(self, sizes):
        self.sizes = sizes
        self.lines = []
        self.missed = 0
        self.line("", "", [f"{size:,}" for size in sizes], "target", "")

    def line(self, group, measure, cells, target, verdict):
        columns = "".join(f"{cell:>10}" for cell in cells)
        self.lines.append(f"{group:21}{measure:34}{columns}{target:>9}  {verdict}".rstrip())

    def heading(self, text):
        self.lines += ["", text]

    def row(self, group, measure, values, target=None, judged=()):
        """`values` are by size; there may be none. The target is for the sizes `judged`, or for all."""
        if not values:
            return
        judged = [size for size in values if target is not None and (not judged or size in judged)]
        missed = [f"{size:,}" for size in judged if values[size] > target]
        verdict = "held" if judged else "not measured"
        if missed:
            verdict = "missed" if len(missed) == len(judged) else "missed at " + ", ".join(missed)
            self.missed += 1
        cells = [f"{values[size]:.2f}" if size in values else "" for size in self.sizes]
        self.line(group, measure, cells, "" if target is None else f"{target:.2f}", "" if target is None else verdict)

    def text(self):
        return "\n".join(self.lines) + "\n"


def micros_each(seconds):
    return {size: 1e6 * value / size for size, value in seconds.items()}


def add_ratios(table, results):
    table.heading("whole requests")
    for group in REQUESTS:
        table.row(group, "plug-in / floor", results.ratios(group, "plugin", "floor"), FLOOR)
        table.row(group, "plug-in / calls alone", results.ratios_to_calls_alone(group))
        table.row(group, "plug-in / libyang parses JSON", results.ratios(group, "plugin", "parse_json"),
                  PARSE.get(group))
        table.row(group, "plug-in / libyang parses XML", results.ratios(group, "plugin", "parse_xml"))
        table.row(group, "plug-in / stylesheet", results.ratios(group, "plugin", "stylesheet"), STYLESHEET)
        for what, name, target in (("plugin", "plug-in", GROWTH), ("floor", "floor", None)):
            each = micros_each(results.least(group, what))
            if LARGE in each:
                table.row(group, f"{name}, each / each of {SMALL:,}", {LARGE: each[LARGE] / each[SMALL]}, target)
    each = micros_each(results.least("growth", "plugin"))
    if MILLION in each:
        table.row("replace", "plug-in, each / each of 10,000", {MILLION: each[MILLION] / each[10000]}, GROWTH_TO_MILLION)
    table.heading("whole requests of every model")
    for group in WHOLE_REQUESTS:
        table.row(group, "plug-in / floor", results.ratios(group, "plugin", "floor"), FLOOR)
        table.row(group, "plug-in / libyang parses JSON", results.ratios(group, "plugin", "parse_json"))
        for what, name, target in (("plugin", "plug-in", GROWTH), ("floor", "floor", None)):
            each = micros_each(results.least(group, what))
            if len(each) > 1:
                largest = max(each)
                smaller = SMALL if SMALL in each else min(each)
                table.row(group, f"{name}, each / each of {smaller:,}", {largest: each[largest] / each[smaller]}, target)
    table.heading("with tracing on")
    for group in REQUESTS:
        table.row(group, "plug-in / floor", results.ratios(f"traced-{group}", "plugin", "floor"))
        quiet = results.least(group, "plugin")
        table.row(group, "plug-in / quiet",
                  {size: traced / quiet[size] for size, traced in results.least(f"traced-{group}", "plugin").items()})


def add_others(table, results):
    table.heading("others")
    for name, what in (("plug-in", "plugin"), ("host, device read before", "whole")):
        seconds = results.least("small-edit", what)
        least = seconds[min(seconds)]
        table.row("small edit", f"{name}, microseconds", {size: 1e6 * value for size, value in seconds.items()})
        table.row("small edit", f"{name} / device of 1", {size: value / least for size, value in seconds.items()},
                  SMALL_EDIT)
    table.row("idle callback", "callback / its calls", results.ratios("idle-callback", "plugin", "floor"),
              IDLE_CALLBACK)
    table.row("load", "and registrations, milliseconds",
              {size: 1e3 * seconds for size, seconds in results.least("load", "plugin").items()}, LOAD_MILLISECONDS)


def add_times(table, results):
    table.heading("microseconds per subinterface")
    for group in (*REQUESTS, *WHOLE_REQUESTS):
        for name, what in (("plug-in", "plugin"), ("floor", "floor"), ("reading of the recording", "reading"),
                           ("libyang parses JSON", "parse_json"), ("libyang parses XML", "parse_xml"),
                           ("libyang prints JSON", "print_json"), ("stylesheet", "stylesheet")):
            table.row(group, name, micros_each(results.least(group, what)))


def lines_to_plot(results):
    lines = [("libyang parses (replace, JSON)", "replace", "parse_json"), ("stylesheet (replace)", "replace", "stylesheet"),
             *((f"plug-in ({group})", group, "plugin") for group in REQUESTS), ("floor (replace)", "replace", "floor")]
    return [(name, list(micros_each(results.least(group, what)).items())) for name, group, what in lines]


def run_group(program, file, group, sizes, repetitions):
    print(f"measuring {group}", *sizes, file=sys.stderr)
    # Trace lines go to standard error.
    errors = subprocess.DEVNULL if group.startswith("traced") else subprocess.PIPE
    done = subprocess.run([program, group, *map(str, sizes), f"--benchmark_repetitions={repetitions}",
                           "--benchmark_enable_random_interleaving=true", "--benchmark_out_format=json",
                           f"--benchmark_out={file}"], stdout=subprocess.DEVNULL, stderr=errors, text=True)
    if done.returncode != 0:
        sys.exit(f"{done.stderr or ''}{group}: exit status {done.returncode}")


def parts_of(sizes, arguments):
    """The sizes that are measured in one process, with the number of repetitions."""
    if arguments.smoke:
        return [([size for size in SMOKE_SIZES if size <= min(max(sizes), SMOKE_SIZES[-1])], 1)]
    if arguments.quick:
        few = [size for size in sizes if size <= QUICK_SIZE]
        return [(few, REPETITIONS)] if MILLION not in sizes else []
    of_large = REPETITIONS_OF_MILLION if sizes[-1] == MILLION else REPETITIONS_OF_LARGE
    return [(sizes[:-1], REPETITIONS), (sizes[-1:], of_large)] if len(sizes) > 1 else [(sizes, REPETITIONS)]


def run_all(arguments):
    """Returns pairs of a group and of a file with its results."""
    files = []
    for group, sizes in GROUPS.items():
        for part, repetitions in parts_of(sizes, arguments):
            if part[-1] == MILLION and available_memory() < MEMORY_OF_MILLION:
                print("a million subinterfaces are left out: they need more memory than is available", file=sys.stderr)
                continue
            files.append((group, arguments.folder / f"{group}-{part[-1]}.json"))
            run_group(arguments.program, files[-1][1], group, part, repetitions)
    return files


def available_memory():
    """In bytes."""
    lines = Path("/proc/meminfo").read_text().splitlines()
    return next(1024 * int(line.split()[1]) for line in lines if line.startswith("MemAvailable:"))


def run_commands(arguments):
    sizes = COMMAND_SIZES
    if arguments.smoke:
        sizes = SMOKE_SIZES[-1:]
    elif arguments.quick:
        sizes = [size for size in sizes if size <= QUICK_SIZE]
    programs = Programs(Path(arguments.program).resolve().parent, ROOT / "models", str(ROOT / "bench/ipv4.xsl"),
                        arguments.baseline)
    write_files(arguments.program, arguments.folder / "files", sizes)
    return Commands(programs, arguments.folder / "files", sizes, 1 if arguments.smoke else None)


def run_agent(arguments):
    """Returns the times of the agent's requests, and the memory of an idle session."""
    sizes = SMOKE_SIZES if arguments.smoke else AGENT_SIZES
    tool, folder = str(Path(arguments.program).resolve().parent / "ocifip"), arguments.folder / "files"
    write_files(arguments.program, folder, sizes)
    requests = Requests(tool, folder, sizes, *([1] if arguments.smoke else []))
    return requests, idle_kilobytes(tool, str(folder / "1/subinterfaces.json"))


def parse_arguments():
    parser = argparse.ArgumentParser(usage=__doc__.split("\n")[2])
    extent = parser.add_mutually_exclusive_group()
    extent.add_argument("--smoke", action="store_true")
    extent.add_argument("--quick", action="store_true")
    parser.add_argument("--baseline", type=lambda path: str(Path(path).resolve(strict=True)))
    parser.add_argument("program")
    parser.add_argument("folder", type=Path)
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    arguments.folder.mkdir(parents=True, exist_ok=True)
    start = time.monotonic()
    commands = run_commands(arguments)
    agent = run_agent(arguments)
    counts = Counts(arguments.program, arguments.folder, *((["replace"], [1]) if arguments.smoke else ()))
    results = Results(run_all(arguments))
    table = Table((*SIZES, MILLION))
    add_commands(table, commands)
    add_agent(table, *agent)
    add_ratios(table, results)
    add_instructions(table, counts, CALLS_ALONE, PARSE)
    add_others(table, results)
    add_times(table, results)
    table.heading(f"{table.missed} targets missed; {time.monotonic() - start:.0f} seconds")
    print(table.text(), end="")
    (arguments.folder / "results.txt").write_text(table.text())
    write_plot(arguments.folder / "results.svg", "microseconds per subinterface", "subinterfaces",
               lines_to_plot(results))


if __name__ == "__main__":
    main()
