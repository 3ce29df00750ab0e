#!/usr/bin/env python3
"""Which lines of the core the native tests run through.

usage: coverage.py BUILD_FOLDER OUT_FOLDER EXPLAINED

BUILD_FOLDER is a build with counters whose tests have run. Writes OUT_FOLDER/summary.txt, a row a file, and
OUT_FOLDER/uncovered.txt, every line that no test runs through. EXPLAINED says which of them need no native test, and
why: a row has a file, a function, the number of its lines that no test runs through, and the reason. Prints what is not
explained and the rows that do not fit the count any more, and ends with 1 if there are any.
"""
import collections
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
MEASURED = re.compile(r"(src|stage)/(?!(.*/)?windows/).*\.(cpp|h|inc)$")
# The compiler gives the way out of a function on an exception to its closing brace.
NO_STATEMENT = re.compile(r"[\s{}()\[\];,]*(//.*)?$")


class Lines:
    """What is known of the lines of a file: how often each was run, and the function that it stands in."""

    def __init__(self, path):
        self.text = (ROOT / path).read_text(encoding="utf-8").splitlines()
        self.counts = collections.defaultdict(int)
        self.functions = {}

    def add(self, line, names):
        number = line["line_number"]
        if NO_STATEMENT.match(self.text[number - 1]):
            return
        self.counts[number] += line["count"]
        self.functions[number] = names.get(line.get("function_name"), "")

    def uncovered(self):
        return sorted(number for number, count in self.counts.items() if count == 0)


def plain_name(demangled):
    """veldran::(anonymous namespace)::Deflater::put(int) const: put. A lambda is part of the function around it."""
    text = re.sub(r"\(anonymous namespace\)::|\[abi:\w+\]", "", demangled)
    while re.search(r"<[^<>]*>", text):
        text = re.sub(r"<[^<>]*>", "", text)
    return text.split("(")[0].split("::")[-1].split(" ")[-1]


def counted_lines(build):
    """{file: Lines}, all instances of a template and all users of a header together."""
    files = {}
    # Objects that no test has run have notes, but no counters.
    notes = [str(note) for note in sorted(build.rglob("*.gcno"))]
    output = subprocess.run(["gcov", "--json-format", "--stdout", *notes], capture_output=True, text=True, check=True)
    for report in map(json.loads, output.stdout.splitlines()):
        for source in report["files"]:
            path = pathlib.Path(report["current_working_directory"], source["file"]).resolve()
            if not path.is_relative_to(ROOT) or not MEASURED.match(str(path.relative_to(ROOT))):
                continue
            name = str(path.relative_to(ROOT))
            names = {f["name"]: plain_name(f["demangled_name"]) for f in source["functions"]}
            lines = files.setdefault(name, Lines(name))
            for line in source["lines"]:
                lines.add(line, names)
    return files


def explained_counts(path):
    """{(file, function): lines that need no test}"""
    rows = {}
    for row in path.read_text(encoding="utf-8").splitlines():
        if row and not row.startswith("#"):
            name, function, count, _reason = row.split(maxsplit=3)
            rows[name, function] = int(count)
    return rows


def percent(part, whole):
    return f"{100 * part / whole:6.1f} %" if whole else "     - %"


def write_reports(out, files):
    """Answers how many lines there are, and how many were run."""
    total = covered = 0
    with open(out / "summary.txt", "w", encoding="utf-8") as summary:
        for name, lines in sorted(files.items()):
            run = len(lines.counts) - len(lines.uncovered())
            summary.write(f"{percent(run, len(lines.counts))} {run:5} of {len(lines.counts):5}  {name}\n")
            total += len(lines.counts)
            covered += run
        summary.write(f"{percent(covered, total)} {covered:5} of {total:5}  together\n")
    with open(out / "uncovered.txt", "w", encoding="utf-8") as uncovered:
        for name, lines in sorted(files.items()):
            for number in lines.uncovered():
                uncovered.write(f"{name}:{number}: {lines.functions[number]}: {lines.text[number - 1].strip()}\n")
    return total, covered


def complaints(files, explained):
    """What is uncovered and not explained, and explanations that say another number of lines."""
    by_function = collections.defaultdict(list)
    for name, lines in files.items():
        for number in lines.uncovered():
            by_function[name, lines.functions[number]].append(f"{name}:{number}: {lines.text[number - 1].strip()}")
    for place in sorted(by_function.keys() | explained.keys()):
        found, said = by_function.get(place, []), explained.get(place, 0)
        if len(found) == said:
            continue
        yield f"{place[0]} {place[1]}: {len(found)} lines not covered, {said} explained"
        yield from (f"    {line}" for line in found)


def main():
    build, out, explained = (pathlib.Path(argument) for argument in sys.argv[1:4])
    files = counted_lines(build.resolve())
    out.mkdir(parents=True, exist_ok=True)
    total, covered = write_reports(out, files)
    wrong = list(complaints(files, explained_counts(explained)))
    print("\n".join([*wrong, f"{covered} of {total} lines covered,{percent(covered, total)}; see {out}"]))
    return 1 if wrong else 0


sys.exit(main())
