#include "BrowserBench.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTest>
#include <utility>

#include "EditorBench.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

// Long enough for a busy machine; only a failing test waits this long.
constexpr qint64 kPatienceMilliseconds = 60'000;

QString text(const std::string& utf8) { return QString::fromStdString(utf8); }

}  // namespace

BrowserBench::BrowserBench() {
  const QString home = scratch_.filePath(QStringLiteral("home"));
  QDir().mkpath(home + QStringLiteral("/Pictures"));
  qputenv("HOME", home.toUtf8());
  qputenv("XDG_CACHE_HOME", scratch_.filePath(QStringLiteral("cache")).toUtf8());
  qputenv("XDG_DATA_HOME", scratch_.filePath(QStringLiteral("data")).toUtf8());
  folder_ = (home + QStringLiteral("/Pictures")).toStdString();
  platform_ = testPlatform();
  modProcessing::Attach(*platform_);
  modProcessing::Main();
}

BrowserBench::~BrowserBench() {
  closeWindow();
  modProcessing::Detach();
}

void BrowserBench::closeWindow() {
  connections_.clear();
  window_.reset();
}

std::string BrowserBench::pathOf(const std::string& name) const { return folder_ + "/" + name; }

bool BrowserBench::exists(const std::string& name) const { return QFileInfo::exists(text(pathOf(name))); }

bool BrowserBench::isInTrash(const std::string& name) const { return QFileInfo::exists(trashed(name)); }

void BrowserBench::restoreFromTrash(const std::string& name) const {
  EXPECT_TRUE(QFile::rename(trashed(name), text(pathOf(name)))) << name;
}

QString BrowserBench::trashed(const std::string& name) const {
  return scratch_.filePath(QStringLiteral("data/Trash/files/") + text(name));
}

std::string BrowserBench::addPicture(const std::string& name, int width, int height) {
  EXPECT_TRUE(noise(width, height).save(text(pathOf(name)))) << name;
  return pathOf(name);
}

std::string BrowserBench::addFolder(const std::string& name) {
  EXPECT_TRUE(QDir().mkpath(text(pathOf(name))));
  return pathOf(name);
}

void BrowserBench::open() {
  window_ = std::make_unique<frmImageBrowser>();
  watchLoading();
  browser().Path(folder_);
  window_->Form().Show();
  window_->Form().Width(1000);
  window_->Form().Height(700);
  window().activateWindow();
  waitUntilLoaded();
}

void BrowserBench::watchLoading() {
  const auto keep = [this](Connection connection) { connections_.push_back(std::move(connection)); };
  keep(browser().ObjectThumbnailView().FolderLoadStart.Connect([this](bool&) { loading_ = true; }));
  keep(browser().ObjectThumbnailView().FolderLoadComplete.Connect([this](bool) { loading_ = false; }));
}

void BrowserBench::waitUntil(const std::string& what, const std::function<bool()>& condition) {
  QElapsedTimer patience;
  patience.start();
  settle();
  while (!condition()) {
    if (patience.elapsed() > kPatienceMilliseconds) {
      ADD_FAILURE() << "Waited in vain: " << what;
      return;
    }
    QTest::qWait(5);
  }
}

void BrowserBench::waitUntilLoaded() {
  waitUntil("the folder is loaded", [this] { return !loading_; });
}

std::vector<std::string> BrowserBench::names(Thumbnails& thumbnails) {
  std::vector<std::string> names;
  for (std::int32_t i = 1; i <= thumbnails.Count(); ++i) {
    names.push_back(QFileInfo(text(thumbnails.Item(i).Filename())).fileName().toStdString());
  }
  return names;
}

QPoint BrowserBench::middleOf(std::int32_t item) {
  return area().fromView(view().placeOf(item).picture).center();
}

void BrowserBench::click(std::int32_t item, Qt::KeyboardModifiers modifiers, Qt::MouseButton button) {
  QTest::mouseClick(area().viewport(), button, modifiers, middleOf(item));
  settle();
}

void BrowserBench::doubleClick(std::int32_t item) {
  const QPoint at = middleOf(item);
  QTest::mouseClick(area().viewport(), Qt::LeftButton, {}, at);
  QTest::mouseDClick(area().viewport(), Qt::LeftButton, {}, at);
  settle();
}

}  // namespace kestrel::desktop
