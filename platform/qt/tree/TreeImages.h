#pragma once

#include <QHash>
#include <QIcon>
#include <functional>
#include <string>
#include <vector>

#include "imaging/contract/TreeView.h"

namespace kestrel::qt {

/// The icons of a tree's nodes.
class TreeImages final : public ImageList {
 public:
  /// `changed` is called when the icon of a key is replaced.
  explicit TreeImages(std::function<void()> changed) : changed_(std::move(changed)) {}

  std::int32_t Count() const override { return static_cast<std::int32_t>(keys_.size()); }
  std::string Key(std::int32_t index) const override;
  void Set(const std::string& key, WindowHandle iconPicture) override;

  void set(const std::string& key, const QIcon& icon);
  /// A null icon for an unknown key.
  const QIcon& icon(const std::string& key) const;

 private:
  std::function<void()> changed_;
  std::vector<std::string> keys_;
  QHash<QByteArray, QIcon> icons_;
};

}  // namespace kestrel::qt
