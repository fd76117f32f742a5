#include "platform/qt/app/QtPlatform.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDeadlineTimer>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QStyle>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <QWheelEvent>
#include <cstdlib>
#include <deque>
#include <stdexcept>
#include <utility>

#include "ContractPlatform.h"
#include "QtThumbnailsUser.h"
#include "QtTreeUser.h"
#include "platform/docking/MoorageModel.h"
#include "platform/posix/LineTable.h"
#include "platform/posix/SharedLibraryFactory.h"
#include "platform/qt/core/Handles.h"
#include "platform/qt/core/Pictures.h"
#include "platform/qt/dialogs/FileDialogWindow.h"
#include "platform/qt/dialogs/FolderDialog.h"
#include "platform/qt/files/QuestionWindow.h"
#include "platform/qt/forms/EditorWidget.h"
#include "platform/qt/forms/QtForm.h"
#include "platform/qt/view/QtImageView.h"
#include "platform/store/MemoryStore.h"
#include "ui_frmControls.h"
#include "ui_frmHeader.h"

namespace kestrel::contract {
namespace {

QString text(const std::string& utf8) { return QString::fromStdString(utf8); }

/// Runs the next scripted action at each modal box or dialog, inside its nested event loop. An unexpected one
/// fails the test and is closed, so that no test waits forever.
class ModalUser {
 public:
  using Step = std::function<void(QWidget&)>;

  ModalUser() {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
    timer_.start(5);
  }
  ~ModalUser() {
    if (!steps_.empty()) ADD_FAILURE() << "The user still waits for " << steps_.size() << " boxes.";
  }

  void then(Step step) { steps_.push_back(std::move(step)); }

 private:
  void look() {
    QWidget* const modal = QApplication::activeModalWidget();
    if (!modal || !modal->isVisible()) return;
    if (steps_.empty()) {
      ADD_FAILURE() << "Nobody expected the window \"" << modal->windowTitle().toStdString() << "\".";
      modal->close();
      return;
    }
    const Step step = std::move(steps_.front());
    steps_.pop_front();
    step(*modal);
  }

  QTimer timer_;
  std::deque<Step> steps_;
};

template <typename Wanted>
Wanted* as(QWidget& widget) {
  auto* const typed = qobject_cast<Wanted*>(&widget);
  if (!typed) {
    ADD_FAILURE() << "\"" << widget.windowTitle().toStdString() << "\" is another window than was expected.";
    widget.close();
  }
  return typed;
}

Qt::KeyboardModifiers modifiers(std::int32_t shift) {
  Qt::KeyboardModifiers result;
  if ((shift & kShiftMask) != 0) result |= Qt::ShiftModifier;
  if ((shift & kCtrlMask) != 0) result |= Qt::ControlModifier;
  if ((shift & kAltMask) != 0) result |= Qt::AltModifier;
  return result;
}

Qt::MouseButton mouseButton(std::int32_t button) {
  if (button == kLeftButton) return Qt::LeftButton;
  if (button == kRightButton) return Qt::RightButton;
  return button == kMiddleButton ? Qt::MiddleButton : Qt::NoButton;
}

class QtPlatformUnderTest final : public ContractPlatform {
 public:
  QtPlatformUnderTest() {
    qputenv("XDG_DATA_HOME", folder_.filePath(QStringLiteral("data")).toUtf8());
    qt::DesktopParts parts;
    parts.version = {"Contract", 1, 2, 3};
    auto store = std::make_unique<store::MemoryStore>();
    parts.objectFactory = std::make_unique<posix::SharedLibraryFactory>(*store);
    parts.store = std::move(store);
    parts.stackResolver = std::make_unique<posix::LineTable>();
    parts.helpFolder = folder_.path().toStdString();
    platform_ = std::make_unique<qt::QtPlatform>(std::move(parts));
  }

  kestrel::Platform& platform() override { return *platform_; }

  std::unique_ptr<Form> controls() override { return make<Ui::frmControls>("frmControls"); }
  std::unique_ptr<Form> header() override { return make<Ui::frmHeader>("frmHeader"); }

  Site& editorSite() override {
    site_.reset();
    widget_ = std::make_unique<qt::EditorWidget>();
    site_ = std::make_unique<qt::QtSite>(*widget_, "ImageProcessingCtl", true, platform_->siteServices());
    widget_->resize(800, 600);
    widget_->show();
    settle();
    return *site_;
  }

  std::unique_ptr<TreeUser> treeUser() override { return qtTreeUser(platform_->siteServices()); }
  std::unique_ptr<ThumbnailsUser> thumbnailsUser() override {
    return qtThumbnailsUser(platform_->siteServices());
  }

  std::string folder() override { return folder_.path().toStdString(); }
  std::string host(const std::string& path) override { return path; }

