"""The examples and the README's block, run as a user runs them: EXAMPLES is their folder, README the document."""

import os
import re
import runpy
import subprocess
import sys
import unittest
from contextlib import redirect_stdout
from io import StringIO
from pathlib import Path
from typing import Any, Callable, List
from unittest import mock

import numpy
from support import COLOR, HostCase

import kestrel

EXAMPLES = Path(os.environ["KESTREL_EXAMPLES"])
README = Path(os.environ["KESTREL_README"])


class Examples(HostCase):
    def make_picture(self, name: str = "a.png", width: int = 40, height: int = 30) -> Path:
        """Outside of this process, whose platform the example chooses."""
        from PIL import Image

        file = self.folder / name
        Image.new("RGB", (width, height), (0x99, 0x66, 0x33)).save(file)
        return file

    def run_example(self, name: str, *arguments: object) -> str:
        output = StringIO()
        argv = [str(EXAMPLES / name), *map(str, arguments)]
        with mock.patch.object(sys, "argv", argv), redirect_stdout(output):
            try:
                runpy.run_path(argv[0], run_name="__main__")
            except SystemExit as end:
                self.assertIn(end.code, (None, 0))
        return output.getvalue()

    def run_with_user(self, act: Callable[[Any], None], name: str, *arguments: object) -> str:
        """Runs an example whose user acts once its window is open, and then closes it."""
        run = kestrel.run

        def run_for_user(window: Any, timeout: Any = None) -> bool:
            from PyQt6.QtCore import QTimer

            def use() -> None:
                act(window)
                window.Terminate()

            QTimer.singleShot(0, use)
            return run(window, timeout)

        with mock.patch.object(kestrel, "run", run_for_user):
            return self.run_example(name, *arguments)

    def test_the_readme_has_the_first_example(self) -> None:
        blocks: List[str] = re.findall(r"```python\n(.*?)```", README.read_text(encoding="utf-8"), re.DOTALL)
        self.assertIn((EXAMPLES / "editor.py").read_text(encoding="utf-8"), blocks)

    def test_editor(self) -> None:
        target = self.folder / "b.png"

        def use(editor: Any) -> None:
            self.assertTrue(editor.Visible)
            editor.Rotate(90)
            editor.SaveImageAs(target)

        output = self.run_with_user(use, "editor.py", self.make_picture())
        self.assertEqual(output, f"saved {target}\n")
        self.assertTrue(target.exists())

    def test_events(self) -> None:
        target = self.folder / "versions"
        target.mkdir()

        def use(editor: Any) -> None:
            for _ in range(2):
                self.assertTrue(editor.SaveImageAs())

        output = self.run_with_user(use, "events.py", self.make_picture("photo.png"), target)
        self.assertEqual(sorted(file.name for file in target.iterdir()), ["photo 1.png", "photo 2.png"])
        self.assertEqual(output.splitlines(), [f"saved {target / name}" for name in ("photo 1.png", "photo 2.png")])

    def run_process(self, name: str, *arguments: object) -> str:
        """An example that works without a display; it has a process of its own, as each has one platform."""
        environment = {key: value for key, value in os.environ.items() if key not in ("DISPLAY", "QT_QPA_PLATFORM")}
        command = [sys.executable, str(EXAMPLES / name), *map(str, arguments)]
        done = subprocess.run(command, env=environment, timeout=120, capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout + done.stderr

    def test_thumbnails(self) -> None:
        source = self.folder / "in"
        source.mkdir()
        self.make_picture("in/a.png", 400, 300)
        self.make_picture("in/b.tif", 100, 200)
        (source / "c.txt").write_text("No picture.")
        output = self.run_process("thumbnails.py", source, self.folder / "out", 80)
        self.assertIn("a.jpg: 80 x 60\n", output)
        self.assertIn("b.jpg: 80 x 160\n", output)
        self.assertIn("c.txt: ", output)
        from PIL import Image

        sizes = {}
        for file in (self.folder / "out").iterdir():
            with Image.open(file) as image:
                sizes[file.name] = image.size
        self.assertEqual(sizes, {"a.jpg": (80, 60), "b.jpg": (80, 160)})

    def test_arrays(self) -> None:
        target = self.folder / "b.png"
        output = self.run_process("arrays.py", self.make_picture(), target)
        self.assertEqual(output, "80 x 30, mean of red 153\n")
        from PIL import Image

        with Image.open(target) as image:
            pixels = numpy.asarray(image.convert("RGB"))
        self.assertEqual(pixels[0, 0].tolist(), [0x66, 0x99, 0xCC])
        self.assertEqual(pixels[15, 60].tolist(), [COLOR & 255, COLOR >> 8 & 255, COLOR >> 16])


if __name__ == "__main__":
    unittest.main()
