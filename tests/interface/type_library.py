"""type_library.py IDL FOLDER BITS WIDL WINEDUMP STDOLE: Wine's compiler makes a type library of the definition, for 32
or 64 bits, and what Wine's reader finds in it is what the definition says: the types with their identifiers, and their
functions with their numbers.
"""

import itertools
import os
import re
import subprocess
import sys

idl_file, folder, bits, widl, winedump, stdole = sys.argv[1:]
library = os.path.join(folder, f"KestrelLib2-{bits}.tlb")


def defined(idl):
    """{name: (identifier, [(function, number)])} of the types of a definition; a property has a function per access."""
    code = re.sub(r'"(?:\\.|[^"\\])*"', '""', re.sub(r"//.*", "", idl))
    types = {}
    form = r"\[\s*uuid\(([-0-9a-f]+)\)[^]]*\]\s*(enum|interface|dispinterface|coclass) (\w+)[^{;]*\{([^}]*)\}"
    for identifier, kind, name, body in re.findall(form, code):
        functions = re.findall(r"\bid\((-?\d+)\)[^]]*\]\s*\w+ (\w+)\(", body)
        types[name] = identifier, [(function, int(number)) for number, function in functions]
    return re.search(r"\[\s*uuid\(([-0-9a-f]+)\)[^]]*\]\s*library", code)[1], types


def blocks(dump, kind):
    """The fields of the records of a kind, in their order."""
    return re.findall(rf"^{kind} \d+ \{{\n(.*?)^\}}", dump, re.M | re.S)


def field(block, name):
    return re.search(rf"^ *{name} = (.*)", block, re.M)[1]


def number(text):
    return int(text.rstrip("h"), 16)


class Dump:
    """A type library as winedump prints it. Records refer to names and identifiers by their offsets in tables."""

    def __init__(self, dump):
        self.names = {}
        offset = 0
        for block in blocks(dump, "Name"):
            length = number(field(block, "namelen")) & 0xFF
            self.names[offset] = re.search(r'name = "(.*?)"', block)[1]
            offset += 12 + (length + 3) // 4 * 4
        self.identifiers = {at * 24: field(block, "guid").strip("{}") for at, block in enumerate(blocks(dump, "GuidEntry"))}
        header = re.search(r"^Header \{\n(.*?)^\}", dump, re.M | re.S)[1]
        self.identifier = self.identifiers[number(field(header, "posguid"))]
        self.version = field(header, "version")
        self.system = field(header, "varflags").split("syskind = ")[1]
        self.types = {}
        # Coclasses, which are the last, have no functions.
        for base, info in itertools.zip_longest(blocks(dump, "TypeInfoBase"), blocks(dump, "TypeInfo"), fillvalue=""):
            functions = [
                (self.names[number(name)], number(identifier) - (1 << 32 if identifier.startswith("f") else 0))
                for identifier, name in zip(
                    re.findall(r"^ *func \d+ id = (\w+)h", info, re.M),
                    re.findall(r"^ *func \d+ name = (\w+)h", info, re.M),
                )
            ]
            name = self.names[number(field(base, "NameOffset"))]
            self.types[name] = self.identifiers[number(field(base, "posguid"))], functions


subprocess.run(
    [widl, "-t", f"--win{bits}", "-L", os.path.dirname(stdole), "-o", library, idl_file], check=True, cwd=folder
)
printed = subprocess.run([winedump, library], check=True, capture_output=True).stdout.decode("latin-1")
found = Dump(printed)
with open(idl_file, encoding="ascii") as file:
    text = file.read()
identifier, types = defined(text)

assert found.identifier == identifier, f"The library is {found.identifier}, not {identifier}."
assert found.version == re.search(r"version\(([\d.]+)\)", text)[1], found.version
assert found.system == f"SYS_WIN{bits}", found.system
assert found.types.keys() == types.keys(), found.types.keys() ^ types.keys()
for name, expected in types.items():
    assert found.types[name] == expected, f"{name}: {found.types[name]} is not {expected}"

# The library keeps one spelling of a name, whatever its case.
code = re.sub(r'"(?:\\.|[^"\\])*"', "", text)
arguments = set(re.findall(r"\] [\w ]+?\** (\w+)[,)]", code))
values = set(re.findall(r"^  (\w+) = ", code, re.M))
# The name of an assigned value is not kept.
missing = (arguments | values) - {"Value"} - set(found.names.values())
assert len(arguments) > 100 and not missing, f"Spelled in another way: {missing}"

functions = sum(len(each) for _, each in types.values())
assert functions > 700, functions
print(f"{len(types)} types with {functions} functions")
