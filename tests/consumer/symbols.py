"""The symbols of the libraries for hosts: symbols.py ENGINE WIDGETS C HEADER

They export names of the project alone, so that no other library of a host binds to theirs; C those of the functions
of HEADER alone. And no variable exists in two: what a process or a thread has once must exist once in a host that
links several. C is small.
"""

import itertools
import os
import re
import subprocess
import sys
import tempfile

MOST_BYTES = 8 * 1024 * 1024


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def exported(library):
    return [line.split()[0] for line in output("nm", "-P", "-D", "--defined-only", library).splitlines()]


def variables(library):
    """Those of the project that can be written after the start of a program."""
    row = re.compile(r"^[0-9a-f]+ .{7} (\.data|\.bss|\.tdata|\.tbss)\s+[0-9a-f]+\s+(?:\.hidden )?(_Z\S*7kestrel\S*)$")
    return {match[2] for match in map(row.match, output("objdump", "-t", library).splitlines()) if match}


def soname(library):
    return next(line for line in output("readelf", "-d", library).splitlines() if "SONAME" in line)


def stripped_size(library):
    with tempfile.NamedTemporaryFile() as stripped:
        output("strip", "-o", stripped.name, library)
        return os.path.getsize(stripped.name)


engine, widgets, c, header = sys.argv[1:]
failures = []
for library, name in ((engine, "libkestrel_engine.so.2"), (widgets, "libkestrel_widgets.so.2")):
    if f"[{name}]" not in soname(library):
        failures.append(f"{library}: its name for the linker is not {name}")
    names = exported(library)
    if len(names) < 20:
        failures.append(f"{library} exports only {len(names)} symbols")
    failures += [f"{library} exports {name}" for name in names
                 if not name.startswith("KESTREL_2") and not (name.startswith("_Z") and "7kestrel" in name)]
if "[libkestrel.so.2]" not in soname(c):
    failures.append(f"{c}: its name for the linker is not libkestrel.so.2")
with open(header, encoding="utf-8") as text:
    declared = set(re.findall(r"^KESTREL_API [^(]*?(kestrel_\w+)\(", text.read(), re.MULTILINE))
own = {name.split("@")[0] for name in exported(c)} - {"KESTREL_2"}
if len(declared) < 20:
    failures.append(f"Only {len(declared)} functions were found in {header}")
failures += [f"{c} does not export {name}" for name in sorted(declared - own)]
failures += [f"{c} exports {name}" for name in sorted(own - declared)]
size = sum(map(stripped_size, (engine, widgets, c)))
print(f"Stripped: {stripped_size(c)} bytes, with the libraries that it uses {size}")
if stripped_size(c) >= MOST_BYTES:
    failures.append(f"{c} is {stripped_size(c)} bytes large")
if len(variables(engine)) < 5:
    failures.append("The variables of the engine were not found.")
failures += [f"{name} is in two libraries" for pair in itertools.combinations((engine, widgets, c), 2)
             for name in sorted(variables(pair[0]) & variables(pair[1]))]
print("\n".join(failures))
sys.exit(1 if failures else 0)
