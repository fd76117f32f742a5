/// thumbnail_scroll_bench FOLDER: opens a thumbnail view of 1600 by 1000 pixels on the folder and scrolls it
/// to its end, a row in five frames, while the thumbnails are loaded. Prints how long the frames took: the
/// time of their painting, and that from one to the next, which contains everything else that the view's
/// thread does.

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "platform/qt/services/QtClipboardPort.h"
#include "platform/qt/thumbnails/QtThumbnailView.h"
#include "platform/qt/thumbnails/ThumbnailArea.h"
#include "platform/store/FileNames.h"

namespace kestrel {
namespace {

constexpr int kFrameMilliseconds = 16;
constexpr int kFramesPerRow = 5;
constexpr double kSlowMilliseconds = 33;

/// File helpers that nothing calls.
class NoHelpers final : public store::FileNames {
 public:
  NoHelpers() : FileNames("/") {}
  std::string ResolvePath(const std::string& Path) override { return Path; }
  bool CopyFiles(const std::string&, const std::string&, std::int32_t, WindowHandle) override {
    return false;
  }
  bool MoveFiles(const std::string&, const std::string&, std::int32_t, WindowHandle) override {
    return false;
  }
  bool DeleteFiles(const std::string&, const std::string&, std::int32_t, WindowHandle) override {
    return false;
  }
};

void print(const char* what, std::vector<double> times) {
  if (times.empty()) return;
  std::sort(times.begin(), times.end());
  const auto share = [&](double part) {
    return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
  };
  const auto slow = std::count_if(times.begin(), times.end(), [](double t) { return t > kSlowMilliseconds; });
  std::printf("%-19s %5zu frames, median %.1f ms, 99 %% %.1f ms, longest %.1f ms, above %.0f ms: %td\n", what,
              times.size(), share(0.5), share(0.99), times.back(), kSlowMilliseconds, slow);
}

int run(const char* folder) {
  qt::QtClipboardPort clipboard;
  NoHelpers helpers;
  OpenCalls calls;
  qt::ThumbnailArea area;
  qt::QtThumbnailView view(area, qt::ControlId{"thvBrowse"}, {clipboard, helpers, calls});
  area.resize(1600, 1000);
  area.show();

  std::vector<double> painting, between;
  QElapsedTimer clock, sinceFrame;
  const auto milliseconds = [](const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
  };
  const Connection complete = view.FolderLoadComplete.Connect([&](bool) {
    std::printf("loaded %d thumbnails in %.2f s\n", view.itemCount(), milliseconds(clock) / 1e3);
  });

  QTimer frames;
  frames.setTimerType(Qt::PreciseTimer);
  QObject::connect(&frames, &QTimer::timeout, &frames, [&] {
    if (view.itemCount() == 0) return;
    if (sinceFrame.isValid()) between.push_back(milliseconds(sinceFrame));
    sinceFrame.start();
    view.scrollBy(std::max<std::int64_t>(1, view.arrangement().pitch() / kFramesPerRow));
    QElapsedTimer paint;
    paint.start();
    area.viewport()->repaint();
    painting.push_back(milliseconds(paint));
    if (view.scroll() == view.arrangement().scrollRange()) QCoreApplication::quit();
  });
  frames.start(kFrameMilliseconds);
  clock.start();
  view.Folder(folder);
  QCoreApplication::exec();
  std::printf("scrolled to the end after %.2f s\n", milliseconds(clock) / 1e3);
  print("painting", painting);
  print("from frame to frame", between);
  return 0;
}

}  // namespace
}  // namespace kestrel

int main(int count, char** values) {
  if (count != 2) {
    std::fprintf(stderr, "usage: thumbnail_scroll_bench FOLDER\n");
    return 2;
  }
  // Thumbnails that nobody else sees; the cache is cold.
  const QTemporaryDir cache;
  qputenv("XDG_CACHE_HOME", cache.path().toUtf8());
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, values);
  return kestrel::run(values[1]);
}
