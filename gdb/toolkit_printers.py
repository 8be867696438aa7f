"""Shows the values of Toolkit's classes in gdb in readable form.

gdb loads this file automatically for an installed library. To load it by hand:

    (gdb) source toolkit_printers.py
"""

import datetime
import gdb
import gdb.printing
import gdb.xmethod

INVALID_DATE = -(2**63)
SHOWN_BYTES = 32


def by_default(value):
    """`value` as the standard library's printer shows it, or `value` itself without a printer."""
    printer = gdb.default_visualizer(value)
    return value if printer is None else printer.to_string()


def base_of(value):
    """`value` as an object of its first base class."""
    return value.cast(value.type.strip_typedefs().fields()[0].type)


def pointer_in(value):
    """The address in an object that holds nothing but one pointer."""
    address_type = gdb.lookup_type("void").pointer()
    return value.address.cast(address_type.pointer()).dereference()


def is_described(class_type):
    """Whether the debug information has the members of a class.

    Compilers describe a class with virtual functions only in the module that defines them.
    """
    return len(class_type.strip_typedefs().fields()) > 0


class SmartPointer:
    """The number of pointers that share the object, and the object."""

    def __init__(self, value):
        self.object = value["m_object"]
        self.block = value["m_data"]

    def count(self):
        count = self.block["count"]
        # The layout of std::atomic<int> in libstdc++.
        return int(count["_M_i"]) if count.type.strip_typedefs().code == gdb.TYPE_CODE_STRUCT else int(count)

    def to_string(self):
        if not self.object:
            return "empty"
        if not self.block:
            return "no count"
        return "count %d" % self.count()

    def children(self):
        if self.object:
            pointed = self.object.cast(self.object.dynamic_type)
            if pointed.type.target().strip_typedefs().code != gdb.TYPE_CODE_VOID:
                yield "object", pointed.dereference()


class Text:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return by_default(base_of(self.value))

    def display_hint(self):
        return "string"


class Bytes:
    """The number of bytes, and the first ones in hexadecimal."""

    def __init__(self, value):
        if is_described(value.type):
            self.data = value["m_data"]
            self.size = int(value["m_size"])
        else:
            self.read_layout(value)

    def read_layout(self, value):
        """Reads the members from memory, where they follow the pointer to the virtual table."""
        members = value.address.cast(gdb.lookup_type("void").pointer().pointer())
        self.data = members[1]
        self.size = int((members + 2).cast(gdb.lookup_type("unsigned int").pointer()).dereference())

    def to_string(self):
        if self.size == 0:
            return "0 bytes"
        shown = min(self.size, SHOWN_BYTES)
        memory = gdb.selected_inferior().read_memory(int(self.data), shown)
        more = " ..." if shown < self.size else ""
        return "%d byte%s: %s%s" % (self.size, "" if self.size == 1 else "s", bytes(memory).hex(" "), more)


class DateTime:
    """The text that GetIsoString() writes for UTC."""

    def __init__(self, value):
        self.value = value["m_value"]

    def to_string(self):
        date = int(pointer_in(self.value))
        if date == 0:
            return "invalid"
        # The only member of wxDateTime: milliseconds since 1970 in UTC. A program may have been
        # built without the definition of the class.
        memory = gdb.selected_inferior().read_memory(date, 8)
        milliseconds = int.from_bytes(bytes(memory), "little", signed=True)
        if milliseconds == INVALID_DATE:
            return "invalid"
        try:
            moment = datetime.datetime(1970, 1, 1) + datetime.timedelta(milliseconds=milliseconds)
        except OverflowError:
            return "%d ms since 1970" % milliseconds
        # strftime() does not pad years before 1000.
        return moment.strftime("%Y-%m-%d %H:%M:%S Z").rjust(len("YYYY-MM-DD hh:mm:ss Z"), "0")


class Version:
    def __init__(self, value):
        self.parts = [value[name] for name in ("m_major", "m_minor", "m_build", "m_revision")]

    def to_string(self):
        return ".".join(str(int(part)) for part in self.parts)


