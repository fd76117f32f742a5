#include "tools/interface/ReferenceBook.h"

#include "Passages.h"
#include "base/RuntimeError.h"
#include "host/dispatch/Errors.h"
#include "host/dispatch/Registry.h"

namespace kestrel::tools {
namespace {

using namespace dispatch;
using testing::HasSubstr;

class ReferenceBook : public testing::Test {
 protected:
  std::string Section(std::string_view heading) const {
    return passage(text_, "\n## " + std::string(heading) + "\n", "\n## ");
  }
  /// The row of a table whose first cell is the member or event of that name.
  static std::string Row(const std::string& section, std::string_view header, std::string_view name) {
    const std::string table = passage(section, "\n| " + std::string(header) + " |", "\n\n");
    const std::string start = "\n| `" + std::string(name);
    return passage(table, start + (table.find(start + "(") != std::string::npos ? "(" : "`"), "\n");
  }

  const std::string text_ = referenceBook();
};

TEST_F(ReferenceBook, HasEachMemberOfEachClassWithItsNumber) {
  for (const ClassDescription* owner : Classes()) {
    const std::string section = Section(owner->name);
    for (const Member& member : owner->members) {
      SCOPED_TRACE(std::string(owner->name) + "." + std::string(member.name));
      EXPECT_THAT(Row(section, member.isMethod ? "method" : "property", member.name),
                  HasSubstr("| " + std::to_string(member.number) + " | "));
    }
    for (const EventDescription& event : owner->events) {
      SCOPED_TRACE(std::string(owner->name) + "." + std::string(event.name));
      EXPECT_THAT(Row(section, "event", event.name), HasSubstr("| " + std::to_string(event.number) + " | "));
    }
  }
}

TEST_F(ReferenceBook, HasEachValueOfEachEnumeration) {
  for (const EnumerationDescription* enumeration : Enumerations()) {
    const std::string section = Section(enumeration->name);
    for (const EnumerationValue& value : enumeration->values) {
      EXPECT_THAT(section, HasSubstr("\n| `" + std::string(value.name) + "` | " +
                                     std::to_string(value.value) + " |\n"));
    }
  }
}

TEST_F(ReferenceBook, HasTheErrorsOfMembersAndOfLateBinding) {
  const std::string section = Section("Errors");
  for (const std::int32_t number :
       {err::kFileNotFound, err::kObjectNotSet, err::kNoSuchMember, err::kWrongThread}) {
    EXPECT_THAT(section, HasSubstr("\n| " + std::to_string(number) + " | "));
  }
  EXPECT_THAT(section, HasSubstr("| 91 | the object is Nothing, or does not exist any more |"));
}

TEST_F(ReferenceBook, HasAnIndexOfAllMembersAndEventsIgnoringCase) {
  const std::string index = Section("Index");
  for (const ClassDescription* owner : Classes()) {
    for (const Member& member : owner->members) {
      EXPECT_THAT(index, HasSubstr("\n| `" + std::string(member.name) + "` | ")) << owner->name;
    }
    for (const EventDescription& event : owner->events) {
      EXPECT_THAT(index, HasSubstr("\n| `" + std::string(event.name) + "` | ")) << owner->name;
    }
  }
  EXPECT_LT(index.find("| `Height` |"), index.find("| `hWnd` |"));
  EXPECT_LT(index.find("| `hWnd` |"), index.find("| `Image` |"));
}

TEST_F(ReferenceBook, ListsClassesByTheWayToGetTheirObjects) {
  EXPECT_THAT(
      passage(text_, "| class that a host creates |", "\n\n"),
      HasSubstr("| [ImageProcessing](#imageprocessing) | The image editor in a window of its own. |"));
  EXPECT_THAT(passage(text_, "| control that a host embeds |", "\n\n"),
              HasSubstr("[ImageProcessingCtl](#imageprocessingctl)"));
  EXPECT_THAT(passage(text_, "| class of the objects that these hand out |", "\n\n"),
              HasSubstr("[Thumbnails](#thumbnails)"));
  EXPECT_THAT(Section("UndoPoint"), HasSubstr("Objects come from [ImageView](#imageview).CreateUndoPoint."));
}

TEST_F(ReferenceBook, ShowsTypesDefaultsAndDirectionsOfArguments) {
  const std::string section = Section("ImageProcessingCtl");
  EXPECT_THAT(section,
              HasSubstr("| `Resize(Width: Int32, Height: Int32 = 0, ResampleMethod: Int32 = 0)` |  | "));
  EXPECT_THAT(section, HasSubstr("| `Undo()` |  | 64 | Undoes the latest step. |"));
  EXPECT_THAT(section, HasSubstr("| `OpenImage(Filename: String = \"\")` | Boolean | "));
  EXPECT_THAT(section,
              HasSubstr("| `RequestOpenFilename(ref Filename: String, ref CancelDefault: Boolean)` | "));
  EXPECT_THAT(section, HasSubstr("| `Image` | [Image](#image) | read | "));
  EXPECT_THAT(section, HasSubstr("| `BackColor` | Color | read, write | "));
  EXPECT_THAT(Section("FolderTreeView"), HasSubstr("| `NewFolder(ParentForm: Form = Nothing)` | String | "));
}

TEST_F(ReferenceBook, KeepsTheCellsOfATableTogether) {
  // "|" separates cells, also in code.
  EXPECT_THAT(Row(Section("ImgXDialog"), "property", "Filter"), HasSubstr("joined by \"\\|\";"));
}

}  // namespace
}  // namespace kestrel::tools
