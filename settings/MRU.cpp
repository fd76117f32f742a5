#include "MRU.h"

#include "base/Numbers.h"
#include "diagnostics/Trailer.h"
#include "modProcessing.h"

namespace kestrel {
namespace {

constexpr char kMenu[] = "mnuMRU";
constexpr char kSmartItem[] = "mru";
constexpr char kSmartPlaceholder[] = "norecentfiles";
constexpr std::int32_t kCaptionLength = 50;

std::string SmartKey(std::int32_t index) { return "File" + ToText(index); }

/// "&1 c:\...\a.png": the index is the access key.
std::string NumberedCaption(std::int32_t index, const std::string& filename) {
  return "&" + ToText(index) + " " + modProcessing::FileHelpers().CompactPath(filename, kCaptionLength, "\\");
}

/// Takes the elements behind the first one out of the window's menu.
void UnloadMenu(MenuItems& window) {
  try {
    for (std::int32_t i = 1;; ++i) window.Unload(kMenu, i);
  } catch (const RuntimeError&) {
    // The first one that isn't there ends the array.
  }
}

}  // namespace

MRU::MRU() {
  QDK_RESUME_NEXT(RootKey =
                      "Software\\Brindlewick\\" + modProcessing::Platform().App().Title() + "\\RecentFiles");
}

void MRU::AddFile(const std::string& Filename) {
  try {
    QDK_RESUME_NEXT(Files.Remove(Filename));
    if (Files.Count() == 0) {
      Files.Add(Filename, Filename);
    } else {
      Files.Add(Filename, Filename, 1);
    }
    SaveToRegistry();
    if (Band != nullptr) ConstructToBand();
    BuildMRU(nullptr);
  } catch (...) {
    QDK_TRAILER(AddFile, QDK_PARAMETERS(Filename), QDK_LOCALS());
  }
}

void MRU::RemoveFile(const std::string& Filename) {
  try {
    QDK_RESUME_NEXT(Files.Remove(Filename));
    SaveToRegistry();
    if (Band != nullptr) ConstructToBand();
  } catch (...) {
    QDK_TRAILER(RemoveFile, QDK_PARAMETERS(Filename), QDK_LOCALS());
  }
}

void MRU::LoadFromRegistry() {
  std::int32_t i = 0;
  std::string Filename;
  bool NeedsSave = false;
  try {
    Files.Clear();
    for (i = 1; i <= MaxEntries; ++i) {
      const Variant stored = modProcessing::RegistryStore().ReadValue(RootHive, RootKey, ValueName(i));
      // A value of another kind is not of this list, and ends it like a gap.
      const bool isText = stored.TypeCode() == static_cast<std::int32_t>(Variant::Type::kString);
      Filename = isText ? stored.ToString() : std::string();
      if (Filename.empty()) break;
      if (!PurgeInvalidFiles || FileExist(Filename)) {
        QDK_RESUME_NEXT(Files.Add(Filename, Filename));
      } else {
        NeedsSave = true;
      }
    }
    if (NeedsSave) SaveToRegistry();
  } catch (...) {
    QDK_TRAILER(LoadFromRegistry, QDK_PARAMETERS(), QDK_LOCALS(i, Filename, NeedsSave));
  }
}

void MRU::SaveToRegistry() {
  std::int32_t i = 0, X = 0;
  try {
    auto& store = modProcessing::RegistryStore();
    QDK_RESUME_NEXT(store.CreateKey(RootHive, RootKey));
    for (i = 1; i <= MaxEntries; ++i) store.DeleteValue(RootHive, RootKey, ValueName(i));
    for (X = 1; X <= Files.Count(); ++X) {
      store.WriteValue(RootHive, RootKey, ValueName(X), Files.Item(X), kStoreString);
    }
  } catch (...) {
    QDK_TRAILER(SaveToRegistry, QDK_PARAMETERS(), QDK_LOCALS(i, X));
  }
}

void MRU::BuildMRU(MenuItems* ParentForm) {
  try {
    if (CommandMRU != nullptr) {
      BuildCommand();
    } else if (SmartUI != nullptr) {
      BuildSmartMenu();
    } else if (ParentForm != nullptr) {
      BuildMenu(*ParentForm);
    }
  } catch (...) {
    QDK_TRAILER(BuildMRU, QDK_PARAMETERS(ParentForm), QDK_LOCALS());
  }
}

void MRU::BuildCommand() {
  try {
    CommandItems& items = CommandMRU->Items();
    items.Clear();
    for (const std::string& filename : Files) items.Add(filename);
  } catch (...) {
    QDK_TRAILER(BuildCommand, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void MRU::BuildSmartMenu() {
  std::int32_t count = 0;
  try {
    for (std::int32_t i = 1; SmartUI->SubItem(kSmartItem, SmartKey(i)) != nullptr; ++i) {
      SmartUI->RemoveSubItem(kSmartItem, SmartKey(i));
    }
    const auto emptyEntry = [&]() -> SmartSubItem& {
      if (auto* item = SmartUI->SubItem(kSmartItem, kSmartPlaceholder)) return *item;
      throw RuntimeError(err::kInvalidCall, "The menu has no entry \"norecentfiles\".");
    };
    for (const std::string& filename : Files) {
      if (filename.empty()) continue;
      ++count;
      SmartSubItem& item = SmartUI->AddSubItem(kSmartItem, emptyEntry().Index() + count, SmartKey(count),
                                               NumberedCaption(count, filename));
      item.Tag(filename);
      item.Description(filename);
    }
    emptyEntry().Visibility(count == 0 ? 1 : 0);
  } catch (...) {
    QDK_TRAILER(BuildSmartMenu, QDK_PARAMETERS(), QDK_LOCALS(count));
  }
}

void MRU::BuildMenu(MenuItems& window) {
  std::int32_t count = 0;
  try {
    UnloadMenu(window);
    for (const std::string& filename : Files) {
      if (filename.empty()) continue;
      MenuItem& item = window.Load(kMenu, ++count);
      item.Caption(NumberedCaption(count, filename));
      item.Tag(filename);
      item.Enabled(true);
      item.Visible(true);
    }
    MenuItem& emptyEntry = window.Item(kMenu, 0);
    emptyEntry.Visible(count == 0);
    emptyEntry.Enabled(count == 0);
  } catch (...) {
    QDK_TRAILER(BuildMenu, QDK_PARAMETERS(window), QDK_LOCALS(count));
  }
}

void MRU::ConstructToBand() {
  try {
    LoadFromRegistry();
  } catch (...) {
    QDK_TRAILER(ConstructToBand, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

bool MRU::FileExist(const std::string& Filename) {
  bool Result = false;
  try {
    Result = modProcessing::FormUtility().FileExists(Filename);
  } catch (...) {
    QDK_TRAILER(FileExist, QDK_PARAMETERS(Filename), QDK_LOCALS(Result));
  }
  return Result;
}

std::string MRU::ValueName(std::int32_t index) const { return RootValuePrefix + ToText(index); }

std::string MRU::qdkDumpModuleVariables() const {
  return QDK_FIELDS(MaxEntries, RootHive, RootKey, RootValuePrefix, Files, PurgeInvalidFiles, Band,
                    CommandMRU, SmartUI, AddBandShortcuts);
}

}  // namespace kestrel
