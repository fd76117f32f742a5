"""Pictures as arrays of NumPy and images of Pillow: arrays.py PICTURE TARGET

Writes a negative, made by NumPy, with a blurred copy next to it, made by Pillow.
"""

import sys

import numpy
from PIL import ImageFilter

import kestrel


def main(source: str, target: str) -> None:
    with kestrel.batch():
        image = kestrel.ImgX()
        image.Document.FromFile(source)
        picture = image.Writer.ToPicture()

        pixels = numpy.asarray(picture)  # shares the memory of the picture
        negative = pixels.copy()
        negative[:, :, :3] = 255 - negative[:, :, :3]
        blurred = picture.to_image().filter(ImageFilter.GaussianBlur(4))  # so does the image of Pillow

        image.Document.FromPicture(kestrel.Picture(numpy.hstack([negative, numpy.asarray(blurred)])))
        image.Writer.ToFile(target, 0)
        print(f"{image.Image.Width} x {image.Image.Height}, mean of red {pixels[:, :, 0].mean():.0f}")


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2])
