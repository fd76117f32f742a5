"""Writes a thumbnail of each picture of a folder, without a display: thumbnails.py FOLDER TARGET [WIDTH]"""

import sys
from pathlib import Path

import kestrel

LANCZOS = 13


def main(folder: Path, target: Path, width: int = 160) -> None:
    target.mkdir(parents=True, exist_ok=True)
    with kestrel.batch():
        for file in sorted(folder.iterdir()):
            picture = kestrel.ImgX()
            try:
                picture.Document.FromFile(file)
            except kestrel.Error as error:
                print(f"{file.name}: {error.description}", file=sys.stderr)
                continue
            picture.Effects.Resize(width, 0, LANCZOS)  # height 0 keeps the aspect ratio
            picture.Writer.ToFile(target / (file.stem + ".jpg"), 0)  # format 0: that of the extension
            print(f"{file.stem}.jpg: {picture.Image.Width} x {picture.Image.Height}")


if __name__ == "__main__":
    main(Path(sys.argv[1]), Path(sys.argv[2]), *map(int, sys.argv[3:4]))
