"""The options of a program in its documents: options.py PROGRAM MAN_PAGE COMPLETION

The manual page and the completion of the shell must have the options that --help prints, and no others.
"""

import re
import subprocess
import sys

OPTION = re.compile(r"(?<![\w-])--[a-z][a-z-]*")

program, page, completion = sys.argv[1:]
expected = set(OPTION.findall(subprocess.run([program, "--help"], check=True, capture_output=True, text=True).stdout))
documents = {
    page: open(page, encoding="utf-8").read().replace("\\-", "-"),
    completion: open(completion, encoding="utf-8").read(),
}
failures = []
if len(expected) < 2:
    failures.append(f"{program} --help prints no options")
for name, text in documents.items():
    present = set(OPTION.findall(text))
    failures += [f"{name} lacks {option}" for option in sorted(expected - present)]
    failures += [f"{name} has {option}, which {program} has not" for option in sorted(present - expected)]
print("\n".join(failures))
sys.exit(1 if failures else 0)
