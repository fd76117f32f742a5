"""A host as a checker of types reads it. Lines with a mistake name the error that the stubs let the checker find."""

from pathlib import Path

import kestrel


def edit(name: Path) -> None:
    editor = kestrel.ImageProcessing()
    editor.Initialize()
    editor.OpenImage(Filename=name)
    editor.Resize(640, ResampleMethod=1)
    editor.Tool = kestrel.ipToolPan
    width: int = editor.Image.Width
    commands: int = len(editor.Commands)
    caption: str = editor.Commands["btnFileOpen"].Caption
    for command in editor.Commands:
        command.Visible = True
    tool: kestrel.ImageProcessingToolConstants = editor.Tool
    picture, size_type = editor.Control.GetThumbnailEx(kestrel.tstPercentage, 20)
    view = editor.Control.ImageControl
    view.DoubleBuffer = True
    view.BackgroundImage = None
    print(width, commands, caption, tool, picture.Width, size_type + 1)

    with kestrel.batch():
        point = kestrel.Point()
        point.X = 5
    kestrel.run(editor, timeout=1.5)

    editor.Resize("640")  # error: arg-type
    editor.OpenImage(Name="a.png")  # error: call-arg
    editor.Visible = True  # error: misc
    editor.Title = 5  # error: assignment
    editor.Rotate()  # error: call-arg
    number: int = editor.Filename  # error: assignment
    view.DoubleBuffer = "yes"  # error: assignment


def listen(editor: kestrel.ImageProcessingCtl) -> None:
    def save(event: kestrel.Event) -> str:
        return "/tmp/picture.png"

    connection = editor.on("RequestSaveFilename", save)
    connection.disconnect()
    editor.on("ToolChange", lambda event: print(event.Tool.name))
    editor.on("SimpleSaveRequest", lambda event: setattr(event, "Saved", True))

    editor.on("NoSuchEvent", save)  # error: call-overload
    editor.on("Change", 5)  # error: call-overload
    editor.on("ToolChange", lambda event: event.Tool + "")  # error: call-overload
