#!/usr/bin/env python3
"""usage: cited_tests.py DOCUMENT BUILD_FOLDER

Every test that the document names, in `Suite.Name` or with a `*`, is one of the build folder's.
"""
import fnmatch
import re
import subprocess
import sys

document, folder = sys.argv[1:]
listed = subprocess.run(["ctest", "-N", "--test-dir", folder], capture_output=True, text=True,
                        check=True).stdout
tests = re.findall(r"Test +#\d+: (\S+)", listed)
with open(document, encoding="utf-8") as file:
    cited = re.findall(r"`([\w*]+(?:/[\w*]+)?\.[A-Z*][\w*]*)`", file.read())
missing = [name for name in cited if not fnmatch.filter(tests, name + "*")]
print(f"{len(cited)} names, {len(tests)} tests")
for name in missing:
    print(f"{document}: no test is called {name}")
sys.exit(1 if missing or len(cited) < 20 else 0)