  void willAnswer(std::int32_t answer) override {
    user_.then([answer](QWidget& widget) {
      auto* const box = as<QMessageBox>(widget);
      if (!box) return;
      const auto button = answer == kAnswerYes  ? QMessageBox::Yes
                          : answer == kAnswerNo ? QMessageBox::No
                          : answer == kAnswerOK ? QMessageBox::Ok
                                                : QMessageBox::Cancel;
      box->button(button)->click();
    });
  }
  void willDecide(Clash choice, bool forAll) override {
    user_.then([choice, forAll](QWidget& widget) {
      auto* const window = as<qt::QuestionWindow>(widget);
      if (!window) return;
      window->findChild<QCheckBox*>(QStringLiteral("forAll"))->setChecked(forAll);
      const char* const name = choice == Clash::kReplace    ? "replace"
                               : choice == Clash::kMerge    ? "merge"
                               : choice == Clash::kSkip     ? "skip"
                               : choice == Clash::kKeepBoth ? "keepBoth"
                                                            : "cancel";
      window->findChild<QPushButton*>(QLatin1String(name))->click();
    });
  }
  void willType(const std::string& typed) override {
    user_.then([typed](QWidget& widget) {
      auto* const box = as<QInputDialog>(widget);
      if (!box) return;
      box->setTextValue(text(typed));
      box->accept();
    });
  }
  void willCancelInput() override {
    user_.then([](QWidget& widget) {
      if (auto* const box = as<QInputDialog>(widget)) box->reject();
    });
  }
  void willUse(std::function<void(Form&)> doing) override {
    user_.then([this, doing](QWidget& widget) {
      if (as<qt::FormWindow>(widget)) doing(*form_);
    });
  }
  void willChoose(const std::string& filename) override {
    user_.then([filename](QWidget& widget) {
      auto* const dialog = as<qt::FileDialogWindow>(widget);
      if (!dialog) return;
      dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(text(filename));
      dialog->accept();
    });
  }
  void willCancelFileDialog() override {
    user_.then([](QWidget& widget) {
      if (auto* const dialog = as<qt::FileDialogWindow>(widget)) dialog->reject();
    });
  }
  void willChooseFolder(const std::string& folder) override {
    user_.then([folder](QWidget& widget) {
      auto* const dialog = as<qt::FolderDialog>(widget);
      if (!dialog) return;
      dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(text(folder));
      QMetaObject::invokeMethod(dialog, "accept");
    });
  }
  void willCancelFolderDialog() override {
    user_.then([](QWidget& widget) {
      if (auto* const dialog = as<qt::FolderDialog>(widget)) dialog->reject();
    });
  }

  void pressCloseBox(Form& form) override {
    dynamic_cast<qt::QtForm&>(form).window().close();
    settle();
  }
  bool clickCommand(Moorage& suite, const std::string& key) override {
    docking::MoorageModel& model = own(suite);
    return model.click(model.Commands().Item(key));
  }
  void typeComboText(Moorage& suite, const std::string& key, const std::string& typed) override {
    docking::MoorageModel& model = own(suite);
    model.typeComboText(model.Commands().Item(key), typed);
  }
  bool pressHotKey(Moorage& suite, std::int32_t shift, std::int32_t keyCode) override {
    return own(suite).pressHotKey(shift, keyCode);
  }

