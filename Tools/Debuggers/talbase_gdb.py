"""Shows the objects of TalBase in gdb: bags as trees, texts, windows, dates, identifiers.

gdb loads this by itself where the Debian package has put it; elsewhere say `source .../talbase.py`. It needs the debug
symbols of the libraries, reads memory only, calls nothing in the program, and so serves core files alike. Whatever is
not what it should be, an object that is not there or was overwritten, is shown as damaged and harms nothing.

Plain values are shown as they are stored, which is escaped under the default delimiters. Nothing is hidden: a bag that
holds a password shows it.
"""

import datetime
import struct

import gdb
import gdb.printing

LONGEST_TEXT = 1 << 20  # characters; what claims to be longer is taken for damaged
MOST_ENTRIES = 1 << 24
WIDE = 4  # bytes of a wide character


class Damaged(Exception):
    """What is in the memory cannot be such an object."""


def read(address, size):
    """Bytes of the program's memory."""
    try:
        return gdb.selected_inferior().read_memory(address, size).tobytes()
    except (gdb.error, OverflowError, MemoryError, ValueError) as error:
        raise Damaged(f"cannot read 0x{address:x}") from error


def byte_order():
    """The program's, as struct and the codecs name it."""
    is_big = "big endian" in gdb.execute("show endian", to_string=True)
    return (">", "utf-32-be") if is_big else ("<", "utf-32-le")


def numbers_at(address, form):
    """Numbers of the given form of struct, without padding."""
    form = byte_order()[0] + form
    return struct.unpack(form, read(address, struct.calcsize(form)))


def address_of(value):
    return int(value.address)


def text_at(address, length):
    """A text of wide characters; those that are none become U+FFFD."""
    if length > LONGEST_TEXT:
        raise Damaged(f"a text of {length} characters")
    return read(address, WIDE * length).decode(byte_order()[1], "replace")


def standard_text(address):
    """A std::wstring: the place of its characters and their number."""
    return text_at(*numbers_at(address, "QQ"))


def standard_view(address):
    """A std::wstring_view: the number of its characters and their place."""
    length, characters = numbers_at(address, "QQ")
    return text_at(characters, length)


def span(address, size):
    """The places of the elements of a std::vector whose elements have that size."""
    begin, end, capacity = numbers_at(address, "QQQ")
    if not begin <= end <= capacity or (end - begin) % size != 0 or (end - begin) // size > MOST_ENTRIES:
        raise Damaged("its entries")
    return range(begin, end, size)


def value_at(address, kind):
    """The object of the given type at a place."""
    return gdb.Value(address).cast(kind.pointer()).dereference()


def can_show(character):
    return character.isprintable() and character.encode(gdb.host_charset(), "ignore") != b""


def shown(text):
    """A text on one line, with everything that cannot be seen, or not by this terminal, as its code."""
    escapes = {"\\": "\\\\", '"': '\\"', "\n": "\\n", "\r": "\\r", "\t": "\\t"}
    return "".join(escapes.get(each, each if can_show(each) else f"\\u{{{ord(each):x}}}") for each in text)


def quoted(text):
    return f'"{shown(text)}"'


def counted(number, singular, plural):
    return f"{number} {singular if number == 1 else plural}"


def references(value):
    """The count in an object of the library, for its text."""
    return counted(numbers_at(address_of(value["mRefCount"]), "i")[0], "reference", "references")


