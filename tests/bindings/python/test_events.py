"""Events: arguments, answers, connections, and exceptions of handlers."""

import gc
import traceback
import unittest
import weakref
from typing import Any, List
from unittest import mock

from support import BatchCase, standard_error

import kestrel
from kestrel._calls import keep_failure


class SinkCase(BatchCase):
    """A sink raises the event of each member that is called."""

    def setUp(self) -> None:
        super().setUp()
        self.sink = kestrel.IImageEvents()
        self.addCleanup(lambda: vars(self).pop("sink"))

    def save(self) -> tuple:
        return self.sink.RequestSaveFilename("a.png", False)


class Arguments(SinkCase):
    def test_are_attributes_in_any_case(self) -> None:
        seen: List[Any] = []
        self.sink.on("imagesave", lambda event: seen.append((event.Filename, event.filename, repr(event), dir(event))))
        self.sink.ImageSave("\u00e4.png")
        self.assertEqual(seen, [("\u00e4.png", "\u00e4.png", "<ImageSave(Filename='\u00e4.png')>", ["Filename"])])

    def test_that_are_in_out_are_answered_by_assignment(self) -> None:
        def answer(event: kestrel.Event) -> None:
            event.filename = "b.png"
            event.CancelDefault = True
            self.assertEqual((event.Filename, event.CancelDefault), ("b.png", True))

        self.sink.on("RequestSaveFilename", answer)
        self.assertEqual(self.save(), ("b.png", True))

    def test_are_answered_by_a_result(self) -> None:
        for result, answer in [
            (None, ("a.png", False)),
            ("b.png", ("b.png", False)),
            (self.folder / "b.png", (str(self.folder / "b.png"), False)),
            (("b.png", True), ("b.png", True)),
            ({"CancelDefault": True}, ("a.png", True)),
            ({"canceldefault": 1, "FILENAME": ""}, ("", True)),
        ]:
            with self.subTest(result=result):
                with self.sink.on("RequestSaveFilename", lambda event, result=result: result):
                    self.assertEqual(self.save(), answer)

    def test_a_result_is_ignored_where_nothing_is_in_out(self) -> None:
        self.sink.on("ImageOpen", lambda event: 5)
        self.assertIsNone(self.sink.ImageOpen("a.png"))

    def test_answers_go_to_the_next_handler(self) -> None:
        self.sink.on("RequestSaveFilename", lambda event: event.Filename + "1")
        self.sink.on("RequestSaveFilename", lambda event: event.Filename + "2")
        self.assertEqual(self.save(), ("a.png12", False))

    def test_texts_of_any_length_and_kind(self) -> None:
        for text in ["", "\U0001f34e" * 1000, "a" * 100_000]:
            with self.subTest(length=len(text)), self.sink.on("RequestSaveFilename", lambda event, text=text: text):
                self.assertEqual(self.save()[0], text)

    def test_that_are_not_in_out_cannot_be_assigned(self) -> None:
        def answer(event: kestrel.Event) -> None:
            event.Filename = "b.png"

        self.sink.on("ImageSave", answer)
        self.assert_error(383, None, lambda: self.sink.ImageSave("a.png"))

    def test_that_do_not_exist(self) -> None:
        self.sink.on("ImageSave", lambda event: event.Color)
        self.assert_error(438, None, lambda: self.sink.ImageSave("a.png"))
        self.sink.on("RequestSaveFilename", lambda event: {"Color": 5})
        self.assert_error(438, None, self.save)

    def test_of_the_wrong_type_are_errors_of_the_handler(self) -> None:
        for result, position in [(5, 1), (("b.png", "yes"), 2), ({"CancelDefault": None}, 2), (("b.png",), None)]:
            with self.subTest(result=result):
                with self.sink.on("RequestSaveFilename", lambda event, result=result: result):
                    self.assert_error(5 if position is None else 13, position, self.save)

    def test_can_be_read_but_not_answered_after_the_event(self) -> None:
        kept: List[kestrel.Event] = []
        self.sink.on("RequestSaveFilename", lambda event: kept.append(event) or "b.png")
        self.save()
        self.assertEqual(kept[0].Filename, "b.png")

        def answer() -> None:
            kept[0].Filename = "c.png"

        self.assert_error(5, None, answer)


