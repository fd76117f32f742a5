#include "QtThumbnailsUser.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>
#include <chrono>
#include <map>

#include "platform/qt/thumbnails/QtThumbnailView.h"
#include "platform/qt/thumbnails/ThumbnailArea.h"

namespace kestrel::contract {
namespace {

Qt::KeyboardModifiers modifiersOf(std::int32_t shift) {
  return (shift & kShiftMask ? Qt::ShiftModifier : Qt::NoModifier) |
         (shift & kCtrlMask ? Qt::ControlModifier : Qt::NoModifier);
}

class QtThumbnails final : public ThumbnailsUser {
 public:
  explicit QtThumbnails(const qt::SiteServices& services)
      : view_(area_, qt::ControlId{"thvBrowse"}, services) {
    view_.UserMode(true);
    area_.resize(600, 400);
    area_.show();
    QApplication::setActiveWindow(&area_);
    area_.setFocus();
    QApplication::processEvents();
  }

  ThumbnailView& view() override { return view_; }

  void click(std::int32_t index, std::int32_t shift) override { click(index, Qt::LeftButton, shift); }
  void doubleClick(std::int32_t index) override {
    click(index, Qt::LeftButton, 0);
    mouse(index, QEvent::MouseButtonDblClick, Qt::LeftButton, Qt::LeftButton, 0);
    mouse(index, QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton, 0);
  }
  void contextClick(std::int32_t index) override { click(index, Qt::RightButton, 0); }
  bool pressKey(std::int32_t keyCode, std::int32_t shift) override {
    static const std::map<std::int32_t, Qt::Key> kKeys = {{13, Qt::Key_Return},
                                                          {36, Qt::Key_Home},
                                                          {39, Qt::Key_Right},
                                                          {46, Qt::Key_Delete},
                                                          {'A', Qt::Key_A}};
    QKeyEvent press(QEvent::KeyPress, kKeys.at(keyCode), modifiersOf(shift));
    QApplication::sendEvent(area_.windowHandle(), &press);
    return press.isAccepted();
  }

  bool waitFor(const std::function<bool()>& condition) override {
    for (QDeadlineTimer end(std::chrono::minutes(1)); !condition() && !end.hasExpired();) {
      QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return condition();
  }

 private:
  void mouse(std::int32_t index, QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons held,
             std::int32_t shift) {
    const QRect cell = area_.fromView(view_.placeOf(index - 1).cell);
    const QPointF at = area_.viewport()->mapTo(&area_, cell.center());
    QMouseEvent event(type, at, area_.mapToGlobal(at), button, held, modifiersOf(shift));
    QApplication::sendEvent(area_.windowHandle(), &event);
  }
  void click(std::int32_t index, Qt::MouseButton button, std::int32_t shift) {
    mouse(index, QEvent::MouseButtonPress, button, button, shift);
    mouse(index, QEvent::MouseButtonRelease, button, Qt::NoButton, shift);
  }

  qt::ThumbnailArea area_;
  qt::QtThumbnailView view_;
};

}  // namespace

std::unique_ptr<ThumbnailsUser> qtThumbnailsUser(const qt::SiteServices& services) {
  return std::make_unique<QtThumbnails>(services);
}

}  // namespace kestrel::contract
