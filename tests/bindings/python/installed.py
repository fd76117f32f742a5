"""The package as it is installed: installed.py LIBRARIES PACKAGES PICTURE

Imports it from the two folders alone, and runs the README's host and the batch example on the picture.
"""

import ast
import os
import subprocess
import sys
import tempfile
from pathlib import Path

HOST = """
import sys, runpy, kestrel
from pathlib import Path
assert Path(kestrel.__file__).is_relative_to(sys.argv[2]), kestrel.__file__
run = kestrel.run
def run_and_close(window):
    assert window.Visible and window.Image.Width > 100
    window.Terminate()
    run(window)
kestrel.run = run_and_close
sys.argv[0:3] = [sys.argv[1]]
runpy.run_path(sys.argv[0], run_name="__main__")
"""


def main(libraries: str, packages: str, picture: str) -> None:
    stubs = Path(packages, "kestrel", "__init__.pyi").read_text(encoding="utf-8")
    names = {node.name for node in ast.parse(stubs).body if isinstance(node, ast.ClassDef)}
    assert {"ImageProcessing", "ImageBrowser", "ImageProcessingToolConstants"} <= names, names
    assert Path(packages, "kestrel", "py.typed").exists()
    assert not list(Path(packages, "kestrel").rglob("*.pyc"))

    environment = {**os.environ, "LD_LIBRARY_PATH": libraries, "PYTHONPATH": packages}
    environment.pop("KESTREL_LIBRARY", None)
    examples = Path(os.environ["KESTREL_EXAMPLES"])
    command = [sys.executable, "-c", HOST, str(examples / "editor.py"), packages, picture]
    subprocess.run(command, env=environment, check=True, timeout=120)

    with tempfile.TemporaryDirectory() as folder:
        source, target = Path(folder, "in"), Path(folder, "out")
        source.mkdir()
        (source / "a.png").write_bytes(Path(picture).read_bytes())
        command = [sys.executable, str(examples / "thumbnails.py"), str(source), str(target)]
        subprocess.run(command, env=environment, check=True, timeout=120)
        assert (target / "a.jpg").exists()


if __name__ == "__main__":
    main(*sys.argv[1:])
