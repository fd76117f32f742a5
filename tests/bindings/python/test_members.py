"""Members of objects: names, arguments, results, collections, enumerations, texts and errors."""

import copy
import enum
import inspect
import pickle
import pydoc
import unittest

from support import COLOR, BatchCase, new_picture

import kestrel


class Names(BatchCase):
    def test_are_found_in_any_case(self) -> None:
        editor = self.started()
        editor.title = "Pictures"
        self.assertEqual(editor.TITLE, "Pictures")
        self.assertEqual(editor.Title, "Pictures")
        self.assertTrue(editor.openimage(self.picture_file()))

    def test_an_unknown_one_is_error_438_and_no_attribute(self) -> None:
        editor = self.started()
        error = self.error_of(lambda: editor.Zoom)
        self.assertEqual((error.number, error.source), (438, "ImageProcessing"))
        self.assertEqual(error.description, 'ImageProcessing has no member "Zoom".')
        self.assertIsInstance(error, AttributeError)
        self.assertFalse(hasattr(editor, "Zoom"))
        self.assertEqual(getattr(editor, "Zoom", 5), 5)

    def test_an_unknown_one_cannot_be_assigned(self) -> None:
        editor = self.started()

        def assign() -> None:
            editor.Titel = "Pictures"

        self.assert_error(438, None, assign)

    def test_of_no_text(self) -> None:
        editor = self.started()
        self.assertFalse(hasattr(editor, "Ti\0tle"))
        self.assertFalse(hasattr(editor, "Titel\u00e4"))
        self.assert_error(448, None, lambda: editor.OpenImage(**{"File\0name": ""}))

    def test_of_a_subclass_can_be_its_own(self) -> None:
        class Editor(kestrel.ImageProcessing):
            def __init__(self) -> None:
                super().__init__()
                self.opened = 0
                self.Initialize()

            def open(self, file: object) -> None:
                self.opened += self.OpenImage(file)

        editor = Editor()
        editor.open(self.picture_file())
        self.assertEqual(editor.opened, 1)


class Properties(BatchCase):
    def test_are_read_and_assigned(self) -> None:
        editor = self.started()
        editor.ShowClose = True
        self.assertIs(editor.ShowClose, True)
        editor.ShowClose = 0
        self.assertIs(editor.ShowClose, False)
        editor.Title = "\u00c4pfel \U0001f34e"
        self.assertEqual(editor.Title, "\u00c4pfel \U0001f34e")
        options = editor.Options
        options.JPEGQuality = 33
        self.assertEqual(editor.Options.JPEGQuality, 33)

    def test_a_number_may_be_a_text_and_is_rounded_to_even(self) -> None:
        options = kestrel.Options()
        options.JPEGQuality = "44"
        self.assertEqual(options.JPEGQuality, 44)
        options.JPEGQuality = 50.5
        self.assertEqual(options.JPEGQuality, 50)

    def test_read_only_is_error_383(self) -> None:
        editor = self.started()

        def assign() -> None:
            editor.Visible = True

        self.assert_error(383, None, assign)

    def test_write_only_is_error_394(self) -> None:
        view = self.started().Control.ImageControl
        view.DoubleBuffer = True
        self.assert_error(394, None, lambda: view.DoubleBuffer)

    def test_nothing_can_be_assigned_to_a_method(self) -> None:
        editor = self.started()

        def assign() -> None:
            editor.OpenImage = "a.png"

        self.assert_error(438, None, assign)
        self.assertFalse(editor.OpenImage(self.folder / "missing.png"))

    def test_a_wrong_value_is_an_error_of_position_1(self) -> None:
        options = kestrel.Options()
        for value, number in [("many", 13), (10**12, 6), (1e300, 6), (None, 91), (options, 13), (10**30, 6)]:
            with self.subTest(value=value):

                def assign() -> None:
                    options.JPEGQuality = value

                self.assert_error(number, 1, assign)

    def test_nothing_is_none(self) -> None:
        editor = self.started()
        self.assertIsNone(editor.Image)
        editor.OpenImage(self.picture_file())
        self.assertEqual((editor.Image.Width, editor.Image.Height), (40, 30))

    def test_with_arguments_are_called_or_indexed(self) -> None:
        commands = self.started().Commands
        self.assertEqual(commands.Item(1), commands.Item[1])
        self.assertEqual(commands.Item(Index="btnFileOpen").Name, "btnFileOpen")


