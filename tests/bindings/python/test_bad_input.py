"""Each member of each object that a host can reach, called wrongly: an error with a number and a sentence."""

import unittest
from typing import Any, Dict, Iterator, List

from support import BatchCase, new_picture, standard_error

import kestrel

#: What ends or blocks the objects under test when it succeeds.
ENDS = {"terminate", "remove"}


def members_of(target: kestrel.Object) -> Iterator[Any]:
    return iter(type(target)._info.members())


class BadInput(BatchCase):
    def reachable(self) -> Dict[str, kestrel.Object]:
        """An object of each class that properties lead to, from those that hosts create."""
        editor = self.started()
        editor.OpenImage(self.picture_file())
        found: Dict[str, kestrel.Object] = {}
        queue: List[kestrel.Object] = [editor, new_picture().Writer.ToPicture()]
        for name in kestrel.__all__:
            kind = getattr(kestrel, name)
            if isinstance(kind, type) and issubclass(kind, kestrel.Object) and name != "Picture":
                try:
                    queue.append(kind())
                except kestrel.Error as error:
                    self.assertEqual(error.number, 429)
        while queue:
            target = queue.pop(0)
            if type(target).__name__ in found:
                continue
            found[type(target).__name__] = target
            for member in members_of(target):
                if member.is_method or member.needs_arguments:
                    continue
                try:
                    value = getattr(target, member.name)
                except kestrel.Error:
                    continue
                if isinstance(value, kestrel.Object):
                    queue.append(value)
            if type(target)._info.is_collection:
                queue += list(target)[:1]
        return found

    def expect_error(self, act: Any, numbers: set) -> None:
        error = self.error_of(act)
        self.assertIn(error.number, numbers, str(error))
        self.assertNotEqual(error.description, "")

    def test_calls_of_each_member(self) -> None:
        found = self.reachable()
        self.assertGreater(len(found), 30, sorted(found))
        for name, target in found.items():
            for member in members_of(target):
                with self.subTest(kind=name, member=member.name):
                    self.call_wrongly(target, member)

    def call_wrongly(self, target: kestrel.Object, member: Any) -> None:
        if not member.is_method and not member.needs_arguments:
            if not member.can_set:
                self.expect_error(lambda: setattr(target, member.name, 1), {383})
            else:
                self.expect_error(lambda: setattr(target, member.name, object()), {13})
            return
        call = getattr(target, member.name)
        many = [0] * (len(member.parameters) + 1)
        self.expect_error(lambda: call(*many), {450})
        self.expect_error(lambda: call(NoSuchArgument=0), {448, 450})
        if member.needs_arguments:
            self.expect_error(lambda: call(), {449})
        for at, parameter in enumerate(member.parameters):
            arguments = [kestrel.Omitted] * len(member.parameters)
            arguments[at] = object()
            self.expect_error(lambda: call(*arguments), {13})
            if member.name.lower() not in ENDS and parameter.type_name and not parameter.nullable and at == 0:
                arguments[at] = new_picture()
                if parameter.type_name != "ImgX":
                    self.expect_error(lambda: call(*arguments), {13, 449})

    def test_each_member_after_the_end(self) -> None:
        with standard_error():
            found = self.reachable()
        kestrel.stop()
        for name, target in found.items():
            for member in members_of(target):
                with self.subTest(kind=name, member=member.name):
                    if member.is_method:
                        self.expect_error(lambda: getattr(target, member.name)(), {91})
                    elif member.needs_arguments:
                        self.expect_error(lambda: getattr(target, member.name)(1), {91})
                    else:
                        self.expect_error(lambda: getattr(target, member.name), {91})
        kestrel.batch()


if __name__ == "__main__":
    unittest.main()
