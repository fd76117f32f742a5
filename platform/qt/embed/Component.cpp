#include "Component.h"

#include <QCoreApplication>
#include <utility>

#include "engine/recovery/RecoveryFolder.h"
#include "platform/posix/LineTable.h"
#include "platform/posix/SharedLibraryFactory.h"
#include "platform/qt/app/HelpFolder.h"
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
  parts.helpFolder = helpFolder(QCoreApplication::applicationFilePath().toStdString());
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

std::unique_ptr<RecoveryStore> storeOfUnsavedPictures() {
  const std::filesystem::path folder = sqlite::recoveryPath();
  return folder.empty() ? nullptr : std::make_unique<engine::RecoveryFolder>(folder);
}

/// The platform and the shared services. They keep what was set in them, such as the key of the window
/// positions, from one component to the next.
struct Process {
  QtPlatform platform{partsOfComponent()};
  Attachment attachment{platform};
  std::unique_ptr<RecoveryStore> recoveryStore = storeOfUnsavedPictures();
};

/// The one of the present application object, null without one. A plain pointer: a host that calls exit()
/// keeps its application object, and then destroying this with the static objects would come after the end of
/// the thread's own objects, which it uses.
Process*& presentProcess() {
  static Process* process = nullptr;
  return process;
}

}  // namespace

/// The state that the components of one application object share.
struct Component::Inside {
  Inside() {
    Process*& process = presentProcess();
    if (process == nullptr) {
      process = new Process;
      qAddPostRoutine(endProcess);
    }
  }

  ~Inside() {
    if (!ended) presentProcess()->platform.clearRetired();
  }
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;

  static std::shared_ptr<Inside> present() {
    std::shared_ptr<Inside> inside = shared().lock();
    if (!inside) shared() = inside = std::make_shared<Inside>();
    return inside;
  }

  /// Runs as the application object ends. Components that are left get the state of the next one.
  static void endProcess() {
    if (const std::shared_ptr<Inside> inside = shared().lock()) inside->ended = true;
    shared().reset();
    presentProcess()->platform.clearRetired();  // while the thread has its platform
    delete std::exchange(presentProcess(), nullptr);
  }

  bool ended = false;

 private:
  static std::weak_ptr<Inside>& shared() {
    static std::weak_ptr<Inside> shared;
    return shared;
  }
};

Component::Component() : inside_(Inside::present()) {}

Component::~Component() = default;

Component::Inside& Component::inside() {
  if (inside_->ended) inside_ = Inside::present();
  return *inside_;
}

Platform& Component::platform() {
  inside();
  return presentProcess()->platform;
}

RecoveryStore* Component::recoveryStore() {
  inside();
  return presentProcess()->recoveryStore.get();
}

const SiteServices& Component::siteServices() {
  inside();
  return presentProcess()->platform.siteServices();
}

}  // namespace kestrel::qt
