#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Diagnostics.h"
#include "base/Collection.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/Colour.h"
#include "imaging/contract/Form.h"

namespace kestrel {
namespace {

enum Direction : std::int32_t { kLeft = 0, kRight = 1 };

struct Rectangle4 {
  int left, top, right, bottom;
};

/// A class with virtual functions but no type name.
class PictureWindow {
 public:
  virtual ~PictureWindow() = default;
};

TEST(VariableDump, WritesNoneWithoutVariables) {
  EXPECT_EQ(QDK_LOCALS(), "{None}");
  EXPECT_EQ(QDK_PARAMETERS(), "{None}");
  EXPECT_EQ(QDK_FIELDS(), "{None}");
}

TEST(VariableDump, RendersLocalsInTheirOrder) {
  const std::int32_t Count = 3;
  const std::string Name = "a.png";
  const bool Result = true;
  const float Zoom = 0.5F;
  EXPECT_EQ(QDK_LOCALS(Count, Name, Result, Zoom),
            "<Count>3</Count>\r\n<Name>a.png</Name>\r\n<Result>True</Result>\r\n<Zoom>0.5</Zoom>\r\n");
}

TEST(VariableDump, RendersNumbersOfAllSizes) {
  const std::uint8_t Byte = 200;
  const std::int16_t Short = -7;
  const std::size_t Length = 5;
  const std::int64_t Large = 6'000'000'000;
  const std::uint32_t Unsigned = 0xFFFFFFFFU;
  EXPECT_EQ(QDK_LOCALS(Byte, Short, Length, Large, Unsigned),
            "<Byte>200</Byte>\r\n<Short>-7</Short>\r\n<Length>5</Length>\r\n<Large>6000000000</Large>\r\n"
            "<Unsigned>4294967295</Unsigned>\r\n");
}

TEST(VariableDump, RendersEnumerationsAsNumbersAmongLocalsOnly) {
  const Direction Turn = kRight;
  EXPECT_EQ(QDK_LOCALS(Turn), "<Turn>1</Turn>\r\n");
  EXPECT_EQ(QDK_PARAMETERS(Turn), "<Turn>{Can't dump UDT parameters}</Turn>");
}

TEST(VariableDump, WritesAPlaceholderForRecords) {
  const Rectangle4 Area{1, 2, 3, 4};
  const std::int32_t After = 1;
  EXPECT_EQ(QDK_LOCALS(Area, After), "<Area>{Cannot dump external UDTs}</Area><After>1</After>\r\n");
  EXPECT_EQ(QDK_PARAMETERS(Area, After), "<Area>{Can't dump UDT parameters}</Area><After>1</After>\r\n");
}

TEST(VariableDump, RendersObjectsByTheirType) {
  Collection<std::string> Files;
  Files.Add("a");
  PictureWindow Window;
  PictureWindow* Lent = &Window;
  std::unique_ptr<PictureWindow> None;
  auto Shared = std::make_shared<PictureWindow>();
  std::weak_ptr<PictureWindow> Weak = Shared;
  Form* ParentForm = nullptr;
  EXPECT_EQ(QDK_LOCALS(Files, Window, Lent, None, Shared, Weak, ParentForm),
            "<Files>\r\n  <Files[1]>a</Files[1]>\r\n</Files>\r\n"
            "<Window>{PictureWindow}</Window>\r\n<Lent>{PictureWindow}</Lent>\r\n<None>{Nothing}</None>\r\n"
            "<Shared>{PictureWindow}</Shared>\r\n<Weak>{PictureWindow}</Weak>\r\n"
            "<ParentForm>{Nothing}</ParentForm>\r\n");
}

TEST(VariableDump, RendersValueObjectsByTheirType) {
  const Colour MaskColor(0x00336699);
  const Colour* Lent = &MaskColor;
  EXPECT_EQ(QDK_LOCALS(MaskColor, Lent), "<MaskColor>{Colour}</MaskColor>\r\n<Lent>{Colour}</Lent>\r\n");
  EXPECT_EQ(QDK_PARAMETERS(MaskColor), "<MaskColor>{Colour}</MaskColor>\r\n");
}

TEST(VariableDump, RendersArraysAndVectors) {
  const std::array<std::int16_t, 2> Ids{4, 5};
  const std::vector<std::string> Names{"x"};
  const std::vector<std::int32_t> Nothing;
  EXPECT_EQ(QDK_LOCALS(Ids, Names, Nothing),
            "<Ids>\r\n  <Ids Index=\"0\">4</Ids>\r\n  <Ids Index=\"1\">5</Ids>\r\n</Ids>\r\n"
            "<Names>\r\n  <Names Index=\"0\">x</Names>\r\n</Names>\r\n"
            "<Nothing>\r\n{UnInitialised Array}</Nothing>\r\n");
}

TEST(VariableDump, RendersOptionalsAsTheirValueOrEmpty) {
  const std::optional<std::int32_t> Some = 4, None;
  EXPECT_EQ(QDK_LOCALS(Some, None), "<Some>4</Some>\r\n<None>{Empty}</None>\r\n");
}

TEST(VariableDump, RendersTextsOfAllForms) {
  const char* const Pointer = "p";
  const std::string_view View = "v";
  const Variant Value("w");
  EXPECT_EQ(QDK_LOCALS(Pointer, View, Value),
            "<Pointer>p</Pointer>\r\n<View>v</View>\r\n<Value>w</Value>\r\n");
}

class BrokenList : public Object {
 public:
  std::string TypeName() const override { return "BrokenList"; }
  bool Enumerate(const std::function<void(const Variant&)>& visit) const override {
    visit(1);
    throw RuntimeError(err::kInvalidCall, "Broken.");
  }
};

TEST(VariableDump, SkipsAFieldThatCannotBeRead) {
  const std::int32_t pBefore = 1, pAfter = 2;
  const BrokenList pBroken;
  EXPECT_EQ(QDK_FIELDS(pBefore, pBroken, pAfter), "<pBefore>1</pBefore>\r\n<pAfter>2</pAfter>\r\n");
  EXPECT_THROW(QDK_LOCALS(pBroken), RuntimeError) << "a trailer's failure goes to the caller's";
}

class GlobalsDump : public Diagnostics {};

TEST_F(GlobalsDump, ShowsTheModulesFieldsInTheirOrder) {
  state().qdkProjectId = 77;
  state().qdkProcessId = 1234;
  state().qdkModuleFilename = "/opt/a";
  state().qdkDebuggerListening = true;
  state().qdkInstanceCountsServerHandle = 9;
  state().qdkInstanceCountComponentNames[1] = 12;
  state().qdkSkipInstanceCount[2] = true;
  state().qdkHasInitialised = true;
  state().qdkVariableDump = "<i>1</i>\r\n";
  state().qdkErrorNumber = 5;
  state().qdkErrorDescription = "Invalid.";
  state().qdkErrorLine = 275;
  state().qdkErrorSource = "engine";

  std::string expected =
      "<qdkProjectId>77</qdkProjectId>\r\n"
      "<qdkProcessId>1234</qdkProcessId>\r\n"
      "<qdkModuleFilename>/opt/a</qdkModuleFilename>\r\n"
      "<qdkDebugClient>{Cannot dump external UDTs}</qdkDebugClient>"
      "<qdkDebuggerListening>True</qdkDebuggerListening>\r\n"
      "<qdkEnableInstanceCounts>False</qdkEnableInstanceCounts>\r\n"
      "<qdkInstanceCountsServerHandle>9</qdkInstanceCountsServerHandle>\r\n"
      "<qdkInstanceCountComponentNames>\r\n";
  for (int i = 0; i <= 28; ++i) {
    expected += "  <qdkInstanceCountComponentNames Index=\"" + std::to_string(i) + "\">" +
                (i == 1 ? "12" : "0") + "</qdkInstanceCountComponentNames>\r\n";
  }
  expected += "</qdkInstanceCountComponentNames>\r\n<qdkSkipInstanceCount>\r\n";
  for (int i = 0; i <= 28; ++i) {
    expected += "  <qdkSkipInstanceCount Index=\"" + std::to_string(i) + "\">" + (i == 2 ? "True" : "False") +
                "</qdkSkipInstanceCount>\r\n";
  }
  expected +=
      "</qdkSkipInstanceCount>\r\n"
      "<qdkInstanceCountsMemory>{Cannot dump external UDTs}</qdkInstanceCountsMemory>"
      "<qdkComponentID></qdkComponentID>\r\n"
      "<qdkHasInitialised>True</qdkHasInitialised>\r\n"
      "<qdkVariableDump><i>1</i>\r\n</qdkVariableDump>\r\n"
      "<qdkErrorNumber>5</qdkErrorNumber>\r\n"
      "<qdkErrorDescription>Invalid.</qdkErrorDescription>\r\n"
      "<qdkErrorLine>275</qdkErrorLine>\r\n"
      "<qdkErrorSource>engine</qdkErrorSource>\r\n";
  EXPECT_EQ(modTollgarthSupport::qdkDumpGlobals(), expected);
}

}  // namespace
}  // namespace kestrel
