"""The checked-in list of what no test can reach: entries of `file:`, `line:`, `what:` and `why:`, an empty line between."""

from collections import Counter
from dataclasses import dataclass

KEYS = ("file", "line", "what", "why")
BY_CHANCE = "by chance "  # before what a race of threads reaches now and then: its entry is never out of date


@dataclass(frozen=True)
class Entry:
    file: str
    line: str
    what: str
    why: str

    def key(self):
        return (self.file, self.line, self.what.removeprefix(BY_CHANCE))

    def is_by_chance(self):
        return self.what.startswith(BY_CHANCE)


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
    """Returns the gaps that an entry excuses, those that none does, and the entries that are out of date.

    Each entry excuses one gap.
    """
    open_entries = Counter(entry.key() for entry in entries)
    listed, unlisted, stale = [], [], []
    for gap in gaps:
        is_listed = open_entries[gap.key()] > 0
        open_entries[gap.key()] -= 1 if is_listed else 0
        (listed if is_listed else unlisted).append(gap)
    for entry in entries:
        if open_entries[entry.key()] > 0:
            open_entries[entry.key()] -= 1
            if not entry.is_by_chance():
                stale.append(entry)
    return listed, unlisted, stale
