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
  delay_.setInterval(kDelayMilliseconds);
  delay_.setSingleShot(true);
  QObject::connect(&delay_, &QTimer::timeout, receiver(), [this] { report(); });
  if (watch_.descriptor() < 0) return;
  readable_ = std::make_unique<QSocketNotifier>(watch_.descriptor(), QSocketNotifier::Read);
  QObject::connect(readable_.get(), &QSocketNotifier::activated, receiver(), [this] {
    readable_->setEnabled(false);
    delay_.start();
  });
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
  if (changed.empty()) return;
  // A folder that vanished is to be looked for again.
  watched_.clear();
  guarded([&] { Changed(changed); });
}

}  // namespace kestrel::qt