class Methods(BatchCase):
    def setUp(self) -> None:
        super().setUp()
        self.editor = self.started()
        self.addCleanup(lambda: vars(self).pop("editor"))
        self.editor.OpenImage(self.picture_file())

    def size(self) -> tuple:
        return (self.editor.Image.Width, self.editor.Image.Height)

    def test_take_arguments_by_position_and_by_name(self) -> None:
        self.editor.Resize(20)
        self.assertEqual(self.size(), (20, 15))
        self.editor.Resize(height=10, WIDTH=12)
        self.assertEqual(self.size(), (12, 10))
        self.editor.Resize(24, Height=9)
        self.assertEqual(self.size(), (24, 9))

    def test_an_omitted_argument_has_its_default(self) -> None:
        self.editor.Resize(20, kestrel.Omitted, 0)
        self.assertEqual(self.size(), (20, 15))
        self.editor.Resize(40, Height=kestrel.Omitted)
        self.assertEqual(self.size(), (40, 30))

    def test_a_wrong_number_of_arguments_is_error_450(self) -> None:
        self.assert_error(450, None, lambda: self.editor.Undo(1))
        self.assert_error(450, None, lambda: self.editor.Resize(1, 2, 3, 4))
        self.assert_error(450, None, lambda: self.editor.Resize(*range(40)))

    def test_a_missing_argument_is_error_449_with_its_position(self) -> None:
        self.assert_error(449, 1, lambda: self.editor.Resize())
        self.assert_error(449, 3, lambda: self.editor.SetSelection(1, 2))
        self.assert_error(449, 1, lambda: self.editor.Resize(kestrel.Omitted))

    def test_a_wrong_name_is_error_448(self) -> None:
        self.assert_error(448, None, lambda: self.editor.Resize(20, Depth=3))
        self.assert_error(448, None, lambda: self.editor.Resize(20, Width=20))

    def test_a_wrong_type_is_error_13_with_its_position(self) -> None:
        self.assert_error(13, 2, lambda: self.editor.Resize(20, "high"))
        self.assert_error(13, 3, lambda: self.editor.SetSelection(1, 2, object(), 4))
        self.assert_error(13, 1, lambda: self.editor.Resize([20]))
        self.assert_error(6, 2, lambda: self.editor.Resize(20, 2**40))
        self.assert_error(6, 2, lambda: self.editor.Resize(20, 2**80))

    def test_a_path_is_a_text(self) -> None:
        target = self.folder / "\u00fc.png"
        self.assertTrue(self.editor.SaveImageAs(target))
        self.assertTrue(target.exists())
        self.assertEqual(self.editor.Filename, str(target))

    def test_numbers_of_numpy_are_numbers(self) -> None:
        import numpy

        self.editor.Resize(numpy.int64(20), numpy.float32(15))
        self.assertEqual(self.size(), (20, 15))
        self.editor.ShowClose = numpy.bool_(True)
        self.assertIs(self.editor.ShowClose, True)

    def test_objects_are_arguments(self) -> None:
        start, end = kestrel.Point(), kestrel.Point()
        end.X, end.Y = 10, 10
        picture = new_picture()
        picture.Draw.Color.Value = 0x000000FF
        picture.Draw.FillMode = 6
        picture.Draw.Rectangle(start, end)
        self.assertEqual(picture.Image.GetPixel(5, 5).Value, 0x000000FF)
        self.assertEqual(picture.Image.GetPixel(20, 20).Value, COLOR)
        self.assert_error(13, 1, lambda: picture.Draw.Rectangle(picture, end))
        self.assert_error(424, 2, lambda: picture.Draw.Rectangle(start, 5))
        self.assert_error(91, 2, lambda: picture.Draw.Rectangle(start, None))

    def test_in_out_arguments_are_returned(self) -> None:
        sink = kestrel.IImageEvents()
        self.assertEqual(sink.RequestSaveFilename("a.png", False), ("a.png", False))
        sink.on("RequestSaveFilename", lambda event: (event.Filename + "?", True))
        self.assertEqual(sink.RequestSaveFilename("a.png", False), ("a.png?", True))
        self.assertEqual(sink.RequestSaveFilename("a.png", canceldefault=False), ("a.png?", True))
        self.assertIsNone(sink.ImageOpen("a.png"))

    def test_errors_can_be_pickled(self) -> None:
        error = pickle.loads(pickle.dumps(self.error_of(lambda: self.editor.Resize("wide"))))
        self.assertEqual((error.number, error.source, error.position), (13, "ImageProcessing", 1))

    def test_errors_of_the_member_itself(self) -> None:
        error = self.error_of(lambda: self.editor.Image.GetPixel(40, 0))
        self.assertEqual(error.number, 5)
        self.assertEqual(str(error), f"{error.description} (5)")
        error = self.error_of(lambda: new_picture().Document.FromFile(self.folder / "missing.png"))
        self.assertNotEqual(error.number, 0)
        self.assertNotEqual(error.description, "")


