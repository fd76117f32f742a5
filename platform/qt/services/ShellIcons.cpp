#include "ShellIcons.h"

#include <QFileIconProvider>
#include <QFileInfo>
#include <memory>

#include "platform/qt/controls/PictureWidget.h"
#include "platform/qt/core/Handles.h"
#include "platform/qt/core/Pictures.h"
#include "platform/qt/core/SvgIcon.h"

namespace kestrel::qt {
namespace {

/// The names of an icon in the theme and in our own set, in the order of `ShellIcons::Kind`.
struct IconNames {
  const char* theme;
  const char* own;
};
constexpr IconNames kNames[] = {
    {"drive-harddisk", "drive"}, {"drive-removable-media", "removable"},
    {"media-optical", "cd"},     {"folder-remote", "network"},
    {"user-home", "home"},       {"folder", "folder"},
};

}  // namespace

std::int32_t ShellIcons::numberOf(Kind kind) {
  const IconNames& names = kNames[static_cast<std::size_t>(kind)];
  const QString theme = QLatin1String(names.theme);
  const auto known = numbers_.constFind(theme);
  return known != numbers_.constEnd() ? *known : add(theme, QIcon::fromTheme(theme, svgIcon(names.own)));
}

std::int32_t ShellIcons::numberOfFile(const QString& path) {
  const QIcon icon = QFileIconProvider().icon(QFileInfo(path));
  const QString name = QStringLiteral("file:%1").arg(icon.cacheKey());
  const auto known = numbers_.constFind(name);
  return known != numbers_.constEnd() ? *known : add(name, icon);
}

std::int32_t ShellIcons::add(const QString& name, const QIcon& icon) {
  const auto number = static_cast<std::int32_t>(icons_.size());
  numbers_.insert(name, number);
  icons_.push_back(icon);
  return number;
}

void ShellIcons::draw(std::int32_t number, int size, WindowHandle picture) const {
  if (number < 0 || static_cast<std::size_t>(number) >= icons_.size()) return;
  draw(icons_[static_cast<std::size_t>(number)], size, picture);
}

bool ShellIcons::draw(const QIcon& icon, int size, WindowHandle picture) {
  auto* const box = qobject_cast<PictureWidget*>(widgetOf(picture));
  if (!box || icon.isNull()) return false;
  box->setPicture(std::make_shared<ImagePicture>(icon.pixmap(QSize(size, size), 1.0).toImage()), icon);
  return true;
}

}  // namespace kestrel::qt
