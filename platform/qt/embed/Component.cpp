#include "Component.h"

#include <QCoreApplication>

#include "RetiredEditors.h"
#include "platform/posix/LineTable.h"
#include "platform/posix/SharedLibraryFactory.h"
#include "platform/qt/app/QtPlatform.h"
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

/// The thread's attachment to its platform.
struct Attachment {
  explicit Attachment(Platform& platform) {
    modProcessing::Attach(platform);
    modProcessing::Main();
  }
  ~Attachment() { modProcessing::Detach(); }
  Attachment(const Attachment&) = delete;
  Attachment& operator=(const Attachment&) = delete;
};

}  // namespace

struct Component::Inside {
  /// The attachment of this thread, created if there is none.
  static std::shared_ptr<Inside> ofThread() {
    thread_local std::weak_ptr<Inside> present;
    std::shared_ptr<Inside> inside = present.lock();
    if (!inside) present = inside = std::make_shared<Inside>();
    return inside;
  }

  QtPlatform platform{partsOfComponent()};
  Attachment attachment{platform};
  RetiredEditors retiredEditors{platform.Calls};
};

Component::Component() : inside_(Inside::ofThread()) {}

Component::~Component() = default;

RetiredEditors& Component::retiredEditors() { return inside_->retiredEditors; }

engine::ClipboardPort& Component::clipboardPort() { return inside_->platform.clipboardPort(); }

}  // namespace kestrel::qt
