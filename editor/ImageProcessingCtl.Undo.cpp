#include "ImageProcessingCtl.h"
#include "diagnostics/Trailer.h"

namespace kestrel {
namespace {

std::string StepCaption(const std::string& verb, const std::string& name) {
  return name.empty() ? verb : verb + " " + name;
}

}  // namespace

void ImageProcessingCtl::Undo() {
  try {
    igxImage.Undo();
  } catch (...) {
    QDK_TRAILER(Undo, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::Redo() {
  try {
    igxImage.Redo();
  } catch (...) {
    QDK_TRAILER(Redo, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::igxImage_Changed() {
  try {
    zUpdateStepCommands();
    zShowSize();
    zUpdatePointerPixel();
    zUpdateFileNotice();
    if (iHoldsChange) {
      iHeldChange = true;
    } else {
      Changed(true);
    }
  } catch (...) {
    QDK_TRAILER(igxImage_Changed, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::igxImage_Loaded() {
  try {
    // A load discards the redo steps.
    zUpdateStepCommands();
    zShowSize();
    zUpdatePointerPixel();
  } catch (...) {
    QDK_TRAILER(igxImage_Loaded, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::igxImage_UndoStepsChanged() {
  try {
    zUpdateStepCommands();
  } catch (...) {
    QDK_TRAILER(igxImage_UndoStepsChanged, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

/// Updates the captions and the enabling of Undo and Redo. Errors propagate to the calling handler.
void ImageProcessingCtl::zUpdateStepCommands() {
  const auto label = [this](const char* key, const std::string& caption) {
    Command& command = Commands()(key);
    command.Caption("&" + caption);
    command.ToolTip(caption);
  };
  label("btnEditUndo", StepCaption("Undo", igxImage.UndoName()));
  label("btnEditRedo", StepCaption("Redo", igxImage.RedoName()));
  zEnableSteps();
}

void ImageProcessingCtl::Changed(bool Value) {
  try {
    if (Value == pChanged) return;
    pChanged = Value;
    if (Value) zRaise(Change);
  } catch (...) {
    QDK_TRAILER(Changed, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void ImageProcessingCtl::UndoLevels(std::int32_t Value) {
  try {
    if (Value == pUndoLevels) return;
    pUndoLevels = Value;
    zPropertyChanged("UndoLevels");
    igxImage.UndoLevels(Value);
  } catch (...) {
    QDK_TRAILER(UndoLevels, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

}  // namespace kestrel
