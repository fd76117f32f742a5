#include "imaging/contract/ImageView.h"

#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <tuple>

#include "host/dispatch/ControlRows.h"
#include "host/dispatch/FaceRows.h"
#include "host/dispatch/Table.h"

namespace kestrel::dispatch {
namespace {

// -- What has no type of the interface --------------------------------------------------------------------

std::shared_ptr<Point> PointerPixelOf(ImageView& view) {
  const auto pixel = view.PointerPixel();
  return pixel ? std::make_shared<Point>(*pixel) : nullptr;
}

double UndoMemoryLimitOf(ImageView& view) { return static_cast<double>(view.UndoMemoryLimit()); }
void SetUndoMemoryLimit(ImageView& view, double bytes) {
  // From there on not each whole number is a double.
  constexpr double kLargest = 9007199254740992.0;
  if (!(bytes >= 0 && bytes <= kLargest)) {
    throw RuntimeError(err::kOverflow, "The limit of the undo memory is out of range.", "ImageView");
  }
  view.UndoMemoryLimit(static_cast<std::size_t>(std::floor(bytes)));
}

std::shared_ptr<UndoPoint> CreateUndoPoint(ImageView& view, const std::string& name) {
  return view.CreateUndoPoint(name);
}

std::string NoticeOf(ImageView& view) { return view.Notice(); }
void SetNotice(ImageView& view, const std::string& text, const std::string& action) {
  view.Notice(text, action);
}

// -- The view ---------------------------------------------------------------------------------------------

constexpr auto kMembers = std::tuple_cat(
    std::tuple{
        ReadOnly("Image", 1, &ImageView::Image,
                 "The picture's size, format and pixels; Nothing while there is no picture."),
        Property("Zoom", 2, &ImageView::Zoom, &ImageView::Zoom,
                 "Screen pixels per picture pixel, 0.01 to 64."),
        ReadOnly("ImgX", 3, &ImageView::ImgX, "The picture with its operations."),
        Property("Picture", 4, &ImageView::Picture, &ImageView::Picture,
                 "The picture as a picture object; Nothing while there is none. A write loads it."),
        Property("JPEGQuality", 5, &ImageView::JPEGQuality, &ImageView::JPEGQuality,
                 "The quality of the next JPEG write, 1 to 100."),
        ReadOnly("FitZoom", 6, &ImageView::FitZoom,
                 "The largest factor at which the whole picture is in view; 1 without a picture."),

        Property("ScrollLeft", 7, &ImageView::ScrollLeft, &ImageView::ScrollLeft,
                 "The picture column at the left edge of the view; negative if the picture is centered."),
        Property("ScrollTop", 8, &ImageView::ScrollTop, &ImageView::ScrollTop,
                 "The picture row at the top edge of the view; negative if the picture is centered."),

        ReadOnly("SelectionLeft", 9, &ImageView::SelectionLeft,
                 "The left corner of the selection in picture pixels."),
        ReadOnly("SelectionTop", 10, &ImageView::SelectionTop,
                 "The top corner of the selection in picture pixels."),
        Property("SelectionWidth", 11, &ImageView::SelectionWidth, &ImageView::SelectionWidth,
                 "The width of the selection; negative for a rectangle that was dragged leftwards."),
        Property("SelectionHeight", 12, &ImageView::SelectionHeight, &ImageView::SelectionHeight,
                 "The height of the selection; negative for a rectangle that was dragged upwards."),
        Property("SelectionVisible", 13, &ImageView::SelectionVisible, &ImageView::SelectionVisible,
                 "Whether the selection rectangle is shown."),
        Method("SetSelectionRect", 14, &ImageView::SetSelectionRect, {"Left", "Top", "Width", "Height"},
               "Sets the selection rectangle; raises no event."),
        ReadOnly("PointerPixel", 15, &PointerPixelOf,
                 "The picture pixel under the pointer; Nothing while the pointer is not over the picture."),

        Property("Tool", 16, &ImageView::Tool, &ImageView::Tool,
                 "The view's own mouse tool: 0 none, 1 select, 2 pan, 7 line, 9 rectangle, 10 ellipse, 11 "
                 "freehand."),

        Property("UndoLevels", 17, &ImageView::UndoLevels, &ImageView::UndoLevels,
                 "The number of undo steps that are kept; a write of 0 removes them."),
        Property("UndoMemoryLimit", 18, &UndoMemoryLimitOf, &SetUndoMemoryLimit,
                 "The maximum size of the undo steps in bytes; the oldest are dropped first."),
        Method("Undo", 19, &ImageView::Undo, "Undoes the latest step."),
        Method("Redo", 20, &ImageView::Redo, "Redoes the step that was undone last."),
        ReadOnly("CanUndo", 21, &ImageView::CanUndo, "Whether there is a step to undo."),
        ReadOnly("CanRedo", 22, &ImageView::CanRedo, "Whether there is a step to redo."),
        ReadOnly("UndoName", 23, &ImageView::UndoName,
                 "The name of the step that Undo takes; empty if it has none."),
        ReadOnly("RedoName", 24, &ImageView::RedoName,
                 "The name of the step that Redo takes; empty if it has none."),
        Method("CreateUndoPoint", 25, &CreateUndoPoint, {"Name"},
               "Records the current picture as one step, for work that follows under \"No Undo\"."),
        Property("Modified", 26, &ImageView::Modified, &ImageView::Modified,
                 "Whether the picture has unsaved changes."),

        Method("Refresh", 27, &ImageView::Refresh, "Repaints the view."),
        WriteOnly("DoubleBuffer", 28, &ImageView::DoubleBuffer,
                  "Whether the view paints through a back buffer and raises DoubleBufferPaintAfter."),
        WriteOnly("BackgroundImage", 29, &ImageView::BackgroundImage,
                  "The image tiled behind transparent parts of the picture, which is copied; Nothing for "
                  "none."),
        Property("MousePointer", 30, &ImageView::MousePointer, &ImageView::MousePointer,
                 "0 the pointer of the tool, 99 the stored custom pointer."),
        WriteOnly("ImageBorder", 31, &ImageView::ImageBorder,
                  "Whether a border line is shown around the picture."),
        WriteOnly("MousePointerStyle", 32, &ImageView::MousePointerStyle,
                  "2: the tool's pointer is shown over the picture only."),
        WriteOnly("AutoRedrawSelection", 33, &ImageView::AutoRedrawSelection,
                  "Whether a write of a selection property repaints at once."),
        WriteOnly("SelectionStyle", 34, &ImageView::SelectionStyle,
                  "The style of the selection: 0 marching ants."),

        ReadOnly("Notice", 35, &NoticeOf, "The notice above the picture; empty while there is none."),
        Method("SetNotice", 36, &SetNotice, {"Text", {"Action", ""}},
               "Shows a notice above the picture, with a button if Action has a caption; an empty text "
               "removes it."),
        Property("EmptyHint", 37, &ImageView::EmptyHint, &ImageView::EmptyHint,
                 "The line in the middle of the view while there is no picture; empty for none."),
    },
    kFaceRows, kControlRows);

constexpr std::tuple kEvents{
    EventOf("Click", 1, &ImageView::Click, "A button was pressed and released without a drag."),
    EventOf("DblClick", 2, &ImageView::DblClick, "The second click of a double click, after its Click."),
    EventOf("ContextMenu", 3, &ImageView::ContextMenu, "The context menu was requested by the keyboard."),
    EventOf("MouseDown", 4, &ImageView::MouseDown, {"Button", "Shift", "X", "Y"},
            "A button was pressed. The position is in pixels of the view."),
    EventOf("MouseMove", 5, &ImageView::MouseMove, {"Button", "Shift", "X", "Y"}, "The pointer has moved."),
    EventOf("MouseUp", 6, &ImageView::MouseUp, {"Button", "Shift", "X", "Y"},
            "A button was released; raised before the Click of the same gesture."),
    EventOf("MouseMovePixel", 7, &ImageView::MouseMovePixel, {"Button", "Shift", "PixelX", "PixelY"},
            "The pointer has moved over the picture. The position is in pixels of the picture."),
    EventOf("PointerPixelChanged", 8, &ImageView::PointerPixelChanged,
            "PointerPixel has changed without a MouseMovePixel."),
    EventOf("BeforeZoomChanged", 9, &ImageView::BeforeZoomChanged, {"Zoom"},
            "The zoom is about to change to this factor."),
    EventOf("Changed", 10, &ImageView::Changed,
            "The picture has changed, by undo and redo too, but not by a load."),
    EventOf("Loaded", 11, &ImageView::Loaded, "A picture was loaded."),
    EventOf("ModifiedChanged", 12, &ImageView::ModifiedChanged, "Modified has changed."),
    EventOf("UndoStepsChanged", 13, &ImageView::UndoStepsChanged,
            "The undo steps have changed, but the picture has not."),
    EventOf("DoubleBufferPaintAfter", 14, &ImageView::DoubleBufferPaintAfter, {"hDC"},
            "The picture is in the back buffer; a handler may draw over it."),
    EventOf("SelectChanged", 15, &ImageView::SelectChanged, {"Left", "Top", "Width", "Height"},
            "The selection has changed during a drag."),
    EventOf("Selected", 16, &ImageView::Selected, {"Left", "Top", "Width", "Height"},
            "The drag or move of a selection has ended."),
    EventOf("WheelZoom", 17, &ImageView::WheelZoom, {"Direction"},
            "The wheel was turned with Ctrl held: 1 zooms in, -1 zooms out."),
    EventOf("Pan", 18, &ImageView::Pan, "The picture is being panned."),
    EventOf("PanChanged", 19, &ImageView::PanChanged, "Panning has ended."),
    EventOf("Scroll", 20, &ImageView::Scroll, "The view is being scrolled."),
    EventOf("ScrollChanged", 21, &ImageView::ScrollChanged, "Scrolling has ended."),
    EventOf("NoticeAction", 22, &ImageView::NoticeAction, "The user has pressed the button of the notice."),
};

constexpr ClassDescription kImageView = MakeClass<ImageView, kMembers, kEvents>(
    {.name = "ImageView",
     .help = "The view that shows the picture, with zoom, scrolling, a mouse tool and a selection."});

constexpr std::tuple kUndoPointMembers{
    Method("TakeBack", 1, &UndoPoint::TakeBack,
           "Restores the picture as it was before the point. Does nothing if the point is no longer the "
           "latest step."),
};
constexpr ClassDescription kUndoPoint = MakeClass<UndoPoint, kUndoPointMembers>(
    {.name = "UndoPoint", .help = "An undo step recorded before work under \"No Undo\"."});

}  // namespace

template <>
const ClassDescription& Describe<ImageView>() {
  return kImageView;
}
template <>
const ClassDescription& Describe<UndoPoint>() {
  return kUndoPoint;
}

}  // namespace kestrel::dispatch
