#include "ThumbnailBench.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMouseEvent>
#include <QPainter>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>
#include <system_error>

#include "platform/os/Paths.h"

namespace kestrel::desktop {
namespace {

// Long enough for a busy machine; only a failing test waits this long.
constexpr qint64 kPatienceMilliseconds = 30'000;

std::vector<std::string> namesIn(const std::string& buffer) {
  std::vector<std::string> names;
  std::string name;
  for (const char letter : buffer) {
    if (letter != '\0') {
      name += letter;
      continue;
    }
    names.push_back(name);
    name.clear();
  }
  return names;
}

}  // namespace

void PictureFolder::add(const std::string& name, const QImage& picture) const {
  // Complete at once, so that no view sees a part of it.
  const QString temporary = folder_.filePath(QStringLiteral(".new"));
  picture.save(temporary, "PNG");
  std::filesystem::rename(temporary.toStdString(), os::pathOf(file(name)));
}

void PictureFolder::add(const std::string& name, const QColor& color, QSize size) const {
  QImage picture(size, QImage::Format_ARGB32);
  picture.fill(color);
  add(name, picture);
}

void PictureFolder::addMany(int count) const {
  for (int i = 1; i <= count; ++i) {
    add("img" + std::to_string(i) + ".png", QColor::fromHsv(i * 37 % 360, 160, 220));
  }
}

void PictureFolder::addBroken(const std::string& name) const {
  QFile file(QString::fromStdString(this->file(name)));
  if (file.open(QIODevice::WriteOnly)) file.write("This is no picture.");
}

void PictureFolder::remove(const std::string& name) const { std::filesystem::remove(os::pathOf(file(name))); }

bool PictureFolder::has(const std::string& name) const {
  return std::filesystem::exists(os::pathOf(file(name)));
}

bool RecordingHelpers::record(const char* what, const std::string& buffer, const std::string& folder,
                              WindowHandle window) {
  log = what;
  for (const std::string& name : namesIn(buffer)) log += " " + GetFileName(name);
  target = folder;
  owner = window;
  return !before || before();
}

bool RecordingHelpers::CopyFiles(const std::string& Buffer, const std::string& Folder, std::int32_t /*Flags*/,
                                 WindowHandle Owner) {
  if (!record("copy", Buffer, Folder, Owner)) return false;
  std::error_code failed;
  for (const std::string& name : namesIn(Buffer)) {
    std::filesystem::copy(os::pathOf(name), os::pathOf(Folder + "/" + GetFileName(name)), failed);
  }
  return !failed;
}

bool RecordingHelpers::MoveFiles(const std::string& Buffer, const std::string& Folder, std::int32_t /*Flags*/,
                                 WindowHandle Owner) {
  if (!record("move", Buffer, Folder, Owner)) return false;
  std::error_code failed;
  for (const std::string& name : namesIn(Buffer)) {
    std::filesystem::rename(os::pathOf(name), os::pathOf(Folder + "/" + GetFileName(name)), failed);
  }
  return !failed;
}

bool RecordingHelpers::DeleteFiles(const std::string& Buffer, const std::string& Folder,
                                   std::int32_t /*Flags*/, WindowHandle Owner) {
  return record("delete", Buffer, Folder, Owner);
}

ThumbnailBench::ThumbnailBench(QSize size) : window_(std::make_unique<QWidget>()) {
  auto* const layout = new QVBoxLayout(window_.get());
  layout->setContentsMargins(0, 0, 0, 0);
  area_ = new qt::ThumbnailArea;
  area_->setFrameShape(QFrame::NoFrame);
  layout->addWidget(area_);
  const qt::SiteServices services{clipboard_, helpers_, calls_};
  view_ = std::make_unique<qt::QtThumbnailView>(*area_, qt::ControlId{"thvBrowse"}, services);
  view_->UserMode(true);
  window_->resize(size);
  window_->show();
  QApplication::setActiveWindow(window_.get());
  area_->setFocus();
  settle();
}

ThumbnailBench::~ThumbnailBench() { destroy(); }

void ThumbnailBench::destroy() {
  view_.reset();
  window_.reset();
  area_ = nullptr;
}

void ThumbnailBench::open(const PictureFolder& folder) {
  bool loaded = false;
  const Connection complete = view_->FolderLoadComplete.Connect([&](bool) { loaded = true; });
  view_->Folder(folder.path());
  ASSERT_TRUE(eventually([&] { return loaded; }));
  settle();
}

void ThumbnailBench::waitForLoad() {
  EXPECT_TRUE(eventually([this] {
    for (std::int32_t item = 0; item < view_->itemCount(); ++item) {
      if (view_->factsOf(item).state == thumbnails::ItemState::kWaiting) return false;
    }
    return true;
  }));
}

QPoint ThumbnailBench::inWindow(const Rectangle& place) const {
  return area_->viewport()->mapTo(window_.get(), area_->fromView(place).center());
}

QPoint ThumbnailBench::middleOf(std::int32_t item) const { return inWindow(view_->placeOf(item).cell); }

void ThumbnailBench::sendMouse(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held,
                               Qt::KeyboardModifiers modifiers) const {
  QMouseEvent event(type, QPointF(at), window_->mapToGlobal(QPointF(at)), button, held, modifiers);
  QApplication::sendEvent(window_->windowHandle(), &event);
}

void ThumbnailBench::press(QPoint at, Qt::KeyboardModifiers modifiers) const {
  sendMouse(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, modifiers);
}

void ThumbnailBench::move(QPoint to, Qt::KeyboardModifiers modifiers) const {
  sendMouse(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, modifiers);
}

void ThumbnailBench::release(QPoint at, Qt::KeyboardModifiers modifiers) const {
  sendMouse(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton, modifiers);
}

void ThumbnailBench::click(std::int32_t item, Qt::KeyboardModifiers modifiers) const {
  const QPoint at = middleOf(item);
  press(at, modifiers);
  release(at, modifiers);
}

void ThumbnailBench::doubleClick(std::int32_t item) const {
  const QPoint at = middleOf(item);
  press(at);
  release(at);
  sendMouse(QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton, {});
  if (window_) release(at);
}

void ThumbnailBench::rightClick(QPoint at) const {
  sendMouse(QEvent::MouseButtonPress, at, Qt::RightButton, Qt::RightButton, {});
  if (window_) sendMouse(QEvent::MouseButtonRelease, at, Qt::RightButton, Qt::NoButton, {});
}

void ThumbnailBench::key(Qt::Key key, Qt::KeyboardModifiers modifiers) const {
  QTest::keyClick(window_->windowHandle(), key, modifiers);
}

void ThumbnailBench::type(const std::string& text) const {
  for (const char letter : text) QTest::keyClick(window_->windowHandle(), letter);
}

std::string ThumbnailBench::selection() {
  std::string items;
  for (std::int32_t item = 0; item < view_->itemCount(); ++item) {
    if (view_->isSelected(item)) items += (items.empty() ? "" : " ") + std::to_string(item);
  }
  return items;
}

std::string ThumbnailBench::names() {
  std::string all;
  for (std::int32_t item = 0; item < view_->itemCount(); ++item) {
    all += (all.empty() ? "" : " ") + view_->factsOf(item).label;
  }
  return all;
}

QImage ThumbnailBench::grab() { return area_->viewport()->grab().toImage(); }

QImage ThumbnailBench::grabPicture(std::int32_t item) {
  const Rectangle place = view_->pictureOf(item).target;
  QImage picture = grab().copy(place.Left, place.Top, place.Width, place.Height);
  picture.setDevicePixelRatio(1);
  return picture;
}

void ThumbnailBench::screenshot(const std::string& name) {
  const QDir folder(QStringLiteral(KESTREL_SCREENSHOTS));
  folder.mkpath(QStringLiteral("."));
  const QString file =
      QStringLiteral("%1@%2.png").arg(QString::fromStdString(name)).arg(qApp->devicePixelRatio());
  window_->grab().save(folder.filePath(file));
}

void settle() {
  for (int round = 0; round < 3; ++round) QTest::qWait(5);
}

bool eventually(const std::function<bool()>& condition) {
  QElapsedTimer clock;
  clock.start();
  while (!condition() && clock.elapsed() < kPatienceMilliseconds) settle();
  return condition();
}

}  // namespace kestrel::desktop
