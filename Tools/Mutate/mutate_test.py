"""The mutation tester on small sources whose mutants are known, and on a small program from end to end."""

import contextlib
import io
import json
import os
import tempfile
import unittest
from unittest import mock

import judge
import mutants
import mutate
import tokens


def changes(text):
    return [mutant.change for mutant in mutants.find_mutants("a.cpp", text)]


def results(text):
    return [mutant.apply(text) for mutant in mutants.find_mutants("a.cpp", text)]


class Tokens(unittest.TestCase):
    def test_comments_and_preprocessor_lines_are_left_out(self):
        text = '#if A < 1 \\\n && B\nint a; // a < b\n/* 1\n2 */ L"//1" R"x(" < ")x"'
        self.assertEqual([token.text for token in tokens.tokenize(text)], ["int", "a", ";", 'L"//1"', 'R"x(" < ")x"'])

    def test_longest_sign_comes_first(self):
        self.assertEqual([token.text for token in tokens.tokenize("a <<= b->c++ :: 1'000u")],
                         ["a", "<<=", "b", "->", "c", "++", "::", "1'000u"])

    def test_unbalanced_brackets_are_refused(self):
        for text in ("(", "a)", "{(})"):
            with self.assertRaises(ValueError):
                tokens.match_brackets(tokens.tokenize(text))


class Mutants(unittest.TestCase):
    def test_operators(self):
        self.assertEqual(results("bool a = b < c;"), ["bool a = b <= c;", "bool a = b >= c;"])
        self.assertEqual(results("bool a = b && !c;"), ["bool a = b || !c;", "bool a = b && c;"])
        self.assertEqual(results("a += b - c;"), ["a -= b - c;", "a += b + c;"])

    def test_brackets_of_templates_and_references_are_no_operators(self):
        for text in ("template <class A, int B = 3> A b(A&& c, const D& d, E* e);", "std::vector<std::pair<A, B>> c;",
                     "A b = *c;", "bool operator<(A, B);", "static_assert(sizeof(A) == 4);", "[[nodiscard]] int a();"):
            self.assertEqual(changes(text), [], text)

    def test_what_only_time_and_memory_show_is_left_out(self):
        for text in ("const std::size_t gShortText = 32;", "static constexpr std::size_t gSmall = 2 * 8 + 1;",
                     "void f()\n{\n    a.reserve(b + 1);\n}", "void f()\n{\n    if (a.size() - 1 > gFewNames)\n    {\n    }\n}",
                     "Stack<A, 24> b;", "wchar_t a[16];", "A<B> c[2];", "unsigned int hHash(A b) const noexcept\n{\n    c += b * 3;\n    return c >> 7;\n}"):
            self.assertEqual(changes(text), [], text)
        self.assertEqual(changes("void f()\n{\n    a.Reserve(b + 1);\n}"), ["the statement a.Reserve(b + 1); goes"])
        self.assertEqual(len(changes("void f()\n{\n    Reserve(b + 1);\n}")), 4)
        self.assertEqual(changes("int f()\n{\n    return a[0];\n}"), ["0 becomes 1"])
        self.assertEqual(changes("int a = Hash(b) + 1;"), ["+ becomes -", "1 becomes 0", "1 becomes 2"])
        self.assertEqual(changes("bool a = b < 2 * gMostNames && c[1];"),
                         ["&& becomes ||", "1 becomes 0", "1 becomes 2"])

    def test_numbers(self):
        self.assertEqual(results("int a = 0;"), ["int a = 1;"])
        self.assertEqual(results("int a = 7U;"), ["int a = 6U;", "int a = 8U;"])
        self.assertEqual(results("int a = 0xFF;"), ["int a = 0x100;", "int a = 0xfe;"])
        self.assertEqual(results("double a = 0.5;"), [])

    def test_texts_and_characters(self):
        self.assertEqual(results('auto a = L"xyz";'), ['auto a = L"Qyz";', 'auto a = L"xy";'])
        self.assertEqual(results('auto a = "";'), ['auto a = "?";'])
        self.assertEqual(results("auto a = L'\\0';"), ["auto a = L'Q';"])
        self.assertEqual(results('extern "C" int a();'), [])

    def test_choices_are_swapped(self):
        self.assertEqual(results("a = b ? c(d ? e : f) : g;"), ["a = b ? g : c(d ? e : f);", "a = b ? c(d ? f : e) : g;"])
        self.assertEqual(results("f(a ? b : c, d);"), ["f(a ? c : b, d);"])

    def test_conditions_are_turned_round(self):
        self.assertEqual(results("if (a)\n{\n}"), ["if (!(a))\n{\n}"])
        self.assertEqual(results("if (int a = b(); a)\n{\n}"), ["if (int a = b(); !(a))\n{\n}"])

    def test_statements_are_dropped(self):
        text = "void f()\n{\n    A b;\n    const C d(b);\n    b.e(d);\n    g = h;\n    return;\n}"
        self.assertEqual(changes(text), ["the statement b.e(d); goes", "the statement g = h; goes"])
        self.assertEqual(results("void f() noexcept\n{\n    g();\n}"), ["void f() noexcept\n{\n    ;\n}"])

    def test_declarations_are_not_dropped(self):
        for text in ("A<B, C> d;", "A::B c(d);", "A* b = c;", "const auto a = b;", "A& b = c;"):
            self.assertEqual(changes("void f()\n{\n    " + text + "\n}"), [], text)
        self.assertEqual(changes("class A\n{\n    B c();\n    d e;\n};\nnamespace f\n{\nG h();\n}"), [])

    def test_statements_of_lambdas_are_dropped(self):
        text = "void f()\n{\n    const auto a = [&](int b) -> int {\n        c(b);\n        return b;\n    };\n}"
        self.assertEqual(changes(text), ["the statement c(b); goes"])

    def test_places_have_line_and_number(self):
        found = mutants.find_mutants("a.cpp", "int a;\n  b = c + d + e;")
        self.assertEqual([(mutant.number, mutant.line) for mutant in found], [(2, "b = c + d + e;")] * 2)
        self.assertEqual([mutant.change for mutant in found],
                         ["+ becomes -", "+ becomes - (number 2 in the line)"])


