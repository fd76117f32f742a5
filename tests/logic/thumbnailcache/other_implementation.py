"""The thumbnail cache of the GNOME desktop, one command a line: COMMAND<TAB>ARGUMENT...; arguments are quoted as
in a URI. Prints one line a command.

uri PATH            the URI of a path
lookup PATH SIZE    the file of a valid thumbnail, or "none"
texts FILE          size, "rgba" or "rgb", and the texts of a thumbnail, as KEY=VALUE
save PATH SIZE W H  keeps a thumbnail in which pixel (x, y) is (5x, 3y, x ^ y)
"""
import os
import sys
import urllib.parse

import gi

gi.require_version("GdkPixbuf", "2.0")
gi.require_version("GnomeDesktop", "3.0")
from gi.repository import GdkPixbuf, Gio, GLib, GnomeDesktop

SIZES = {
    "normal": GnomeDesktop.DesktopThumbnailSize.NORMAL,
    "large": GnomeDesktop.DesktopThumbnailSize.LARGE,
    "x-large": GnomeDesktop.DesktopThumbnailSize.XLARGE,
    "xx-large": GnomeDesktop.DesktopThumbnailSize.XXLARGE,
}


def uri_of(path):
    return Gio.File.new_for_path(os.fsdecode(path)).get_uri()


def lookup(path, size):
    factory = GnomeDesktop.DesktopThumbnailFactory.new(SIZES[size.decode()])
    return factory.lookup(uri_of(path), int(os.stat(path).st_mtime)) or "none"


def texts(file):
    pixbuf = GdkPixbuf.Pixbuf.new_from_file(os.fsdecode(file))
    options = sorted(f"{key}={value}" for key, value in pixbuf.get_options().items())
    return " ".join([f"{pixbuf.get_width()}x{pixbuf.get_height()}",
                     "rgba" if pixbuf.get_has_alpha() else "rgb"] + options)


def save(path, size, width, height):
    width, height = int(width), int(height)
    data = bytes(c & 255 for y in range(height) for x in range(width) for c in (5 * x, 3 * y, x ^ y))
    pixbuf = GdkPixbuf.Pixbuf.new_from_bytes(GLib.Bytes.new(data), GdkPixbuf.Colorspace.RGB, False, 8, width,
                                             height, 3 * width)
    factory = GnomeDesktop.DesktopThumbnailFactory.new(SIZES[size.decode()])
    factory.save_thumbnail(pixbuf, uri_of(path), int(os.stat(path).st_mtime))
    return "saved"


COMMANDS = {"uri": uri_of, "lookup": lookup, "texts": texts, "save": save}
for line in sys.stdin:
    command, *arguments = line.rstrip("\n").split("\t")
    print(COMMANDS[command](*map(urllib.parse.unquote_to_bytes, arguments)))