class Printer:
    """A printer whose object may be damaged: then its text says so, and it has the entries before the damage."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        try:
            return self.text()
        except (Damaged, gdb.error, OverflowError) as damage:
            return f"<damaged: {damage}>"

    def children(self):
        try:
            yield from self.entries()
        except (Damaged, gdb.error, OverflowError):
            return

    def entries(self):
        return ()


class Text(Printer):
    """QBase::ReturnWString."""

    def text(self):
        return quoted(text_at(int(self.value["mText"]), int(self.value["mLength"])))


class Buffer(Printer):
    """QTalBase::BufferedWStringImpl."""

    def text(self):
        characters = numbers_at(address_of(self.value["mBuffer"]), "Q")[0]
        text = text_at(characters, int(self.value["mSize"]))
        return f"{quoted(text)}, {references(self.value)}"


class Bag(Printer):
    """QTalBase::PropertyBagImpl: first the plain properties, then the nested bags."""

    def plain(self):
        content = self.value["mState"]["mValues"]
        count, capacity = int(content["mCount"]), int(content["mCapacity"])
        if count > capacity or count > MOST_ENTRIES:
            raise Damaged(f"{count} plain properties")
        return content, count

    def nests(self):
        """The places of the states of the nested bags."""
        content = self.value["mState"]["mNests"]
        count, capacity = int(content["mCount"]), int(content["mCapacity"])
        if count > capacity or count > MOST_ENTRIES:
            raise Damaged(f"{count} nested bags")
        return numbers_at(int(content["mNests"]), f"{count}Q") if count else ()

    def delimiter(self, member):
        head = int(self.value["mState"][member]["mText"])
        return text_at(*numbers_at(head, "QQ"))

    def text(self):
        pair = self.delimiter("mBegin"), self.delimiter("mEnd")
        properties = counted(self.plain()[1] + len(self.nests()), "property", "properties")
        usual = "" if pair == ("++++", "***") else f", delimiters {quoted(pair[0])} and {quoted(pair[1])}"
        return f"bag of {properties}, {references(self.value['mState'])}{usual}"

    def entries(self):
        content, count = self.plain()
        entries = int(content["mEntries"])
        characters = int(content["mText"])
        length = int(content["mTextLength"])
        for index in range(count):
            offset, name_length, value_length = numbers_at(entries + 24 * index, "QQQ")
            if name_length == (1 << 64) - 1:
                continue  # removed, and the place is not closed yet
            if offset + name_length + value_length > length:
                raise Damaged("an entry")
            name = text_at(characters + WIDE * offset, name_length)
            yield shown(name), quoted(text_at(characters + WIDE * (offset + name_length), value_length))
        for place in filter(None, self.nests()):  # a removed one may have left its place open
            nest = value_at(place, self.value["mState"].type)
            yield shown(standard_view(address_of(nest["mName"]))), nest["mObject"].dereference()


class Bags(Printer):
    """QTalBase::PropertyBagsImpl."""

    def places(self):
        entry = self.value["mEntries"].type.strip_typedefs().template_argument(0)
        return entry, span(address_of(self.value["mEntries"]), entry.sizeof)

    def text(self):
        return f"collection of {counted(len(self.places()[1]), 'bag', 'bags')}, {references(self.value)}"

    def entries(self):
        entry, places = self.places()
        for place in places:
            pair = value_at(place, entry)
            yield shown(standard_text(address_of(pair["first"]))), pair["second"]


class Strings(Printer):
    """The collection of texts that QDataType::CreateStringCollection gives."""

    def places(self):
        return span(address_of(self.value["mStrings"]), 32)

    def text(self):
        return f"collection of {counted(len(self.places()), 'text', 'texts')}"

    def entries(self):
        for index, place in enumerate(self.places()):
            yield f"[{index}]", quoted(standard_text(place))


class OwnStrings(Printer):
    """QTalBase::SerializableStringCollectionImpl, which wraps one of those."""

    def wrapped(self):
        place = numbers_at(address_of(self.value["mStrings"]), "Q")[0]
        printer = find_printer(value_at(place, gdb.lookup_type("QDataType::StringCollection")))
        if not isinstance(printer, Strings):
            raise Damaged("what it wraps")
        return printer

    def text(self):
        return f"{self.wrapped().text()}, {references(self.value)}"

    def entries(self):
        return self.wrapped().entries()


class Window(Printer):
    """QTalBase::DeliveryWindowImpl: its 24 blocks, true where delivery is allowed."""

    def blocks(self):
        disabled = int(self.value["mDisabledTimeBlocks"])
        return [not disabled >> hour & 1 for hour in range(24)]

    def text(self):
        blocks = "".join("#" if enabled else "." for enabled in self.blocks())
        return f"window {blocks}, {references(self.value)}"

    def entries(self):
        for hour, enabled in enumerate(self.blocks()):
            yield f"[{hour}]", gdb.Value(enabled)

    def display_hint(self):
        return "array"


class Pointer(Printer):
    """QBase::SmartPtrI: shown as what it holds, which tells its count."""

    def held(self):
        """The printer of what it holds, or None."""
        place = int(self.value["mPointer"])
        if place == 0:
            return None
        read(place, 8)
        return find_printer(self.value["mPointer"].dereference())

    def text(self):
        place = int(self.value["mPointer"])
        if place == 0:
            return "null"
        held = self.held()
        return f"0x{place:x}" if held is None else f"-> {held.to_string()}"

    def entries(self):
        held = self.held()
        return () if held is None else held.children()


class Instant(Printer):
    """QDataType::DateTime."""

    def text(self):
        microseconds = numbers_at(address_of(self.value["mMicroseconds"]), "q")[0]
        try:
            instant = datetime.datetime(1970, 1, 1) + datetime.timedelta(microseconds=microseconds)
        except OverflowError as error:
            raise Damaged(f"{microseconds} microseconds") from error
        fraction = f".{instant.microsecond:06}".rstrip("0") if instant.microsecond else ""
        return instant.replace(microsecond=0).isoformat() + fraction + "Z"


class Identifier(Printer):
    """_GUID."""

    def text(self):
        first, second, third, rest = numbers_at(address_of(self.value), "IHH8s")
        return f"{first:08x}-{second:04x}-{third:04x}-{rest[:2].hex()}-{rest[2:].hex()}"


PRINTERS = {
    "QBase::ReturnWString": Text,
    "QDataType::DateTime": Instant,
    "QDataType::(anonymous namespace)::StringCollectionImpl": Strings,
    "QTalBase::BufferedWStringImpl": Buffer,
    "QTalBase::DeliveryWindowImpl": Window,
    "QTalBase::PropertyBagImpl": Bag,
    "QTalBase::PropertyBagsImpl": Bags,
    "QTalBase::SerializableStringCollectionImpl": OwnStrings,
    "_GUID": Identifier,
}
INTERFACES = {
    "QDataType::StringCollection",
    "QTalBase::BufferedWString",
    "QTalBase::DeliveryWindow",
    "QTalBase::PropertyBag",
    "QTalBase::PropertyBags",
    "QTalBase::SerializableStringCollection",
}


class Interface(Printer):
    """An object of which only an interface can be seen."""

    def text(self):
        whole = self.value.dynamic_type
        if whole != self.value.type:
            return f"<{whole.name}, a class of its own>"
        read(address_of(self.value), 8)
        return f"<{self.value.type.name}: damaged, or of a class without debug symbols>"


def library_part(value):
    """What an object is of the library: value itself, or the first of its bases that has a printer, or None."""
    if value.type.strip_typedefs().name in PRINTERS:
        return value
    for field in value.type.fields():
        if field.is_base_class:
            part = library_part(value.cast(field.type))
            if part is not None:
                return part
    return None


def implementation(value):
    """The printer of the object that value is one of the interfaces of, or None."""
    try:
        whole = value.dynamic_type
        part = library_part(value.address.cast(whole.pointer()).dereference())
        return None if part is None else PRINTERS[part.type.strip_typedefs().name](part)
    except (gdb.error, OverflowError):
        return None


def find_printer(value):
    """The printer of a value, or None where the value is none of the library's."""
    name = value.type.strip_typedefs().unqualified().name
    if name is None:
        return None
    if name in PRINTERS:
        return PRINTERS[name](value)
    if name.startswith("QBase::SmartPtrI<"):
        return Pointer(value)
    if name in INTERFACES:
        return implementation(value) or Interface(value)
    return None


find_printer.name = "talbase"
find_printer.enabled = True
gdb.printing.register_pretty_printer(gdb.current_objfile(), find_printer, replace=True)
