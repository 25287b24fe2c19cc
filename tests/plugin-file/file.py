"""What the plug-in's file is: its size, the work that loading it makes, and how it is hardened.

Usage: file.py PLUGIN
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

# Stripped. A management agent loads the library into each of its processes.
MOST_BYTES = 700 * 1024
# Most relocations are addresses in the tables of rows. Looking a symbol up takes much longer.
MOST_RELOCATIONS_OF_A_FUNCTION = 3
MOST_LOOKUPS = 300


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def stripped_size(plugin):
    with tempfile.TemporaryDirectory() as folder:
        stripped = Path(folder) / "stripped"
        output_of("strip", "-o", str(stripped), plugin)
        return stripped.stat().st_size


def main():
    plugin = sys.argv[1]
    tables = output_of("readelf", "-rW", plugin)
    relocations = re.findall(r" R_\w+ ", tables)
    lookups = [name for name in relocations if "RELATIV" not in name]
    packed = re.search(r"\n +(\d+) offsets", tables)
    relocation_count = len(relocations) + (int(packed[1]) if packed else 0)
    symbols = output_of("nm", plugin)
    functions = len(re.findall(r" T ", symbols))
    constructors = re.findall(r"_GLOBAL__sub_I\w*|__cxx_global_var_init\w*", symbols)
    sections = output_of("readelf", "-SW", plugin)
    init_array = re.search(r" \.init_array +INIT_ARRAY +\w+ +\w+ +(\w+)", sections)
    address_size = 8 if "ELF64" in output_of("readelf", "-hW", plugin) else 4
    # The compiler's own run-time has an entry.
    initialisers = int(init_array[1], 16) // address_size if init_array else 0
    dynamic = output_of("readelf", "-dW", plugin)
    segments = re.findall(r"^ +(\w+) .* ([R ][W ][E ]) 0x\w+$", output_of("readelf", "-lW", plugin), re.MULTILINE)
    imported = set(re.findall(r" U (\w+)", output_of("nm", "-D", "--undefined-only", plugin)))
    size = stripped_size(plugin)
    print(f"{size} bytes stripped, {functions} functions exported, {relocation_count} relocations of which "
          f"{len(lookups)} look a symbol up, {initialisers} initialisers")

    checks = {
        f"at most {MOST_BYTES} bytes stripped: if a row or a frame has grown, every model pays for it; if a model has "
        "been added, raise the limit by what it needs": size <= MOST_BYTES,
        f"at most {MOST_RELOCATIONS_OF_A_FUNCTION} relocations for each exported function":
            0 < relocation_count <= MOST_RELOCATIONS_OF_A_FUNCTION * functions,
        f"at most {MOST_LOOKUPS} lookups of symbols": 0 < len(lookups) <= MOST_LOOKUPS,
        "no static constructors": not constructors and initialisers <= 1 and " .ctors " not in sections,
        "all symbols are bound at the start": re.search(r"FLAGS.*\bNOW\b|BIND_NOW", dynamic) is not None,
        "tables are read-only once they are relocated": "GNU_RELRO" in dict(segments),
        "the code is not relocated": "TEXTREL" not in dynamic,
        "the stack is not executable": dict(segments).get("GNU_STACK") == "RW ",
        "nothing is both written and executed": not [flags for _, flags in segments if flags in ("RWE", " WE")],
        "the stack is protected": "__stack_chk_fail" in imported,
        "calls of the C library are fortified": any(re.fullmatch(r"__\w+_chk", name) for name in imported),
        "nothing of the C++ library is called": not [name for name in imported if name.startswith("_Z")],
        "no paths to search for libraries": not re.search(r"\((RPATH|RUNPATH)\)", dynamic),
    }
    failed = [name for name, holds in checks.items() if not holds]
    print("\n".join(f"not so: {name}" for name in failed) or "all as it should be")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
