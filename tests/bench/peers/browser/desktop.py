"""Loads the cached thumbnails of all files in a folder with the GNOME desktop's library, in two processes, as its
file manager does: checks each for validity and decodes it. desktop.py FOLDER, with the cache in XDG_CACHE_HOME.
"""

import os
import sys

import gi

gi.require_version("GdkPixbuf", "2.0")
gi.require_version("GnomeDesktop", "3.0")
from gi.repository import GdkPixbuf, Gio, GnomeDesktop


def load(paths):
    factory = GnomeDesktop.DesktopThumbnailFactory.new(GnomeDesktop.DesktopThumbnailSize.LARGE)
    for path in paths:
        uri = Gio.File.new_for_path(path).get_uri()
        thumbnail = factory.lookup(uri, int(os.stat(path).st_mtime))
        if thumbnail is None or GdkPixbuf.Pixbuf.new_from_file(thumbnail).get_width() != 256:
            raise RuntimeError("no thumbnail of " + path)


def main():
    folder = os.path.abspath(sys.argv[1])
    paths = [os.path.join(folder, name) for name in os.listdir(folder)]
    child = os.fork()
    if child == 0:
        try:
            load(paths[1::2])
        except Exception:
            os._exit(1)
        os._exit(0)
    load(paths[0::2])
    _, status = os.waitpid(child, 0)
    sys.exit(0 if status == 0 else 1)


if __name__ == "__main__":
    main()
