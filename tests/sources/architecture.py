"""Who may include whom, and how long a file may be.

Usage: architecture.py ROOT

Each part of the project lists the folders that its quoted includes may come from, and whether it is
confined to the headers of the language and the C library.
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


@dataclass(frozen=True)
class Part:
    folder: str  # of the part
    known: tuple[str, ...]  # folders, beside the file's own, that its includes are looked up in
    confined: bool = False  # no angle includes but the language's
    c_only: bool = False  # nor C++ headers


PARTS = (
    Part(PLATFORM, (PLATFORM,), confined=True, c_only=True),
    Part(PLUGIN, (PLUGIN, PLATFORM, "records"), confined=True),
    Part("records", ("records", PLATFORM), confined=True),
    Part("host/include", ("host/include",), confined=True),
    Part("host/src", ("host/src", "host/include", PLATFORM)),
    Part("tool", ("tool", "host/include")),
    Part("tests/redirected_calls", ()),
    Part("bench", ("bench", "tests/redirected_calls", "host/src", "host/include", PLATFORM)),
    Part("tests/plugin-file", (PLUGIN, "tests/redirected_calls", "host/include", PLATFORM)),
    Part("tests/unit", ("tests/unit", PLUGIN, PLATFORM, "records")),
    Part("tests/tables", ("tests/tables", PLUGIN, "records", "host/src", "host/include", PLATFORM)),
    Part("tests/records", ("tests/records", "records", "host/src", "host/include", PLATFORM)),
    Part("tests/host", ("tests/host", "host/src", "host/include", PLATFORM)),
    Part("tests/faults", ("tests/faults", "tests/redirected_calls", "tool", "host/src", "host/include", PLATFORM)),
    Part("tests/fuzz", ("tests/fuzz", "tests/faults", "tests/redirected_calls", "tests/records", "host/src", "host/include", PLATFORM)),
)


def files_below(folder, suffixes):
    return sorted(path for path in folder.rglob("*") if path.suffix in suffixes and path.is_file())


def is_language_header(name, c_only):
    if name in C_HEADERS:
        return True
    return not c_only and re.fullmatch(r"[a-z_]+", name) is not None


def is_within(path, folder):
    return path.resolve().is_relative_to(folder.resolve())


def quoted_fault(root, part, source, name):
    """Why a quoted include is wrong, or None."""
    own = root / part.folder
    candidates = [source.parent / name] + [root / folder / name for folder in part.known]
    for candidate in candidates:
        if candidate.is_file():
            allowed = [own] + [root / folder for folder in part.known]
            if any(is_within(candidate, folder) for folder in allowed):
                return None
            return f'"{name}" is outside of {", ".join(part.known)}'
    return f'"{name}" is in none of {", ".join(part.known)}'


def angle_fault(root, part, name):
    """Why an angle include is wrong, or None."""
    if part.confined and not is_language_header(name, part.c_only):
        return f"<{name}> is no header of the language"
    if (root / PLUGIN / name).is_file():
        return f"<{name}> is the plug-in's"
    return None


def include_faults(root, part):
    for source in files_below(root / part.folder, SOURCE_SUFFIXES):
        for number, line in enumerate(source.read_text().splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            quote, name = match.groups()
            if quote == '"':
                fault = quoted_fault(root, part, source, name)
            else:
                fault = angle_fault(root, part, name)
            if fault:
                yield f"{source.relative_to(root)}:{number}: {fault}"


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
    faults += length_faults(root)
    print("\n".join(faults) or "no faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