class Connections(SinkCase):
    def setUp(self) -> None:
        super().setUp()
        self.seen: List[int] = []

    def count(self, number: int) -> Any:
        return lambda event: self.seen.append(number)

    def test_are_called_in_order(self) -> None:
        for number in range(3):
            self.sink.on("ImageOpen", self.count(number))
        self.sink.ImageOpen("a.png")
        self.assertEqual(self.seen, [0, 1, 2])

    def test_by_a_decorator(self) -> None:
        @self.sink.on("ImageOpen")
        def opened(event: kestrel.Event) -> None:
            self.seen.append(1)

        self.sink.ImageOpen("a.png")
        self.assertTrue(callable(opened))
        self.assertEqual(self.seen, [1])

    def test_end_once(self) -> None:
        connection = self.sink.on("ImageOpen", self.count(1))
        self.assertTrue(connection.connected)
        connection.disconnect()
        connection.disconnect()
        self.assertFalse(connection.connected)
        self.sink.ImageOpen("a.png")
        self.assertEqual(self.seen, [])

    def test_end_with_the_statement(self) -> None:
        with self.sink.on("ImageOpen", self.count(1)):
            self.sink.ImageOpen("a.png")
        self.sink.ImageOpen("a.png")
        self.assertEqual(self.seen, [1])

    def test_end_within_the_event(self) -> None:
        def once(event: kestrel.Event) -> None:
            first.disconnect()
            second.disconnect()
            self.seen.append(0)

        first = self.sink.on("ImageOpen", once)
        second = self.sink.on("ImageOpen", self.count(1))
        self.sink.ImageOpen("a.png")
        self.sink.ImageOpen("a.png")
        self.assertEqual(self.seen, [0])

    def test_made_within_the_event_begin_with_the_next(self) -> None:
        self.sink.on("ImageOpen", lambda event: self.sink.on("ImageOpen", self.count(1)) and None)
        self.sink.ImageOpen("a.png")
        self.assertEqual(self.seen, [])
        self.sink.ImageOpen("a.png")
        self.assertEqual(self.seen, [1])

    def test_to_what_is_no_event_or_no_handler(self) -> None:
        self.assert_error(459, None, lambda: self.sink.on("ImageClose", print))
        self.assert_error(459, None, lambda: kestrel.Options().on("Change", print))
        with self.assertRaises(TypeError):
            self.sink.on("ImageOpen", "print")

    def test_of_a_part_last_as_long_as_the_whole(self) -> None:
        editor = self.started()
        tools: List[Any] = []
        editor.Control.on("ToolChange", lambda event: tools.append(event.Tool))
        gc.collect()
        editor.Tool = kestrel.ipToolPan
        self.assertEqual(tools, [kestrel.ipToolPan])
        self.assertIsInstance(tools[0], kestrel.ImageProcessingToolConstants)

    def test_of_a_part_keep_the_whole(self) -> None:
        control = self.started().Control
        tools: List[Any] = []
        control.on("ToolChange", lambda event: tools.append(event.Tool))
        gc.collect()
        control.Tool = kestrel.ipToolPan
        self.assertEqual(tools, [kestrel.ipToolPan])

    def test_do_not_keep_the_object(self) -> None:
        editor = self.started()
        control = weakref.ref(editor)
        connection = editor.on("ImageOpen", lambda event: editor.Filename)
        del editor
        connection = None  # noqa: F841
        gc.collect()
        self.assertIsNone(control())

    def test_outlive_the_object(self) -> None:
        editor = self.started()
        connection = editor.on("ImageOpen", print)
        editor.Terminate()
        del editor
        gc.collect()
        connection.disconnect()
        self.assertFalse(connection.connected)


