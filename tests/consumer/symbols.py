"""The symbols of the libraries for hosts: symbols.py ENGINE WIDGETS

Both export names of the project alone, so that no other library of a host binds to theirs. And no variable exists in
both: what a process or a thread has once must exist once in a host that links both.
"""

import re
import subprocess
import sys


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


engine, widgets = sys.argv[1:]
failures = []
for library, name in ((engine, "libkestrel_engine.so.2"), (widgets, "libkestrel_widgets.so.2")):
    if f"[{name}]" not in soname(library):
        failures.append(f"{library}: its name for the linker is not {name}")
    names = exported(library)
    if len(names) < 20:
        failures.append(f"{library} exports only {len(names)} symbols")
    failures += [f"{library} exports {name}" for name in names
                 if not name.startswith("KESTREL_2") and not (name.startswith("_Z") and "7kestrel" in name)]
if len(variables(engine)) < 5:
    failures.append("The variables of the engine were not found.")
failures += [f"{name} is in both libraries" for name in sorted(variables(engine) & variables(widgets))]
print("\n".join(failures))
sys.exit(1 if failures else 0)
