"""Pictures as buffers, both ways."""

import gc
import sys
import unittest

import numpy
from PIL import Image
from support import BatchCase, new_picture

import kestrel

RGBA = [0x99, 0x66, 0x33, 255]


def gradient(height: int = 30, width: int = 40) -> numpy.ndarray:
    """Pixels that all differ, also in alpha."""
    rows, columns = numpy.mgrid[0:height, 0:width]
    return numpy.dstack([rows, columns, rows + columns, 255 - rows]).astype(numpy.uint8)


class FromPicture(BatchCase):
    def picture(self) -> kestrel.Object:
        return new_picture().Writer.ToPicture()

    def test_an_array_shares_the_memory_and_is_read_only(self) -> None:
        picture = self.picture()
        array = numpy.asarray(picture)
        self.assertEqual((array.shape, array.dtype), ((30, 40, 4), numpy.uint8))
        self.assertEqual(array[29, 39].tolist(), RGBA)
        self.assertFalse(array.flags.writeable)
        again = numpy.asarray(picture)
        self.assertEqual(array.__array_interface__["data"], again.__array_interface__["data"])

    def test_an_array_outlives_picture_and_platform(self) -> None:
        array = numpy.asarray(kestrel.Picture(gradient()))
        gc.collect()
        kestrel.stop()
        self.assertTrue((array == gradient()).all())

    def test_a_buffer_shares_the_memory_and_is_read_only(self) -> None:
        picture = self.picture()
        view = picture.buffer()
        self.assertTrue(view.readonly)
        self.assertEqual(view.shape, (30, picture.__array_interface__["strides"][0]))
        self.assertGreaterEqual(view.shape[1], 160)
        address = numpy.asarray(view).__array_interface__["data"][0]
        self.assertEqual(address, picture.__array_interface__["data"][0])

    def test_a_buffer_outlives_picture_and_platform(self) -> None:
        view = kestrel.Picture(gradient()).buffer()
        gc.collect()
        kestrel.stop()
        self.assertTrue((numpy.asarray(view)[:, :160] == gradient().reshape(30, 160)).all())

    def test_an_image_of_pillow(self) -> None:
        picture = self.picture()
        image = picture.to_image()
        self.assertEqual((image.mode, image.size), ("RGBA", (40, 30)))
        self.assertEqual(list(image.getpixel((39, 29))), RGBA)
        self.assertEqual(Image.fromarray(picture).tobytes(), image.tobytes())

    def test_an_image_of_pillow_is_a_copy_once_it_is_changed(self) -> None:
        picture = self.picture()
        image = picture.to_image()
        del picture
        image.putpixel((0, 0), (1, 2, 3, 4))
        gc.collect()
        self.assertEqual(image.getpixel((0, 0)), (1, 2, 3, 4))
        self.assertEqual(list(image.getpixel((1, 0))), RGBA)

    def test_bytes(self) -> None:
        self.assertEqual(self.picture().tobytes(), bytes(RGBA) * 1200)

    @unittest.skipIf(sys.version_info < (3, 12), "a buffer of a class of Python needs 3.12")
    def test_is_a_buffer_itself(self) -> None:
        picture = self.picture()
        self.assertEqual(memoryview(picture), picture.buffer())

    def test_of_another_class(self) -> None:
        self.assertFalse(hasattr(new_picture(), "__array_interface__"))


class ToPicture(BatchCase):
    def check(self, picture: kestrel.Object, expected: numpy.ndarray) -> None:
        self.assertEqual((picture.Width, picture.Height), (expected.shape[1], expected.shape[0]))
        self.assertTrue((numpy.asarray(picture) == expected).all())

    def test_from_arrays_of_4_channels(self) -> None:
        pixels = gradient()
        self.check(kestrel.Picture(pixels), pixels)
        frozen = pixels.copy()
        frozen.flags.writeable = False
        self.check(kestrel.Picture(frozen), pixels)
        for view in (pixels[::-1], pixels[:, ::-1], pixels[3:20:2, 5:9], pixels[:, :, ::-1], pixels.transpose(1, 0, 2)):
            self.check(kestrel.Picture(view), view)

    def test_from_arrays_of_3_channels_and_of_gray(self) -> None:
        pixels = gradient()
        pixels[:, :, 3] = 255
        self.check(kestrel.Picture(pixels[:, :, :3]), pixels)
        gray = pixels[:, :, 1]
        self.check(kestrel.Picture(gray), numpy.dstack([gray, gray, gray, pixels[:, :, 3]]))
        self.check(kestrel.Picture(gray[:, :, None]), numpy.dstack([gray, gray, gray, pixels[:, :, 3]]))

    def test_from_images_of_pillow(self) -> None:
        pixels = gradient()
        image = Image.fromarray(pixels)
        self.check(kestrel.Picture(image), pixels)
        for mode in ("RGB", "L", "P", "1", "CMYK", "LA"):
            with self.subTest(mode=mode):
                converted = image.convert(mode)
                self.check(kestrel.Picture(converted), numpy.asarray(converted.convert("RGBA")))

    def test_from_bytes_with_a_size(self) -> None:
        pixels = gradient()
        data = pixels.tobytes()
        for source in (data, bytearray(data), memoryview(b"xx" + data)[2:], memoryview(bytearray(data))):
            self.check(kestrel.Picture(source, 40, 30), pixels)
        gray = numpy.full((30, 40, 4), 7, numpy.uint8)
        gray[:, :, 3] = 255
        self.check(kestrel.Picture(bytes([7]) * 1200, width=40, height=30), gray)

    def test_does_not_change_with_its_source(self) -> None:
        pixels = gradient()
        picture = kestrel.Picture(pixels)
        pixels[:] = 0
        self.check(picture, gradient())

    def test_of_other_sources_is_an_error(self) -> None:
        pixels = gradient()
        for source, size in [
            (None, ()),
            (5, ()),
            ("text", ()),
            (pixels.astype(float), ()),
            (pixels.astype(numpy.int16), ()),
            (pixels[:, :, :2], ()),
            (pixels.ravel(), ()),
            (pixels[None], ()),
            (b"", ()),
            (b"123", (1, 2)),
            (b"1234", (2**20, 2**20)),
            (new_picture(), ()),
        ]:
            with self.subTest(source=type(source), size=size):
                self.assert_error(13, 1, lambda: kestrel.Picture(source, *size))
        for size in [(0, 1), (1, 0), (-1, -1), (2**31, 1)]:
            with self.subTest(size=size):
                self.assert_error(5, None, lambda: kestrel.Picture(b"1234", *size))
        self.assert_error(5, None, lambda: kestrel.Picture(pixels[:0]))

    def test_goes_into_editor_and_back(self) -> None:
        editor = self.started()
        editor.Control.Picture = kestrel.Picture(gradient())
        self.assertEqual((editor.Image.Width, editor.Image.Height), (40, 30))
        self.check(editor.Control.Picture, gradient())
        editor.FlipVertically()
        self.check(editor.Control.Picture, gradient()[::-1])

    def test_goes_into_a_picture_with_operations(self) -> None:
        image = kestrel.ImgX()
        image.Document.FromPicture(kestrel.Picture(gradient()))
        image.Effects.Crop(1, 2, 10, 5)
        self.check(image.Writer.ToPicture(), gradient()[2:7, 1:11])
        self.assert_error(424, 1, lambda: image.Document.FromPicture(gradient().tobytes().hex()))


if __name__ == "__main__":
    unittest.main()
