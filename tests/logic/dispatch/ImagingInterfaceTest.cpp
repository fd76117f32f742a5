// The imaging objects that members of the public classes hand out.

#include "PublicInterface.h"

namespace kestrel::dispatch {
namespace {

class ImagingInterface : public PublicInterface {};

TEST_F(ImagingInterface, OfTheView) {
  Expect("ImageView", R"(
    read Image Image
    read Document Document
    read Draw Draw
    read Effects Effects
    read Writer Writer
    read Alpha Alpha
    read Colors Colors
    read ImgX ImgX
    property Picture Picture
    property JPEGQuality Int32

    property Zoom Double
    read FitZoom Double
    property ScrollLeft Int32
    property ScrollTop Int32
    read SelectionLeft Int32
    read SelectionTop Int32
    property SelectionWidth Int32
    property SelectionHeight Int32
    property SelectionVisible Boolean
    method SetSelectionRect(Left Int32, Top Int32, Width Int32, Height Int32)
    read PointerPixel Point
    property Tool Int32

    property UndoLevels Int32
    property UndoMemoryLimit Double
    method Undo
    method Redo
    read CanUndo Boolean
    read CanRedo Boolean
    read UndoName String
    read RedoName String
    method CreateUndoPoint(Name String) UndoPoint
    property Modified Boolean

    method Refresh
    write DoubleBuffer Boolean
    write BackgroundImage Image
    property MousePointer Int32
    write ImageBorder Boolean
    write MousePointerStyle Int32
    write AutoRedrawSelection Boolean
    write SelectionStyle Int32
    read Notice String
    method SetNotice(Text String, Action String = "")
    property EmptyHint String

    read Name String
    read Index Int32
    property Left Int32
    property Top Int32
    property Width Int32
    property Height Int32
    method Move(Left Int32, Top Int32, Width Int32, Height Int32)
    property Visible Boolean
    property Enabled Boolean
    method ZOrder
    read hWnd Window

    event Click
    event DblClick
    event ContextMenu
    event MouseDown(Button Int32, Shift Int32, X Float, Y Float)
    event MouseMove(Button Int32, Shift Int32, X Float, Y Float)
    event MouseUp(Button Int32, Shift Int32, X Float, Y Float)
    event MouseMovePixel(Button Int32, Shift Int32, PixelX Int32, PixelY Int32)
    event PointerPixelChanged
    event BeforeZoomChanged(Zoom Double)
    event Changed
    event Loaded
    event ModifiedChanged
    event UndoStepsChanged
    event DoubleBufferPaintAfter(hDC DeviceContext)
    event SelectChanged(Left Int32, Top Int32, Width Int32, Height Int32)
    event Selected(Left Int32, Top Int32, Width Int32, Height Int32)
    event WheelZoom(Direction Int32)
    event Pan
    event PanChanged
    event Scroll
    event ScrollChanged
    event NoticeAction
  )");
  Expect("UndoPoint", "method TakeBack");
}

TEST_F(ImagingInterface, OfThePictures) {
  Expect("ImgX", R"(
    read Image Image
    read Document Document
    read Draw Draw
    read Effects Effects
    read Writer Writer
    read Alpha Alpha
    read Colors Colors
    property JPEGQuality Int32
    property BackColor Color
    read Surface Surface
  )");
  Expect("Image", R"(
    read Width Int32
    read Height Int32
    read Format Int32
    read Pages Int32
    read DecodeErrors String
    method GetPixel(X Int32, Y Int32) Colour
    method Convert(Background Colour = Nothing, PixelFormat Int32 = 5)
  )");
  Expect("Picture", R"(
    read Width Int32
    read Height Int32
  )");
}

TEST_F(ImagingInterface, OfTheSubObjects) {
  Expect("Document", R"(
    method FromFile(Filename String, Page Int32 = 0, UndoName String = "")
    method FromPicture(Picture Picture, UndoName String = "")
    method Paste(UndoName String = "")
    method CopyFrom(Source ImgX, Mode Int32 = 0, UndoName String = "")
    method NewImage(Width Int32, Height Int32, Background Colour, PixelFormat Int32 = 5, UndoName String = "")
  )");
  Expect("Writer", R"(
    method ToFile(Filename String, Format Int32, Options Int32 = 0, Overwrite Boolean = True)
    method ToClipboard
    method ToPicture Picture
  )");
  Expect("Draw", R"(
    read Color Colour
    property FillMode Int32
    property PenSetting Int32
    method Rectangle(StartPoint Point, EndPoint Point, RadiusX Int32 = 0, RadiusY Int32 = 0, UndoName String = "")
    method Image(Source Image, X Int32, Y Int32, MaskColor Colour, Opacity Float, Blend Boolean, UndoName String = "")
    method ImageWithAlpha(Source Image, X Int32, Y Int32, UndoName String = "")
  )");
  Expect("Effects", R"(
    method Crop(Left Int32, Top Int32, Width Int32, Height Int32, UndoName String = "")
    method Flip(Direction Int32, UndoName String = "")
    method Resize(Width Int32, Height Int32, ResampleMethod Int32, UndoName String = "")
    method ResizeCanvas(Width Int32, Height Int32, Colour Colour, OffsetX Int32, OffsetY Int32, UndoName String = "")
    method Rotate(Angle Float, Colour Colour, Quality Int32 = 0, UndoName String = "")
    method DropShadow(OffsetX Int32, OffsetY Int32, Colour Colour, Blur Double, Grow Boolean, UndoName String = "")
    method ReplaceColor(From Colour, To Colour, Tolerance Double, Mode Int32 = 0, UndoName String = "")
    method ApplyPalette(Palette Palette, Dither Boolean, UndoName String = "")
  )");
  Expect("Alpha", "method Flatten(Colour Colour, UndoName String = \"\")");
  Expect("Colors", "method Create(Colour Color, Alpha Byte = 255) Colour");
  Expect("Surface", "method DrawTo(hDC DeviceContext, X Int32, Y Int32, RasterOperation Int32 = 13369376)");
  Expect("DeviceContext", R"(
    read Width Int32
    read Height Int32
  )");
}

TEST_F(ImagingInterface, OfTheValues) {
  Expect("Colour", R"(
    read Red Byte
    read Green Byte
    read Blue Byte
    read Alpha Byte
    property Value Color
    read IsNone Boolean
  )");
  Expect("Palette", "property Type Int32");
  Expect("Point", R"(
    property X Int32
    property Y Int32
  )");
  Expect("Size", R"(
    read Width Int32
    read Height Int32
  )");
  Expect("Rectangle", R"(
    read Location Point
    read Size Size
    read Left Int32
    read Top Int32
    read Width Int32
    read Height Int32
  )");
  Expect("CancelValue", "property Value Boolean");
}

}  // namespace
}  // namespace kestrel::dispatch