SOURCE = """inline bool IsSmall(int iValue)
{
    return iValue < 10;
}

inline int Half(int iValue)
{
    int lHalf = iValue;
    while (lHalf > iValue / 2)
    {
        --lHalf;
    }
    return lHalf;
}
"""
# Of Half, odd numbers and negative ones are left untested.
TEST = """#include "Source.h"
int main() { return IsSmall(9) && !IsSmall(10) && Half(8) == 4 ? 0 : 1; }
"""
MAKEFILE = "Test: Test.cpp Source.h\n\tg++-12 -o $@ Test.cpp\n"


class Judging(unittest.TestCase):
    def setUp(self):
        self.addCleanup(setattr, judge, "SPARE_SECONDS", judge.SPARE_SECONDS)
        judge.SPARE_SECONDS = 0.5
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.folder.name)
        for name, text in (("Source.h", SOURCE), ("Test.cpp", TEST), ("Makefile", MAKEFILE)):
            with open(name, "w", encoding="utf-8") as file:
                file.write(text)

    def worker(self):
        rounds = [[judge.Program("Test", "Test")]]
        worker = judge.Worker(os.path.abspath("copy"), ["Source.h", "Test.cpp", "Makefile"], ["true"], ["make", "-s"],
                              rounds, {})
        worker.set_up()
        return worker

    def test_every_mutant_is_judged(self):
        worker = self.worker()
        worker.prepare()
        found = mutants.find_mutants("Source.h", SOURCE)
        outcomes = {(mutant.line, mutant.change): worker.judge(mutant)[0] for mutant in found
                    if mutant.change != "-- becomes ++"}  # ends after a while or not, as the compiler likes
        self.maxDiff = None
        self.assertEqual(outcomes, {
            ("return iValue < 10;", "< becomes <="): "killed",
            ("return iValue < 10;", "< becomes >="): "killed",
            ("return iValue < 10;", "10 becomes 9"): "killed",
            ("return iValue < 10;", "10 becomes 11"): "killed",
            ("while (lHalf > iValue / 2)", "the condition of while is turned round"): "killed",
            ("while (lHalf > iValue / 2)", "> becomes >="): "killed",
            ("while (lHalf > iValue / 2)", "> becomes <="): "killed",
            ("while (lHalf > iValue / 2)", "/ becomes *"): "killed",
            ("while (lHalf > iValue / 2)", "2 becomes 1"): "killed",
            ("while (lHalf > iValue / 2)", "2 becomes 3"): "killed",
            ("--lHalf;", "the statement --lHalf; goes"): "timeout",
        })
        with open("copy/Source.h", encoding="utf-8") as file:
            self.assertEqual(file.read(), SOURCE)

    def test_a_mutant_that_nobody_notices_survives_and_nonsense_does_not_compile(self):
        with open("Test.cpp", "w", encoding="utf-8") as file:
            file.write('#include "Source.h"\nint main() { return IsSmall(5) ? 0 : 1; }\n')
        worker = self.worker()
        worker.prepare()
        found = {mutant.change: mutant for mutant in mutants.find_mutants("Source.h", SOURCE)}
        self.assertEqual(worker.judge(found["< becomes <="]), ("survived", ""))
        self.assertEqual(worker.judge(found["< becomes >="]), ("killed", "Test"))
        start = SOURCE.index("return")
        nonsense = mutants.Mutant("Source.h", start, start + 6, "retrun", 3, "", "")
        self.assertEqual(worker.judge(nonsense), ("not compiled", ""))

    def test_tests_that_fail_without_a_change_are_refused(self):
        with open("Test.cpp", "w", encoding="utf-8") as file:
            file.write("int main() { return 1; }\n")
        with self.assertRaises(RuntimeError):
            self.worker().prepare()

    def test_a_program_that_somebody_stops_for_a_while_is_not_late(self):
        self.addCleanup(setattr, judge, "STUCK_SECONDS", judge.STUCK_SECONDS)
        judge.STUCK_SECONDS = 2
        command = ["sh", "-c", "(sleep 3; kill -CONT $$) & kill -STOP $$; echo done"]
        self.assertEqual(judge.run_quietly(command, ".", None, 0.01), (0, b"done\n", False))
        self.assertEqual(judge.run_quietly(["sleep", "9"], ".", None, 0.01)[1:], (b"", True))

    def test_what_is_gone_from_the_tree_goes_from_the_copy(self):
        worker = self.worker()
        with open("copy/Old.h", "w", encoding="utf-8") as file:
            file.write("int gOld;\n")
        os.makedirs("copy/build")
        with open("copy/build/kept", "w", encoding="utf-8") as file:
            file.write("")
        worker.set_up()
        self.assertFalse(os.path.exists("copy/Old.h"))
        self.assertTrue(os.path.exists("copy/build/kept"))


