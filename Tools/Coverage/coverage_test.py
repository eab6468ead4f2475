"""The figures of the coverage report, on exports written by hand."""

import unittest

import lines_and_branches
import unreached

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


class Unreached(unittest.TestCase):
    ENTRY = "file: a.cpp\nline: if (b)\nwhat: never true: b\nwhy: b is a myth\n"

    def gap(self, number):
        return lines_and_branches.Gap("a.cpp", number, "if (b)", "never true: b")

    def test_entry_excuses_one_gap(self):
        entries = unreached.parse("# comment\n\n" + self.ENTRY)
        first, second = self.gap(3), self.gap(9)
        self.assertEqual(unreached.compare([first], entries), ([first], [], []))
        self.assertEqual(unreached.compare([first, second], entries), ([first], [second], []))
        self.assertEqual(unreached.compare([first, second], entries * 2), ([first, second], [], []))

    def test_entry_without_gap_is_out_of_date(self):
        entries = unreached.parse(self.ENTRY)
        self.assertEqual(unreached.compare([], entries), ([], [], entries))

    def test_entry_of_what_is_reached_by_chance_is_never_out_of_date(self):
        entries = unreached.parse(self.ENTRY.replace("never", "by chance never"))
        self.assertEqual(unreached.compare([], entries), ([], [], []))
        self.assertEqual(unreached.compare([self.gap(3)], entries), ([self.gap(3)], [], []))

    def test_entry_needs_a_reason_and_known_keys(self):
        three = "file: a\nline: b\nwhat: c"
        for text in (three, three + "\nwhy:  ", three + "\nbecause: d", three + "\nfile: d"):
            with self.assertRaises(ValueError):
                unreached.parse(text)


if __name__ == "__main__":
    unittest.main()
