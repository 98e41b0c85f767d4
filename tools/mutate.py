#!/usr/bin/env python3
"""Plants faults one at a time, and tells which of them no test sees.

mutate.py ROOT WORK [PATTERN]

Each file of tools/mutations holds faults: a line "@ FILE" names the source, "- TEXT" and "+ TEXT" are
a piece of one of its lines, which it has once, and what takes its place; "= WHY" behind a fault says
why nothing can see it. Only faults whose source or text contains PATTERN are planted. The tree is
copied to WORK first, and built and tested there: what is a fault of the tree ends the run at once.
"""

import pathlib
import shutil
import subprocess
import sys
import time

root, work = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
pattern = sys.argv[3] if len(sys.argv) > 3 else ""
tree, build = work / "tree", work / "build"


def faults():
    for listed in sorted((root / "tools/mutations").glob("*.txt")):
        found, source = [], None
        for number, line in enumerate(listed.read_text().splitlines(), 1):
            mark, text = line[:2], line[2:]
            if mark == "@ ":
                source = text
            elif mark == "- ":
                found.append([source, text, None, None])
            elif mark == "+ " or line == "+":
                found[-1][2] = text
            elif mark == "= ":
                found[-1][3] = text
            elif line and not line.startswith("#"):
                sys.exit(f"{listed}:{number}: what is this line?")
        yield from found


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False)


def copy(path):
    (tree / path).parent.mkdir(parents=True, exist_ok=True)
    shutil.copy(root / path, tree / path)  # with a new time, so that it is built again


def compiles():
    return run("cmake", "--build", build).returncode == 0


def passes():
    """Whether all tests pass; the quick ones, in one process, come first."""
    quick = run("env", "GTEST_FAIL_FAST=1", "timeout", "300", build / "bin/lq_tests", "--gtest_brief=1")
    if quick.returncode != 0:
        return False
    return run("timeout", "900", "ctest", "--test-dir", build, "-j2", "--stop-on-failure", "-E",
               "^(package|FailingMalloc|report|Lengths|Seeds)").returncode == 0


files = run("git", "-C", root, "ls-files").stdout.split()
for path in files:
    if not (tree / path).exists() or (tree / path).read_bytes() != (root / path).read_bytes():
        copy(path)
configured = run("cmake", "-G", "Ninja", "-S", tree, "-B", build, "-DCMAKE_BUILD_TYPE=Debug",
                 "-DCMAKE_CXX_FLAGS=-O1", "-DLQ_DATA_TESTS=ON")
if configured.returncode != 0 or not compiles() or not passes():
    sys.exit("mutate: the tests do not pass as the tree is")

counts = {"killed": 0, "survived": 0, "expected": 0, "broken": 0}
for source, text, replacement, reason in faults():
    if pattern not in source and pattern not in text:
        continue
    original = (root / source).read_text()
    started = time.monotonic()
    if original.count(text) != 1 or replacement is None:
        verdict = "broken"
    else:
        (tree / source).write_text(original.replace(text, replacement))
        if not compiles():
            verdict = "broken"
        else:
            verdict = "killed" if not passes() else "expected" if reason else "survived"
        copy(source)
    counts[verdict] += 1
    print(f"{verdict:9}{time.monotonic() - started:5.0f} s  {source}: {text}  ->  {replacement}"
          + (f"  ({reason})" if reason else ""), flush=True)
seen = counts["killed"] + counts["survived"]
print(f"{counts['killed']} of {seen} faults that can be seen were seen"
      f" ({100 * counts['killed'] / max(seen, 1):.1f} %); {counts['expected']} cannot be, "
      f"{counts['broken']} are not listed rightly")
if not sum(counts.values()):
    sys.exit("mutate: no fault is listed")
sys.exit(1 if counts["survived"] or counts["broken"] else 0)
