"""Who may include whom, and how long a file may be.

Usage: architecture.py ROOT

Each part of the project lists the folders that its quoted includes may come from, and whether it is
confined to the headers of the language and the C library. The folders of the host stand in floors:
each lists those below it.
"""

import re
import sys
from dataclasses import dataclass
from pathlib import Path

PLUGIN = "manageability/yang/framework/mapping/ifip/src"
PLATFORM = "platform/include"
LONGEST_FILE = 600

SOURCE_SUFFIXES = {".h", ".c", ".cpp", ".def", ".inc"}
COUNTED_SUFFIXES = SOURCE_SUFFIXES | {".py", ".sh", ".cmake", ".yang"}

# Made by the build, of the files that the part knows.
MADE = {"model_headers.h", "models.inc"}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')

# Headers with a ".h" that a part may use when it is confined to the language: those of C, and unistd.h
# and dlfcn.h, by which the plug-in asks whether the database client's file is there.
C_HEADERS = {
    f"{name}.h"
    for name in (
        "assert complex ctype errno fenv float inttypes iso646 limits locale math setjmp signal "
        "stdalign stdarg stdatomic stdbool stddef stdint stdio stdlib stdnoreturn string tgmath "
        "threads time uchar wchar wctype unistd dlfcn"
    ).split()
}


HOST = "host/src"
HOST_INTERFACE = "host/include"
HOST_GROUND = ("guarded.h", "result_codes.h", "text_services.h")  # below every folder of the host


@dataclass(frozen=True)
class Part:
    folder: str  # of the part, or its one file
    known: tuple[str, ...]  # folders and files, beside its own, that its includes may be of
    confined: bool = False  # no angle includes but the language's
    c_only: bool = False  # nor C++ headers
    roots: tuple[str, ...] = ()  # folders that its includes are looked up in, if not `known`


def host_part(name, *below):
    """A folder or file of the host, and those below it that it may include."""
    known = tuple(f"{HOST}/{each}" for each in (*HOST_GROUND, *below))
    return Part(
        f"{HOST}/{name}",
        (*known, HOST_INTERFACE, PLATFORM),
        roots=(HOST, HOST_INTERFACE, PLATFORM),
    )


PARTS = (
    Part(PLATFORM, (PLATFORM,), confined=True, c_only=True),
    Part(PLUGIN, (PLUGIN, PLATFORM, "records"), confined=True),
    Part("records", ("records", PLATFORM), confined=True),
    Part(HOST_INTERFACE, (HOST_INTERFACE,), confined=True),
    *(host_part(name) for name in (*HOST_GROUND, "inet.cpp", "result_codes.cpp", "text_services.cpp")),
    host_part("io"),
    host_part("tree", "io"),
    host_part("records", "io"),
    host_part("device", "io", "tree", "records"),
    host_part("request", "io", "tree", "records", "device"),
    host_part("services", "io", "tree", "records", "device", "request"),
    host_part("mapping", "io", "tree", "records", "device", "request", "services"),
    host_part("host.cpp", "io", "tree", "records", "device", "request", "services", "mapping"),
    Part("agent/include", ("agent/include", HOST_INTERFACE)),
    Part("agent/src", ("agent/src", "agent/include", HOST_INTERFACE)),
    Part("tool", ("tool", "agent/include", HOST_INTERFACE)),
    Part("tests/redirected_calls", ()),
    Part("bench", ("bench", "tests/redirected_calls", "host/src", "host/include", PLATFORM)),
    Part("tests/cases", ()),
    Part("tests/agent-parts", ("tests/agent-parts", "tests/cases", "agent/src", "agent/include", HOST_INTERFACE)),
    Part("tests/plugin-file", (PLUGIN, "tests/redirected_calls", "host/include", PLATFORM)),
    Part("tests/unit", ("tests/unit", "tests/cases", PLUGIN, PLATFORM, "records")),
    Part("tests/tables", ("tests/tables", PLUGIN, "records", "host/src", "host/include", PLATFORM)),
    Part("tests/records", ("tests/records", "tests/cases", "records", "host/src", "host/include", PLATFORM)),
    Part("tests/host", ("tests/host", "tests/cases", "host/src", "host/include", PLATFORM)),
    Part("tests/faults", ("tests/faults", "tests/cases", "tests/redirected_calls", "tool", "agent/include", "host/src", "host/include", PLATFORM)),
    Part("tests/fuzz", ("tests/fuzz", "agent/src", "agent/include", "tests/faults", "tests/redirected_calls", "tests/records", "host/src", "host/include", PLATFORM)),
)


def files_below(folder, suffixes):
    paths = [folder, *folder.rglob("*")]
    return sorted(path for path in paths if path.suffix in suffixes and path.is_file())


def is_language_header(name, c_only):
    if name in C_HEADERS:
        return True
    return not c_only and re.fullmatch(r"[a-z_]+", name) is not None


def is_within(path, folder):
    return path.resolve().is_relative_to(folder.resolve())


def quoted_fault(root, part, source, name):
    """Why a quoted include is wrong, or None."""
    roots = part.roots or part.known
    candidates = [source.parent / name] + [root / folder / name for folder in roots]
    for candidate in candidates:
        if candidate.is_file():
            allowed = [root / folder for folder in (part.folder, *part.known)]
            if any(is_within(candidate, folder) for folder in allowed):
                return None
            return f'"{name}" is not for {part.folder}, which may include {", ".join(part.known)}'
    return f'"{name}" is in none of {", ".join(roots)}'


def angle_fault(root, part, name):
    """Why an angle include is wrong, or None."""
    if part.confined and not is_language_header(name, part.c_only):
        return f"<{name}> is no header of the language"
    for folder in (PLUGIN, HOST):
        if (root / folder / name).is_file():
            return f"<{name}> is a file of {folder}"
    return None


def include_faults(root, part):
    for source in files_below(root / part.folder, SOURCE_SUFFIXES):
        for number, line in enumerate(source.read_text().splitlines(), 1):
            match = INCLUDE.match(line)
            if not match or match.group(2) in MADE:
                continue
            quote, name = match.groups()
            if quote == '"':
                fault = quoted_fault(root, part, source, name)
            else:
                fault = angle_fault(root, part, name)
            if fault:
                yield f"{source.relative_to(root)}:{number}: {fault}"


def unplaced_faults(root):
    """Files of the host that no part holds."""
    placed = {path for part in PARTS for path in files_below(root / part.folder, SOURCE_SUFFIXES)}
    for path in files_below(root / HOST, SOURCE_SUFFIXES):
        if path not in placed:
            yield f"{path.relative_to(root)}: on no floor of the host"


def length_faults(root):
    for folder in sorted(root.iterdir()):
        if not folder.is_dir() or folder.name.startswith(".") or folder.name == "build":
            continue
        for path in files_below(folder, COUNTED_SUFFIXES):
            count = len(path.read_text().splitlines())
            if count > LONGEST_FILE:
                yield f"{path.relative_to(root)}: {count} lines, {LONGEST_FILE} are the limit"


def main():
    root = Path(sys.argv[1])
    missing = [part.folder for part in PARTS[:2] if not files_below(root / part.folder, {".h"})]
    faults = [f"{folder}: no sources" for folder in missing]
    for part in PARTS:
        faults += include_faults(root, part)
    faults += unplaced_faults(root)
    faults += length_faults(root)
    print("\n".join(faults) or "no faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
