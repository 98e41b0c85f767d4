#!/usr/bin/env python3
"""Plants faults one at a time, and tells which of them no test sees.

mutate.py ROOT WORK [PATTERN]
mutate.py ROOT WORK --random COUNT --seed SEED [PATTERN]
mutate.py ROOT WORK --check

Each file of tools/mutations holds faults: a line "@ FILE" names the source, "- TEXT" and "+ TEXT" are
a text that it has once, and what takes its place (⏎ in them ends a line); "= WHY" behind a fault
says why nothing can see it. Only faults whose list, source or text contains PATTERN are planted. The
tree is copied to WORK first, once for each processor, and built and tested there: what is a fault of
the tree ends the run at once. A fault meets the quick tests of its own folder first, then all of them;
only what those let pass is built into the tool and the shared libraries, for the tests of these, and
only in the first copy.

With --random nobody chooses the faults: they are drawn from the lines of the sources (those whose path
contains PATTERN), as random_faults.py says. What does not compile, or to the very same programs, is
none and another is drawn. The survivors are printed as lines of a list, for tools/mutations/random.txt.

With --check nothing is planted: it fails when the sources do not have the text of a fault once.
"""

import argparse
import hashlib
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time

import random_faults

SLOW = "package|Commands/FailingMalloc|report"  # hours, with hundreds of faults
LINKER = shutil.which("ld.lld")  # takes half the time, where there is one
MEMORY = 8 << 30  # what a fault makes of a length may ask for more

arguments = argparse.ArgumentParser()
arguments.add_argument("root", type=pathlib.Path)
arguments.add_argument("work", type=pathlib.Path)
arguments.add_argument("pattern", nargs="?", default="")
arguments.add_argument("--random", type=int, metavar="COUNT")
arguments.add_argument("--seed", type=int, default=1)
arguments.add_argument("--check", action="store_true")
told = arguments.parse_args()
root, work, pattern = told.root.resolve(), told.work.resolve(), told.pattern


