"""Every folder includes what lies below it, and nothing else; the tool and the examples do with the
headers that are installed, and those of their own folder: layers_test.py ROOT."""

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
    "translate": ["cgtab"],
    "host/framework": ["frame", "host/text"],
    "host/text": ["include"],
    "host/resources": ["host/framework"],
    "host/addrcheck": ["include", "env"],
    "host/mdi": ["include", "env"],
    "host/useradapt": ["include", "env"],
    "host/base": ["host/framework", "frame", "pouh"],
    "host/words": ["include", "env", "frame"],
    "host/model": ["include", "env", "frame", "host/text", "host/words"],
    "host/plcopen": ["host/model", "host/words", "host/text", "frame"],
    "host/diff": ["host/model", "frame"],
    "host/symbols": ["host/model", "frame"],
    "host/check": ["host/plcopen", "host/symbols", "host/addrcheck", "host/uses"],
    "host/text_source": ["host/model", "host/words", "host/text", "frame"],
    "tools/lq": ["host/check", "host/plcopen", "host/text_source", "host/diff", "host/symbols", "host/uses",
                 "host/base", "translate"],
    "host/uses": ["host/model", "host/words", "frame"],
    "tools/report": ["tools/lq"],
}


# Where the installed headers below include/lq_data belong.
INSTALLED = {"lq_data/env/": "env", "lq_data/detail/": "frame", "lq_data/code_page.h": "frame",
             "lq_data/host/": "host/"}


def folder_of(name):
    """The folder of a header, by the name that includes it; none for those of others."""
    if (root / "include" / name).exists():
        home = max((at for at in INSTALLED if name.startswith(at)), key=len, default=None)
        if home != "lq_data/host/":
            return INSTALLED.get(home, "include")
        name = "host/" + name[len(home):]
    elif not (root / name).exists():
        return None
    return max((at for at in BELOW if name.startswith(at + "/")), key=len, default=name)


def is_for_users(path, name):
    """Whether a header of the project is installed or lies in the tool's own folders, or in that of
    the example at `path`."""
    return ((root / "include" / name).exists() or name.startswith("tools/")
            or (path.parts[0] == "examples" and (root / path).with_name(name).exists()))


def sources():
    for path in (root / "include").rglob("*.h"):
        yield folder_of(str(path.relative_to(root / "include"))), path
    for folder in ["examples", *(BELOW.keys() - {"include", "env"})]:
        for path in (root / folder).rglob("*.[hc]*"):
            yield folder, path


def allowed(folder):
    reached, waiting = set(), [folder]
    while waiting:
        at = waiting.pop()
        if at not in reached:
            reached.add(at)
            waiting += BELOW[at]
    return reached


faults, count = [], 0
for folder, path in sources():
    place = path.relative_to(root)
    is_user = place.parts[0] in ("tools", "examples")
    for quoted, name in re.findall(r'^#include (["<])([^">]+)[">]', path.read_text(), re.M):
        target = folder_of(name)
        is_ours = target or quoted == '"'
        if is_user and is_ours and not is_for_users(place, name):
            faults.append(f"{place} includes {name}, which is not installed")
        if path.name == "lq_data.h" or not target or folder == "examples":
            continue  # the header for everything, or one of others
        count += 1
        if target not in allowed(folder):
            faults.append(f"{place} includes {name}")
print("\n".join(faults) or f"{count} includes")
sys.exit(1 if faults or count < 500 else 0)
