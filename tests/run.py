#!/usr/bin/env python3
"""Runs the tests of a build tree with ctest: a line for each as it ends, then what failed printed, and a summary.

usage: run.py TREE [WORD...]    with words, only tests whose names have one of them in them
"""
import os
import re
import subprocess
import sys
import xml.etree.ElementTree

ENDED = re.compile(r"\s*\d+/(\d+) Test +#\d+: (\S+) \.+\s*(.*?) +([\d.]+) sec")


def main(tree, *words):
    results = os.path.join(tree, "tests.xml")
    command = ["ctest", "--test-dir", tree, f"-j{os.cpu_count() + 1}", "--output-junit", os.path.abspath(results)]
    if words:
        command += ["-R", "|".join(re.escape(word) for word in words)]
    if os.path.exists(results):
        os.remove(results)
    running = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    for line in running.stdout:
        if ended := ENDED.match(line):
            _, name, verdict, seconds = ended.groups()
            print(f"{'ok' if verdict == 'Passed' else verdict.strip('*'):10} {name:32} {float(seconds):6.1f} s", flush=True)
    running.wait()
    if not os.path.exists(results):
        sys.exit(f"ctest left no results; run it again with: {' '.join(command)}")
    cases = list(xml.etree.ElementTree.parse(results).getroot().iter("testcase"))
    failed = [case for case in cases if case.get("status") == "fail"]
    skipped = [case for case in cases if case.get("status") not in ("run", "fail")]
    for case in failed:
        print(f"\n==== {case.get('name')}\n{case.findtext('system-out') or case.find('failure').get('message')}")
    passed = len(cases) - len(failed) - len(skipped)
    print(f"\n{passed} passed, {len(failed)} failed" + (f", {len(skipped)} skipped" if skipped else ""))
    if not cases:
        sys.exit("No test has such a name; ./test --list names them.")
    sys.exit(1 if failed else 0)


main(*sys.argv[1:])
