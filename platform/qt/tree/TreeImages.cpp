#include "TreeImages.h"

#include "imaging/contract/TreeErrors.h"
#include "platform/qt/controls/PictureWidget.h"
#include "platform/qt/core/Handles.h"
#include "platform/qt/core/Pictures.h"

namespace kestrel::qt {
namespace {

QByteArray bytesOf(const std::string& key) {
  return QByteArray(key.data(), static_cast<qsizetype>(key.size()));
}

QIcon iconOf(const PictureWidget& box) {
  if (!box.source().isNull()) return box.source();
  if (!box.picture()) return {};
  return QIcon(QPixmap::fromImage(toImage(box.picture()->Pixels())));
}

}  // namespace

std::string TreeImages::Key(std::int32_t index) const {
  tree_errors::requireIndex(index, Count(), "picture");
  return keys_[static_cast<std::size_t>(index) - 1];
}

void TreeImages::Set(const std::string& key, WindowHandle iconPicture) {
  const auto* const box = qobject_cast<PictureWidget*>(widgetOf(iconPicture));
  set(key, box ? iconOf(*box) : QIcon());
}

void TreeImages::set(const std::string& key, const QIcon& icon) {
  if (!icons_.contains(bytesOf(key))) keys_.push_back(key);
  icons_.insert(bytesOf(key), icon);
  changed_();
}

const QIcon& TreeImages::icon(const std::string& key) const {
  static const QIcon kNone;
  const auto found = icons_.constFind(bytesOf(key));
  return found == icons_.constEnd() ? kNone : *found;
}

}  // namespace kestrel::qt
