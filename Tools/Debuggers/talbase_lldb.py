"""Shows the objects of TalBase in lldb: bags as trees, texts, windows, dates, identifiers.

Say `command script import .../talbase_lldb.py`. It needs the debug symbols of the libraries, reads memory only, calls
nothing in the program, and so serves core files alike. Whatever is not what it should be, an object that is not there or
was overwritten, is shown as damaged and harms nothing. What is shown is what talbase_gdb.py shows in gdb.
"""

import datetime
import struct

import lldb

LONGEST_TEXT = 1 << 20  # characters; what claims to be longer is taken for damaged
MOST_ENTRIES = 1 << 24
MOST_SHOWN = 1000
WIDE = 4  # bytes of a wide character


class Damaged(Exception):
    """What is in the memory cannot be such an object."""


class Object:
    """An object of the program, of which a derived class knows a text and entries."""

    def __init__(self, value):
        self.value = value.GetNonSyntheticValue()
        is_big = value.GetProcess().GetByteOrder() == lldb.eByteOrderBig
        self.order, self.codec = (">", "utf-32-be") if is_big else ("<", "utf-32-le")

    def read(self, address, size):
        """Bytes of the program's memory; a core file lacks those that are the libraries' own."""
        if size == 0:
            return b""
        target = self.value.GetTarget()
        data = target.ReadMemory(lldb.SBAddress(address, target), size, lldb.SBError())
        if data is None or len(data) != size:
            raise Damaged(f"cannot read 0x{address:x}")
        return data

    def numbers(self, address, form):
        form = self.order + form
        return struct.unpack(form, self.read(address, struct.calcsize(form)))

    def characters(self, address, length):
        if length > LONGEST_TEXT:
            raise Damaged(f"a text of {length} characters")
        return self.read(address, WIDE * length).decode(self.codec, "replace")

    def member(self, name):
        member = self.value.GetChildMemberWithName(name)
        if not member.IsValid():
            raise Damaged(f"no {name}")
        return member

    def place(self, name):
        return self.member(name).GetLoadAddress()

    def number(self, name):
        return self.member(name).GetValueAsUnsigned()

    def span(self, name, size):
        """The places of the elements of a std::vector whose elements have that size."""
        begin, end, capacity = self.numbers(self.place(name), "QQQ")
        if not begin <= end <= capacity or (end - begin) % size != 0 or (end - begin) // size > MOST_ENTRIES:
            raise Damaged("its entries")
        return range(begin, end, size)

    def references(self):
        return counted(self.numbers(self.place("mRefCount"), "i")[0], "reference", "references")

    def flag(self, name, is_set):
        """An entry that lies nowhere in the program."""
        data = lldb.SBData()
        data.SetData(lldb.SBError(), bytes([is_set]), self.value.GetProcess().GetByteOrder(), 8)
        return self.value.CreateValueFromData(name, data, self.value.GetTarget().GetBasicType(lldb.eBasicTypeBool))

    def wide(self, name, address, length):
        """An entry that is a text, with a terminator, so that the empty one is an array too."""
        codes = [ord(each) for each in self.characters(address, length)] + [0]
        data = lldb.SBData.CreateDataFromUInt32Array(self.value.GetProcess().GetByteOrder(), 8, codes)
        kind = self.value.GetTarget().GetBasicType(lldb.eBasicTypeWChar)
        return self.value.CreateValueFromData(name, data, kind.GetArrayType(len(codes)))

    def entries(self):
        return ()


def counted(number, singular, plural):
    return f"{number} {singular if number == 1 else plural}"


def shown(text):
    """A text on one line, with everything that cannot be seen as its code."""
    escapes = {"\\": "\\\\", '"': '\\"', "\n": "\\n", "\r": "\\r", "\t": "\\t"}
    return "".join(escapes.get(each, each if each.isprintable() else f"\\u{{{ord(each):x}}}") for each in text)


def quoted(text):
    return f'"{shown(text)}"'


class Text(Object):
    """QBase::ReturnWString."""

    def text(self):
        return quoted(self.characters(self.number("mText"), self.number("mLength")))


class Buffer(Object):
    """QTalBase::BufferedWStringImpl."""

    def text(self):
        text = self.characters(self.numbers(self.place("mBuffer"), "Q")[0], self.number("mSize"))
        return f"{quoted(text)}, {self.references()}"


