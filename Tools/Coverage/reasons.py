"""Why no test takes a direction of a branch: comments beside the branch in the source.

    // Never false: REASON          or "Never true": nothing can make the condition so
    // Hardly ever true: REASON     or "Hardly ever false": threads that meet make it so in some runs only

Each stands at the end of the line in which the condition begins or above it, and excuses one direction of one branch.
"""

import re
from dataclasses import dataclass

MARK = re.compile(r"//\s*(Never|Hardly ever) (true|false): \S")


@dataclass(frozen=True)
class Reason:
    file: str
    number: int  # of the line with the branch, from 1
    what: str  # "never true" or "never false"
    is_by_chance: bool

    def excuses(self, gap):
        return (gap.file, gap.number) == (self.file, self.number) and gap.what.startswith(self.what + ":")


def find(file, lines):
    """Returns the reasons in a source."""
    found = []
    for index, line in enumerate(lines):
        if match := MARK.search(line):
            while index < len(lines) and lines[index].lstrip().startswith("//"):
                index += 1
            found.append(Reason(file, index + 1, f"never {match.group(2)}", match.group(1) != "Never"))
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
