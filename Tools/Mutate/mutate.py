#!/usr/bin/env python3
"""Changes the library at one place at a time and looks whether the unit and contract tests notice.

usage: mutate.py [--sample N | --all | --again] [--seed S] [--file F]... [--workers N] [--list]

  --sample N   judge N of the mutants, drawn by chance (500, which takes an hour; with --file, all of the files)
  --all        judge all of them
  --again      judge those that survived the last run: after writing tests for them
  --seed S     the start of the draw (1)
  --file F     only mutants of this file; may be given more than once
  --workers N  so many at once (the number of processors)
  --list       print the mutants and judge none

Prints the survivors, each for a reader to judge: a change of behaviour wants a test; some make the library only slower,
or different in nothing (mutants.py says which kinds of places are never drawn for this reason). So nobody keeps a list of
them. The exit status is 1 where a draw from the whole library had more than 15 survivors of 100: some ten do the same in
another way, so tests are missing then.
"""

import argparse
import hashlib
import json
import os
import re
import subprocess
import sys
import threading
import time
from collections import Counter

import judge
import mutants

LEFT = os.path.join("build", "mutate", "survivors.json")
REQUIRED_SCORE = 85
SAMPLE = 500
PRESET = "mutate"

# Rounds: a round is built when no program of those before it noticed anything. First the programs that use the library
# by its public headers, of which a change of a private one compiles little again; then the others that link it; then all
# that are named nowhere here, such as those that hold the library's insides, which take a second compilation and a link
# each.
ROUNDS = (("Unit/PropertyBagTokenTest", "Unit/BufferedWStringTest", "Unit/InitializerTest", "Unit/ModuleMainTest",
           "Unit/TextCheckTest", "Unit/TextFaultTest", "Contract/BagExceptionsTest", "Contract/GuidFailureTest",
           "Contract/ModuleStartTest", "Contract/FailedPrimitiveTest", "Contract/MemoryTest", "Contract/DifferentialTest",
           "Contract/TextCheckDifferentialTest", "Contract/TextFaultDifferentialTest"),
          ("Unit/PropertyBagTest", "Unit/DeliveryWindowTest", "Unit/GoldenBagsTest", "Unit/GuidTest",
           "Unit/PropertyBagHelpersTest", "Unit/PropertyBagsTest", "Unit/SensitiveNamesTest",
           "Unit/SerializableStringCollectionTest", "Unit/SerializationTemplatesTest", "Unit/Views17Test",
           "Unit/Views20Test", "Contract/BagOverridersTest", "Contract/BagLifetimeTest", "Contract/BagOperands17Test",
           "Contract/BagOperands20Test", "Contract/VirtualSlotsTest", "Contract/ValuesAllocationTest",
           "Contract/FailedAllocationTest"))
# What would cost much and notice little: other libraries, threads, a million levels of nesting, and times.
LEFT_OUT = ("Unit/PlatformTest", "Unit/PlatformThreadsTest", "Unit/GuidRandomSourceTest",
            "Unit/PlatformAllocationTest", "Unit/Utf8StepsTest", "Unit/Utf8StepsWithoutSse2Test",
            "Contract/BagThreadsTest", "Contract/ValuesThreadsTest", "Contract/SharingThreadsTest", "Contract/DepthTest",
            "Contract/GrowthTest")
# Random operations: so many that they take about a second. What is freed is overwritten, as in every test run.
ENVIRONMENT = {"TALBASE_DIFFERENTIAL_OPERATIONS": "20000", "TALBASE_TEXTFAULT_BAGS": "2000", "MALLOC_PERTURB_": "165"}


def tracked_files():
    """Returns the names of the tree's files, new ones included."""
    command = ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
    names = subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout.decode().split("\0")
    return [name for name in names if name and os.path.isfile(name)]


def sources(names):
    return sorted(name for name in names if name.startswith("TalBase/") and name.endswith((".cpp", ".h")))


def read(name):
    with open(name, encoding="utf-8") as file:
        return file.read()


def make_worker(number, names):
    folder = os.path.abspath(os.path.join("build", "mutate", str(number)))
    build = os.path.join("build", PRESET)
    return judge.Worker(folder, names, ["cmake", "--preset", PRESET], ["ninja", "-C", build], [], ENVIRONMENT)


class Queue:
    """Hands out mutants so that a worker stays with a file: going to another costs a compilation more."""

    def __init__(self, drawn):
        self.lock = threading.Lock()
        self.by_file = {}
        for mutant in drawn:
            self.by_file.setdefault(mutant.file, []).append(mutant)

    def next(self, file):
        """Returns a mutant of the file, or of the file with the most left, or None."""
        with self.lock:
            if not self.by_file.get(file):
                file = max(self.by_file, key=lambda name: len(self.by_file[name]), default=None)
            return self.by_file[file].pop(0) if file is not None and self.by_file[file] else None


