"""check_types.py MYPY FILE PACKAGE FOLDER HOST: mypy reads the stubs FILE with the modules of PACKAGE, and finds in HOST
the errors that its lines name, and no other.
"""

import os
import re
import shutil
import subprocess
import sys

checker, stubs, package, folder, host = sys.argv[1:]
installed = os.path.join(folder, "kestrel")
shutil.rmtree(installed, ignore_errors=True)
shutil.copytree(package, installed, ignore=shutil.ignore_patterns("__pycache__"))
shutil.copy(stubs, installed)


def mypy(*subject):
    # The modules of the package are read for their types only.
    return subprocess.run(
        [checker, "--strict", "--follow-imports=silent", "--show-error-codes", "--no-error-summary",
         "--cache-dir", os.path.join(folder, "cache"), *subject],
        env={**os.environ, "MYPYPATH": folder}, capture_output=True, text=True, cwd=folder,
    )


ran = mypy(host)
found = re.findall(r":(\d+): error: .*\[([-\w]+)\]$", ran.stdout, re.M)
with open(host, encoding="utf-8") as file:
    expected = [(str(line), match[1]) for line, text in enumerate(file, 1) if (match := re.search(r"# error: (.+)", text))]
assert len(expected) >= 10
assert found == expected, f"Found {found}, not {expected}\n{ran.stdout}{ran.stderr}"

# The stubs themselves: each name in them is known, and each override agrees with what it overrides.
ran = mypy("-m", "kestrel")
assert ran.returncode == 0, ran.stdout + ran.stderr
