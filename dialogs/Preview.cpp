#include "Preview.h"

#include <algorithm>
#include <utility>

#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/modImgX.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

/// The gap between the panes, in container units.
constexpr std::int32_t kGap = 12;

constexpr double kActualSize = 1.0;
/// The factor of one notch of the wheel.
constexpr double kNotchFactor = 1.25;

Size SizeOf(const Image* Picture) {
  return Picture == nullptr ? Size{} : Size{Picture->Width(), Picture->Height()};
}

}  // namespace

Preview::Preview(Site& site)
    : iCount(modTollgarthSupport::Counted::kPreview),
      UserControl(site),
      igxOriginal(Bind<ImageView>(site, "igxOriginal")),
      igxPreview(Bind<ImageView>(site, "igxPreview")),
      imgPreview(Bind<PictureBox>(site, "imgPreview")) {
  const auto keep = [this](Connection connection) { iConnections.push_back(std::move(connection)); };
  const auto link = [&](ImageView& pane, void (Preview::*scroll)()) {
    for (Event<>* event : {&pane.Scroll, &pane.Pan, &pane.PanChanged, &pane.ScrollChanged}) {
      keep(event->Connect([this, scroll] { (this->*scroll)(); }));
    }
  };
  link(igxOriginal, &Preview::igxOriginal_Scroll);
  link(igxPreview, &Preview::igxPreview_Scroll);
  keep(igxOriginal.WheelZoom.Connect([this](std::int32_t direction) { igxOriginal_WheelZoom(direction); }));
  keep(igxPreview.WheelZoom.Connect([this](std::int32_t direction) { igxPreview_WheelZoom(direction); }));
  keep(igxOriginal.DblClick.Connect([this] { igxOriginal_DblClick(); }));
  keep(igxPreview.DblClick.Connect([this] { igxPreview_DblClick(); }));
  keep(UserControl.InitProperties.Connect([this] { UserControl_InitProperties(); }));
  keep(UserControl.ReadProperties.Connect(
      [this](const PropertyBag& bag) { UserControl_ReadProperties(bag); }));
  keep(UserControl.Resize.Connect([this] { UserControl_Resize(); }));
  Usercontrol_Initialize();
}

