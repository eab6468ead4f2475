"""The checked-in list of what no test can reach: entries of `file:`, `line:`, `what:` and `why:`, an empty line between."""

from collections import Counter
from dataclasses import dataclass

KEYS = ("file", "line", "what", "why")


@dataclass(frozen=True)
class Entry:
    file: str
    line: str
    what: str
    why: str

    def key(self):
        return (self.file, self.line, self.what)


def parse(text):
    """Returns the entries. Throws ValueError for one that lacks a key, has a strange one or gives no reason."""
    entries = []
    for block in text.split("\n\n"):
        rows = [row for row in block.splitlines() if row.strip() and not row.startswith("#")]
        if not rows:
            continue
        values = {}
        for row in rows:
            key, separator, value = row.partition(": ")
            if key not in KEYS or not separator or key in values:
                raise ValueError(f"not a row of an entry: {row}")
            values[key] = value.strip()
        missing = [key for key in KEYS if not values.get(key)]
        if missing:
            raise ValueError(f"an entry without {missing[0]}: {rows[0]}")
        entries.append(Entry(**values))
    return entries


def compare(gaps, entries):
    """Returns the gaps that no entry excuses, and the entries that excuse nothing (any more). Each excuses one gap."""
    open_entries = Counter(entry.key() for entry in entries)
    unlisted = []
    for gap in gaps:
        if open_entries[gap.key()] > 0:
            open_entries[gap.key()] -= 1
        else:
            unlisted.append(gap)
    stale = []
    for entry in entries:
        if open_entries[entry.key()] > 0:
            open_entries[entry.key()] -= 1
            stale.append(entry)
    return unlisted, stale
