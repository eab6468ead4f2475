#!/usr/bin/env python3
"""Prints what the tests reach of TalBase/ and Platform/, and fails where that is not everything.

usage: report.py BUILD

BUILD is the folder of the coverage preset after its tests ran. A direction of a branch that nothing can take has its
reason in the source (see reasons.py).
"""

import json
import os
import subprocess
import sys

import lines_and_branches
import reasons

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


def summary(files, explained):
    """Returns the last line."""
    lines, branches = sum(file.lines for file in files), sum(file.branches for file in files)
    missed_lines = sum(file.missed_lines() for file in files)
    missed_branches = sum(file.missed_branches() for file in files) - len(explained)
    return (f"coverage: {lines_and_branches.percent(lines, missed_lines)} of {lines} lines, "
            f"{lines_and_branches.percent(branches, missed_branches)} of {branches} directions of branches but for "
            f"{len(explained)} that have a reason")


def main(build):
    build = os.path.realpath(build)
    files = judge(export(build), os.getcwd())
    if not files:
        print("coverage: nothing was measured", file=sys.stderr)
        return 1
    gaps = [gap for file in files for gap in file.gaps]
    explained, unexplained, stale = reasons.compare(gaps, [reason for file in files for reason in file.reasons])
    print("\n".join(lines_and_branches.table(files)))
    for gap in unexplained:
        print(f"{gap.file}:{gap.number}: {gap.what}\n    {gap.line}")
    for reason in stale:
        print(f"{reason.file}:{reason.first}: has a reason why it is {reason.what}, but there is no such branch")
    print(summary(files, explained))
    return 1 if unexplained or stale else 0


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1]))
