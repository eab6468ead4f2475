"""The figures of the coverage report, on exports written by hand."""

import unittest

import lines_and_branches
import reasons

SOURCE = """int Sign(int iValue)
{
    if (iValue < 0 ||
        iValue == -7)
    {
        return -1;
    }
    return 1;
}""".splitlines()

# The function was called twice, with positive numbers: segments are [line, column, count, has count, entry, gap].
NEVER_NEGATIVE = {
    "segments": [
        [2, 1, 2, True, True, False],
        [3, 9, 2, True, True, False],
        [3, 19, 2, True, False, False],
        [4, 9, 2, True, True, False],
        [4, 21, 2, True, False, False],
        [4, 22, 0, True, True, True],
        [5, 5, 0, True, True, False],
        [7, 6, 2, True, False, False],
        [9, 2, 0, False, False, False],
    ],
    "branches": [[3, 9, 3, 19, 0, 2, 0, 0, 4], [4, 9, 4, 21, 0, 2, 0, 0, 4]],
}


def read(exported):
    return lines_and_branches.read_file_coverage("TalBase/Sign.cpp", exported, SOURCE)


class LinesAndBranches(unittest.TestCase):
    def test_lines_of_a_region_that_never_ran_are_missed(self):
        result = read(NEVER_NEGATIVE)
        self.assertEqual(result.lines, 8)
        self.assertEqual([gap.number for gap in result.gaps if gap.what == "not run"], [5, 6, 7])
        self.assertEqual(result.missed_lines(), 3)

    def test_each_direction_of_a_condition_counts(self):
        result = read(NEVER_NEGATIVE)
        self.assertEqual(result.branches, 4)
        self.assertEqual([(gap.number, gap.what) for gap in result.gaps if gap.what != "not run"],
                         [(3, "never true: iValue < 0"), (4, "never true: iValue == -7")])

    def test_branches_of_instantiations_are_summed(self):
        other = {"segments": NEVER_NEGATIVE["segments"],
                 "branches": NEVER_NEGATIVE["branches"] + [[3, 9, 3, 19, 5, 0, 0, 0, 4]]}
        result = read(other)
        self.assertEqual(result.branches, 4)
        self.assertEqual([gap.what for gap in result.gaps if gap.number == 3], [])

    def test_condition_that_the_compiler_knows_is_no_branch(self):
        known = {"segments": NEVER_NEGATIVE["segments"], "branches": [[3, 9, 3, 19, 0, 0, 0, 0, 4]]}
        self.assertEqual(read(known).branches, 0)

    def test_condition_that_was_never_asked_misses_both_directions(self):
        never = {"segments": [[2, 1, 0, True, True, False], [9, 2, 0, False, False, False]],
                 "branches": [[3, 9, 3, 19, 0, 0, 0, 0, 4]]}
        self.assertEqual(read(never).missed_branches(), 2)

    def test_share_reads_complete_only_where_it_is(self):
        self.assertEqual(lines_and_branches.percent(10, 0), "100 %")
        self.assertEqual(lines_and_branches.percent(100000, 1), "99.9 %")
        self.assertEqual(lines_and_branches.percent(4, 1), "75.0 %")

    def test_table_sums_by_folder(self):
        rows = lines_and_branches.table([read(NEVER_NEGATIVE)])
        self.assertEqual(rows[1].split(), ["TalBase/Sign.cpp", "8", "3", "62.5", "%", "4", "2", "50.0", "%"])
        self.assertEqual([row.split()[0] for row in rows[1:]], ["TalBase/Sign.cpp", "TalBase/", "all"])


class Reasons(unittest.TestCase):
    def gap(self, number, what="never true: b"):
        return lines_and_branches.Gap("a.cpp", number, "if (b)", what)

    def find(self, *lines):
        return reasons.find("a.cpp", lines)

    def test_reason_above_or_in_the_line_excuses_one_gap(self):
        for lines in (("a();", "// Never true: b is a myth,", "// as everybody knows.", "if (b)"),
                      ("a();", "", "", "if (b) // Never true: b is a myth")):
            found = self.find(*lines)
            here = self.gap(4)
            self.assertEqual(reasons.compare([here], found), ([here], [], []))
            for other in (self.gap(3), self.gap(4), self.gap(4, "never false: b"), self.gap(4, "not run")):
                self.assertEqual(reasons.compare([here, other], found), ([here], [other], []))

    def test_reason_is_about_all_lines_of_the_statement(self):
        found = self.find("// Never true: b is a myth", "if (a &&", "    b)", "{", "    b ? c() : d();", "}")
        for number, is_inside in ((1, False), (2, True), (3, True), (5, False)):
            self.assertEqual(reasons.compare([self.gap(number)], found)[0] != [], is_inside, number)

    def test_reasons_of_both_directions(self):
        found = self.find("// Never true: b is a myth", "// Never false: or is it?", "if (b)")
        gaps = [self.gap(3), self.gap(3, "never false: b")]
        self.assertEqual(reasons.compare(gaps, found), (gaps, [], []))

    def test_reason_without_gap_is_out_of_date(self):
        found = self.find("// Never true: b is a myth", "if (b)")
        self.assertEqual(reasons.compare([], found), ([], [], found))

    def test_what_is_reached_by_chance_may_have_been(self):
        found = self.find("// Hardly ever true: b is a comet", "if (b)")
        self.assertEqual(reasons.compare([], found), ([], [], []))
        self.assertEqual(reasons.compare([self.gap(2)], found), ([self.gap(2)], [], []))

    def test_a_reason_is_needed(self):
        self.assertEqual(self.find("// Never true:", "if (b)"), [])

    def test_reasons_belong_to_the_file(self):
        lines = SOURCE[:2] + ["    // Never true: nobody goes below zero"] + SOURCE[2:]
        result = lines_and_branches.read_file_coverage("TalBase/Sign.cpp", NEVER_NEGATIVE, lines)
        self.assertEqual(result.reasons, [reasons.Reason("TalBase/Sign.cpp", 4, 6, "never true", False)])


if __name__ == "__main__":
    unittest.main()
