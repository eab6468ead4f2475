"""The checked-in list of changes that no test can notice: entries of `file:`, `line:`, `change:` and `why:`."""

KEYS = ("file", "line", "change", "why")


def parse(text, may_lack_reasons=False):
    """Returns {(file, line, change): reason}. Throws ValueError for an entry that is incomplete or stands twice."""
    entries = {}
    for block in text.split("\n\n"):
        rows = [row for row in block.splitlines() if row.strip() and not row.startswith("#")]
        if not rows:
            continue
        values = dict(row.partition(": ")[::2] for row in rows)
        needed = KEYS[:3] if may_lack_reasons else KEYS
        if tuple(values) != KEYS or len(rows) != len(KEYS) or not all(values[key].strip() for key in needed):
            raise ValueError(f"an entry needs {', '.join(KEYS)}, in this order:\n{block}")
        key = (values["file"], values["line"], values["change"])
        if key in entries:
            raise ValueError(f"an entry that stands twice:\n{block}")
        entries[key] = values["why"]
    return entries


def entry(mutant):
    """Returns the entry for a survivor, its reason still to be written."""
    return f"file: {mutant.file}\nline: {mutant.line}\nchange: {mutant.change}\nwhy: \n"