class Report:
    """Counts and prints what becomes of the mutants."""

    def __init__(self, total):
        self.lock = threading.Lock()
        self.total = total
        self.counts = Counter()
        self.survivors = []

    def add(self, mutant, outcome, by):
        with self.lock:
            self.counts[outcome] += 1
            if outcome == "survived":
                self.survivors.append(mutant)
            done = sum(self.counts.values())
            print(f"[{done}/{self.total}] {outcome}{f' ({by})' if by else ''}: {mutant.file}:{mutant.number}: "
                  f"{mutant.change}", flush=True)

    def score(self):
        """Returns the share, in percent, of the mutants that compile which were noticed; 0 where none compiles."""
        killed = self.counts["killed"] + self.counts["timeout"]
        judged = killed + self.counts["survived"]
        return 100.0 * killed / judged if judged else 0.0

    def lines(self, population, seconds):
        result = [""]
        for mutant in sorted(self.survivors, key=lambda one: (one.file, one.number)):
            result.append(f"survived: {mutant}")
        result.append(
            f"mutate: {sum(self.counts.values())} of {population} mutants in {seconds:.0f} s: "
            f"{self.counts['killed']} killed, {self.counts['timeout']} timeouts, {self.counts['survived']} survived, "
            f"{self.counts['not compiled']} not compiled; {self.score():.1f} % noticed")
        return result


def built_programs(worker):
    """Returns the names of the test programs, as the build has them."""
    command = ["ninja", "-C", os.path.join(worker.folder, "build", PRESET), "-t", "targets", "all"]
    text = subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout.decode()
    return set(re.findall(r"^Tests/((?:Unit|Contract)/\w+): CXX_EXECUTABLE_LINKER", text, re.MULTILINE))


def rounds_of(built):
    """Returns the rounds with the programs that no list here names as the last one. Throws where a named one is gone."""
    named = {name for group in ROUNDS + (LEFT_OUT,) for name in group}
    if not named <= built:
        raise RuntimeError(f"test programs that are gone: {', '.join(sorted(named - built))}")
    return [[judge.Program(os.path.basename(name), os.path.join("build", PRESET, "Tests", name)) for name in group]
            for group in ROUNDS + (sorted(built - named),)]


def work(worker, queue, report, failures):
    try:
        worker.set_up()
        worker.rounds = rounds_of(built_programs(worker))
        worker.prepare()
        file = None
        while not failures:
            mutant = queue.next(file)
            if mutant is None:
                return
            file = mutant.file
            report.add(mutant, *worker.judge(mutant))
    except Exception as failure:  # pylint: disable=broad-except; the main thread reports it
        failures.append(failure)


def parse_arguments(arguments):
    parser = argparse.ArgumentParser(usage=__doc__.split("\n")[2][7:], add_help=True)
    amount = parser.add_mutually_exclusive_group()
    amount.add_argument("--sample", type=int)
    amount.add_argument("--all", action="store_true")
    amount.add_argument("--again", action="store_true")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--file", action="append", default=[])
    parser.add_argument("--workers", type=int, default=len(os.sched_getaffinity(0)))
    parser.add_argument("--list", action="store_true")
    return parser.parse_args(arguments)


def lot(seed, mutant):
    """Returns what a mutant is drawn by. It depends on no other one, so a change of the library changes few of a draw."""
    return hashlib.sha256("\0".join((str(seed),) + mutant.key()).encode()).digest()


def draw(population, options):
    drawn = [mutant for mutant in population if not options.file or mutant.file in options.file]
    sample = SAMPLE if options.sample is None and not options.file else options.sample
    if options.again:
        left = json.loads(read(LEFT))
        drawn = [mutant for mutant in drawn if list(mutant.key()) in left]
    elif sample is not None and sample < len(drawn) and not options.all:
        drawn = sorted(drawn, key=lambda mutant: lot(options.seed, mutant))[:sample]
    return sorted(drawn, key=lambda mutant: (mutant.file, mutant.start, mutant.stop, mutant.new))


def exit_status(options, score):
    """Of one file's mutants, or of survivors, any number may survive; a reader asked for them."""
    is_draw_of_all = not options.file and not options.again
    return 1 if is_draw_of_all and score < REQUIRED_SCORE else 0


def main(arguments):
    options = parse_arguments(arguments)
    names = tracked_files()
    population = [mutant for name in sources(names) for mutant in mutants.find_mutants(name, read(name))]
    drawn = draw(population, options)
    if options.list:
        print("\n".join(str(mutant) for mutant in drawn))
        return 0
    report, failures, start = Report(len(drawn)), [], time.monotonic()
    queue = Queue(drawn)
    threads = [threading.Thread(target=work, args=(make_worker(number, names), queue, report, failures))
               for number in range(1, options.workers + 1)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if failures:
        print(f"mutate: {failures[0]}", file=sys.stderr)
        return 2
    with open(LEFT, "w", encoding="utf-8") as file:
        json.dump([mutant.key() for mutant in report.survivors], file)
    print("\n".join(report.lines(len(population), time.monotonic() - start)))
    return exit_status(options, report.score())


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
