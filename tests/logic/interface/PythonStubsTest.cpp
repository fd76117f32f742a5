#include "tools/interface/PythonStubs.h"

#include "Passages.h"
#include "host/dispatch/Registry.h"

namespace kestrel::tools {
namespace {

using namespace dispatch;
using testing::HasSubstr;

class PythonStubs : public testing::Test {
 protected:
  /// What is indented below the head of a class.
  std::string Body(const std::string& head) const {
    return passage(text_, "\nclass " + head + ":\n", "\n\n");
  }
  /// A class of the interface, whose members follow an empty line.
  std::string Class(std::string_view name) const {
    const std::string base = name == "Picture" ? "(PictureBase)" : "(Object)";
    return passage(text_, "\nclass " + std::string(name) + base + ":\n", "\nclass ");
  }

  const std::string text_ = pythonStubs();
};

TEST_F(PythonStubs, HaveEachMemberOfEachClass) {
  for (const ClassDescription* owner : Classes()) {
    const std::string body = Class(owner->name);
    for (const Member& member : owner->members) {
      SCOPED_TRACE(std::string(owner->name) + "." + std::string(member.name));
      const std::string name(member.name);
      if (member.isMethod) {
        EXPECT_THAT(body, HasSubstr("\n    def " + name + "(self"));
      } else if (member.call) {
        EXPECT_THAT(body, HasSubstr("\n    @property\n    def " + name + "(self) -> "));
        EXPECT_EQ(countOf(body, "\n    @" + name + ".setter\n"), member.put ? 1U : 0U);
      } else {
        EXPECT_THAT(body, HasSubstr("\n    " + name + ": _WriteOnly["));
      }
    }
  }
}

TEST_F(PythonStubs, HaveEachEventOfEachClassWithItsArguments) {
  for (const ClassDescription* owner : Classes()) {
    const std::string body = Class(owner->name);
    for (const EventDescription& event : owner->events) {
      const std::string type = "_" + std::string(owner->name) + "_" + std::string(event.name);
      const std::string start = "def on(self, event: Literal[\"" + std::string(event.name) + "\"], handler: ";
      EXPECT_THAT(body, HasSubstr(start + "_Handler[" + type + "]) -> Connection:\n"));
      EXPECT_THAT(body, HasSubstr(start + "None = None) -> _Decorator[" + type + "]: ...\n"));
      const std::string arguments = Body(type + "(Event)");
      for (const Parameter& parameter : event.parameters) {
        const std::string name(parameter.name);
        EXPECT_THAT(arguments + "\n",
                    HasSubstr(parameter.inOut ? "\n    " + name + ": "
                                              : "\n    @property\n    def " + name + "(self)"));
      }
    }
  }
}

TEST_F(PythonStubs, HaveEachValueOfEachEnumerationInItsClassAndInThePackage) {
  for (const EnumerationDescription* enumeration : Enumerations()) {
    const std::string owner(enumeration->name);
    const std::string body = passage(text_, "\nclass " + owner + "(IntEnum):\n", "\nclass ");
    for (const EnumerationValue& value : enumeration->values) {
      const std::string name(value.name);
      EXPECT_THAT(body, HasSubstr("\n    " + name + " = " + std::to_string(value.value) + "\n"));
      EXPECT_THAT(body, HasSubstr("\n" + name + ": Final = " + owner + "." + name + "\n"));
    }
  }
}

TEST_F(PythonStubs, HaveTypesAndDefaults) {
  const std::string editor = Class("ImageProcessingCtl");
  EXPECT_THAT(editor, HasSubstr("def OpenImage(self, Filename: _Text = \"\") -> bool:\n"));
  EXPECT_THAT(editor, HasSubstr("def Rotate(self, Angle: float, BackColor: int = -1, "
                                "ApplyToSelection: bool = False) -> None:\n"));
  EXPECT_THAT(editor, HasSubstr("def Tool(self) -> kestrel.ImageProcessingToolConstants:\n"));
  // Nothing while there is no picture.
  EXPECT_THAT(editor, HasSubstr("def Image(self) -> kestrel.Image | Any:\n"));
  EXPECT_THAT(editor, HasSubstr("def Commands(self) -> kestrel.Commands:\n"));
  // The in-out argument is returned behind the result.
  EXPECT_THAT(editor, HasSubstr("def GetThumbnailEx(self, SizeType: kestrel.ThumbnailSizeTypeEnum | int, "));
  EXPECT_THAT(editor, HasSubstr(") -> tuple[kestrel.Picture | Any, int]:\n"));
  EXPECT_THAT(Class("FolderTreeView"),
              HasSubstr("def NewFolder(self, ParentForm: kestrel.Form | None = None) -> str:\n"));
  EXPECT_THAT(Class("Commands"), HasSubstr("def __getitem__(self, index: Any) -> kestrel.Command: ...\n"));
  EXPECT_THAT(Class("Commands"), HasSubstr("def __iter__(self) -> Iterator[kestrel.Command]: ...\n"));
}

}  // namespace
}  // namespace kestrel::tools
