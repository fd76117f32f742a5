#include "QtForm.h"

#include <QCoreApplication>
#include <QEvent>
#include <QIcon>
#include <QVBoxLayout>
#include <utility>

#include "AccessKeys.h"
#include "base/RuntimeError.h"
#include "platform/qt/core/Caption.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Pictures.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/dialogs/Modal.h"
#include "platform/qt/site/SiteServices.h"

namespace kestrel::qt {
namespace {

constexpr std::int32_t kShownAlready = 400;

}  // namespace

QtForm::QtForm(std::unique_ptr<FormWindow> window, const std::string& name, const SiteServices& services)
    : WidgetControl(*window, {name, -1}),
      window_(window.release()),
      graphics_(*window_),
      calls_(services.calls),
      placement_(*window_) {
  controls_.addAll(*window_, services);
  window_->form = this;
  window_->closing = [this] { guarded([this] { unload(0); }); };
  QObject::connect(window_.data(), &FormWindow::activated, receiver(), [this] {
    activated_ = true;
    guarded([this] { Activate(); });
  });
  QObject::connect(window_.data(), &FormWindow::retranslated, receiver(), [this] {
    if (caption_) Caption(*caption_);
    if (loaded_) separateAccessKeys(*window_);
  });
  QObject::connect(window_.data(), &FormWindow::resized, receiver(),
                   [this] { guarded([this] { Resize(); }); });
  QObject::connect(window_.data(), &FormWindow::painted, receiver(),
                   [this] { guarded([this] { Paint(); }); });
  QObject::connect(window_.data(), &FormWindow::keyPressed, receiver(),
                   [this](int keyCode, int shift) { guarded([&] { KeyDown(keyCode, shift); }); });
}

QtForm::~QtForm() {
  if (window_) {
    window_->closing = nullptr;
    window_->form = nullptr;
  }
  controls_.clear();
  delete window_.data();
}

void QtForm::requireWindow() const {
  if (!window_) throw RuntimeError(err::kObjectNotSet, "The window has been destroyed.");
}

std::string QtForm::Caption() const { return fromQt(captionOf(window())); }

void QtForm::Caption(const std::string& value) {
  caption_ = value;
  setCaption(window(), translated(value));
}

void QtForm::Modified(bool value) {
  if (value == Modified()) return;
  // Not by `setWindowModified`, which demands a place for a mark in the caption on most desktops. The caption
  // has none: it is that of the form, without a mark.
  window().setAttribute(Qt::WA_WindowModified, value);
  QEvent changed(QEvent::ModifiedChange);
  QCoreApplication::sendEvent(&window(), &changed);
}

std::int32_t QtForm::WindowState() const {
  if (window().isMinimized()) return kWindowMinimized;
  return window().isMaximized() ? kWindowMaximized : kWindowNormal;
}

void QtForm::WindowState(std::int32_t value) {
  const Qt::WindowStates others = window().windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
  window().setWindowState(others | (value == kWindowMinimized   ? Qt::WindowMinimized
                                    : value == kWindowMaximized ? Qt::WindowMaximized
                                                                : Qt::WindowNoState));
}

Rectangle QtForm::NormalPlace() const {
  requireWindow();
  const QRect place = placement_.normalPlace();
  return {place.x(), place.y(), place.width(), place.height()};
}

OLE_COLOR QtForm::BackColor() const { return fromColor(window().palette().color(QPalette::Window)); }

void QtForm::load() {
  if (loaded_) return;
  loaded_ = true;
  activated_ = false;
  InitializeControls();
  Load();
  separateAccessKeys(*window_);
}

void QtForm::InitializeControls() {
  if (!std::exchange(initialized_, true)) controls_.initializeSites();
}

void QtForm::Show(bool modal, Control* owner) {
  if (modal && Visible()) {
    throw RuntimeError(kShownAlready,
                       "The window \"" + Caption() + "\" is shown already and can't be shown modally.");
  }
  load();
  if (modal) {
    QWidget* const parent = dialogParent(owner ? owner->hWnd() : 0);
    // The toolkit may still consider this recently hidden window the active one.
    const bool within = parent == &window() || window().isAncestorOf(parent);
    if (!within && window().isWindow()) {
      window().setParent(parent, window().windowFlags());
    }
    // This form may be destroyed during the dialog, by the host; or only the window, by its owner. An owner
    // that stays may be destroyed before the form.
    const QPointer<FormWindow> shown = window_;
    execModal(window(), calls_);
    if (shown) shown->setParent(nullptr, shown->windowFlags());
  } else {
    window().show();
    if (!activated_) {
      activated_ = true;
      Activate();
    }
  }
}

void QtForm::Hide() {
  if (!window_) return;
  const std::int32_t state = WindowState();
  const bool hasPlace = window_->isWindow() && Visible() && state != kWindowMinimized;
  const QRect place = placement_.normalPlace();
  window_->hide();
  if (!hasPlace || !window_) return;
  // Else the window manager chooses a place each time, and a maximized window has none to be restored to.
  WindowState(kWindowNormal);
  placement_.place(place);
  WindowState(state);
}

void QtForm::unload(std::int32_t reason) {
  if (!loaded_) return;
  bool cancel = false;
  QueryUnload(cancel, reason);
  if (cancel || !loaded_) return;
  loaded_ = false;
  if (window_) closeWindowsOf(*window_);
  Hide();
  Unloaded();
}

void QtForm::embedIn(QWidget& host) {
  if (!host.layout()) {
    auto* const layout = new QVBoxLayout(&host);
    layout->setContentsMargins(0, 0, 0, 0);
  }
  load();
  window().setWindowFlags(Qt::Widget);
  host.layout()->addWidget(&window());
  window().show();
}

}  // namespace kestrel::qt
