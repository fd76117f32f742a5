#include <utility>

#include "CommandTable.h"
#include "Tools.h"
#include "diagnostics/Trailer.h"

// Enabling of commands by the flags of the two tables. The zoom steps have rules of their own.

namespace kestrel {
namespace {

/// Suspends repainting of the bars for a scope.
class [[nodiscard]] RedrawPause {
 public:
  explicit RedrawPause(Moorage& suite) : suite_(&suite) { suite.Redraw(false); }
  ~RedrawPause() {
    if (suite_ != nullptr) QDK_RESUME_NEXT(suite_->Redraw(true));
  }
  RedrawPause(const RedrawPause&) = delete;
  RedrawPause& operator=(const RedrawPause&) = delete;

  /// Repaints before the end of the scope. Raises the error of a failed repaint, which the destructor
  /// ignores.
  void End() { std::exchange(suite_, nullptr)->Redraw(true); }

 private:
  Moorage* suite_;
};

}  // namespace

void ImageProcessingCtl::SetControls(const bool& Enabled) {
  try {
    RedrawPause pause(mrgUI);
    iControlsEnabled = Enabled;
    for (const CommandRow& row : zCommandRows()) {
      if (row.Has(kNeedsPicture)) zEnable(row);
    }
    // With a picture the zoom level decides.
    if (!Enabled) Commands()("btnZoomActualSize").Enabled(false);
    for (const ToolRow& row : kTools) Commands()(row.Command).Enabled(Enabled);
    iHeldCommands.clear();
    zUpdateModeCommands();
    pause.End();
  } catch (...) {
    QDK_TRAILER(SetControls, QDK_PARAMETERS(Enabled), QDK_LOCALS());
  }
}

void ImageProcessingCtl::zEnable(const CommandRow& Row) {
  const bool hasStep =
      (!Row.Has(kNeedsUndoStep) || igxImage.CanUndo()) && (!Row.Has(kNeedsRedoStep) || igxImage.CanRedo());
  Commands()(Row.Name).Enabled(iControlsEnabled && hasStep);
}

/// Enables Undo and Redo if there is a step.
void ImageProcessingCtl::zEnableSteps() {
  for (const CommandRow& row : zCommandRows()) {
    if (row.Has(kNeedsUndoStep) || row.Has(kNeedsRedoStep)) zEnable(row);
  }
}

/// Disables the commands that must wait for the end of an open paste or crop, and enables them again
/// afterwards.
void ImageProcessingCtl::zUpdateModeCommands() {
  if (!iPasting && !iCropping) {
    for (const char* name : iHeldCommands) Commands()(name).Enabled(true);
    iHeldCommands.clear();
    return;
  }
  const auto hold = [this](const char* name) {
    if (!Commands()(name).Enabled()) return;
    Commands()(name).Enabled(false);
    iHeldCommands.push_back(name);
  };
  for (const CommandRow& row : zCommandRows()) {
    if ((iPasting && row.Has(kWaitsForPaste)) || (iCropping && row.Has(kWaitsForCrop))) hold(row.Name);
  }
  for (const ToolRow& row : kTools) hold(row.Command);
}

}  // namespace kestrel
