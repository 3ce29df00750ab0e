#!/usr/bin/env python3
"""Has clang-tidy and cppcheck look for faults in everything that is written here, apart from the tests.

usage: static_checks.py [--all]

Needs the trees core-asan and windows, configured. The core and the tools are read as the native compiler reads them, the
rest as the one for Windows does, in the groups in which they are compiled: one after the other they take four times as
long. What was clean is read again only when it, something of ours that it includes, its command or the checks have
changed, or with --all. What is found is printed, and ends this with 1.

Both programs' own options stand here; .clang-tidy and cppcheck-suppressions.txt say what they look for.
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
STAMPS = ROOT / "build/static-checks"
OURS = re.compile(r"(src|stage|tools|bench)/.*\.(cpp|h)$")
INCLUDED = re.compile(r'^\s*#include "(.+)"', re.M)
# What only GCC understands: its precompiled headers, and a helper before it.
GCC_ONLY = re.compile(r"-include \S+|-Winvalid-pch|-fpch-preprocess|\S*cmake -E env \S+ \S*ccache ")
# What GCC calls by a name that clang does not know is no fault. The analyzer gives a function up after that many states;
# with its own limit, eleven times as many, it took three to five times as long and found nothing more.
COMMON = ["-Wno-unknown-warning-option", "-Xclang", "-analyzer-config", "-Xclang", "max-nodes=20000"]

# Findings that hang together over more than the analyzer sees, by file.
EXCEPTIONS = {
    # Stepping is a command only where there are frames, which the caller has asked.
    "stage/windows/main_window/main_window_commands.cpp": "-clang-analyzer-core.DivideZero",
}


def windows_options():
    """Clang as a cross-compiler, with the headers of GCC's library for the same target."""
    command = ["x86_64-w64-mingw32-g++-posix", "-E", "-x", "c++", "-v", os.devnull]
    told = subprocess.run(command, capture_output=True, text=True, check=True).stderr
    folders = re.search(r"<...> search starts here:\n(.*?)End of search", told, re.S)
    library = [line.strip() for line in folders.group(1).splitlines() if "/c++" in line]
    return ["--target=x86_64-w64-mingw32", "-nostdinc++", *(f"-isystem{folder}" for folder in library)]


def is_native(entry):
    """Whether the entry of the tree for Windows is checked in the native one already."""
    return re.search(r"CMakeFiles/(veldran_core|stage_core)\.dir/", entry["command"]) is not None


def sources_of(file):
    """The sources that the build compiles as this file: a group's, or itself."""
    return INCLUDED.findall(pathlib.Path(file).read_text()) if "/Unity/" in file else [file]


def with_includes(path, seen=None):
    """The file and all of ours that it includes."""
    seen = set() if seen is None else seen
    seen.add(path)
    for name in INCLUDED.findall(path.read_text()):
        for folder in (path.parent, ROOT / "src", ROOT / "stage", ROOT / "tools"):
            if (folder / name).is_file() and folder / name not in seen:
                with_includes(folder / name, seen)
                break
    return seen


class Ring:
    """Sources that one compiler reads: the tree that builds them, and what clang has to be told in addition."""

    def __init__(self, preset, options, wanted, cppcheck):
        tree = ROOT / "build" / preset
        self.folder = STAMPS / preset
        self.options = COMMON + options
        self.cppcheck = cppcheck
        self.entries = {}
        for entry in json.loads((tree / "compile_commands.json").read_text()):
            entry["command"] = GCC_ONLY.sub("", entry["command"])
            if wanted(entry) and OURS.match(os.path.relpath(sources_of(entry["file"])[-1], ROOT)):
                self.entries.setdefault(entry["file"], entry)
        self.folder.mkdir(parents=True, exist_ok=True)
        (self.folder / "compile_commands.json").write_text(json.dumps(list(self.entries.values())))

    def state_of(self, name):
        """A sum of all that a finding in the source depends on."""
        entry = self.entries[name]
        total = hashlib.sha256(f"{entry['command']} {self.options} {TIDY_VERSION}".encode())
        for path in [ROOT / ".clang-tidy", *sorted(with_includes(pathlib.Path(name)))]:
            total.update(path.read_bytes())
        return total.hexdigest()

    def tidy(self, name):
        """What clang-tidy finds in the source; nothing when it is clean."""
        state = self.state_of(name)
        stamp = self.folder / (os.path.relpath(name, ROOT).replace("/", "_") + ".clean")
        if not ALL and stamp.exists() and stamp.read_text() == state:
            return ""
        exception = EXCEPTIONS.get(os.path.relpath(name, ROOT), "")
        command = ["clang-tidy", "--quiet", f"--checks={exception}", "-p", str(self.folder),
                   *(f"--extra-arg={option}" for option in self.options), name]
        done = subprocess.run(command, cwd=ROOT, capture_output=True, text=True)
        if done.returncode == 0 and not done.stdout:
            stamp.write_text(state)
            return ""
        return done.stdout or f"{name}: {done.stderr}"

    def check(self):
        """What cppcheck finds in all files. It remembers by itself what was clean."""
        memory = self.folder / "cppcheck"
        if ALL:
            shutil.rmtree(memory, ignore_errors=True)
        memory.mkdir(exist_ok=True)
        command = ["cppcheck", "--quiet", f"-j{os.cpu_count()}", "--enable=warning,performance,portability",
                   "--inline-suppr", "--error-exitcode=1", f"--suppressions-list={ROOT}/tests/cppcheck-suppressions.txt",
                   f"--relative-paths={ROOT}", f"--cppcheck-build-dir={memory}", "--template={file}:{line}: {id}: {message}",
                   f"--project={self.folder}/compile_commands.json", *self.cppcheck]
        done = subprocess.run(command, cwd=ROOT, capture_output=True, text=True)
        return "" if done.returncode == 0 else done.stdout + done.stderr


ALL = sys.argv[1:] == ["--all"]
TIDY_VERSION = subprocess.run(["clang-tidy", "--version"], capture_output=True, text=True, check=True).stdout


def main():
    rings = [Ring("core-asan", [], lambda entry: True, []),
             Ring("windows", windows_options(), lambda entry: not is_native(entry),
                  ["--platform=win64", "--library=windows"])]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as workers:
        jobs = [workers.submit(ring.tidy, name) for ring in rings for name in ring.entries]
        found = [job.result() for job in jobs]
    found += [ring.check() for ring in rings]
    sys.stdout.write("".join(found))
    return 1 if any(found) else 0


sys.exit(main())
