"""A host that chooses the names of files: each save is a further version of the picture.

events.py PICTURE FOLDER
"""

import sys
from pathlib import Path

import kestrel


def main(picture: Path, folder: Path) -> None:
    editor = kestrel.ImageProcessing()
    editor.Initialize()

    def next_version(event: kestrel.Event) -> None:
        number = len(list(folder.glob("*.png"))) + 1
        event.Filename = folder / f"{picture.stem} {number}.png"
        event.CancelDefault = True  # no file dialog

    # An answer can be returned as well: Filename and CancelDefault.
    editor.on("RequestOpenFilename", lambda event: (picture, True))
    editor.on("RequestSaveFilename", next_version)

    @editor.on("ImageSave")
    def saved(event: kestrel.Event) -> None:
        print("saved", event.Filename)

    editor.Show()
    editor.OpenImage()
    kestrel.run(editor)


if __name__ == "__main__":
    main(Path(sys.argv[1]), Path(sys.argv[2]))