def faults():
    """The listed ones: source, text, what takes its place, why nothing can see it."""
    for listed in sorted((root / "tools/mutations").glob("*.txt")):
        found, source = [], None
        for number, line in enumerate(listed.read_text().splitlines(), 1):
            mark, text = line[:2], line[2:].replace("⏎", "\n")
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

    def __init__(self, place, is_whole):
        self.tree, self.build, self.is_whole = place, place / "build/debug", is_whole
        self.quickly, self.seconds = 300, 3600
        for path in run("git", "-C", root, "ls-files")[1].split():
            copied = self.tree / path
            if not copied.exists() or copied.read_bytes() != (root / path).read_bytes():
                self.restore(path)

    def prepare(self):
        """Builds it, without what only a debugger reads, and tests it; what is wrong as the tree is."""
        code, _ = run("cmake", "-G", "Ninja", "-S", self.tree, "-B", self.build,
                      "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O1", "-DLQ_DATA_TESTS=ON",
                      "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST",  # a crash is no build error
                      *(f"-DCMAKE_{kind}_LINKER_FLAGS=-fuse-ld=lld" for kind in ("EXE", "SHARED") if LINKER))
        if code != 0 or not self.compiles("all" if self.is_whole else "lq_tests"):
            return "it does not build"
        _, listed = run(self.build / "bin/lq_tests", "--gtest_list_tests")
        self.quick = "|".join(re.findall(r"^(\w[\w/]*)\.", listed, re.MULTILINE))
        started = time.monotonic()
        if by := self.first_failure("*"):
            return by
        self.quickly = 20 + 5 * (time.monotonic() - started)
        if by := self.is_whole and self.first_failure_elsewhere():
            return by
        self.seconds = 60 + 5 * (time.monotonic() - started)
        self.programs = self.digest()
        return None

    def restore(self, path):
        (self.tree / path).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(root / path, self.tree / path)  # with a new time, so that it is built again

    def compiles(self, target):
        return run("cmake", "--build", self.build, "--target", target)[0] == 0

    def digest(self):
        return [hashlib.sha256(path.read_bytes()).digest()
                for path in sorted(self.build.glob("[bl]i[nb]/*")) if path.is_file()]

    def suites_of(self, source):
        """A filter for the quick tests of its folder, and those that replay the models."""
        suites = {"Replay"}
        for test in (self.tree / "tests" / source.split("/")[0]).rglob("*.cpp"):
            suites.update(re.findall(r"^TEST(?:_[FP])?\((\w+),", test.read_text(), re.MULTILINE))
        return ":".join(f"{suite}.*:*/{suite}.*" for suite in sorted(suites))

    def first_failure(self, chosen):
        """The first quick test that fails, in one process; None where all pass."""
        code, said = run(self.build / "bin/lq_tests", "--gtest_brief=1", f"--gtest_filter={chosen}",
                         env=os.environ | {"GTEST_FAIL_FAST": "1"}, seconds=self.quickly,
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
        if not self.compiles("lq_tests"):
            return "broken", None
        chosen = self.suites_of(source)
        by = self.first_failure(chosen)
        if not by and not source.startswith("tools/"):  # of which hardly anything is in them
            by = self.first_failure(f"-{chosen}")
        if not by:
            if not self.is_whole:
                return "late", None
            if not self.compiles("all") or (told.random and self.digest() == self.programs):
                return "broken", None
            by = self.first_failure_elsewhere()
        return ("killed" if by else "expected" if reason else "survived"), by


class Faults:
    """What is to be planted, handed out to several threads; for a random one that is none, another."""

    def __init__(self):
        self.faults = random_faults.faults(root, told.seed, pattern) if told.random else faults()
        self.left = told.random or sys.maxsize
        self.lock, self.late, self.survivors, self.wrong = threading.Lock(), [], [], None
        self.counts = dict.fromkeys(("killed", "survived", "expected", "broken", "late"), 0)

    def take(self, may_be_late):
        with self.lock:
            if self.late and may_be_late:
                return self.late.pop()
            self.left -= 1
            return next(self.faults, None) if self.left >= 0 else None

    def judged(self, fault, verdict, by, seconds):
        source, text, replacement, reason = fault
        text, replacement = (str(one).replace("\n", "⏎") for one in (text, replacement))
        with self.lock:
            self.counts[verdict] += 1
            self.late += [fault] if verdict == "late" else []
            self.left = max(self.left, 0) + 1 if verdict == "broken" else self.left
            if verdict == "survived":
                self.survivors.append(f"@ {source}\n- {text}\n+ {replacement}")
            print(f"{verdict:9}{seconds:5.0f} s  {source}: {text}  ->  {replacement}" +
                  (f"  ({reason})" if reason else "") + (f"  [{by}]" if by else ""), flush=True)


def judge(copy, planted):
    planted.wrong = copy.prepare() or planted.wrong
    plant(copy, planted)


def plant(copy, planted):
    while not planted.wrong and (fault := planted.take(copy.is_whole)):
        started = time.monotonic()
        verdict, by = copy.verdict(*fault)
        copy.restore(fault[0])
        planted.judged(fault, verdict, by, time.monotonic() - started)


def check():
    unfit = [(source, text) for source, text, replacement, _ in faults()
             if replacement is None or not (root / source).exists()
             or (root / source).read_text().count(text) != 1]
    for source, text in unfit:
        print(f"mutate: {source} does not have this once: {text}", file=sys.stderr)
    sys.exit(1 if unfit else 0)


def main():
    os.nice(10)
    if told.check:
        check()
    planted = Faults()
    copies = [Copy(work / str(number), number == 0) for number in range(os.cpu_count() or 1)]
    threads = [threading.Thread(target=judge, args=(copy, planted)) for copy in copies]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    plant(copies[0], planted)
    if planted.wrong:
        sys.exit(f"mutate: the tree is not right before a fault is planted: {planted.wrong}")
    counts = planted.counts
    seen = counts["killed"] + counts["survived"]
    print(f"{counts['killed']} of {seen} faults that can be seen were seen"
          f" ({100 * counts['killed'] / max(seen, 1):.1f} %); {counts['expected']} cannot be, "
          f"{counts['broken']} " + ("were drawn again" if told.random else "are not listed rightly"))
    print(*planted.survivors, sep="\n")
    sys.exit(1 if counts["survived"] or (counts["broken"] and not told.random) else 0)


main()
