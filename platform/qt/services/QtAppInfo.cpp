#include "QtAppInfo.h"

#include <QCoreApplication>

#include "../Text.h"

namespace kestrel::qt {

std::string QtAppInfo::ModuleFilename() const { return fromQt(QCoreApplication::applicationFilePath()); }

std::string QtAppInfo::CommandLine() const { return fromQt(QCoreApplication::arguments().join(u' ')); }

}  // namespace kestrel::qt
