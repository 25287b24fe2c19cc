"""Holds the documentation against the project.

Usage: docs.py ROOT TOOL

Links between pages lead to files and headings that exist, and the index names every page. A command that
a page shows with its output ("$ ./ocifip ...") gives that output.
"""

import re
import shlex
import subprocess
import sys
from pathlib import Path

ROOT, TOOL = Path(sys.argv[1]), sys.argv[2]
LINK = re.compile(r"\]\(([^)#\s]*)(?:#([^)\s]+))?\)")
EXAMPLE = re.compile(r"^```\n\$ \./ocifip (.*)\n((?:.*\n)*?)```", re.M)


def without_code(text):
    return re.sub(r"```.*?```|`[^`\n]*`", lambda code: re.sub(r"[^\n]", "x", code[0]), text, flags=re.S)


def anchors(page):
    """The anchors of a page's headings, as those who show Markdown make them."""
    headings = re.findall(r"^#+ (.*)$", page.read_text("utf-8"), re.M)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def broken_links(page):
    for target, anchor in LINK.findall(without_code(page.read_text("utf-8"))):
        if target.startswith(("http:", "https:")):
            continue
        file = (page.parent / target).resolve() if target else page
        if not file.exists():
            yield f"{page}: no file {target}"
        elif anchor and anchor not in anchors(file):
            yield f"{page}: no heading {target}#{anchor}"


def stale_examples(page):
    for arguments, output in EXAMPLE.findall(page.read_text("utf-8")):
        command = [TOOL, *shlex.split(arguments)]
        done = subprocess.run(command, capture_output=True, text=True, cwd=ROOT, check=False)
        if done.stdout != output:
            yield f"{page}: ocifip {arguments} gives\n{done.stdout}{done.stderr}"


pages = [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md")), *sorted(ROOT.glob("*/README.md"))]
faults = [fault for page in pages for fault in (*broken_links(page), *stale_examples(page))]
index = (ROOT / "docs" / "README.md").read_text("utf-8")
for name in (page.name for page in (ROOT / "docs").glob("*.md")):
    if name != "README.md" and f"({name})" not in index:
        faults.append(f"docs/README.md: does not name {name}")
if not EXAMPLE.search((ROOT / "README.md").read_text("utf-8")):
    faults.append("README.md: has no example with its output")
print("\n".join(faults) or f"{len(pages)} pages")
sys.exit(bool(faults))