class Collections(BatchCase):
    def setUp(self) -> None:
        super().setUp()
        self.commands = self.started().Commands
        self.addCleanup(lambda: vars(self).pop("commands"))

    def test_have_a_length(self) -> None:
        self.assertGreater(len(self.commands), 50)
        self.assertEqual(len(self.commands), self.commands.Count)

    def test_are_visited_in_order(self) -> None:
        names = [command.Name for command in self.commands]
        self.assertEqual(names, [self.commands(at).Name for at in range(1, len(self.commands) + 1)])
        self.assertEqual([command.Name for command in reversed(self.commands)], names[::-1])

    def test_are_indexed_from_1_or_by_name(self) -> None:
        first = self.commands[1]
        self.assertEqual(self.commands[first.Name], first)
        self.assertEqual(self.commands(first.Name).Name, first.Name)

    def test_an_element_that_is_none_is_a_lookup_error(self) -> None:
        for index in [0, -1, len(self.commands) + 1, "btnNone", ""]:
            with self.subTest(index=index), self.assertRaises(LookupError) as caught:
                self.commands[index]
            self.assertIsInstance(caught.exception, kestrel.Error)
        self.assert_error(450, None, lambda: self.commands[1, 2])
        self.assert_error(13, 1, lambda: self.commands[1:2])

    def test_contain_their_elements(self) -> None:
        self.assertIn("btnFileOpen", self.commands)
        self.assertNotIn("btnNone", self.commands)
        self.assertIn(self.commands[3], self.commands)
        self.assertNotIn(self.commands, self.commands)
        self.assertIn(1, self.commands)
        self.assertNotIn(0, self.commands)

    def test_other_objects_are_none(self) -> None:
        editor = self.started()
        with self.assertRaises(TypeError):
            len(editor)
        with self.assertRaises(TypeError):
            iter(editor)
        with self.assertRaises(TypeError):
            editor("btnFileOpen")


class Enumerations(BatchCase):
    def test_are_classes_of_numbers(self) -> None:
        tools = kestrel.ImageProcessingToolConstants
        self.assertTrue(issubclass(tools, enum.IntEnum))
        self.assertIs(kestrel.ipToolSelect, tools.ipToolSelect)
        self.assertEqual([one.name for one in kestrel.ThumbnailSizeTypeEnum], ["tstPercentage", "tstWidthInPixels"])
        self.assertEqual(kestrel.ipToolNone.name, "ipToolNone")

    def test_are_results_and_arguments(self) -> None:
        editor = self.started()
        editor.Tool = kestrel.ipToolPan
        self.assertIs(editor.Tool, kestrel.ipToolPan)
        editor.Tool = int(kestrel.ipToolSelect)
        self.assertIs(editor.Control.Tool, kestrel.ipToolSelect)
        control = editor.Control
        editor.OpenImage(self.picture_file())
        picture, size_type = control.GetThumbnailEx(kestrel.tstWidthInPixels, 20)
        self.assertEqual((picture.Width, size_type), (20, kestrel.tstWidthInPixels))

    def test_can_be_pickled(self) -> None:
        self.assertIs(pickle.loads(pickle.dumps(kestrel.ipToolPan)), kestrel.ipToolPan)
        self.assertIs(copy.copy(kestrel.Omitted), kestrel.Omitted)


