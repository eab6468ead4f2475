#!/usr/bin/env python3
"""Prints what the tests reach of TalBase/ and Platform/, and fails where that is not everything or listed as unreachable.

usage: report.py BUILD LIST

BUILD is the folder of the coverage preset after its tests ran; LIST the checked-in list of what cannot be reached.
"""

import json
import os
import subprocess
import sys

import lines_and_branches
import unreached

FOLDERS = ("TalBase/", "Platform/")


def programs(build):
    """Returns the libraries and test programs: everything that may hold a copy of the code."""
    found = []
    for folder, _, names in os.walk(build):
        if "CMakeFiles" in folder or "/Tests/Consumer" in folder:
            continue
        for name in names:
            path = os.path.join(folder, name)
            if os.access(path, os.X_OK) and not os.path.islink(path) and is_elf(path):
                found.append(path)
    return sorted(found)


def is_elf(path):
    with open(path, "rb") as file:
        return file.read(4) == b"\x7fELF"


def run(*command):
    print("+", " ".join(command[:4]), "..." if len(command) > 4 else "", file=sys.stderr)
    return subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout


def export(build):
    """Merges the profiles and returns what llvm-cov makes of them: a list with a dictionary for each file."""
    profiles = os.path.join(build, "profiles")
    raw = sorted(os.path.join(profiles, name) for name in os.listdir(profiles) if name.endswith(".profraw"))
    merged = os.path.join(build, "tests.profdata")
    run("llvm-profdata-14", "merge", "-o", merged, "-sparse", *raw)
    first, *others = programs(build)
    objects = [argument for program in others for argument in ("-object", program)]
    text = run("llvm-cov-14", "export", "-format=text", "-skip-expansions", "-compilation-dir=" + build,
               "-instr-profile=" + merged, first, *objects)
    return json.loads(text)["data"][0]["files"]


def judge(files, root):
    """Returns the coverage of each file of FOLDERS, in order of name."""
    judged = []
    for exported in files:
        name = os.path.relpath(os.path.realpath(exported["filename"]), root)
        if name.startswith(FOLDERS):
            with open(os.path.join(root, name), encoding="utf-8") as source:
                judged.append(lines_and_branches.read_file_coverage(name, exported, source.read().splitlines()))
    return sorted(judged, key=lambda file: file.name)


def summary(files, listed):
    """Returns the last line: the figures with what is listed taken as reached, and without."""
    def share(title, total, missed, excused):
        return (f"{title} {lines_and_branches.percent(total, missed - excused)} ({excused} listed as unreachable; "
                f"raw {total - missed} of {total}, {lines_and_branches.percent(total, missed)})")

    listed_lines = sum(gap.what == "not run" for gap in listed)
    return "coverage: " + ", ".join((
        share("lines", sum(file.lines for file in files), sum(file.missed_lines() for file in files), listed_lines),
        share("branches", sum(file.branches for file in files), sum(file.missed_branches() for file in files),
              len(listed) - listed_lines)))


def main(build, list_name):
    build = os.path.realpath(build)
    root = os.getcwd()
    with open(list_name, encoding="utf-8") as file:
        entries = unreached.parse(file.read())
    files = judge(export(build), root)
    if not files:
        print("coverage: nothing was measured", file=sys.stderr)
        return 1
    gaps = [gap for file in files for gap in file.gaps]
    listed, unlisted, stale = unreached.compare(gaps, entries)
    print("\n".join(lines_and_branches.table(files)))
    for gap in unlisted:
        print(f"{gap.file}:{gap.number}: {gap.what}\n    {gap.line}")
    for entry in stale:
        print(f"{list_name}: listed, but reached or gone: {entry.file}: {entry.line} ({entry.what})")
    print(summary(files, listed))
    return 1 if unlisted or stale else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
