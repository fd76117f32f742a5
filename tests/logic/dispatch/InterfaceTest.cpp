#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "PublicInterface.h"

namespace kestrel::dispatch {
namespace {

TEST_F(PublicInterface, OfTheEditorControl) {
  Expect("ImageProcessingCtl", R"(
    property AllowUnmodifiedHotKeys Boolean
    property UseSimpleTools Boolean
    property ShowDrawingTools Boolean
    property UseSimpleSave Boolean
    property ShowClose Boolean
    property ShowOpen Boolean
    property ShowMRU Boolean
    property ShowMenuBar Boolean
    property AutoUpdateGlobal Boolean
    property UndoLevels Int32
    property BackColor Color
    property ForeColor Color
    property Changed Boolean
    property Format Int32

    read Image Image
    read ImgX ImgX
    read Options Options
    read DockWindows DockWindows
    read Commands Commands
    read CommandBars CommandBars
    read BrowseDialog ImgXDialog
    read ImageControl ImageView
    read Filename String
    read ZoomWindow frmZoom
    read MaterialsWindow frmMaterials
    property Picture Picture
    property EventSink IImageEvents
    property Tool ImageProcessingToolConstants

    method Initialize
    method Terminate

    method OpenImage(Filename String = "") Boolean
    method SaveImage Boolean
    method SaveImageAs(Filename String = "") Boolean
    method SaveChanges Boolean
    method ShowExportDialog Boolean

    method SetControls(ref Enabled Boolean)
    method Status(Message String = "", ChangeCursor Boolean = False, UpdateAsDefault Boolean = False)
    method SetToolbarStyle(Style Int32)
    method ApplyOptions
    method ShowOptions Boolean

    method SetSelection(Left Int32, Top Int32, Width Int32, Height Int32)
    method SelectAll
    method ResetSelection
    method CropToSelection
    method Copy(UseSelection Boolean = False)
    method Cut(UseSelection Boolean = False)
    method Paste
    method Cancel

    method Resize(Width Int32, Height Int32 = 0, ResampleMethod Int32 = 0)
    method ResizeCanvas(Width Int32, Height Int32, OffsetX Int32 = 0, OffsetY Int32 = 0, BackColor Color = -1)
    method Rotate(Angle Float, BackColor Color = -1, ApplyToSelection Boolean = False)
    method FlipHorizontally(ApplyToSelection Boolean = False)
    method FlipVertically(ApplyToSelection Boolean = False)
    method ApplyGrayScale(ApplyToSelection Boolean = False)
    method FlattenAlpha(Color Color = -1)
    method ApplyDropShadow(OffsetX Int32 = -1, OffsetY Int32 = -1, ShadowColor Color = -1, Opactity Int32 = -1, BlurLevel Int32 = -1, ApplyToSelection Boolean = False)
    method ApplyMaskedDropShadow(OffsetX Int32 = -1, OffsetY Int32 = -1, ShadowColor Color = -1, Opactity Int32 = -1, BlurLevel Int32 = -1, MaskColor Color = -1, AutomaticMask Boolean = False, ApplyToSelection Boolean = False)
    method ShowRotateDialog Int32
    method ShowResizeDialog Boolean
    method ShowResizeCanvasDialog Boolean
    method ShowDropShadowDialog Boolean
    method ShowMaskedDropShadowDialog Boolean
    method ShowFlattenAlphaDialog Boolean

    method Undo
    method Redo
    method ZoomIn
    method ZoomOut
    method ZoomActualSize

    method GetThumbnail(Size Int32 = -1, BackColor Color = -1, AddDropShadow Boolean = False, OffsetX Int32 = -1, OffsetY Int32 = -1, ShadowColor Color = -1, Opacity Int32 = -1, BlurLevel Int32 = -1) Picture
    method GetThumbnailEx(ref SizeType ThumbnailSizeTypeEnum, Size Int32 = -1, BackColor Color = -1, AddDropShadow Boolean = False, OffsetX Int32 = -1, OffsetY Int32 = -1, ShadowColor Color = -1, Opactity Int32 = -1, BlurLevel Int32 = -1) Picture
    method ShowGetThumnailDialog Picture
    method SaveImageThumbnail(Filename String) Boolean
    method SaveImageThumbnailEx(Filename String) Boolean

    event ExitRequest
    event ImageOpen(Filename String)
    event ImageSave(Filename String)
    event RequestOpenFilename(ref Filename String, ref CancelDefault Boolean)
    event RequestSaveFilename(ref Filename String, ref CancelDefault Boolean)
    event WindowClosed
    event ForeColorChange(Color Color)
    event BackColorChange(Color Color)
    event ToolChange(Tool ImageProcessingToolConstants)
    event PictureSet
    event SimpleSaveRequest(ref Saved Boolean)
    event Change
  )");
}

TEST_F(PublicInterface, OfTheAutomationClassOfTheEditor) {
  Expect("ImageProcessing", R"(
    method Initialize

    method Resize(Width Int32, Height Int32 = 0, ResampleMethod Int32 = 0)
    method ResizeCanvas(Width Int32, Height Int32, OffsetX Int32 = 0, OffsetY Int32 = 0, BackColor Color = -1)
    method Rotate(Angle Float, BackColor Color = -1, ApplyToSelection Boolean = False)
    method FlipHorizontally(ApplyToSelection Boolean = False)
    method FlipVertically(ApplyToSelection Boolean = False)
    method ApplyGrayScale(ApplyToSelection Boolean = False)
    method FlattenAlpha(Color Color = -1)
    method ApplyDropShadow(OffsetX Int32 = -1, OffsetY Int32 = -1, ShadowColor Color = -1, Opactity Int32 = -1, BlurLevel Int32 = -1, ApplyToSelection Boolean = False)
    method ApplyMaskedDropShadow(OffsetX Int32 = -1, OffsetY Int32 = -1, ShadowColor Color = -1, Opactity Int32 = -1, BlurLevel Int32 = -1, MaskColor Color = -1, AutomaticMask Boolean = False, ApplyToSelection Boolean = False)
    method CropToSelection

    method SetSelection(Left Int32, Top Int32, Width Int32, Height Int32)
    method SelectAll
    method Copy(UseSelection Boolean = False)
    method Cut(UseSelection Boolean = False)

    method ZoomIn
    method ZoomOut
    method ZoomActualSize
    method Undo
    method Redo

    method ShowFlattenAlphaDialog Boolean
    method ShowRotateDialog Int32
    method ShowMaskedDropShadowDialog Boolean
    method ShowDropShadowDialog Boolean
    method ShowResizeCanvasDialog Boolean
    method ShowResizeDialog Boolean
    method ShowGetThumnailDialog Picture

    method OpenImage(Filename String = "") Boolean
    method SaveImage Boolean
    method SaveImageAs(Filename String = "") Boolean
    read Filename String

    method GetThumbnail(Size Int32 = -1, BackColor Color = -1, AddDropShadow Boolean = False, OffsetX Int32 = -1, OffsetY Int32 = -1, ShadowColor Color = -1, Opacity Int32 = -1, BlurLevel Int32 = -1) Picture

    property Format Int32
    property Tool ImageProcessingToolConstants
    property ShowClose Boolean
    read Image Image
    read ImgX ImgX
    read Commands Commands
    read CommandBars CommandBars

    read Control ImageProcessingCtl
    read Options Options
    method ShowOptions Boolean
    method SaveThumbnail(Filename String = "", Size Int32 = -1) String
    method SaveImageThumbnailEx(Filename String = "") Boolean
    property Title String
    read Visible Boolean
    method Show(Modal Boolean = False)
    method Terminate

    event ImageOpen(Filename String)
    event ImageSave(Filename String)
    event RequestOpenFilename(ref Filename String, ref CancelDefault Boolean)
    event RequestSaveFilename(ref Filename String, ref CancelDefault Boolean)
    event WindowClosed
  )");
}

TEST_F(PublicInterface, OfTheSink) {
  Expect("IImageEvents", R"(
    method RequestSaveFilename(ref Filename String, ref CancelDefault Boolean)
    method RequestOpenFilename(ref Filename String, ref CancelDefault Boolean)
    method ImageSave(Filename String)
    method ImageOpen(Filename String)

    event RequestSaveFilename(ref Filename String, ref CancelDefault Boolean)
    event RequestOpenFilename(ref Filename String, ref CancelDefault Boolean)
    event ImageSave(Filename String)
    event ImageOpen(Filename String)
  )");
}

TEST_F(PublicInterface, OfTheOptions) {
  Expect("Options", R"(
    property JPEGQuality Int32
    property MaterialBackColor Color
    property MaterialForeColor Color
    property ThumbnailSize Int32
    property ThumbnailBackgroundColor Color
    property ThumbnailAutomaticUpdate Boolean
    property ThumbnailAddDropShadow Boolean
    property ThumbnailAutoCheck Boolean
    property ZoomLevel Int32
    property UndoLevels Int32
    property ResizeCanvasLockAspectRatio Boolean
    property ResizeCanvasWidth Int32
    property ResizeCanvasPlacement Int32
    property ResizeCanvasHeight Int32
    property ResizeCanvasColor Color
    property FlattenAlphaColor Color
    property PasteSpecialMaskColor Color
    property ResizeLockAspectRatio Boolean
    property ResizeWidth Int32
    property ResizeHeight Int32
    property ResizeScale Int32
    property ResizeMode Int32
    property DropShadowColor Color
    property DropShadowAutomaticMask Boolean
    property DropShadowMaskColor Color
    property DropShadowHorizontalOffset Int32
    property DropShadowVerticalOffset Int32
    property DropShadowBlur Int32
    property DropShadowOpacity Int32
    property RotateAngle Int32
    property RotateDirection ImageProcessingDirectionConstants
    property BackgroundGridColor1 Color
    property BackgroundGridColor2 Color
    property BackgroundGridSize Int32
    property ThumbnailSizeType ThumbnailSizeTypeEnum
  )");
}

TEST_F(PublicInterface, OfTheBrowserControl) {
  Expect("ImageBrowserCtl", R"(
    read ObjectMoorage Moorage
    read ObjectFolderBrowse FolderTreeView
    read ObjectThumbnailView ThumbnailView
    read Thumbnails Thumbnails
    read SelectedItems Thumbnails
    property ShowMenuBar Boolean
    method SetControls(Enabled Boolean)
    property Path String
    method Status(Message String)
    property DividerPosition Int32

    event PathChange(Path String)
    event ExitRequest
    event InvalidPathChange
  )");
}

TEST_F(PublicInterface, OfTheAutomationClassOfTheBrowser) {
  Expect("ImageBrowser", R"(
    property Path String
    property Title String
    read Visible Boolean
    method Show(Modal Boolean = False)
    method Terminate
  )");
}

TEST_F(PublicInterface, OfTheEnumerations) {
  ExpectValues("ImageProcessingToolConstants", R"(
    ipToolNone 0
    ipToolSelect 1
    ipToolPan 2
    ipToolZoom 5
    ipToolLine 7
    ipToolRectangle 9
    ipToolEllipse 10
    ipToolFreehand 11
    ipToolDropper 100
  )");
  ExpectValues("ImageProcessingDefaultConstants", "ipUseDefault -1");
  ExpectValues("ImageProcessingDirectionConstants", R"(
    ipDirectionLeft 0
    ipDirectionRight 1
  )");
  ExpectValues("ThumbnailSizeTypeEnum", R"(
    tstPercentage 0
    tstWidthInPixels 1
  )");
}

TEST_F(PublicInterface, HelpTextsOfTheDesignAreKept) {
  const auto help = [](const char* owner, const char* member) {
    return FindClass(owner)->FindMember(std::string_view(member))->help;
  };
  EXPECT_EQ(help("ImageProcessing", "Control"), "Returns access to the processing control");
  EXPECT_EQ(help("ImageBrowser", "Path"), "Returns or sets the browse path");
  EXPECT_EQ(help("ImageBrowser", "Title"), "Returns or sets the window caption");
  EXPECT_EQ(help("ImageBrowserCtl", "ObjectFolderBrowse"), "Returns access to the browser");
  EXPECT_EQ(help("ImageBrowserCtl", "ObjectThumbnailView"), "Returns access to the thumbnail view");
  EXPECT_EQ(help("ImageBrowserCtl", "Thumbnails"), "Returns access to the thumbnails");
  EXPECT_EQ(help("ImageBrowserCtl", "SelectedItems"), "Returns access to the selected thumbnails");
  EXPECT_EQ(help("IImageEvents", "RequestSaveFilename"), "Called when a Save Image As request is made");
  EXPECT_EQ(help("IImageEvents", "RequestOpenFilename"), "Called when a Open Image request is made");
  EXPECT_EQ(help("IImageEvents", "ImageSave"), "Called when an image is saved");
  EXPECT_EQ(help("IImageEvents", "ImageOpen"), "Called when an image is opened");
}

TEST_F(PublicInterface, EverythingHasAHelpText) {
  for (const ClassDescription* description : Classes()) {
    EXPECT_FALSE(description->help.empty()) << description->name;
    for (const Member& member : description->members) {
      EXPECT_FALSE(member.help.empty()) << description->name << "." << member.name;
    }
    for (const EventDescription& event : description->events) {
      EXPECT_FALSE(event.help.empty()) << description->name << "." << event.name;
    }
  }
  for (const EnumerationDescription* description : Enumerations()) {
    EXPECT_FALSE(description->help.empty()) << description->name;
  }
}

TEST_F(PublicInterface, EveryClassThatAMemberNamesIsInTheRegistry) {
  const auto expectKnown = [](const Type& type, const std::string& where) {
    if (type.kind != Kind::kObject) return;
    const ClassDescription& named = type.objectClass();
    EXPECT_EQ(FindClass(named.name), &named) << where;
  };
  for (const ClassDescription* description : Classes()) {
    for (const Member& member : description->members) {
      const std::string where = std::string(description->name) + "." + std::string(member.name);
      expectKnown(member.result, where);
      expectKnown(member.value.type, where);
      for (const Parameter& parameter : member.parameters) expectKnown(parameter.type, where);
    }
    for (const EventDescription& event : description->events) {
      for (const Parameter& parameter : event.parameters) {
        expectKnown(parameter.type, std::string(description->name) + "." + std::string(event.name));
      }
    }
  }
}

// -- Numbers ----------------------------------------------------------------------------------------------

/// Hosts that were compiled against an earlier version have these numbers. They never change; a new member
/// gets a new line.
TEST_F(PublicInterface, NumbersNeverChange) {
  std::ifstream file(KESTREL_NUMBERS);
  ASSERT_TRUE(file) << KESTREL_NUMBERS;
  const std::string fixed((std::istreambuf_iterator<char>(file)), {});

  std::string present;
  for (const ClassDescription* description : Classes()) {
    const std::string name(description->name);
    for (const Member& member : description->members) {
      present += name + "." + std::string(member.name) + " " + std::to_string(member.number) + "\n";
    }
    for (const EventDescription& event : description->events) {
      present += name + " event " + std::string(event.name) + " " + std::to_string(event.number) + "\n";
    }
  }
  EXPECT_THAT(LinesOf(present), testing::ElementsAreArray(LinesOf(fixed)));
}

TEST_F(PublicInterface, NumbersArePositiveAndZeroIsTheDefaultMember) {
  for (const ClassDescription* description : Classes()) {
    for (const Member& member : description->members) EXPECT_GE(member.number, 0) << member.name;
    for (const EventDescription& event : description->events) EXPECT_GT(event.number, 0) << event.name;
  }
}

}  // namespace
}  // namespace kestrel::dispatch
