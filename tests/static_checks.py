#!/usr/bin/env python3
"""Has clang-tidy and cppcheck look for faults in everything that is written here, apart from the tests.

usage: static_checks.py

Needs the build trees core-asan and windows, both built; without one of them nothing is checked (77). The core and the tools are read as the native compiler reads them, the rest
as the one for Windows does. A file that was clean is read again only when it, a header of ours that it includes, its
command or the checks have changed. What is found is printed, and ends this with 1.

Both programs' own options stand here; .clang-tidy and cppcheck-suppressions.txt say what they look for.
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
STAMPS = ROOT / "build/static-checks"
READ = re.compile(r"(src|stage|tools|bench)/.*\.cpp$")
# What GCC calls by a name that clang does not know is no fault. The analyzer gives a function up after that many states;
# with its own limit, eleven times as many, it took three to five times as long and found nothing more.
COMMON = ["-Wno-unknown-warning-option", "-Xclang", "-analyzer-config", "-Xclang", "max-nodes=20000"]

# Findings that hang together over more than the analyzer sees, by file.
EXCEPTIONS = {
    # Stepping is a command only where there are frames, which the caller has asked.
    "stage/windows/main_window_commands.cpp": "-clang-analyzer-core.DivideZero",
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


class Ring:
    """Files that one compiler reads: the tree that builds them, and what clang has to be told in addition."""

    def __init__(self, preset, options, wanted, cppcheck):
        self.tree = ROOT / "build" / preset
        self.folder = STAMPS / preset
        self.options = COMMON + options
        self.cppcheck = cppcheck
        commands = json.loads((self.tree / "compile_commands.json").read_text())
        self.entries = {}
        for entry in commands:
            name = os.path.relpath(entry["file"], ROOT)
            if READ.match(name) and wanted(entry):
                self.entries.setdefault(name, entry)
        self.headers = self.read_headers()
        self.folder.mkdir(parents=True, exist_ok=True)
        (self.folder / "compile_commands.json").write_text(json.dumps(list(self.entries.values())))

    def read_headers(self):
        """{object: our files that it was made from}, as the build knows it."""
        lines = subprocess.run(["ninja", "-C", self.tree, "-t", "deps"], capture_output=True, text=True, check=True).stdout
        headers, current = {}, []
        for line in lines.splitlines():
            if line.startswith("    "):
                path = os.path.normpath(self.tree / line.strip())
                if path.startswith(f"{ROOT}/"):
                    current.append(path)
            elif ": #deps" in line:
                current = headers.setdefault(line.split(":")[0], [])
        return headers

    def state_of(self, name):
        """A sum of all that a finding in the file depends on; None when that is not known."""
        entry = self.entries[name]
        made = re.search(r" -o (\S+)", entry["command"]).group(1)
        if made not in self.headers:
            return None
        total = hashlib.sha256(f"{entry['command']} {self.options} {TIDY_VERSION}".encode())
        for path in [str(ROOT / ".clang-tidy"), str(ROOT / name), *self.headers[made]]:
            total.update(pathlib.Path(path).read_bytes())
        return total.hexdigest()

    def tidy(self, name):
        """What clang-tidy finds in the file; nothing when it is clean."""
        state = self.state_of(name)
        stamp = self.folder / (name.replace("/", "_") + ".clean")
        if state is not None and stamp.exists() and stamp.read_text() == state:
            return ""
        command = ["clang-tidy", "--quiet", f"--checks={EXCEPTIONS.get(name, '')}", "-p", str(self.folder),
                   *(f"--extra-arg={option}" for option in self.options), name]
        done = subprocess.run(command, cwd=ROOT, capture_output=True, text=True)
        if done.returncode == 0 and not done.stdout:
            if state is not None:
                stamp.write_text(state)
            return ""
        return done.stdout or f"{name}: {done.stderr}"

    def check(self):
        """What cppcheck finds in all files. It remembers by itself what was clean."""
        memory = self.folder / "cppcheck"
        memory.mkdir(exist_ok=True)
        command = ["cppcheck", "--quiet", f"-j{os.cpu_count()}", "--enable=warning,performance,portability",
                   "--inline-suppr", "--error-exitcode=1", f"--suppressions-list={ROOT}/tests/cppcheck-suppressions.txt",
                   f"--relative-paths={ROOT}", f"--cppcheck-build-dir={memory}", "--template={file}:{line}: {id}: {message}",
                   f"--project={self.folder}/compile_commands.json", *self.cppcheck]
        done = subprocess.run(command, cwd=ROOT, capture_output=True, text=True)
        return "" if done.returncode == 0 else done.stdout + done.stderr


TIDY_VERSION = subprocess.run(["clang-tidy", "--version"], capture_output=True, text=True, check=True).stdout


def main():
    if not all((ROOT / "build" / tree / ".ninja_deps").exists() for tree in ("core-asan", "windows")):
        print("Not both trees are built: ./test builds them")
        return 77
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
