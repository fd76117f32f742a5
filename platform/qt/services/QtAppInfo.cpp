#include "QtAppInfo.h"

#include <QCoreApplication>

#include "platform/qt/core/Text.h"
#include "platform/store/CommandLine.h"

namespace kestrel::qt {

std::string QtAppInfo::ModuleFilename() const { return fromQt(QCoreApplication::applicationFilePath()); }

std::string QtAppInfo::CommandLine() const {
  std::vector<std::string> arguments;
  for (const QString& argument : QCoreApplication::arguments()) arguments.push_back(fromQt(argument));
  return store::commandLineOf(arguments);
}

}  // namespace kestrel::qt
