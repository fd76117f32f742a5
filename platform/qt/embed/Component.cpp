#include "Component.h"

#include <QCoreApplication>

#include "../QtPlatform.h"
#include "platform/posix/LineTable.h"
#include "platform/posix/SharedLibraryFactory.h"
#include "platform/sqlite/SqliteStore.h"
#include "platform/sqlite/StorePath.h"
#include "settings/modProcessing.h"

namespace kestrel::qt {
namespace {

DesktopParts partsOfComponent() {
  DesktopParts parts;
  parts.version = {"KestrelLib2", KESTREL_VERSION_MAJOR, KESTREL_VERSION_MINOR, KESTREL_VERSION_REVISION};
  parts.store = std::make_unique<sqlite::SqliteStore>(sqlite::storePath());
  parts.objectFactory = std::make_unique<posix::SharedLibraryFactory>(*parts.store);
  parts.stackResolver = std::make_unique<posix::LineTable>();
  parts.helpFolder = QCoreApplication::applicationDirPath().toStdString() + "/help";
  return parts;
}

}  // namespace

struct Component::Inside {
  QtPlatform platform{partsOfComponent()};
};

Component::Component() : inside_(std::make_unique<Inside>()) {
  modProcessing::Attach(inside_->platform);
  modProcessing::Main();
}

Component::~Component() { modProcessing::Detach(); }

engine::ClipboardPort& Component::clipboardPort() { return inside_->platform.clipboardPort(); }

}  // namespace kestrel::qt
