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

/// The platform and the shared services. They keep what was set in them, such as the key of the window
/// positions, from one component to the next.
struct Process {
  QtPlatform platform{partsOfComponent()};
  Attachment attachment{platform};
};

std::unique_ptr<Process>& presentProcess() {
  static std::unique_ptr<Process> process;
  return process;
}

/// The one of the host's application object, made if there is none.
Process& theProcess() {
  std::unique_ptr<Process>& process = presentProcess();
  if (!process) {
    process = std::make_unique<Process>();
    qAddPostRoutine([] { presentProcess().reset(); });  // run as the application object ends
  }
  return *process;
}

}  // namespace

struct Component::Inside {
  static std::shared_ptr<Inside> present() {
    static std::weak_ptr<Inside> shared;
    std::shared_ptr<Inside> inside = shared.lock();
    if (!inside) shared = inside = std::make_shared<Inside>();
    return inside;
  }

  Process& process = theProcess();
  RetiredEditors retiredEditors{process.platform.Calls};
};

Component::Component() : inside_(Inside::present()) {}

Component::~Component() = default;

RetiredEditors& Component::retiredEditors() { return inside_->retiredEditors; }

engine::ClipboardPort& Component::clipboardPort() { return inside_->process.platform.clipboardPort(); }

}  // namespace kestrel::qt
