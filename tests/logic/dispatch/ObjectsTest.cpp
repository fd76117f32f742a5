// The public objects, late-bound, and what is left of them when their window or picture is gone.

#include "HostFixture.h"

namespace kestrel::dispatch {
namespace {

using testing::StartsWith;

class LateBoundHost : public HostFixture {};

TEST_F(LateBoundHost, OpensAPictureAndReadsIt) {
  const auto processing = started();
  const std::string file = png();
  EXPECT_TRUE(Call(*processing, "openimage", file).ToBoolean());
  EXPECT_EQ(Get(*processing, "Filename").ToString(), file);
  EXPECT_EQ(Get(*processing, "Format").ToInt32(), 2);
  const Variant image = Get(*processing, "Image");
  EXPECT_EQ(Get(ReferenceIn(image), "Width").ToInt32(), 40);
  Call(*processing, "Resize", 20);
  EXPECT_EQ(Get(ReferenceIn(image), "Width").ToInt32(), 20);
  EXPECT_EQ(Get(ReferenceIn(image), "Height").ToInt32(), 15) << "height 0 is the default";
}

TEST_F(LateBoundHost, ReachesACommandByTheDefaultMember) {
  const auto processing = started();
  Variant command = Call(*processing, "Commands", "btnFileOpen");
  EXPECT_TRUE(Get(ReferenceIn(command), "Enabled").ToBoolean());
  Put(ReferenceIn(command), "Enabled", false);
  EXPECT_FALSE(Get(ReferenceIn(Call(*processing, "Commands", "BTNFILEOPEN")), "Enabled").ToBoolean());
  EXPECT_THAT(raised([&] { Call(*processing, "Commands", "btnNone"); }), StartsWith("5 "));
  EXPECT_THAT(raised([&] { Call(*processing, "Commands", 0); }), StartsWith("9 "));
}

TEST_F(LateBoundHost, CollectionsHaveAsManyElementsAsTheyCount) {
  const auto processing = started();
  for (const char* name : {"Commands", "CommandBars"}) {
    const Variant collection = Get(*processing, name);
    std::int32_t visited = 0;
    VisitElements(ReferenceIn(collection), [&](const Variant& element) {
      EXPECT_NE(Get(ReferenceIn(element), "Name").ToString(), "");
      ++visited;
    });
    EXPECT_GT(visited, 0) << name;
    EXPECT_EQ(visited, Get(ReferenceIn(collection), "Count").ToInt32()) << name;
  }
}

TEST_F(LateBoundHost, ChoosesTheFileByAnEventWithArgumentsByReference) {
  const auto processing = started();
  const std::string file = png();
  std::string opened;
  on(*processing, "RequestOpenFilename", [&](std::span<Variant> arguments) {
    EXPECT_EQ(arguments[0].ToString(), "");
    EXPECT_FALSE(arguments[1].ToBoolean());
    arguments[0] = file;
  });
  on(*processing, "ImageOpen", [&](std::span<Variant> arguments) { opened = arguments[0].ToString(); });
  EXPECT_TRUE(Call(*processing, "OpenImage").ToBoolean());
  EXPECT_EQ(opened, file);
}

TEST_F(LateBoundHost, SuppressesTheFileDialogByAnEvent) {
  const auto processing = started();
  on(*processing, "RequestOpenFilename", [](std::span<Variant> arguments) { arguments[1] = -1; });
  EXPECT_FALSE(Call(*processing, "OpenImage").ToBoolean());
}

TEST_F(LateBoundHost, SetsASinkWithEvents) {
  const auto control = embedded();
  const auto sink = Create("IImageEvents");
  const std::string file = png();
  std::string heard;
  on(*sink, "RequestOpenFilename", [&](std::span<Variant> arguments) { arguments[0] = file; });
  on(*sink, "ImageOpen", [&](std::span<Variant> arguments) { heard = arguments[0].ToString(); });
  Put(*control, "EventSink", ToVariant(sink));
  EXPECT_TRUE(ReferenceIn(Get(*control, "EventSink")).IsSame(*sink));
  EXPECT_TRUE(Call(*control, "OpenImage").ToBoolean());
  EXPECT_EQ(heard, file);
}

TEST_F(LateBoundHost, TheSinkIsNotKeptAlive) {
  const auto control = embedded();
  auto sink = Create("IImageEvents");
  Put(*control, "EventSink", ToVariant(sink));
  sink.reset();
  EXPECT_EQ(Get(*control, "EventSink").AsObject(), nullptr);
}

TEST_F(LateBoundHost, ASinkThatTheHostDerivedRaisesNoEvents) {
  const auto derived = Refer(std::make_shared<IImageEvents>());
  EXPECT_EQ(raised([&] { const auto none = Connect(*derived, "ImageOpen", [](std::span<Variant>) {}); }),
            "459 This sink raises no events.");
}

TEST_F(LateBoundHost, ReadsAndWritesTheOptions) {
  const auto processing = started();
  const Variant options = Get(*processing, "Options");
  EXPECT_EQ(Get(ReferenceIn(options), "JPEGQuality").ToInt32(), 75);
  Put(ReferenceIn(options), "JPEGQuality", "60");
  EXPECT_EQ(Get(*Create("Options"), "JPEGQuality").ToInt32(), 60);
  EXPECT_TRUE(ReferenceIn(options).IsSame(ReferenceIn(Get(*processing, "Options"))));
}

TEST_F(LateBoundHost, CreatesOnlyWhatAHostCanCreate) {
  for (const char* name : {"ImageProcessing", "ImageBrowser", "Options", "IImageEvents", "options", "ImgX",
                           "Palette", "Point"}) {
    EXPECT_NE(Create(name), nullptr) << name;
  }
  for (const char* name :
       {"ImageProcessingCtl", "ImageBrowserCtl", "Commands", "Colour", "TreeNode", "Nobody", ""}) {
    EXPECT_THAT(raised([&] { Create(name); }), StartsWith("429 ")) << name;
  }
}

// -- Lives ------------------------------------------------------------------------------------------------

TEST_F(LateBoundHost, WhatATerminatedWindowHandedOutIs91) {
  const auto processing = started();
  Call(*processing, "OpenImage", png());
  std::vector<Variant> parts = {Get(*processing, "Control"), Get(*processing, "Commands"),
                                Get(*processing, "CommandBars"), Get(*processing, "Image"),
                                Call(*processing, "Commands", "btnFileOpen")};
  parts.push_back(Get(ReferenceIn(parts[0]), "ImageControl"));
  const char* members[] = {"Filename", "Count", "Count", "Width", "Enabled", "Zoom"};
  for (std::size_t i = 0; i < parts.size(); ++i) EXPECT_EQ(raisedByGet(parts[i], members[i]), "");

  const Variant options = Get(*processing, "Options");
  Call(*processing, "Terminate");
  for (std::size_t i = 0; i < parts.size(); ++i) {
    EXPECT_THAT(raisedByGet(parts[i], members[i]), StartsWith("91 ")) << members[i];
  }
  EXPECT_THAT(raised([&] { Get(*processing, "Commands"); }), StartsWith("91 "));
  EXPECT_EQ(raisedByGet(options, "JPEGQuality"), "") << "it belongs to the process";
  Call(*processing, "Terminate");
}

TEST_F(LateBoundHost, WhatAnEmbeddedEditorHandedOutIs91AfterItsEnd) {
  const auto control = embedded();
  Call(*control, "OpenImage", png());
  const Variant command = Call(*control, "Commands", "btnFileOpen");
  const Variant image = Get(*control, "Image");
  const Variant zoom = Get(*control, "ZoomWindow");
  EXPECT_EQ(raisedByGet(command, "Enabled"), "");
  EXPECT_EQ(raisedByGet(zoom, "ZoomLevel"), "");
  endEditor();
  EXPECT_THAT(raisedByGet(command, "Enabled"), StartsWith("91 "));
  EXPECT_THAT(raisedByGet(image, "Width"), StartsWith("91 "));
  EXPECT_THAT(raisedByGet(zoom, "ZoomLevel"), StartsWith("91 "));
  EXPECT_THAT(raised([&] { Get(*control, "Filename"); }), StartsWith("91 "));
}

TEST_F(LateBoundHost, TheToolWindowsEndWithTerminateOfTheControl) {
  const auto control = embedded();
  const Variant zoom = Get(*control, "ZoomWindow");
  const Variant materials = Get(*control, "MaterialsWindow");
  EXPECT_EQ(raisedByGet(zoom, "ZoomLevel"), "");
  Call(*control, "Terminate");
  EXPECT_EQ(raisedByGet(zoom, "ZoomLevel"), "91 The object of class frmZoom no longer exists.");
  EXPECT_THAT(raised([&] { ReferenceIn(materials).Target(); }), StartsWith("91 "));
  EXPECT_EQ(Get(*control, "ZoomWindow").AsObject(), nullptr);
}

TEST_F(LateBoundHost, AnImageIsThatOfThePresentPicture) {
  const auto control = embedded();
  EXPECT_EQ(Get(*control, "Image").AsObject(), nullptr);
  Call(*control, "OpenImage", png("a.png"));
  const Variant image = Get(*control, "Image");
  Call(*control, "Rotate", 90);
  EXPECT_EQ(Get(ReferenceIn(image), "Width").ToInt32(), 30);
  Put(*control, "Picture", Get(*control, "Picture"));
  EXPECT_EQ(Get(ReferenceIn(image), "Width").ToInt32(), 30);
  EXPECT_TRUE(ReferenceIn(image).IsSame(ReferenceIn(Get(*control, "Image"))));
}

TEST_F(LateBoundHost, AnImgXObjectOutlivesItsEditor) {
  const auto control = embedded();
  Call(*control, "OpenImage", png());
  const Variant picture = Get(*control, "ImgX");
  const Variant image = Get(ReferenceIn(picture), "Image");
  endEditor();
  EXPECT_EQ(Get(ReferenceIn(image), "Width").ToInt32(), 40);
}

TEST_F(LateBoundHost, AHandlerMayTerminateTheWindow) {
  const auto processing = started();
  std::string inside;
  on(*processing, "ImageOpen", [&](std::span<Variant>) {
    Call(*processing, "Terminate");
    inside = raised([&] { Get(*processing, "Filename"); });
  });
  Call(*processing, "OpenImage", png());
  EXPECT_THAT(inside, StartsWith("91 "));
}

TEST_F(LateBoundHost, AHandlerMayReleaseTheLastReference) {
  auto processing = started();
  on(*processing, "ImageOpen", [&](std::span<Variant>) { processing.reset(); });
  const Reference& borrowed = *processing;
  Call(borrowed, "OpenImage", png());
  EXPECT_EQ(processing, nullptr);
}

}  // namespace
}  // namespace kestrel::dispatch
