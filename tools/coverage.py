#!/usr/bin/env python3
"""Runs the tests of a build with source-based coverage and judges what they reach of the library.

usage: coverage.py BUILD_FOLDER

Prints lines and branches by folder, writes an HTML report to BUILD_FOLDER/html, and ends with 1 when
a goal is missed. See docs/coverage.md.
"""
import collections
import glob
import json
import os
import re
import subprocess
import sys

FOLDERS = ("frame", "containers", "types", "scanner", "cgtab", "pouh", "translate")
GOALS = {"all": {"lines": 95, "branches": 90}} | {
    folder: {"lines": 98} for folder in ("scanner", "cgtab", "containers")}


def run_tests(build, profile):
    """Runs both test programs; what they and the tool count goes into one profile."""
    raw = os.path.join(build, "raw")
    for old in glob.glob(os.path.join(raw, "*")):
        os.remove(old)
    environment = os.environ | {"LLVM_PROFILE_FILE": os.path.join(raw, "%m.profraw")}
    # The limit of that one test is the profile's as well.
    for program, left_out in (("lq_tests", ""), ("lq_tool_tests", "-Faults.TheDeviceIsFull")):
        subprocess.run([os.path.join(build, "bin", program), "--gtest_brief=1",
                        f"--gtest_filter={left_out or '*'}"], env=environment, check=True)
    subprocess.run(["llvm-profdata-14", "merge", "-o", profile,
                    *glob.glob(os.path.join(raw, "*.profraw"))], check=True)


def cov(verb, build, profile, *options):
    """The output of llvm-cov; its warnings concern inline functions outside the library."""
    command = ["llvm-cov-14", verb, f"-instr-profile={profile}", *options,
               os.path.join(build, "bin", "lq_tests"),
               "-object", os.path.join(build, "lib", "liblq_data.so"),
               "-object", os.path.join(build, "lib", "liblq_translate.so")]
    run = subprocess.run(command, capture_output=True, text=True, check=False)
    if run.returncode:
        sys.exit(run.stderr)
    return run.stdout


def folder_of(path):
    """The library folder of a source; a public header counts to the folder that it is for."""
    parts = os.path.relpath(path).split(os.sep)
    if parts[0] == "include":
        stem = os.path.splitext(parts[-1])[0]
        return stem if stem in FOLDERS else "frame"
    return parts[0]


def count(build, profile):
    """What is covered and what there is, by folder and in all."""
    export = json.loads(cov("export", build, profile, "-summary-only"))
    sums = collections.defaultdict(lambda: {"lines": [0, 0], "branches": [0, 0]})
    for file in export["data"][0]["files"]:
        folder = folder_of(file["filename"])
        for name in (folder, "all") if folder in FOLDERS else ():
            for what, pair in sums[name].items():
                pair[0] += file["summary"][what]["covered"]
                pair[1] += file["summary"][what]["count"]
    return sums


def main():
    build = os.path.abspath(sys.argv[1])
    os.chdir(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
    profile = os.path.join(build, "tests.profdata")
    run_tests(build, profile)
    others = f"^{re.escape(os.getcwd())}/(bench|build|env|fuzz|host|tests|tools)/|^/usr/"
    cov("show", build, profile, "-format=html", "-show-branches=count",
        f"-output-dir={os.path.join(build, 'html')}", f"-ignore-filename-regex={others}")
    missed = False
    print(f"{'folder':<12}{'lines':>22}{'branches':>22}")
    sums = count(build, profile)
    for name in (*FOLDERS, "all"):
        row = f"{name:<12}"
        for what, (covered, total) in sums[name].items():
            percent = 100 * covered / total if total else 100
            goal = GOALS.get(name, {}).get(what, 0)
            missed |= percent < goal
            row += f"{covered:>7}/{total:<5}{percent:>7.2f} %" + ("!" if percent < goal else " ")
        print(row.rstrip())
    print(f"report: {os.path.join(os.path.relpath(build), 'html', 'index.html')}", flush=True)
    if missed:
        sys.exit("coverage: a goal is missed where the table shows !")


if __name__ == "__main__":
    main()