void Preview::Usercontrol_Initialize() {
  try {
    const auto shared = modProcessing::GetOptions();
    Options& Options = Required(shared);
    for (ImageView* pane : {&igxOriginal, &igxPreview}) {
      modImgX::SetupBackground(*pane, Options.BackgroundGridSize(), Options.BackgroundGridColor1(),
                               Options.BackgroundGridColor2());
    }
    mLinkedScrolling = true;
    // Start from True, so that setting False is a change and loads the stock picture.
    pUseOriginal = true;
    UseOriginal(false);
    modProcessing::FormSkin().ApplyToForm(UserControl, -1, -1);
  } catch (...) {
    QDK_TRAILER(Usercontrol_Initialize, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void Preview::UserControl_InitProperties() {
  try {
    UserControl.TabStop(false);
    zInitialise();
  } catch (...) {
    QDK_TRAILER(UserControl_InitProperties, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void Preview::UserControl_ReadProperties(const PropertyBag& PropBag) {
  try {
    zInitialise();
  } catch (...) {
    QDK_TRAILER(UserControl_ReadProperties, QDK_PARAMETERS(PropBag), QDK_LOCALS());
  }
}

void Preview::zInitialise() {
  try {
    igxOriginal.Visible(UserControl.UserMode());
    igxPreview.Visible(UserControl.UserMode());
    UserControl_Resize();
  } catch (...) {
    QDK_TRAILER(zInitialise, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void Preview::UserControl_Resize() {
  std::int32_t half = 0;
  try {
    half = ToInt32((UserControl.ScaleWidth() - kGap) / 2.0);
    igxOriginal.Width(half);
    igxPreview.Width(half);
    igxPreview.Left(UserControl.ScaleWidth() - half);
    igxOriginal.Height(UserControl.ScaleHeight());
    igxPreview.Height(UserControl.ScaleHeight());
  } catch (...) {
    QDK_TRAILER(UserControl_Resize, QDK_PARAMETERS(), QDK_LOCALS(half));
  }
}

void Preview::LinkedScrolling(bool Value) {
  try {
    if (Value == mLinkedScrolling) return;
    mLinkedScrolling = Value;
    UserControl.PropertyChanged("LinkedScrolling");
  } catch (...) {
    QDK_TRAILER(LinkedScrolling, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void Preview::Reset() {
  try {
    KeepScrollPosition(igxPreview, [this] { igxPreview.Document().CopyFrom(*igxOriginal.ImgX(), 0); });
  } catch (...) {
    QDK_TRAILER(Reset, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void Preview::KeepScrollPosition(ImageView& Pane, const std::function<void()>& Work) {
  const Size before = SizeOf(Pane.Image());
  const Point place{Pane.ScrollLeft(), Pane.ScrollTop()};
  Work();
  if (SizeOf(Pane.Image()) != before) return;
  // Restoring the position must not scroll the other pane.
  const bool scrolling = std::exchange(iScrolling, true);
  Pane.ScrollLeft(place.X);
  Pane.ScrollTop(place.Y);
  iScrolling = scrolling;
}

void Preview::UseOriginal(bool Value) {
  try {
    if (Value == pUseOriginal) return;
    pUseOriginal = Value;
    UserControl.PropertyChanged("UseOriginal");
    KeepScrollPosition(igxOriginal, [this] { zLoadOriginal(); });
    Reset();
    // A handler may change the property again; later handlers still receive the value of this change.
    const bool announced = pUseOriginal;
    UseOriginalChange(announced);
  } catch (...) {
    QDK_TRAILER(UseOriginal, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void Preview::zLoadOriginal() {
  if (pOriginalPicture == nullptr || !pUseOriginal) {
    igxOriginal.Picture(imgPreview.Picture());
  } else if (modImgX::ValidSelection(pOriginalPicture)) {
    const auto section = modProcessing::Platform().CreateImgX();
    modImgX::CreateSection(*pOriginalPicture, *section);
    igxOriginal.Document().CopyFrom(*section, 0);
  } else {
    igxOriginal.Document().CopyFrom(*pOriginalPicture->ImgX(), 0);
  }
}

void Preview::OriginalPicture(ImageView* Value) {
  try {
    pOriginalPicture = Value;
    if (modImgX::ValidSelection(Value)) UseOriginal(true);
  } catch (...) {
    QDK_TRAILER(OriginalPicture, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void Preview::igxOriginal_Scroll() {
  try {
    zLinkScroll(igxOriginal, igxPreview);
  } catch (...) {
    QDK_TRAILER(igxOriginal_Scroll, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void Preview::igxPreview_Scroll() {
  try {
    zLinkScroll(igxPreview, igxOriginal);
  } catch (...) {
    QDK_TRAILER(igxPreview_Scroll, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

/// A failure leaves `iScrolling` as it is.
void Preview::zLinkScroll(ImageView& From, ImageView& To) {
  if (iScrolling || !mLinkedScrolling) return;
  iScrolling = true;
  To.ScrollLeft(From.ScrollLeft());
  To.ScrollTop(From.ScrollTop());
  iScrolling = false;
}

void Preview::igxOriginal_WheelZoom(std::int32_t Direction) {
  try {
    zWheelZoom(igxOriginal, Direction);
  } catch (...) {
    QDK_TRAILER(igxOriginal_WheelZoom, QDK_PARAMETERS(Direction), QDK_LOCALS());
  }
}

void Preview::igxPreview_WheelZoom(std::int32_t Direction) {
  try {
    zWheelZoom(igxPreview, Direction);
  } catch (...) {
    QDK_TRAILER(igxPreview_WheelZoom, QDK_PARAMETERS(Direction), QDK_LOCALS());
  }
}

void Preview::igxOriginal_DblClick() {
  try {
    zFitOrActualSize(igxOriginal);
  } catch (...) {
    QDK_TRAILER(igxOriginal_DblClick, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void Preview::igxPreview_DblClick() {
  try {
    zFitOrActualSize(igxPreview);
  } catch (...) {
    QDK_TRAILER(igxPreview_DblClick, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

/// Zooms out until both pictures are in view, and stops at actual size on the way.
void Preview::zWheelZoom(ImageView& Pane, std::int32_t Direction) {
  const double before = Pane.Zoom();
  double factor = Direction > 0 ? before * kNotchFactor : before / kNotchFactor;
  if ((before - kActualSize) * (factor - kActualSize) < 0) factor = kActualSize;
  const double smallest = std::min({before, zFitZoom(), kActualSize});
  zZoomBoth(Pane, std::max(factor, smallest));
}

void Preview::zFitOrActualSize(ImageView& Pane) {
  zZoomBoth(Pane, Pane.Zoom() == kActualSize ? zFitZoom() : kActualSize);
}

void Preview::zZoomBoth(ImageView& Pane, double Factor) {
  ImageView& other = &Pane == &igxOriginal ? igxPreview : igxOriginal;
  Pane.Zoom(Factor);
  other.Zoom(Factor);
  if (!mLinkedScrolling) return;
  // The other picture may be larger: while this one is centered, each stays where it is.
  const bool scrolling = std::exchange(iScrolling, true);
  if (Pane.ScrollLeft() >= 0) other.ScrollLeft(Pane.ScrollLeft());
  if (Pane.ScrollTop() >= 0) other.ScrollTop(Pane.ScrollTop());
  iScrolling = scrolling;
}

double Preview::zFitZoom() const { return std::min(igxOriginal.FitZoom(), igxPreview.FitZoom()); }

std::string Preview::qdkDumpModuleVariables() const {
  return QDK_FIELDS(pUseOriginal, mLinkedScrolling, pOriginalPicture, iScrolling, igxOriginal, igxPreview,
                    imgPreview);
}

}  // namespace kestrel