class Rounds(unittest.TestCase):
    NAMED = {name for group in mutate.ROUNDS + (mutate.LEFT_OUT,) for name in group}

    def test_programs_that_are_named_nowhere_come_last(self):
        rounds = mutate.rounds_of(self.NAMED | {"Unit/New", "Contract/New"})
        self.assertEqual([program.path for program in rounds[-1]],
                         ["build/mutate/Tests/Contract/New", "build/mutate/Tests/Unit/New"])
        self.assertEqual([len(programs) for programs in rounds[:-1]], [len(group) for group in mutate.ROUNDS])

    def test_named_programs_that_are_gone_are_refused(self):
        with self.assertRaises(RuntimeError):
            mutate.rounds_of(self.NAMED - {"Contract/DepthTest"})


class Reporting(unittest.TestCase):
    def test_a_worker_stays_with_a_file(self):
        found = mutants.find_mutants("a.cpp", "int a = 7;") + mutants.find_mutants("b.cpp", "int b = 7 + 8;")
        queue = mutate.Queue(found)
        taken = []
        file = None
        while (mutant := queue.next(file)) is not None:
            file = mutant.file
            taken.append(file)
        self.assertEqual(taken, ["b.cpp"] * 5 + ["a.cpp"] * 2)

    def test_the_score_is_the_share_of_what_compiles(self):
        found = mutants.find_mutants("a.cpp", "int a = 1 + 3;")
        report = mutate.Report(5)
        self.assertEqual(report.score(), 0)
        for mutant, outcome in zip(found, ("survived", "killed", "timeout", "not compiled", "survived")):
            with contextlib.redirect_stdout(io.StringIO()):
                report.add(mutant, outcome, "")
        self.assertEqual(report.survivors, [found[0], found[4]])
        self.assertAlmostEqual(report.score(), 50)

    def test_many_survivors_of_the_whole_library_fail(self):
        for arguments, score, status in (([], 85, 0), ([], 84.9, 1), (["--all"], 84.9, 1), (["--sample", "9"], 0, 1),
                                         (["--file", "a.cpp"], 0, 0), (["--again"], 0, 0)):
            self.assertEqual(mutate.exit_status(mutate.parse_arguments(arguments), score), status, arguments)

    def test_the_same_seed_draws_the_same_sample(self):
        population = mutants.find_mutants("a.cpp", "int a = 1 + 3 + 5 + 7 + 9;")
        first = mutate.draw(population, mutate.parse_arguments(["--sample", "4", "--seed", "9"]))
        self.assertEqual(first, mutate.draw(population, mutate.parse_arguments(["--sample", "4", "--seed", "9"])))
        self.assertEqual(len(first), 4)
        self.assertNotEqual(first, mutate.draw(population, mutate.parse_arguments(["--sample", "4", "--seed", "8"])))
        self.assertEqual(mutate.draw(population, mutate.parse_arguments(["--file", "b.cpp"])), [])

    def test_a_change_of_the_library_changes_few_of_a_sample(self):
        population = mutants.find_mutants("a.cpp", "int a = 1 + 3 + 5 + 7 + 9;")
        options = mutate.parse_arguments(["--sample", "4"])
        first = mutate.draw(population, options)
        second = mutate.draw([mutant for mutant in population if mutant != first[0]], options)
        self.assertEqual(len(set(map(str, first)) & set(map(str, second))), 3)

    def test_a_sample_is_drawn_unless_all_or_a_file_is_wanted(self):
        population = mutants.find_mutants("a.cpp", "int a = 1 + 3 + 5 + 7 + 9;" * 100)
        for arguments, count in (([], 500), (["--all"], 1400), (["--file", "a.cpp"], 1400), (["--sample", "9"], 9),
                                 (["--sample", "9", "--file", "a.cpp"], 9)):
            self.assertEqual(len(mutate.draw(population, mutate.parse_arguments(arguments))), count, arguments)

    def test_again_judges_what_was_left(self):
        population = mutants.find_mutants("a.cpp", "int a = 1 + 3 + 5;")
        with tempfile.TemporaryDirectory() as folder, mock.patch.object(mutate, "LEFT", os.path.join(folder, "left.json")):
            with open(mutate.LEFT, "w", encoding="utf-8") as file:
                json.dump([mutant.key() for mutant in population[1:3]], file)
            self.assertEqual(mutate.draw(population, mutate.parse_arguments(["--again"])), population[1:3])


if __name__ == "__main__":
    unittest.main()
