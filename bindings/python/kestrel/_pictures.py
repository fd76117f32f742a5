"""Pictures as buffers."""

import ctypes
from ctypes import byref, c_ubyte, c_void_p
from typing import Any, Callable, Dict, Optional, Tuple

from . import _library as c
from ._errors import Error, check
from ._library import library
from ._objects import Object, set_fields


class _Pixels:
    """The pixels of a picture, as long as this object."""

    def __init__(self, handle: Optional[int]) -> None:
        self._lock: Optional[int] = None
        self.rows = c.Pixels()
        lock = c_void_p()
        check(library.lock_pixels(handle, byref(self.rows), byref(lock)))
        self._lock = lock.value

    def __del__(self, unlock: Callable[[Optional[int]], int] = library.unlock_pixels) -> None:
        unlock(self._lock)


class PictureBase(Object):
    """Makes a picture of pixels: of a NumPy array, an image of Pillow, or any other buffer of bytes.

    source: an array of height, width and 4 channels (red, green, blue, alpha), 3 channels, or none for gray; or, with
    width and height, bytes of one of these. The pixels are copied: the picture never changes.

    The other way nothing is copied: `numpy.asarray(picture)`, `picture.to_image()` for Pillow and `picture.buffer()`
    share the picture's memory, read-only, for as long as they need it.
    """

    __slots__ = ("_pixels",)

    def __init__(self, source: Any, width: Optional[int] = None, height: Optional[int] = None) -> None:
        data, width, height = _rgba(source, width, height)
        pixels = c.Pixels(ctypes.cast(data, c_void_p).value, 4 * width, width, height, c.RGBA, 0)
        handle = c_void_p()
        check(library.create_picture(byref(pixels), byref(handle)))
        set_fields(self, handle.value)

    @property
    def __array_interface__(self) -> Dict[str, Any]:
        """For NumPy and Pillow. What is made of it keeps this object, which keeps the pixels."""
        rows = self._locked().rows
        return {
            "version": 3,
            "shape": (rows.height, rows.width, 4),
            "typestr": "|u1",
            "data": (rows.data, True),
            "strides": (rows.stride, 4, 1),
        }

    def buffer(self) -> memoryview:
        """The rows of pixels, read-only: an array of height by bytes.

        A row has 4 bytes for each pixel, its red, green, blue and alpha, and may have further bytes at its end.
        """
        pixels = self._locked()
        rows = pixels.rows
        array = ((c_ubyte * rows.stride) * rows.height).from_address(rows.data)
        array.pixels = pixels  # the view keeps the array, and so the pixels
        return memoryview(array).toreadonly()

    def __buffer__(self, flags: int) -> memoryview:
        """`memoryview(picture)`, from Python 3.12 on."""
        return self.buffer()

    def tobytes(self) -> bytes:
        """A copy of the pixels: 4 bytes each, row after row."""
        rows = self._locked().rows
        data = self.buffer().tobytes()
        return b"".join(data[at : at + 4 * rows.width] for at in range(0, len(data), rows.stride))

    def to_image(self) -> Any:
        """The picture as an image of Pillow, which shares the pixels until it is changed."""
        from PIL import Image  # type: ignore[import]

        rows = self._locked().rows
        return Image.frombuffer("RGBA", (rows.width, rows.height), self.buffer(), "raw", "RGBA", rows.stride, 1)

    def _locked(self) -> _Pixels:
        try:
            pixels: _Pixels = object.__getattribute__(self, "_pixels")
        except AttributeError:
            pixels = _Pixels(self._handle)
            object.__setattr__(self, "_pixels", pixels)
        return pixels


def _rgba(source: Any, width: Optional[int], height: Optional[int]) -> Tuple[Any, int, int]:
    """The pixels as a buffer of ctypes that keeps them, with their width and height."""
    if width is None and hasattr(source, "convert") and hasattr(source, "tobytes"):  # an image of Pillow
        width, height = source.size
        source = (source if source.mode == "RGBA" else source.convert("RGBA")).tobytes()
    try:
        view = memoryview(source)
    except TypeError:
        raise _mismatch(f"not a value of type {type(source).__qualname__}") from None
    if view.format not in ("B", "<B", "@B", "c"):
        raise _mismatch(f"not elements of the format {view.format}")
    if width is None or height is None:
        if view.shape is None or view.ndim not in (2, 3):
            raise _mismatch(f"an array of 2 or 3 dimensions, not {view.ndim}, without width and height")
        height, width = view.shape[:2]
    if not (0 < width < 2**31 and 0 < height < 2**31):
        raise Error(c.INVALID_CALL, f"A picture cannot have a size of {width} x {height}.", "Picture")
    channels, rest = divmod(view.nbytes, width * height)
    if rest or channels not in (1, 3, 4) or (view.ndim == 3 and (view.shape or ())[2:] != (channels,)):
        raise _mismatch(f"4, 3 or 1 bytes for each of {width} x {height} pixels, not {view.nbytes} bytes in all")
    return _buffer_of(source, view, channels), width, height


def _buffer_of(source: Any, view: memoryview, channels: int) -> Any:
    if channels == 4:
        if view.c_contiguous and not view.readonly:
            return (c_ubyte * view.nbytes).from_buffer(view)
        return ctypes.c_char_p(source if type(source) is bytes else view.tobytes())
    data = view.tobytes()
    rgba = bytearray(b"\xff") * (len(data) // channels * 4)
    for channel in range(3):
        rgba[channel::4] = data[channel % channels :: channels]
    return (c_ubyte * len(rgba)).from_buffer(rgba)


def _mismatch(words: str) -> Error:
    return Error(c.TYPE_MISMATCH, f"The pixels of a picture must be bytes: {words}.", "Picture", 1)
