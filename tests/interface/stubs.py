"""stubs.py FILE: the stubs are Python, name nothing twice, and refer to nothing that they do not have."""

import ast
import sys

with open(sys.argv[1], encoding="utf-8") as file:
    module = ast.parse(file.read())

names = set()
for node in module.body:
    if isinstance(node, (ast.ClassDef, ast.FunctionDef)):
        assert node.name not in names, f"{node.name} is there twice"
        names.add(node.name)
    elif isinstance(node, (ast.Import, ast.ImportFrom)):
        names |= {(alias.asname or alias.name).split(".")[0] for alias in node.names}
    elif isinstance(node, (ast.Assign, ast.AnnAssign)):
        targets = node.targets if isinstance(node, ast.Assign) else [node.target]
        names |= {target.id for target in targets}

classes = [node for node in module.body if isinstance(node, ast.ClassDef)]
members = 0
for owner in classes:
    seen = set()
    for node in owner.body:
        if not isinstance(node, ast.FunctionDef):
            continue
        is_setter = any(isinstance(mark, ast.Attribute) and mark.attr == "setter" for mark in node.decorator_list)
        # `on` has an overload for each event.
        assert is_setter or node.name not in seen or node.name == "on", f"{owner.name}.{node.name} is there twice"
        seen.add(node.name)
        arguments = [one.arg for one in node.args.args]
        assert len(set(arguments)) == len(arguments), f"{owner.name}.{node.name}"
        members += 1

for node in ast.walk(module):
    if isinstance(node, ast.Attribute) and isinstance(node.value, ast.Name) and node.value.id == "kestrel":
        assert node.attr in names, f"There is no kestrel.{node.attr}"

assert len(classes) > 50 and members > 600, (len(classes), members)
compile(module, sys.argv[1], "exec")
print(f"{len(classes)} classes with {members} functions")