class Objects(BatchCase):
    def test_of_one_object_are_equal(self) -> None:
        editor = self.started()
        self.assertEqual(editor.Control, editor.Control)
        self.assertEqual(hash(editor.Control), hash(editor.Control))
        self.assertNotEqual(editor.Control, editor)
        self.assertNotEqual(editor, self.started())
        self.assertNotEqual(editor, None)
        self.assertNotEqual(editor, 5)

    def test_have_the_class_of_the_interface(self) -> None:
        editor = self.started()
        self.assertIsInstance(editor, kestrel.Object)
        self.assertIs(type(editor.Commands[1]), kestrel.Command)
        self.assertEqual(repr(editor.Commands), "<kestrel.Commands object>")

    def test_that_hosts_cannot_create_are_error_429(self) -> None:
        for kind in (kestrel.Command, kestrel.ImageProcessingCtl, kestrel.Object):
            with self.subTest(kind=kind):
                self.assert_error(429, None, kind)
        with self.assertRaises(TypeError):
            kestrel.ImageProcessing(5)

    def test_are_not_copied(self) -> None:
        editor = self.started()
        for act in (copy.copy, copy.deepcopy, pickle.dumps):
            with self.subTest(act=act), self.assertRaises(TypeError):
                act(editor)


class Texts(BatchCase):
    def test_dir_lists_members(self) -> None:
        names = dir(kestrel.ImageProcessing())
        self.assertTrue({"OpenImage", "Title", "Commands", "on"} <= set(names))

    def test_dir_of_the_package_lists_classes_and_enumerations(self) -> None:
        names = dir(kestrel)
        expected = {"ImageProcessing", "ImageBrowser", "ImageProcessingToolConstants", "ipToolPan", "run", "Error"}
        self.assertTrue(expected <= set(names))
        self.assertEqual([name for name in names if not hasattr(kestrel, name)], [])
        self.assertFalse(hasattr(kestrel, "ImageProcessor"))

    def test_help_has_the_texts_of_the_interface(self) -> None:
        text = pydoc.plain(pydoc.render_doc(kestrel.ImageProcessing))
        self.assertIn("The image editor in a window of its own.", text)
        self.assertIn("Resize(self, /, Width: int, Height: int = 0, ResampleMethod: int = 0) -> None", text)
        self.assertIn("Resamples the picture to a size; height 0 keeps the aspect ratio.", text)
        self.assertIn("RequestSaveFilename(Filename (in-out), CancelDefault (in-out)): A name to save to is", text)

    def test_each_member_and_each_class_has_help_and_a_signature(self) -> None:
        for name in kestrel.__all__:
            kind = getattr(kestrel, name)
            self.assertTrue(name in ("Omitted",) or isinstance(kind, int) or kind.__doc__, name)
            if not (isinstance(kind, type) and issubclass(kind, kestrel.Object)):
                continue
            for member in kind._names.values():
                with self.subTest(kind=name, member=member):
                    found = getattr(kind, member)
                    self.assertTrue(found.__doc__)
                    if not isinstance(found, property):
                        self.assertEqual(next(iter(inspect.signature(found).parameters)), "self")

    def test_no_member_hides_what_objects_have_in_python(self) -> None:
        own = {name.lower() for name in dir(kestrel.Object)}
        for name in kestrel.__all__:
            kind = getattr(kestrel, name)
            if isinstance(kind, type) and issubclass(kind, kestrel.Object):
                self.assertEqual(own & set(kind._names), set(), name)

    def test_the_version_is_that_of_the_library(self) -> None:
        self.assertRegex(kestrel.__version__, r"^2\.\d+\.\d+$")


if __name__ == "__main__":
    unittest.main()
