#include "Component.h"

#include <QCoreApplication>
#include <string_view>
#include <utility>

#include "HostLink.h"
#include "base/RuntimeError.h"
#include "engine/recovery/RecoveryFolder.h"
#include "platform/posix/LineTable.h"
#include "platform/posix/SharedLibraryFactory.h"
#include "platform/qt/app/HelpFolder.h"
#include "platform/qt/app/QtPlatform.h"
#include "platform/qt/core/Language.h"
#include "platform/sqlite/SqliteStore.h"
#include "platform/sqlite/StorePath.h"
#include "settings/modProcessing.h"

namespace kestrel::qt {
namespace {

DesktopParts partsOfComponent(const std::string& settingsName, HostLink& link) {
  DesktopParts parts;
  parts.version = {"KestrelLib2", KESTREL_VERSION_MAJOR, KESTREL_VERSION_MINOR, KESTREL_VERSION_REVISION};
  parts.store = std::make_unique<sqlite::SqliteStore>(sqlite::storePath(settingsName));
  parts.objectFactory = std::make_unique<posix::SharedLibraryFactory>(*parts.store);
  parts.stackResolver = std::make_unique<posix::LineTable>();
  parts.helpFolder = helpFolder(QCoreApplication::applicationFilePath().toStdString());
  parts.wrapBoxes = [&link](std::unique_ptr<UserInterface> desktop) {
    return std::make_unique<HostBoxes>(link, std::move(desktop));
  };
  return parts;
}

std::string checkedName(const std::string& settingsName) {
  constexpr std::size_t kLongest = 64;
  constexpr std::string_view kAllowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-_";
  if (settingsName.size() > kLongest || settingsName.find_first_not_of(kAllowed) != std::string::npos) {
    throw RuntimeError(err::kInvalidCall, "\"" + settingsName + "\" cannot be a name of settings.");
  }
  return settingsName;
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

std::unique_ptr<RecoveryStore> storeOfUnsavedPictures(const std::string& settingsName) {
  const std::filesystem::path folder = sqlite::recoveryPath(settingsName);
  return folder.empty() ? nullptr : std::make_unique<engine::RecoveryFolder>(folder);
}

/// Before the first window.
struct Language {
  Language() { useLanguage({}); }
};

/// The platform and the shared services. They keep what was set in them, such as the key of the window
/// positions, from one component to the next.
struct Process {
  explicit Process(std::string name) : settingsName(std::move(name)) {}

  const std::string settingsName;
  HostLink link;
  Language language;
  QtPlatform platform{partsOfComponent(settingsName, link)};
  Attachment attachment{platform};
  std::unique_ptr<RecoveryStore> recoveryStore = storeOfUnsavedPictures(settingsName);
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
  explicit Inside(const std::string& settingsName) {
    Process*& process = presentProcess();
    if (process == nullptr) {
      qAddPostRoutine(endProcess);
    } else if (process->settingsName == settingsName) {
      return;
    } else {
      destroyProcess();
    }
    process = new Process(settingsName);
  }

  ~Inside() {
    if (!ended) presentProcess()->platform.clearRetired();
  }
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;

  static std::shared_ptr<Inside> present(const std::optional<std::string>& settingsName) {
    std::shared_ptr<Inside> inside = shared().lock();
    if (!inside) {
      shared() = inside = std::make_shared<Inside>(settingsName.value_or(""));
    } else if (settingsName && *settingsName != presentProcess()->settingsName) {
      throw RuntimeError(err::kInvalidCall, "A component of this program uses other settings already.");
    }
    return inside;
  }

  /// Runs as the application object ends. Components that are left get the state of the next one.
  static void endProcess() {
    if (const std::shared_ptr<Inside> inside = shared().lock()) inside->ended = true;
    shared().reset();
    destroyProcess();
  }

  bool ended = false;

 private:
  static void destroyProcess() {
    if (presentProcess() == nullptr) return;
    presentProcess()->platform.clearRetired();  // while the thread has its platform
    delete std::exchange(presentProcess(), nullptr);
  }

  static std::weak_ptr<Inside>& shared() {
    static std::weak_ptr<Inside> shared;
    return shared;
  }
};

Component::Component() : inside_(Inside::present(settingsName_)) {}

Component::Component(const std::string& settingsName)
    : settingsName_(checkedName(settingsName)), inside_(Inside::present(settingsName_)) {}

Component::~Component() {
  if (!services_ || inside_->ended) return;
  HostLink& link = presentProcess()->link;
  if (link.services() == services_) link.services(nullptr);
}

Component::Inside& Component::inside() {
  if (inside_->ended) {
    inside_ = Inside::present(settingsName_);
    if (services_) presentProcess()->link.services(services_);
  }
  return *inside_;
}

void Component::setServices(std::shared_ptr<HostServices> services) {
  inside();
  services_ = std::move(services);
  presentProcess()->link.services(services_);
}

QString Component::language() {
  inside();
  return qt::language();
}

void Component::setLanguage(const QString& locale) {
  inside();
  useLanguage(locale);
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
