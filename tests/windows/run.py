#!/usr/bin/env python3
"""Runs the tests of Windows: run.py PROGRAM..., PROGRAM being what runs one (Wine), and the program of the tests.

Every test of the sources has to run, but for those that notRun.txt lists with the reason. So a test that was lost, by a
wrong filter or a source that nobody compiles, is as much of a failure as one that fails.
"""
import fnmatch
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

HERE = pathlib.Path(__file__).resolve().parent
TIMEOUT = 300  # seconds


def tests_of_sources():
    """The tests, as Suite.Name, with the name of their file."""
    declared = re.compile(r"^TEST(?:_F|_P)?\((\w+), (\w+)\)", re.MULTILINE)
    return {
        f"{suite}.{name}": str(source.relative_to(HERE.parent))
        for source in sorted(HERE.parent.rglob("*Test.cpp"))
        for suite, name in declared.findall(source.read_text())
    }


def listed(tests):
    """The tests that notRun.txt lists; a line that no longer means any test is an error."""
    found = set()
    for line in (HERE / "notRun.txt").read_text().splitlines():
        if not line or line.startswith("#"):
            continue
        pattern, _, reason = line.partition(": ")
        meant = {test for test, file in tests.items() if fnmatch.fnmatchcase(file, pattern) or fnmatch.fnmatchcase(test, pattern)}
        if not meant or not reason:
            sys.exit(f"notRun.txt: no such test, or no reason: {line}")
        found |= meant
    return found


def run(command, absent):
    """What ran, and whether all of it passed. A program may hold tests that are listed as not run."""
    with tempfile.NamedTemporaryFile(suffix=".xml") as report:
        path = "Z:" + report.name.replace("/", "\\") if "wine" in command[0] else report.name
        flags = ["--gtest_brief=1", f"--gtest_output=xml:{path}", "--gtest_filter=-" + ":".join(sorted(absent))]
        done = subprocess.run([*command, *flags], timeout=TIMEOUT, check=False)
        try:
            cases = xml.etree.ElementTree.parse(report.name).iter("testcase")
        except xml.etree.ElementTree.ParseError:
            sys.exit(f"the tests ended without a report, with {done.returncode}")
        # The name of a test with parameters is Instance/Suite.Name/Parameter.
        ran = {
            f"{case.get('classname').split('/')[-1]}.{case.get('name').split('/')[0]}"
            for case in cases
            if case.get("status") == "run" and case.get("result") == "completed"
        }
    return ran, done.returncode == 0


def main():
    tests = tests_of_sources()
    absent = listed(tests)
    ran, passed = run(sys.argv[1:], absent)
    missing = set(tests) - absent - ran
    surplus = ran - (set(tests) - absent)
    for test in sorted(missing):
        print(f"did not run, and notRun.txt does not list it: {test}")
    for test in sorted(surplus):
        print(f"ran, though it is listed in notRun.txt or in no source: {test}")
    print(f"{len(ran)} tests ran on Windows, {len(absent)} of {len(tests)} are listed as not run there")
    sys.exit(0 if passed and ran and not missing and not surplus else 1)


main()