class Bag(Object):
    """QTalBase::PropertyBagImpl: first the plain properties, then the nested bags."""

    def state(self):
        return Object(self.member("mState"))

    def plain(self):
        content = Object(self.state().member("mValues"))
        count, capacity = content.number("mCount"), content.number("mCapacity")
        if count > capacity or count > MOST_ENTRIES:
            raise Damaged(f"{count} plain properties")
        return content, count

    def nests(self):
        """The places of the states of the nested bags."""
        content = Object(self.state().member("mNests"))
        count, capacity = content.number("mCount"), content.number("mCapacity")
        if count > capacity or count > MOST_ENTRIES:
            raise Damaged(f"{count} nested bags")
        return self.numbers(content.number("mNests"), f"{count}Q") if count else ()

    def delimiter(self, name):
        head = Object(self.state().member(name)).number("mText")
        return self.characters(*self.numbers(head, "QQ"))

    def text(self):
        pair = self.delimiter("mBegin"), self.delimiter("mEnd")
        properties = counted(self.plain()[1] + len(self.nests()), "property", "properties")
        usual = "" if pair == ("++++", "***") else f", delimiters {quoted(pair[0])} and {quoted(pair[1])}"
        return f"bag of {properties}, {self.state().references()}{usual}"

    def entries(self):
        content, count = self.plain()
        entries, characters = content.number("mEntries"), content.number("mText")
        length = content.number("mTextLength")
        for index in range(count):
            offset, name_length, value_length = self.numbers(entries + 24 * index, "QQQ")
            if name_length == (1 << 64) - 1:
                continue  # removed, and the place is not closed yet
            if offset + name_length + value_length > length:
                raise Damaged("an entry")
            name = self.characters(characters + WIDE * offset, name_length)
            yield self.wide(shown(name), characters + WIDE * (offset + name_length), value_length)
        for place in filter(None, self.nests()):  # a removed one may have left its place open
            state = Object(self.value.CreateValueFromAddress("state", place, self.member("mState").GetType()))
            # A std::wstring_view: the number of its characters and their place.
            length, characters = self.numbers(state.place("mName"), "QQ")
            name = shown(self.characters(characters, length))
            yield value_at(self.value, name, state.number("mObject"), "QTalBase::PropertyBagImpl")


class Bags(Object):
    """QTalBase::PropertyBagsImpl."""

    def places(self):
        entry = self.member("mEntries").GetType().GetCanonicalType().GetTemplateArgumentType(0)
        return entry, self.span("mEntries", entry.GetByteSize())

    def text(self):
        return f"collection of {counted(len(self.places()[1]), 'bag', 'bags')}, {self.references()}"

    def entries(self):
        entry, places = self.places()
        for place in places:
            pair = self.value.CreateValueFromAddress("entry", place, entry)
            name = self.characters(*self.numbers(pair.GetChildMemberWithName("first").GetLoadAddress(), "QQ"))
            yield pair.GetChildMemberWithName("second").Clone(shown(name))


class Strings(Object):
    """The collection of texts that QDataType::CreateStringCollection gives."""

    def places(self):
        return self.span("mStrings", 32)

    def text(self):
        return f"collection of {counted(len(self.places()), 'text', 'texts')}"

    def entries(self):
        for index, place in enumerate(self.places()):
            yield self.wide(f"[{index}]", *self.numbers(place, "QQ"))


class OwnStrings(Object):
    """QTalBase::SerializableStringCollectionImpl, which wraps one of those."""

    def wrapped(self):
        found = implementation(self, self.numbers(self.place("mStrings"), "Q")[0])
        if not isinstance(found, Strings):
            raise Damaged("what it wraps")
        return found

    def text(self):
        return f"{self.wrapped().text()}, {self.references()}"

    def entries(self):
        return self.wrapped().entries()


class Window(Object):
    """QTalBase::DeliveryWindowImpl: its 24 blocks, true where delivery is allowed."""

    def blocks(self):
        disabled = self.number("mDisabledTimeBlocks")
        return [not disabled >> hour & 1 for hour in range(24)]

    def text(self):
        return f"window {''.join('#' if enabled else '.' for enabled in self.blocks())}, {self.references()}"

    def entries(self):
        for hour, enabled in enumerate(self.blocks()):
            yield self.flag(f"[{hour}]", enabled)


class Pointer(Object):
    """QBase::SmartPtrI: shown as what it holds, which tells its count."""

    def held(self):
        """What it holds, or None."""
        place = self.number("mPointer")
        if place == 0:
            return None
        self.read(place, 8)
        name = self.value.GetType().GetCanonicalType().GetTemplateArgumentType(0).GetUnqualifiedType().GetName()
        return find_named(self, name, place)

    def text(self):
        place = self.number("mPointer")
        if place == 0:
            return "null"
        held = self.held()
        return f"0x{place:x}" if held is None else f"-> {held.text()}"

    def entries(self):
        held = self.held()
        return () if held is None else held.entries()


class Instant(Object):
    """QDataType::DateTime."""

    def text(self):
        microseconds = self.numbers(self.place("mMicroseconds"), "q")[0]
        try:
            instant = datetime.datetime(1970, 1, 1) + datetime.timedelta(microseconds=microseconds)
        except OverflowError as error:
            raise Damaged(f"{microseconds} microseconds") from error
        fraction = f".{instant.microsecond:06}".rstrip("0") if instant.microsecond else ""
        return instant.replace(microsecond=0).isoformat() + fraction + "Z"


class Identifier(Object):
    """_GUID."""

    def text(self):
        first, second, third, rest = self.numbers(self.value.GetLoadAddress(), "IHH8s")
        return f"{first:08x}-{second:04x}-{third:04x}-{rest[:2].hex()}-{rest[2:].hex()}"


