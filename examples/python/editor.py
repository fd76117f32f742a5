import sys

import kestrel

editor = kestrel.ImageProcessing()  # the editor in a window of its own
editor.Initialize()
editor.on("ImageSave", lambda event: print("saved", event.Filename))
editor.Show()
if len(sys.argv) > 1:
    editor.OpenImage(sys.argv[1])
kestrel.run(editor)  # until its window is closed
