"""Builds the library with one change in it and runs the tests: a copy of the tree for each worker."""

import os
import resource
import shutil
import signal
import subprocess

MEMORY = 4 << 30  # of each test program, so that a mutant that fills the memory ends soon
SPARE_SECONDS = 3  # of processor time, over several times what the test program needs without a change
SLOWER = 5
STUCK_SECONDS = 120  # of the clock, for a program that waits for ever


class Program:
    """A test program and what it took without a change."""

    def __init__(self, target, path):
        self.target = target
        self.path = path
        self.seconds = 0.0


def run_quietly(command, folder, environment=None, limit=None):
    """Returns (exit status, output, whether a limit ended it)."""
    def restrict():
        os.setsid()
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        if limit is not None:
            seconds = int(limit) + 1
            resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds + 1))
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))

    process = subprocess.Popen(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, preexec_fn=restrict)
    while True:
        try:
            output, _ = process.communicate(timeout=None if limit is None else max(STUCK_SECONDS, 10 * limit))
            return process.returncode, output, process.returncode == -signal.SIGXCPU
        except subprocess.TimeoutExpired:
            if not is_stopped(process.pid):
                os.killpg(process.pid, signal.SIGKILL)
                output, _ = process.communicate()
                return process.returncode, output, True


def is_stopped(number):
    """Whether somebody holds the process (SIGSTOP), so that the clock tells nothing about it."""
    with open(f"/proc/{number}/stat", encoding="utf-8", errors="replace") as file:
        return file.read().rpartition(")")[2].split()[0] == "T"


class Worker:
    """One copy of the tree with its build. Programs run in rounds: a round's programs are built when it is reached."""

    def __init__(self, folder, files, configure, build, rounds, environment):
        self.folder = folder
        self.files = files  # names to copy, relative to the current folder
        self.configure = configure  # the command, in the copy
        self.build = build  # the command, to which targets are added
        self.rounds = rounds  # lists of Program
        self.environment = {**os.environ, **environment}
        self.judging = {**self.environment, "CCACHE_READONLY": "1"}  # a cache of compilations need not keep mutants

    def set_up(self):
        """Copies what has changed, and configures."""
        self._copy()
        self._must_pass(self.configure)

    def prepare(self):
        """Builds everything, and measures the tests, which must pass without a change."""
        for programs in self.rounds:
            self._must_pass(self.build + [program.target for program in programs])
            for program in programs:
                start = resource.getrusage(resource.RUSAGE_CHILDREN)
                self._must_pass(self._command(program))
                stop = resource.getrusage(resource.RUSAGE_CHILDREN)
                program.seconds = stop.ru_utime - start.ru_utime + stop.ru_stime - start.ru_stime
            programs.sort(key=lambda program: program.seconds)

    def judge(self, mutant):
        """Returns (outcome, by what): "killed", "timeout", "survived" or "not compiled"."""
        path = os.path.join(self.folder, mutant.file)
        with open(path, encoding="utf-8") as file:
            original = file.read()
        try:
            self._write(path, mutant.apply(original))
            return self._judge_changed()
        finally:
            self._write(path, original)

    def _judge_changed(self):
        for programs in self.rounds:
            status, _, _ = run_quietly(self.build + [program.target for program in programs], self.folder, self.judging)
            if status != 0:
                return "not compiled", ""
            for program in programs:
                limit = SPARE_SECONDS + SLOWER * program.seconds
                status, _, is_late = run_quietly(self._command(program), self.folder, self.environment, limit)
                if status != 0:
                    return "timeout" if is_late else "killed", program.target
        return "survived", ""

    def _command(self, program):
        return [os.path.join(self.folder, program.path), "--gtest_fail_fast", "--gtest_brief=1"]

    def _must_pass(self, command):
        status, output, _ = run_quietly(command, self.folder, self.environment)
        if status != 0:
            raise RuntimeError(f"fails without a change: {' '.join(command)}\n{output.decode(errors='replace')}")

    def _copy(self):
        os.makedirs(self.folder, exist_ok=True)
        for name in self.files:
            target = os.path.join(self.folder, name)
            if not is_same(name, target):
                os.makedirs(os.path.dirname(target), exist_ok=True)
                shutil.copyfile(name, target)
                shutil.copymode(name, target)
        wanted = set(self.files)
        for folder, folders, names in os.walk(self.folder):
            if os.path.relpath(folder, self.folder) == ".":
                folders[:] = [name for name in folders if name != "build"]
            for name in names:
                path = os.path.join(folder, name)
                if os.path.relpath(path, self.folder) not in wanted:
                    os.remove(path)

    @staticmethod
    def _write(path, text):
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)


def is_same(left, right):
    try:
        with open(left, "rb") as one, open(right, "rb") as other:
            return one.read() == other.read()
    except FileNotFoundError:
        return False
