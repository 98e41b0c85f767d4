#!/usr/bin/env python3
"""Plants faults one at a time, and tells which of them no test sees.

mutate.py ROOT WORK [PATTERN]

Each file of tools/mutations holds faults: a line "@ FILE" names the source, "- TEXT" and "+ TEXT" are
a piece of one of its lines, which it has once, and what takes its place; "= WHY" behind a fault says
why nothing can see it. Only faults whose list, source or text contains PATTERN are planted. The tree
is copied to WORK first, once for each processor, and built and tested there: what is a fault of the
tree ends the run at once. A fault meets the quick tests of its own folder first, then all of them;
only what those let pass is built into the tool and the shared libraries, for the tests of these.
"""

import os
import pathlib
import queue
import re
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time

SLOW = "package|Commands/FailingMalloc|report"  # hours, with hundreds of faults
MEMORY = 8 << 30  # what a fault makes of a length may ask for more

root, work = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
pattern = sys.argv[3] if len(sys.argv) > 3 else ""


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
        yield from (fault for fault in found
                    if pattern in listed.name or pattern in fault[0] or pattern in fault[1])


def limit():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))


def run(*command, seconds=None, **more):
    """The exit code, none after so many seconds, and what was said. What it started ends with it."""
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          errors="replace", start_new_session=True, **more) as process:
        try:
            said = process.communicate(timeout=seconds)[0]
            return process.returncode, said
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            return None, process.communicate()[0]


class Copy:
    """A copy of the tree with its build."""

    def __init__(self, place):
        self.tree, self.build, self.seconds = place, place / "build/debug", 3600
        for path in run("git", "-C", root, "ls-files")[1].split():
            copied = self.tree / path
            if not copied.exists() or copied.read_bytes() != (root / path).read_bytes():
                self.restore(path)

    def prepare(self):
        """Builds it, without what only a debugger reads, and ends the run where its quick tests fail."""
        code, _ = run("cmake", "-G", "Ninja", "-S", self.tree, "-B", self.build,
                      "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O1", "-DLQ_DATA_TESTS=ON")
        if code != 0 or not self.compiles("all"):
            sys.exit("mutate: the tree does not build")
        _, listed = run(self.build / "bin/lq_tests", "--gtest_list_tests")
        self.quick = "|".join(re.findall(r"^(\w[\w/]*)\.", listed, re.MULTILINE))
        if by := self.first_failure("*"):
            sys.exit(f"mutate: the tests do not pass as the tree is: {by}")

    def restore(self, path):
        (self.tree / path).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(root / path, self.tree / path)  # with a new time, so that it is built again

    def compiles(self, target):
        return run("cmake", "--build", self.build, "--target", target)[0] == 0

    def suites_of(self, source):
        """A filter for the quick tests of its folder, and those that replay the models."""
        suites = {"Replay"}
        for test in (self.tree / "tests" / source.split("/")[0]).rglob("*.cpp"):
            suites.update(re.findall(r"^TEST(?:_[FP])?\((\w+),", test.read_text(), re.MULTILINE))
        return ":".join(f"{suite}.*:*/{suite}.*" for suite in sorted(suites))

    def first_failure(self, chosen):
        """The first quick test that fails, in one process; None where all pass."""
        code, said = run(self.build / "bin/lq_tests", "--gtest_brief=1", f"--gtest_filter={chosen}",
                         env=os.environ | {"GTEST_FAIL_FAST": "1"}, seconds=min(self.seconds, 300),
                         preexec_fn=limit)
        failed = re.search(r"\[  FAILED  \] ([\w./]+)", said)
        return None if code == 0 else failed[1] if failed else "time" if code is None else "a crash"

    def first_failure_elsewhere(self):
        code, said = run("ctest", "--test-dir", self.build, "--stop-on-failure", "-E",
                         f"^({SLOW}|({self.quick})\\.)", seconds=self.seconds, preexec_fn=limit)
        failed = re.search(r"([\w./-]+) +(?:# GetParam.*)?[.]*\*{3}", said)
        return None if code == 0 else failed[1] if failed else "another test"

    def verdict(self, source, text, replacement, reason):
        original = (root / source).read_text()
        if original.count(text) != 1 or replacement is None:
            return "broken", None
        (self.tree / source).write_text(original.replace(text, replacement))
        by = None
        if not source.startswith("tools/"):
            if not self.compiles("lq_tests"):
                return "broken", None
            chosen = self.suites_of(source)
            by = self.first_failure(chosen) or self.first_failure(f"-{chosen}")
        if not by:
            if not self.compiles("all"):
                return "broken", None
            by = self.first_failure_elsewhere()
        return ("killed" if by else "expected" if reason else "survived"), by


def judge(copy, sources, counts, lock):
    while True:
        try:
            listed = sources.get_nowait()
        except queue.Empty:
            return
        for source, text, replacement, reason in listed:
            started = time.monotonic()
            verdict, by = copy.verdict(source, text, replacement, reason)
            with lock:
                counts[verdict] += 1
                print(f"{verdict:9}{time.monotonic() - started:5.0f} s  {source}: {text}  ->  "
                      f"{replacement}" + (f"  ({reason})" if reason else "") +
                      (f"  [{by}]" if by else ""), flush=True)
        copy.restore(listed[0][0])


def main():
    os.nice(10)
    by_source = {}
    for fault in faults():
        by_source.setdefault(fault[0], []).append(fault)
    if not by_source:
        sys.exit("mutate: no fault is listed")
    sources = queue.Queue()
    for listed in by_source.values():  # one after another: the next undoes the one before
        sources.put(listed)
    counts = dict.fromkeys(("killed", "survived", "expected", "broken"), 0)
    lock = threading.Lock()
    copies = [Copy(work / str(number)) for number in range(os.cpu_count() or 1)]
    for copy in copies:
        copy.prepare()
    started = time.monotonic()
    if by := copies[0].first_failure_elsewhere():
        sys.exit(f"mutate: the tests do not pass as the tree is: {by}")
    for copy in copies:
        copy.seconds = 60 + 5 * (time.monotonic() - started)
    threads = [threading.Thread(target=judge, args=(copy, sources, counts, lock)) for copy in copies]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    seen = counts["killed"] + counts["survived"]
    print(f"{counts['killed']} of {seen} faults that can be seen were seen"
          f" ({100 * counts['killed'] / max(seen, 1):.1f} %); {counts['expected']} cannot be, "
          f"{counts['broken']} are not listed rightly")
    sys.exit(1 if counts["survived"] or counts["broken"] else 0)


main()