class Failures(SinkCase):
    def test_reach_the_caller_as_they_are(self) -> None:
        failure = KeyError("a.png")

        def fail(event: kestrel.Event) -> None:
            raise failure

        self.sink.on("ImageOpen", fail)
        try:
            self.sink.ImageOpen("a.png")
            self.fail("nothing was raised")
        except KeyError as caught:
            self.assertIs(caught, failure)
            self.assertIn("fail", [frame.name for frame in traceback.extract_tb(caught.__traceback__)])
        self.assertIsNone(self.sink.ImageSave("a.png"))

    def test_of_any_class(self) -> None:
        for kind in (SystemExit, KeyboardInterrupt, GeneratorExit, AttributeError, kestrel.Error):
            arguments = (5, "Five.") if kind is kestrel.Error else (5,)
            with self.subTest(kind=kind):

                def fail(event: kestrel.Event, failure: BaseException = kind(*arguments)) -> None:
                    raise failure

                with self.sink.on("ImageOpen", fail), self.assertRaises(kind):
                    self.sink.ImageOpen("a.png")

    def test_the_first_is_raised_and_further_ones_are_reported(self) -> None:
        def fail(event: kestrel.Event) -> None:
            raise KeyError(event.Filename)

        def fail_too(event: kestrel.Event) -> None:
            raise ValueError("the second")

        self.sink.on("ImageOpen", fail)
        self.sink.on("ImageOpen", fail_too)
        with standard_error() as printed, self.assertRaises(KeyError):
            self.sink.ImageOpen("a.png")
        self.assertIn("ValueError: the second", printed[0])

    def test_can_be_caught_in_another_handler(self) -> None:
        other = kestrel.IImageEvents()
        caught: List[BaseException] = []

        def fail(event: kestrel.Event) -> None:
            raise KeyError(event.Filename)

        def outer(event: kestrel.Event) -> None:
            try:
                other.ImageSave(event.Filename)
            except KeyError as error:
                caught.append(error)

        other.on("ImageSave", fail)
        self.sink.on("ImageOpen", outer)
        self.sink.ImageOpen("a.png")
        self.assertEqual(len(caught), 1)

    def test_cancel_what_was_requested(self) -> None:
        """Without it the editor would ask the user."""
        editor = self.started()

        def fail(event: kestrel.Event) -> None:
            raise ValueError("no name")

        editor.on("RequestOpenFilename", fail)
        with standard_error() as printed, self.assertRaisesRegex(ValueError, "no name"):
            editor.OpenImage()
        self.assertEqual(printed, [""])
        self.assertIsNone(editor.Image)

    def test_of_a_read_are_not_taken_for_a_missing_member(self) -> None:
        """Python asks __getattr__ after an AttributeError of a property."""
        editor = self.started()
        failure = AttributeError("the handler's own")

        def raise_event(*arguments: Any) -> int:
            keep_failure(failure)
            return 0

        with mock.patch("kestrel._objects._invoke", raise_event), self.assertRaises(AttributeError) as caught:
            editor.Title
        self.assertIs(caught.exception, failure)
        self.assertFalse(hasattr(editor, "Titel"))

    def test_of_an_assignment(self) -> None:
        editor = self.started()

        def fail(event: kestrel.Event) -> None:
            raise AttributeError("the handler's own")

        editor.Control.on("ToolChange", fail)
        with self.assertRaisesRegex(AttributeError, "the handler's own"):
            editor.Tool = kestrel.ipToolPan
        self.assertIs(editor.Tool, kestrel.ipToolPan)


class Editor(BatchCase):
    def test_asks_the_host_for_names(self) -> None:
        editor = self.started()
        file = self.picture_file()
        target = self.folder / "b.png"
        events: List[Any] = []
        editor.on("RequestOpenFilename", lambda event: (file, True))
        editor.on("RequestSaveFilename", lambda event: (target, True))
        editor.on("ImageOpen", lambda event: events.append(("open", event.Filename)))
        editor.on("ImageSave", lambda event: events.append(("save", event.Filename)))
        self.assertTrue(editor.OpenImage())
        self.assertTrue(editor.SaveImageAs())
        self.assertEqual(events, [("open", str(file)), ("save", str(target))])
        self.assertTrue(target.exists())

    def test_can_be_ended_by_a_handler(self) -> None:
        editor = self.started()
        editor.on("ImageOpen", lambda event: editor.Terminate())
        editor.OpenImage(self.picture_file())
        self.assert_error(91, None, lambda: editor.Image)

    def test_can_be_released_by_a_handler(self) -> None:
        editors = [self.started()]
        watched = weakref.ref(editors[0])
        editors[0].on("ImageOpen", lambda event: editors.clear())
        editors[0].OpenImage(self.picture_file())
        gc.collect()
        self.assertIsNone(watched())

    def test_can_be_used_by_a_handler(self) -> None:
        editor = self.started()
        second = self.picture_file("b.png", 20, 10)
        sizes: List[Any] = []

        def opened(event: kestrel.Event) -> None:
            sizes.append((editor.Image.Width, editor.Image.Height))
            if len(sizes) == 1:
                editor.OpenImage(second)

        editor.on("ImageOpen", opened)
        editor.OpenImage(self.picture_file())
        self.assertEqual(sizes, [(40, 30), (20, 10)])

    def test_notifies_a_sink(self) -> None:
        editor = self.started()
        sink = kestrel.IImageEvents()
        names: List[str] = []
        sink.on("ImageOpen", lambda event: names.append(event.Filename))
        editor.Control.EventSink = sink
        file = self.picture_file()
        editor.OpenImage(file)
        self.assertEqual(names, [str(file)])
        editor.Control.EventSink = None
        editor.OpenImage(file)
        self.assertEqual(len(names), 1)


if __name__ == "__main__":
    unittest.main()
