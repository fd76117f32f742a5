#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "ImageProcessingCtl.h"
#include "diagnostics/Trailer.h"

// Which commands can be chosen. All rules but those of the zoom steps are here.

namespace kestrel {
namespace {

/// Which modes of the editor a command has to wait for: it would overwrite the floating image, which is kept
/// in the scratch picture, or take away the rectangle that the mode works with.
enum class WaitsFor { kNothing, kPaste, kPasteAndCrop };

/// What a command needs besides a picture.
enum class Needs { kNothing, kUndoStep, kRedoStep };

struct PictureCommand {
  const char* Name;
  WaitsFor Modes;
  Needs Step = Needs::kNothing;
};

/// The commands that need a picture, in the order in which they are switched; Actual Size stands between the
/// two lists. Saving may write a thumbnail, which is made in the scratch picture.
constexpr PictureCommand kPictureCommands[] = {
    {"btnFileSave", WaitsFor::kPasteAndCrop},
    {"btnFileSaveAs", WaitsFor::kPasteAndCrop},
    {"btnFileExport", WaitsFor::kPasteAndCrop},
    {"btnEditUndo", WaitsFor::kNothing, Needs::kUndoStep},
    {"btnEditRedo", WaitsFor::kNothing, Needs::kRedoStep},
    {"btnEditCopy", WaitsFor::kPasteAndCrop},
    {"btnEditCut", WaitsFor::kPasteAndCrop},
    {"btnEditPaste", WaitsFor::kPasteAndCrop},
    {"btnEditPasteSpecial", WaitsFor::kPasteAndCrop},
    {"btnImageFlip", WaitsFor::kPasteAndCrop},
    {"btnImageMirror", WaitsFor::kPasteAndCrop},
    {"btnRotateLeft", WaitsFor::kPasteAndCrop},
    {"btnRotateRight", WaitsFor::kPasteAndCrop},
    {"btnRotateFree", WaitsFor::kPasteAndCrop},
    {"btnImageResizeCanvas", WaitsFor::kPasteAndCrop},
    {"btnImageResize", WaitsFor::kPasteAndCrop},
    {"btnImageCrop", WaitsFor::kPaste},
    {"btnImageDropShadow", WaitsFor::kPasteAndCrop},
    {"btnImageShapedDropShadow", WaitsFor::kPasteAndCrop},
    {"btnImageGrayScale", WaitsFor::kPasteAndCrop},
    {"btnToolsFlattenAlpha", WaitsFor::kPasteAndCrop},
    {"btnSelectionAll", WaitsFor::kPasteAndCrop},
    {"btnSelectionNone", WaitsFor::kPasteAndCrop},
    {"btnZoomIn", WaitsFor::kNothing},
    {"btnZoomOut", WaitsFor::kNothing},
    {"btnZoomBestFit", WaitsFor::kNothing},
};
constexpr PictureCommand kToolCommands[] = {
    {"btnDrawSelect", WaitsFor::kPasteAndCrop},    {"btnDrawPan", WaitsFor::kPasteAndCrop},
    {"btnDrawZoom", WaitsFor::kPasteAndCrop},      {"btnDrawLine", WaitsFor::kPasteAndCrop},
    {"btnDrawRectangle", WaitsFor::kPasteAndCrop}, {"btnDrawEllipse", WaitsFor::kPasteAndCrop},
    {"btnDrawFreehand", WaitsFor::kPasteAndCrop},  {"btnDrawPicker", WaitsFor::kPasteAndCrop},
};

/// The commands whose dialogs do not exist yet. They are off until then.
constexpr std::array<std::string_view, 8> kAwaitingDialogs = {
    "btnFileExport",        "btnEditPasteSpecial", "btnImageResizeCanvas",     "btnImageResize",
    "btnToolsFlattenAlpha", "btnImageDropShadow",  "btnImageShapedDropShadow", "btnToolsOptions",
};

bool IsAwaitingDialog(std::string_view key) {
  return std::find(kAwaitingDialogs.begin(), kAwaitingDialogs.end(), key) != kAwaitingDialogs.end();
}

bool HasStep(const ImageView& view, Needs step) {
  if (step == Needs::kUndoStep) return view.CanUndo();
  return step != Needs::kRedoStep || view.CanRedo();
}

}  // namespace

void ImageProcessingCtl::SetControls(const bool& Enabled) {
  try {
    mrgUI.Redraw(false);
    iControlsEnabled = Enabled;
    for (const PictureCommand& command : kPictureCommands)
      zEnable(command.Name, HasStep(igxImage, command.Step));
    // With a picture it is the zoom that decides whether this one is of use.
    if (!Enabled) Commands()("btnZoomActualSize").Enabled(false);
    for (const PictureCommand& command : kToolCommands)
      zEnable(command.Name, HasStep(igxImage, command.Step));
    for (const std::string_view name : kAwaitingDialogs) Commands()(std::string(name)).Enabled(false);
    iHeldCommands.clear();
    zFollowMode();
    mrgUI.Redraw(true);
  } catch (...) {
    QDK_TRAILER(SetControls, QDK_PARAMETERS(Enabled), QDK_LOCALS());
  }
}

void ImageProcessingCtl::zEnable(const char* Name, bool HasStep) {
  Commands()(Name).Enabled(iControlsEnabled && HasStep && !IsAwaitingDialog(Name));
}

/// Enables Undo and Redo exactly while there is a step to take.
void ImageProcessingCtl::zEnableSteps() {
  for (const PictureCommand& command : kPictureCommands) {
    if (command.Step != Needs::kNothing) zEnable(command.Name, HasStep(igxImage, command.Step));
  }
}

/// Disables what has to wait for the end of an open paste or crop, and enables it again when both are over.
void ImageProcessingCtl::zFollowMode() {
  if (!iPasting && !iCropping) {
    for (const char* name : iHeldCommands) Commands()(name).Enabled(true);
    iHeldCommands.clear();
  }
  const auto waits = [this](WaitsFor modes) {
    if (modes == WaitsFor::kPaste) return iPasting;
    return modes == WaitsFor::kPasteAndCrop && (iPasting || iCropping);
  };
  const auto hold = [&](std::span<const PictureCommand> list) {
    for (const PictureCommand& command : list) {
      if (!waits(command.Modes) || !Commands()(command.Name).Enabled()) continue;
      Commands()(command.Name).Enabled(false);
      iHeldCommands.push_back(command.Name);
    }
  };
  hold(kPictureCommands);
  hold(kToolCommands);
}

}  // namespace kestrel