class Group:
    """The number, the name, which may be empty, and the value."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return "group %d" % int(self.value["index"])

    def children(self):
        yield "name", self.value["name"]
        yield "value", self.value["value"]


class MatchResult:
    """Whether the pattern matched, and its groups."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        if not self.value["code"]:
            error = self.value["errorText"]
            return "no pattern" if not error else "error at %d" % int(self.value["errorOffset"])
        code = int(self.value["resultCode"])
        # 0 is a match with more groups than `ovector` has room for.
        return "match" if code >= 0 else "no match, code %d" % code

    def children(self):
        yield "pattern", self.value["pattern"]
        yield "subject", self.value["subject"]
        if self.value["errorText"]:
            yield "errorText", self.value["errorText"]
        yield "groups", self.value["groups"]


def items_of(vector):
    item = vector["_M_impl"]["_M_start"]
    while item != vector["_M_impl"]["_M_finish"]:
        yield item.dereference()
        item += 1


def text_of(view):
    """The text of a std::string_view in UTF-8."""
    length = int(view["_M_len"])
    return view["_M_str"].string("utf-8", "replace", length) if length > 0 else ""


class IniFile:
    """Whether a file was read, and its settings.

    The settings are in private classes, which only the library's debug information describes.
    """

    def __init__(self, value):
        self.loaded = bool(value["m_loaded"])
        self.sections = value["m_sections"]["_M_ptr"]

    def is_described(self):
        return bool(self.sections) and is_described(self.sections.type.target())

    def to_string(self):
        text = "loaded" if self.loaded else "not loaded"
        if self.sections and not self.is_described():
            text += ", settings unknown without debug information of the library"
        return text

    def children(self):
        if not self.is_described():
            return
        for section in items_of(self.sections.dereference()["m_sections"]):
            for entry in items_of(section["m_entries"]):
                name = "[%s] %s" % (self.name_of(section), text_of(entry["name"]))
                yield name, text_of(entry["value"])

    @staticmethod
    def name_of(section):
        name = section["name"]
        return name["_M_dataplus"]["_M_p"].string(length=int(name["_M_string_length"]))


def make_printers():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("toolkit")
    printers.add_printer("smart_ptr", "^Toolkit::smart_ptr<.*>$", SmartPointer)
    printers.add_printer("TString", "^TString<.*>$", Text)
    printers.add_printer("Bytes", "^Toolkit::Bytes$", Bytes)
    printers.add_printer("DateTime", "^Toolkit::DateTime$", DateTime)
    printers.add_printer("Version", "^Toolkit::Version$", Version)
    printers.add_printer("Group", "^Toolkit::Group$", Group)
    printers.add_printer("IniFile", "^Toolkit::IniFile$", IniFile)
    printers.add_printer("MatchResult", "^Toolkit::MatchResult$", MatchResult)
    return printers


class PointerOperation(gdb.xmethod.XMethodWorker):
    """An operation of smart_ptr. Programs have only inlined copies, which gdb cannot call."""

    def __init__(self, is_object):
        self.is_object = is_object

    def get_arg_types(self):
        return None

    def __call__(self, value):
        return value["m_object"].dereference() if self.is_object else value["m_object"]


class PointerOperations(gdb.xmethod.XMethodMatcher):
    """Lets gdb evaluate *pointer, pointer->member and pointer.Get()."""

    RETURNS_OBJECT = {"operator*": True, "operator->": False, "Get": False}

    def __init__(self):
        super().__init__("toolkit")
        self.methods = [gdb.xmethod.XMethod(name) for name in self.RETURNS_OBJECT]

    def match(self, class_type, method):
        is_pointer = str(class_type.strip_typedefs().unqualified()).startswith("Toolkit::smart_ptr<")
        if is_pointer and method in self.RETURNS_OBJECT:
            return PointerOperation(self.RETURNS_OBJECT[method])
        return None


gdb.xmethod.register_xmethod_matcher(gdb.current_objfile(), PointerOperations(), replace=True)
gdb.printing.register_pretty_printer(gdb.current_objfile(), make_printers(), replace=True)
