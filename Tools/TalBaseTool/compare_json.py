#!/usr/bin/env python3
"""usage: compare_json.py ORIGINAL BACK

Compares a JSON document with what came back of it through a bag, as talbase from-json and to-json --typed made it.
Counts what a bag cannot hold; anything else that differs is an error.
"""

import collections
import json
import sys

GONE = object()


def read(name):
    """The document, its numbers as they are written."""
    with open(name, encoding="utf-8") as file:
        return json.load(file, parse_float=Number, parse_int=Number, object_pairs_hook=last_of_each)


def last_of_each(pairs):
    """An object in which the last property of a name counts, with its place."""
    kept = {}
    for name, value in pairs:
        kept.pop(name, None)
        kept[name] = value
    return kept


class Number(str):
    """A number as its digits."""


def is_number(text):
    try:
        return isinstance(json.loads(text), (int, float)) and text == text.strip()
    except ValueError:
        return False


def scalar(value):
    """A scalar as it comes back: texts that look like another type are written as that."""
    if isinstance(value, Number):
        return value
    if isinstance(value, str):
        if value in ("true", "false", "null"):
            LOSSES["texts that look like another type"] += 1
            return {"true": True, "false": False, "null": None}[value]
        if is_number(value):
            LOSSES["texts that look like another type"] += 1
            return Number(value)
    return value


def fault(name, value):
    """Why a bag with the default delimiters cannot hold this, or an empty text."""
    if name == "":
        return "empty names"
    if "++++" in name or "***" in name or name.endswith("+") or "\0" in name:
        return "names that run into a delimiter"
    if value == "" and not isinstance(value, Number):
        return "empty texts"
    if value == {} or value == []:
        return "empty objects and arrays"
    if isinstance(value, str) and ("&#42;" in value or "&#43;" in value or "\0" in value):
        return "values with an escape or a zero character"
    return ""


def expected(value):
    """What a document should be after its way through a bag, or GONE."""
    if not isinstance(value, (dict, list)):
        LOSSES["values"] += 1
        return scalar(value)
    pairs = value.items() if isinstance(value, dict) else ((str(i), v) for i, v in enumerate(value))
    kept = {}
    for name, child in pairs:
        why = fault(name, child)
        if why:
            LOSSES[why] += 1
            continue
        result = expected(child)
        if result is GONE:
            LOSSES["objects and arrays of which nothing is left"] += 1
        else:
            kept[name] = result
    if not kept:
        return GONE
    is_array = sorted(kept) == sorted(str(i) for i in range(len(kept)))
    if is_array != isinstance(value, list):
        LOSSES["arrays that became objects" if isinstance(value, list) else "objects that became arrays"] += 1
    return [kept[str(i)] for i in range(len(kept))] if is_array else kept


def orders(value):
    """The number of objects, and of those that do not have their plain values first."""
    if not isinstance(value, (dict, list)):
        return 0, 0
    children = list(value.values()) if isinstance(value, dict) else value
    kinds = [isinstance(child, (dict, list)) for child in children]
    total = int(isinstance(value, dict))
    moved = int(isinstance(value, dict) and kinds != sorted(kinds))
    for child in children:
        inner_total, inner_moved = orders(child)
        total += inner_total
        moved += inner_moved
    return total, moved


def is_ordered(wanted, back):
    """Whether the names of every object come back in their order, the plain values before the nested ones."""
    if isinstance(wanted, list):
        return all(map(is_ordered, wanted, back))
    if not isinstance(wanted, dict):
        return True
    names = sorted(wanted, key=lambda name: isinstance(wanted[name], (dict, list)))
    return names == list(back) and all(is_ordered(wanted[name], back[name]) for name in names)


LOSSES = collections.Counter()


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.setrecursionlimit(100000)
    original = read(sys.argv[1])
    back = read(sys.argv[2])
    wanted = expected(original)
    values = LOSSES.pop("values", 0)
    print(f"{values} values kept; objects, and those reordered: {orders(original)}")
    for what, count in sorted(LOSSES.items()):
        print(f"not held: {count} {what}")
    if wanted != back:
        print("DIFFERENT beyond that")
        return 1
    if not is_ordered(wanted, back):
        print("the names in ANOTHER ORDER")
        return 1
    print("the same beyond that" if LOSSES else "the same")
    return 0


if __name__ == "__main__":
    sys.exit(main())
