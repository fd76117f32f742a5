#include "QtFolderNotices.h"

#include <set>
#include <utility>

#include "platform/os/Paths.h"
#include "platform/qt/core/Guard.h"

namespace kestrel::qt {
namespace {

/// Changes within this time are raised together.
constexpr int kDelayMilliseconds = 100;

}  // namespace

QtFolderNotices::QtFolderNotices(QWidget& widget, ControlId id) : WidgetControl(widget, std::move(id)) {
  for (QTimer* const delay : {&delay_, &mountDelay_}) {
    delay->setInterval(kDelayMilliseconds);
    delay->setSingleShot(true);
  }
  watchFolders();
  watchMounts();
}

void QtFolderNotices::watchFolders() {
  QObject::connect(&delay_, &QTimer::timeout, receiver(), [this] { report(); });
  if (watch_.descriptor() < 0) return;
  readable_ = std::make_unique<QSocketNotifier>(watch_.descriptor(), QSocketNotifier::Read);
  QObject::connect(readable_.get(), &QSocketNotifier::activated, receiver(), [this] {
    readable_->setEnabled(false);
    delay_.start();
  });
}

void QtFolderNotices::watchMounts() {
  QObject::connect(&mountDelay_, &QTimer::timeout, receiver(), [this] { guarded([&] { DrivesChanged(); }); });
  if (mounts_.descriptor() < 0) return;
  mounted_ = std::make_unique<QSocketNotifier>(mounts_.descriptor(), QSocketNotifier::Exception);
  QObject::connect(mounted_.get(), &QSocketNotifier::activated, &mountDelay_, qOverload<>(&QTimer::start));
}

void QtFolderNotices::Folders(const std::vector<std::string>& value) {
  if (value == watched_) return;
  watched_ = value;
  std::set<std::filesystem::path> folders;
  for (const std::string& folder : value) folders.insert(os::pathOf(folder));
  watch_.watch(folders);
  // A folder that is found again may have changed before.
  if (!delay_.isActive()) delay_.start();
}

void QtFolderNotices::report() {
  if (readable_) readable_->setEnabled(true);
  std::vector<std::string> changed;
  for (const std::filesystem::path& folder : watch_.read()) changed.push_back(os::textOf(folder));
  std::vector<FolderRenaming> renamed;
  for (const auto& [from, to] : watch_.renamings()) renamed.push_back({os::textOf(from), os::textOf(to)});
  if (changed.empty()) return;
  // A folder that vanished is to be looked for again.
  watched_.clear();
  guarded([&] { Changed(changed, renamed); });
}

}  // namespace kestrel::qt
