"""Every folder includes what lies below it, and nothing else: layers_test.py ROOT."""

import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])

# The folders, and what each may include besides itself and what those may include in turn.
BELOW = {
    "env": ["include"],
    "include": ["env"],  # the base classes of the library's own
    "frame": ["include", "env"],
    "containers": ["frame"],
    "types": ["frame"],
    "scanner": ["frame"],
    "pouh": ["frame"],
    "cgtab": ["pouh"],
    "host/framework": ["frame", "host/text"],
    "host/text": ["include"],
    "host/resources": ["host/framework"],
    "host/addrcheck": ["include", "env"],
    "host/mdi": ["include", "env"],
    "host/useradapt": ["include", "env"],
    "host/base": ["host/framework", "frame", "pouh"],
    "host/words": ["include", "env", "frame"],
    "host/model": ["include", "env", "frame"],
    "host/plcopen": ["host/model", "host/words", "host/text", "frame"],
    "host/symbols": ["host/model", "frame"],
    "tools/lq": ["host/plcopen", "host/symbols", "host/base", "cgtab", "scanner"],
    "tools/report": ["tools/lq"],
}


def allowed(folder):
    reached, waiting = set(), [folder]
    while waiting:
        at = waiting.pop()
        if at not in reached:
            reached.add(at)
            waiting += BELOW[at]
    return reached


faults, count = [], 0
for folder in BELOW:
    for path in (root / folder).rglob("*.[hc]*"):
        for name in re.findall(r'^#include ["<]([^">]+)[">]', path.read_text(), re.M):
            if (root / "include" / name).exists():
                target = "include"
            elif (root / "env" / name).exists():
                target = "env"
            elif (root / name).exists():
                target = max((at for at in BELOW if name.startswith(at + "/")), key=len, default=name)
            else:
                continue  # the standard library, or another one's
            count += 1
            if target not in allowed(folder):
                faults.append(f"{path.relative_to(root)} includes {name}")
print("\n".join(faults) or f"{count} includes")
sys.exit(1 if faults or count < 500 else 0)
