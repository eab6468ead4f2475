"""What the tests reach: lines and branches per file, from the JSON that llvm-cov exports.

A line counts as reached where any instantiation or copy of its code ran it, and so does each direction of a branch: this
is the view of the source, not of what the compiler made of it. llvm-cov merges the lines so by itself, the branches are
merged here.
"""

from collections import defaultdict
from dataclasses import dataclass, field

import reasons


@dataclass(frozen=True, order=True)
class Gap:
    """Something that no test reached: where it is, the text of its line, and what of it."""

    file: str
    number: int
    line: str
    what: str  # "not run", "never true: CONDITION" or "never false: CONDITION"


@dataclass
class FileCoverage:
    name: str
    lines: int = 0
    branches: int = 0  # directions: two for each condition
    gaps: list = field(default_factory=list)
    reasons: list = field(default_factory=list)

    def missed_lines(self):
        return sum(gap.what == "not run" for gap in self.gaps)

    def missed_branches(self):
        return len(self.gaps) - self.missed_lines()


def count_lines(segments):
    """Returns {line number: count} for the lines that hold code, from the segments of a file.

    A segment is [line, column, count, has count, starts a region, is a gap]; its count holds up to the next segment. As
    llvm-cov does, a line counts as often as the most frequent of the regions that start or go on in it.
    """
    by_line = defaultdict(list)
    for segment in segments:
        by_line[segment[0]].append(segment)
    counts = {}
    wrapped = None
    for number in range(min(by_line, default=1), max(by_line, default=0) + 1):
        here = by_line.get(number, [])
        starts = [segment for segment in here if segment[3] and segment[4] and not segment[5]]
        is_skipped = bool(here) and not here[0][3] and here[0][4]
        goes_on = wrapped is not None and wrapped[3]
        if not is_skipped and (goes_on or starts):
            reached = [segment[2] for segment in starts] + ([wrapped[2]] if goes_on else [])
            counts[number] = max(reached)
        if here:
            wrapped = here[-1]
    return counts


def count_at(segments, line, column):
    """Returns how often the code at a place ran, or 0 where there is none."""
    count = 0
    for segment in segments:
        if (segment[0], segment[1]) > (line, column):
            break
        count = segment[2] if segment[3] else 0
    return count


def merge_branches(branches):
    """Returns {(line, column, last line, last column): [times true, times false]}, summed over instantiations."""
    merged = defaultdict(lambda: [0, 0])
    for branch in branches:
        counts = merged[tuple(branch[:4])]
        counts[0] += branch[4]
        counts[1] += branch[5]
    return merged


def text_between(lines, place):
    """Returns the source text of a condition, on one line and with single blanks."""
    first_line, first_column, last_line, last_column = place
    taken = list(lines[first_line - 1 : last_line])
    taken[-1] = taken[-1][: last_column - 1]
    taken[0] = taken[0][first_column - 1 :]
    text = " ".join(" ".join(taken).split())
    return "there is another element" if text == ":" else text  # of a loop over a range


def read_file_coverage(name, exported, lines):
    """Judges one file. exported: its part of the export; lines: its source."""
    result = FileCoverage(name, reasons=reasons.find(name, lines))
    segments = exported["segments"]
    for number, count in count_lines(segments).items():
        result.lines += 1
        if count == 0:
            result.gaps.append(Gap(name, number, lines[number - 1].strip(), "not run"))
    for place, (times_true, times_false) in sorted(merge_branches(exported["branches"]).items()):
        if times_true == times_false == 0 and count_at(segments, place[0], place[1]) > 0:
            continue  # the compiler knows the condition's value: there is no branch
        result.branches += 2
        condition = text_between(lines, place)
        for times, what in ((times_true, "never true"), (times_false, "never false")):
            if times == 0:
                result.gaps.append(Gap(name, place[0], lines[place[0] - 1].strip(), f"{what}: {condition}"))
    result.gaps.sort()
    return result


def percent(total, missed):
    """Formats a share so that only what is complete reads 100 %."""
    if missed == 0:
        return "100 %"
    return f"{int(1000 * (total - missed) / total) / 10:.1f} %"


def table(files):
    """Returns the lines of the table: each file, each folder of the top level, and all."""
    rows = [("", "lines", "missed", "", "branches", "missed", "")]
    folders = sorted({file.name.split("/")[0] for file in files})
    groups = [(file.name, [file]) for file in files]
    groups += [(folder + "/", [file for file in files if file.name.startswith(folder + "/")]) for folder in folders]
    groups.append(("all", files))
    for title, members in groups:
        lines, branches = sum(file.lines for file in members), sum(file.branches for file in members)
        missed_lines = sum(file.missed_lines() for file in members)
        missed_branches = sum(file.missed_branches() for file in members)
        rows.append((title, str(lines), str(missed_lines), percent(lines, missed_lines),
                     str(branches), str(missed_branches), percent(branches, missed_branches)))
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    return [" ".join([row[0].ljust(widths[0])] + [cell.rjust(width + 1) for cell, width in zip(row[1:], widths[1:])])
            for row in rows]
