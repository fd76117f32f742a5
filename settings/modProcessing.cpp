#include "modProcessing.h"

#include "RootKey.h"
#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"
#include "diagnostics/modTollgarthSupport.h"

namespace kestrel::modProcessing {
namespace {

struct Apartment {
  kestrel::Platform* platform = nullptr;
  Connection storeUnavailable;
  std::shared_ptr<Options> pOptions;
  std::shared_ptr<Colors> pColors;
};

Apartment& TheApartment() {
  thread_local Apartment apartment;
  return apartment;
}

/// Reports a store that cannot be read; its settings then have their defaults.
void RegistryStore_Unavailable(const RuntimeError& Cause) {
  try {
    throw Cause;
  } catch (...) {
    QDK_TRAILER(RegistryStore_Unavailable, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

}  // namespace

void Attach(kestrel::Platform& platform) {
  Detach();
  TheApartment().platform = &platform;
  modTollgarthSupport::Attach(&platform);
  TheApartment().storeUnavailable =
      platform.RegistryStore().Unavailable.Connect([](const RuntimeError& cause) {
        // The reader that met the error continues with the default.
        QDK_RESUME_NEXT(RegistryStore_Unavailable(cause));
      });
}

void Detach() {
  TheApartment() = Apartment();
  modTollgarthSupport::Attach(nullptr);
}

void Main() {
  try {
    modTollgarthSupport::qdkMarkInitialised();
    modTollgarthSupport::qdkInitialise();
    WindowPositions().RegistryKey(std::string(kRootKey) + "\\WindowPositions");
    RegistryStore().RootKey(kRootKey);
    RegistryStore().RootHive(HKEY_CURRENT_USER);
  } catch (...) {
    QDK_TRAILER(Main, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void KillShared() {
  try {
    TheApartment().pOptions = nullptr;
    TheApartment().pColors = nullptr;
  } catch (...) {
    QDK_TRAILER(KillShared, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

std::shared_ptr<Options> GetOptions() {
  std::shared_ptr<Options> Result;
  try {
    auto& pOptions = TheApartment().pOptions;
    if (pOptions == nullptr) pOptions = std::make_shared<Options>();
    Result = pOptions;
  } catch (...) {
    QDK_TRAILER(GetOptions, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

std::shared_ptr<Colors> GetColors() {
  std::shared_ptr<Colors> Result;
  try {
    auto& pColors = TheApartment().pColors;
    if (pColors == nullptr) pColors = Platform().CreateColors();
    Result = pColors;
  } catch (...) {
    QDK_TRAILER(GetColors, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

void SetWindowCaption(Form& form, std::string AppName, const std::string& Filename) {
  try {
    if (AppName.empty()) AppName = Platform().App().Title();
    if (!Filename.empty()) {
      form.Caption(FileHelpers().GetFileName(Filename) + " - " + AppName);
    } else {
      form.Caption("Untitled - " + AppName);
    }
  } catch (...) {
    QDK_TRAILER(SetWindowCaption, QDK_PARAMETERS(form, AppName, Filename), QDK_LOCALS());
  }
}

kestrel::Platform& Platform() {
  if (TheApartment().platform == nullptr) {
    throw RuntimeError(err::kObjectNotSet, "No platform is attached to this thread.");
  }
  return *TheApartment().platform;
}

kestrel::RegistryStore& RegistryStore() { return Platform().RegistryStore(); }
kestrel::WindowPositions& WindowPositions() { return Platform().WindowPositions(); }
kestrel::FormUtility& FormUtility() { return Platform().FormUtility(); }
kestrel::FileHelpers& FileHelpers() { return Platform().FileHelpers(); }
kestrel::WindowFunctions& WindowFunctions() { return Platform().WindowFunctions(); }
kestrel::FormSkin& FormSkin() { return Platform().FormSkin(); }

}  // namespace kestrel::modProcessing
