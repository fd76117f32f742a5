#include "ImageProcessingCtl.h"
#include "base/Numbers.h"
#include "diagnostics/Trailer.h"

namespace kestrel {
namespace {

constexpr float kActualSize = 1.0F;
constexpr double kSmallStep = 0.1;
constexpr double kLargeStep = 1.0;
/// Limits for enabling the zoom buttons; the members themselves have none.
constexpr float kZoomOutAbove = 0.1F;
constexpr float kZoomInBelow = 9.9F;

/// "2" or ".5": integer factors without, all others with one decimal.
std::string ZoomText(float level) {
  const std::string plain = ToText(level);
  return plain.find('.') == std::string::npos ? plain : FormatOneDecimal(static_cast<double>(level));
}

}  // namespace

void ImageProcessingCtl::ZoomIn() {
  try {
    const double step = iZoomLevel < kActualSize ? kSmallStep : kLargeStep;
    iZoomLevel = static_cast<float>(static_cast<double>(iZoomLevel) + step);
    igxImage.Zoom(static_cast<double>(iZoomLevel));
  } catch (...) {
    QDK_TRAILER(ZoomIn, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::ZoomOut() {
  try {
    const double step = iZoomLevel <= kActualSize ? kSmallStep : kLargeStep;
    iZoomLevel = static_cast<float>(static_cast<double>(iZoomLevel) - step);
    igxImage.Zoom(static_cast<double>(iZoomLevel));
  } catch (...) {
    QDK_TRAILER(ZoomOut, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::ZoomActualSize() {
  try {
    iZoomLevel = kActualSize;
    igxImage.Zoom(1.0);
  } catch (...) {
    QDK_TRAILER(ZoomActualSize, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::igxImage_BeforeZoomChanged(double Zoom) {
  std::string Text;
  try {
    // The argument is ignored: writers of the view's zoom have already stored the level.
    Text = ZoomText(iZoomLevel);
    Commands()("btnZoomOut").Enabled(iZoomLevel > kZoomOutAbove);
    Commands()("btnZoomIn").Enabled(iZoomLevel < kZoomInBelow);
    Commands()("btnZoomActualSize").Enabled(iZoomLevel != kActualSize);
    const double percent = Val(FormatOneDecimal(static_cast<double>(iZoomLevel))) * 100;
    mrgUI.StatusPanel("pnlZoom").Caption(Text + ":1 (" + ToText(percent) + "%)");
    mrgUI.SetComboText(Commands()("cboZoom"), Text + ":1");
  } catch (...) {
    QDK_TRAILER(igxImage_BeforeZoomChanged, QDK_PARAMETERS(Zoom), QDK_LOCALS(Text));
  }
}

void ImageProcessingCtl::mrgUI_CommandChange(Command& Command, Combo& Combo) {
  try {
    if (LowerCase(Command.Name()) != "cbozoom" || iHandlingZoomCombo) return;
    iHandlingZoomCombo = true;
    const auto takeLevel = [&] {
      const std::string text = Combo.Text();
      const auto colon = text.find(':');
      if (colon == std::string::npos) return;
      iZoomLevel = ToSingle(Val(text.substr(0, colon)));
    };
    QDK_RESUME_NEXT(takeLevel());
    QDK_RESUME_NEXT(igxImage.Zoom(static_cast<double>(iZoomLevel)));
    iHandlingZoomCombo = false;
  } catch (...) {
    QDK_TRAILER(mrgUI_CommandChange, QDK_PARAMETERS(Command, Combo), QDK_LOCALS());
  }
}

void ImageProcessingCtl::igxImage_WheelZoom(std::int32_t Direction) {
  try {
    Command& command = Commands()(Direction > 0 ? "btnZoomIn" : "btnZoomOut");
    if (command.Enabled()) mrgUI_CommandClick(command);
  } catch (...) {
    QDK_TRAILER(igxImage_WheelZoom, QDK_PARAMETERS(Direction), QDK_LOCALS());
  }
}

}  // namespace kestrel
