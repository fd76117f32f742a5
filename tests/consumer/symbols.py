"""The symbols of the libraries for hosts: symbols.py ENGINE WIDGETS

Both export names of the project alone, so that no other library of a host binds to theirs. And no variable exists in
both: what a process or a thread has once must exist once in a host that links both.
"""

import subprocess
import sys


def symbols(*arguments):
    lines = subprocess.run(["nm", "-P", *arguments], check=True, capture_output=True, text=True).stdout
    return [line.split()[:2] for line in lines.splitlines()]


def exported(library):
    return [name for name, _ in symbols("-D", "--defined-only", library)]


def variables(library):
    """Those that can be written, but for tables that only relocation writes."""
    writable = {name for name, kind in symbols("--defined-only", library) if kind in "bBdD"}
    return {name for name in writable if "7kestrel" in name and not name.startswith(("_ZTV", "_ZTI", "_ZTT"))}


def soname(library):
    text = subprocess.run(["readelf", "-d", library], check=True, capture_output=True, text=True).stdout
    return next(line for line in text.splitlines() if "SONAME" in line)


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
