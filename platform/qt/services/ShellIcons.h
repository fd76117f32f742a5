#pragma once

#include <QHash>
#include <QIcon>
#include <QString>
#include <cstdint>
#include <vector>

#include "imaging/contract/Types.h"

namespace kestrel::qt {

/// The icons of drives, folders and files, by number: from the desktop's theme, or from our own set where the
/// theme has none.
class ShellIcons {
 public:
  enum class Kind { kDrive, kRemovable, kDisc, kNetwork, kHome, kFolder };

  /// Equal icons have one number.
  std::int32_t numberOf(Kind kind);
  std::int32_t numberOfFile(const QString& path);
  /// Draws an icon on a picture; nothing for an unknown number.
  void draw(std::int32_t number, int size, WindowHandle picture) const;

  /// False if the picture is none, or the icon is null.
  static bool draw(const QIcon& icon, int size, WindowHandle picture);

 private:
  std::int32_t add(const QString& name, const QIcon& icon);

  QHash<QString, std::int32_t> numbers_;
  std::vector<QIcon> icons_;
};

}  // namespace kestrel::qt
