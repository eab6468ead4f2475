"""Why no test takes a direction of a branch: comments beside the branch in the source.

    // Never false: REASON          or "Never true": nothing can make the condition so
    // Hardly ever true: REASON     or "Hardly ever false": threads that meet make it so in some runs only

Each stands above the statement, or at the end of its first line, and excuses one direction of one branch.
"""

import re
from dataclasses import dataclass

MARK = re.compile(r"//\s*(Never|Hardly ever) (true|false): \S")
END_OF_STATEMENT = re.compile(r"[;{}]\s*(//.*)?$")  # as the sources are formatted


@dataclass(frozen=True)
class Reason:
    file: str
    first: int  # of the lines with the statement, from 1
    last: int
    what: str  # "never true" or "never false"
    is_by_chance: bool

    def excuses(self, gap):
        is_inside = gap.file == self.file and self.first <= gap.number <= self.last
        return is_inside and gap.what.startswith(self.what + ":")


def find(file, lines):
    """Returns the reasons in a source."""
    found = []
    for index, line in enumerate(lines):
        if match := MARK.search(line):
            while index < len(lines) and lines[index].lstrip().startswith("//"):
                index += 1
            last = index
            while last + 1 < len(lines) and not END_OF_STATEMENT.search(lines[last]):
                last += 1
            found.append(Reason(file, index + 1, last + 1, f"never {match.group(2)}", match.group(1) != "Never"))
    return found


def compare(gaps, reasons):
    """Returns the gaps that have a reason, those that have none, and the reasons that have no gap but should.

    What is reached by chance may have been reached.
    """
    left = list(reasons)
    explained, unexplained = [], []
    for gap in gaps:
        reason = next((reason for reason in left if reason.excuses(gap)), None)
        if reason is None:
            unexplained.append(gap)
        else:
            left.remove(reason)
            explained.append(gap)
    return explained, unexplained, [reason for reason in left if not reason.is_by_chance]