class Other(Object):
    """An object of no class of the library, or of none that can be seen."""

    def __init__(self, value, place, description):
        super().__init__(value)
        self.at = place
        self.description = description

    def text(self):
        self.read(self.at, 8)
        return f"<{self.description}>"


OBJECTS = {
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


def class_name(kind):
    return kind.GetCanonicalType().GetUnqualifiedType().GetName()


def known_bytes(kind):
    """How much is known of a class: lldb makes empty ones of those that a program's debug symbols only name."""
    fields = (kind.GetFieldAtIndex(index) for index in range(kind.GetNumberOfFields()))
    return kind.GetByteSize() + sum(field.GetType().GetByteSize() for field in fields)


def value_at(value, name, place, kind):
    """The object of a class at a place, with the class as that library knows it that has it whole."""
    found = max(value.GetTarget().FindTypes(kind), key=known_bytes, default=None)
    if found is None:
        raise Damaged(f"no debug symbols of {kind}")
    return value.CreateValueFromAddress(name, place, found).GetNonSyntheticValue()


def library_part(value):
    """What an object is of the library: it, or the first of its bases that is shown, as name and place, or None."""
    name = class_name(value.GetType())
    if name in OBJECTS:
        return name, value.GetLoadAddress()
    for index in range(value.GetType().GetCanonicalType().GetNumberOfDirectBaseClasses()):
        part = library_part(value.GetChildAtIndex(index).GetNonSyntheticValue())
        if part is not None:
            return part
    return None


def implementation(around, place):
    """The object of which a part with a virtual table is at a place, or None where nothing is known of its class.

    A client's own debug symbols do not have the interfaces whole, and lldb asks no other library for them. The table
    itself names the class, and says how far it is from the part to the whole.
    """
    table = around.numbers(place, "Q")[0]
    symbol = around.value.GetTarget().ResolveLoadAddress(table).GetSymbol().GetName() or ""
    if not symbol.startswith("vtable for "):
        return None
    whole = place + around.numbers(table - 16, "q")[0]
    name = symbol[len("vtable for "):]
    try:
        part = library_part(value_at(around.value, "whole", whole, name))
    except Damaged:
        return None
    return find_named(around, *part) if part else Other(around.value, whole, f"{name}, a class of its own")


def find_named(around, name, place):
    """What is shown of an object that is known by the name of its class, or None."""
    if name in OBJECTS:
        return OBJECTS[name](value_at(around.value, "object", place, name))
    if name in INTERFACES:
        unknown = Other(around.value, place, f"{name}: damaged, or of a class without debug symbols")
        return implementation(around, place) or unknown
    return None


def find_object(value):
    """What is shown of a value, or None where the value is none of the library's."""
    value = value.GetNonSyntheticValue()
    kind, place = value.GetType(), value.GetLoadAddress()
    if kind.IsReferenceType():
        kind, place = kind.GetDereferencedType(), value.GetValueAsUnsigned()
    name = class_name(kind)
    if name.startswith("QBase::SmartPtrI<"):
        return Pointer(value.Dereference() if value.GetType().IsReferenceType() else value)
    return find_named(Object(value), name, place)


def summary(value, _):
    """What lldb shows on the line of a value."""
    try:
        found = find_object(value)
        return "" if found is None else found.text()
    except Damaged as damage:
        return f"<damaged: {damage}>"


def array_summary(value, _):
    """An array of wide characters, which is how the entries that are texts are made, up to its terminator."""
    characters = []
    for code in value.GetNonSyntheticValue().GetData().uint32s:
        if code == 0:
            break
        characters.append(chr(code) if code < 0x110000 else "\N{REPLACEMENT CHARACTER}")
    return quoted("".join(characters))


class Children:
    """What lldb shows below the line of a value: its entries, those before the damage."""

    def __init__(self, value, _):
        self.value = value
        self.shown = []

    def update(self):
        self.shown = []
        try:
            found = find_object(self.value)
            for entry in () if found is None else found.entries():
                if len(self.shown) == MOST_SHOWN:
                    break
                self.shown.append(entry)
        except Damaged:
            pass
        return False

    def num_children(self):
        return len(self.shown)

    def has_children(self):
        return bool(self.shown)

    def get_child_index(self, name):
        names = [child.GetName() for child in self.shown]
        return names.index(name) if name in names else -1

    def get_child_at_index(self, index):
        return self.shown[index] if 0 <= index < len(self.shown) else None


def __lldb_init_module(debugger, _):
    names = "|".join(name.replace("(", "\\(").replace(")", "\\)") for name in sorted({*OBJECTS, *INTERFACES}))
    for kind in f"^({names})$", "^QBase::SmartPtrI<.+>$":
        debugger.HandleCommand(f'type summary add -w talbase -p -e -F {__name__}.summary -x "{kind}"')
        debugger.HandleCommand(f'type synthetic add -w talbase -p -l {__name__}.Children -x "{kind}"')
    debugger.HandleCommand(f'type summary add -w talbase -F {__name__}.array_summary -x "^wchar_t ?\\[[0-9]+\\]$"')
    debugger.HandleCommand("type category enable talbase")
