#include "Display.h"

#include <QFileInfo>
#include <QLibrary>
#include <QString>

namespace kestrel::qt {
namespace {

bool hasWaylandSocket() {
  const QString name = qEnvironmentVariable("WAYLAND_DISPLAY");
  if (name.isEmpty()) return false;
  if (name.startsWith(QLatin1Char('/'))) return QFileInfo::exists(name);
  return QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QLatin1Char('/') + name);
}

}  // namespace

Display::Display() {
  // "name:parameters;name:parameters", in order of preference
  const QString asked = qEnvironmentVariable("QT_QPA_PLATFORM");
  if (asked.isEmpty()) {
    exists_ = hasWaylandSocket() || (qEnvironmentVariableIsSet("DISPLAY") && answersX11());
  } else {
    exists_ = !asked.startsWith(QLatin1String("xcb")) || answersX11();
  }
}

Display::~Display() {
  if (connection_) disconnect_(connection_);
}

/// Asks the display server, by the library that the toolkit uses for it. The library is loaded only if
/// needed.
bool Display::answersX11() {
  using Connect = void* (*)(const char* name, int* screen);
  using HasError = int (*)(void* connection);
  using Disconnect = void (*)(void* connection);
  QLibrary library(QStringLiteral("xcb"), 1);
  const auto connect = reinterpret_cast<Connect>(library.resolve("xcb_connect"));
  const auto hasError = reinterpret_cast<HasError>(library.resolve("xcb_connection_has_error"));
  disconnect_ = reinterpret_cast<Disconnect>(library.resolve("xcb_disconnect"));
  if (!connect || !hasError || !disconnect_) return false;
  connection_ = connect(nullptr, nullptr);
  return hasError(connection_) == 0;
}

}  // namespace kestrel::qt