  void pressPointer(ImageView& view, std::int32_t button, std::int32_t shift, Point at) override {
    mouse(view, QEvent::MouseButtonPress, mouseButton(button), mouseButton(button), shift, at);
  }
  void movePointer(ImageView& view, std::int32_t button, std::int32_t shift, Point to) override {
    mouse(view, QEvent::MouseMove, Qt::NoButton, mouseButton(button), shift, to);
  }
  void releasePointer(ImageView& view, std::int32_t button, std::int32_t shift, Point at) override {
    mouse(view, QEvent::MouseButtonRelease, mouseButton(button), Qt::NoButton, shift, at);
  }
  void turnWheel(ImageView& view, std::int32_t notches, std::int32_t shift, Point at) override {
    constexpr int kNotch = 120;
    const QPointF position = unscaled(view, at);
    QWheelEvent event(position, canvas(view).mapToGlobal(position), QPoint(), QPoint(0, notches * kNotch),
                      Qt::NoButton, modifiers(shift), Qt::NoScrollPhase, false);
    QApplication::sendEvent(&canvas(view), &event);
  }
  void restWithPointer(ImageView& view) override {
    canvas(view).setAttribute(Qt::WA_UnderMouse);
    movePointer(view, 0, 0, {10, 10});
    // The trackers' timers expire in less than twice their interval; then only their event is pending.
    const int rest = QApplication::style()->styleHint(QStyle::SH_ToolTip_WakeUpDelay);
    for (QDeadlineTimer end(2 * rest); !end.hasExpired();) {
      QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    }
    settle();
  }
  void pickColor(ColorPicker& /*picker*/, OLE_COLOR color) override {
    QWidget* const list = colorList();
    for (QToolButton* swatch : list->findChildren<QToolButton*>()) {
      if (swatch->accessibleName() != qt::toColor(color).name()) continue;
      swatch->click();
      return;
    }
    ADD_FAILURE() << "The list has no color " << qt::toColor(color).name().toStdString() << ".";
    list->close();
  }
  void pickExtra(ColorPicker& /*picker*/) override {
    QWidget* const list = colorList();
    list->actions().front()->trigger();
    list->close();
  }
  void leaveWithPointer(ImageView& view) override {
    QEvent event(QEvent::Leave);
    QApplication::sendEvent(&canvas(view), &event);
  }
  void dragDivider(SplitPanel& panel, std::int32_t position) override {
    auto& divider = *qt::widgetOf(panel.hWnd())->findChild<QWidget*>(QStringLiteral("divider"));
    const auto send = [&](QEvent::Type type, int x, Qt::MouseButton button, Qt::MouseButtons held) {
      const QPointF at(divider.mapFromParent(QPoint(x, divider.height() / 2)));
      QMouseEvent event(type, at, divider.mapToGlobal(at), button, held, Qt::NoModifier);
      QApplication::sendEvent(&divider, &event);
    };
    const int from = divider.x();
    send(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseMove, (from + position) / 2, Qt::NoButton, Qt::LeftButton);
    send(QEvent::MouseMove, position, Qt::NoButton, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, position, Qt::LeftButton, Qt::NoButton);
  }
  void pressNoticeButton(ImageView& view) override {
    notice(view).findChild<QAbstractButton*>(QStringLiteral("noticeButton"))->click();
  }
  void closeNotice(ImageView& view) override {
    notice(view).findChild<QAbstractButton*>(QStringLiteral("noticeClose"))->click();
  }
  std::string noticeText(ImageView& view) override {
    return shown(*notice(view).findChild<QLabel*>(QStringLiteral("noticeText")));
  }
  std::string noticeButton(ImageView& view) override {
    return shown(*notice(view).findChild<QAbstractButton*>(QStringLiteral("noticeButton")));
  }
  OLE_COLOR faceColor(Form& form, Point at) override {
    qt::FormWindow& window = dynamic_cast<qt::QtForm&>(form).window();
    const auto device = [&window](int position) {
      return static_cast<int>((position + 0.5) * window.devicePixelRatioF());
    };
    const QColor color = window.face().pixelColor(device(at.X), device(at.Y));
    return color.alpha() == 0 ? kNoColor : color.red() | (color.green() << 8) | (color.blue() << 16);
  }
  void copyText(const std::string& copied) override { QApplication::clipboard()->setText(text(copied)); }

  void settle() override {
    for (int round = 0; round < 3; ++round) {
      QApplication::processEvents(QEventLoop::AllEvents, 20);
      QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
  }

 private:
  template <typename Ui>
  std::unique_ptr<Form> make(const char* name) {
    auto window = std::make_unique<qt::FormWindow>();
    Ui().setupUi(window.get());
    window->finishSetUp();
    auto form = std::make_unique<qt::QtForm>(std::move(window), name, platform_->siteServices());
    form_ = form.get();
    return form;
  }
  static QWidget* colorList() {
    QWidget* const list = QApplication::activePopupWidget();
    if (!list) throw std::logic_error("No list of colors is open.");
    return list;
  }
  static docking::MoorageModel& own(Moorage& suite) { return dynamic_cast<docking::MoorageModel&>(suite); }
  static QWidget& canvas(ImageView& view) { return dynamic_cast<qt::QtImageView&>(view).surface().canvas(); }
  static QWidget& notice(ImageView& view) { return dynamic_cast<qt::QtImageView&>(view).surface().notice(); }
  /// The text of a visible widget.
  template <typename Widget>
  static std::string shown(const Widget& widget) {
    return widget.isVisible() ? widget.text().toStdString() : std::string();
  }
  /// Converts a view position in device pixels to a widget position.
  static QPointF unscaled(ImageView& view, Point at) {
    return QPointF(at.X, at.Y) / canvas(view).devicePixelRatioF();
  }
  static void mouse(ImageView& view, QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons held,
                    std::int32_t shift, Point at) {
    const QPointF position = unscaled(view, at);
    QMouseEvent event(type, position, canvas(view).mapToGlobal(position), button, held, modifiers(shift));
    QApplication::sendEvent(&canvas(view), &event);
  }

  QTemporaryDir folder_;
  std::unique_ptr<qt::QtPlatform> platform_;
  std::unique_ptr<qt::EditorWidget> widget_;
  std::unique_ptr<qt::QtSite> site_;
  Form* form_ = nullptr;
  ModalUser user_;
};

}  // namespace

std::vector<ContractPlatformMaker> contractPlatforms() {
  return {{"Qt", [] { return std::make_unique<QtPlatformUnderTest>(); }}};
}

}  // namespace kestrel::contract

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
