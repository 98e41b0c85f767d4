"""The guide's code is that of its programs, and its outputs are theirs.

guide_test.py ROOT PROGRAM=PATH...

A block of C++ in docs/guide.md names its source in the line before: the link to a file, and behind
"#" the marked part of it. A block of text that begins with "$ PROGRAM" shows what that prints.
"""

import pathlib
import re
import subprocess
import sys
import textwrap

root = pathlib.Path(sys.argv[1])
programs = dict(argument.split("=", 1) for argument in sys.argv[2:])
guide = (root / "docs/guide.md").read_text()
faults = []


def part(path, name):
    text = (root / "docs" / path).read_text()
    if name:
        found = re.search(rf"^ *// \[{name}\]\n(.*?)^ *// \[/{name}\]\n", text, re.S | re.M)
        text = found.group(1) if found else ""
    return textwrap.dedent(text)


sources = re.findall(r"^\[[^]]*\]\(([^)#]+)(?:#(\w+))?\):\n\n```cpp\n(.*?)^```$", guide, re.S | re.M)
if len(sources) != guide.count("```cpp"):
    faults.append("a block of C++ does not name its source")
for path, name, shown in sources:
    if shown != part(path, name):
        faults.append(f"{path}#{name} is not what the guide shows")

outputs = dict(re.findall(r"^```text\n\$ (\w+)\n(.*?)^```$", guide, re.S | re.M))
if outputs.keys() != programs.keys():
    faults.append(f"outputs of {sorted(outputs)} are shown, programs are {sorted(programs)}")
for program, shown in outputs.items():
    run = subprocess.run([programs[program]], capture_output=True, text=True, check=False)
    if run.returncode != 0 or run.stdout != shown:
        faults.append(f"{program} ends with {run.returncode} and prints:\n{run.stdout}")

print("\n".join(faults) or f"{len(sources)} pieces of code, {len(outputs)} outputs")
sys.exit(1 if faults else 0)
