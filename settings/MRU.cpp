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

/// Removes the elements after the first one from the window's menu.
void UnloadMenu(MenuItems& window) {
  try {
    for (std::int32_t i = 1;; ++i) window.Unload(kMenu, i);
  } catch (const RuntimeError&) {
    // The first missing element ends the array.
  }
}

}  // namespace

MRU::MRU() {
  QDK_RESUME_NEXT(RootKey =
                      "Software\\Brindlewick\\" + modProcessing::Platform().App().Title() + "\\RecentFiles");
}

void MRU::AddFile(std::string Filename) {
  try {
    LoadUnread();
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

void MRU::RemoveFile(std::string Filename) {
  try {
    LoadUnread();
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
    iUnread = true;
    for (i = 1; i <= MaxEntries; ++i) {
      const Variant stored = modProcessing::RegistryStore().ReadValue(RootHive, RootKey, ValueName(i));
      // A value of another kind does not belong to this list, and ends it like a gap.
      const bool isText = stored.TypeCode() == static_cast<std::int32_t>(Variant::Type::kString);
      Filename = isText ? stored.ToString() : std::string();
      if (Filename.empty()) break;
      if (!PurgeInvalidFiles || FileExist(Filename)) {
        QDK_RESUME_NEXT(Files.Add(Filename, Filename));
      } else {
        NeedsSave = true;
      }
    }
    iUnread = modProcessing::RegistryStore().ReadFailed();
    if (NeedsSave) SaveToRegistry();
  } catch (...) {
    QDK_TRAILER(LoadFromRegistry, QDK_PARAMETERS(), QDK_LOCALS(i, Filename, NeedsSave));
  }
}

/// Tries a failed load again before the list changes. What came since stays in front.
void MRU::LoadUnread() {
  if (!iUnread) return;
  const Collection<std::string> since = Files;
  LoadFromRegistry();
  for (std::int32_t i = since.Count(); i >= 1; --i) {
    const std::string& filename = since.Item(i);
    QDK_RESUME_NEXT(Files.Remove(filename));
    Files.Add(filename, filename, Files.Count() == 0 ? 0 : 1);
  }
}

void MRU::SaveToRegistry() {
  std::int32_t i = 0, X = 0;
  try {
    auto& store = modProcessing::RegistryStore();
    if (iUnread) {
      return store.AbandonWrite(
          RuntimeError(err::kDeviceIO,
                       "The list of recent files could not be stored: the stored list could not be read."));
    }
    StoreBatch batch(store);
    QDK_RESUME_NEXT(store.CreateKey(RootHive, RootKey));
    for (i = 1; i <= MaxEntries; ++i) store.DeleteValue(RootHive, RootKey, ValueName(i));
    for (X = 1; X <= Files.Count(); ++X) {
      store.WriteValue(RootHive, RootKey, ValueName(X), Files.Item(X), kStoreString);
    }
    batch.Commit();
  } catch (...) {
    QDK_TRAILER(SaveToRegistry, QDK_PARAMETERS(), QDK_LOCALS(i, X));
  }
}

void MRU::BuildMRU(MenuItems* ParentForm) {
  try {
    if (CommandMRU != nullptr) {
      CommandItems& items = CommandMRU->Items();
      items.Clear();
      for (const std::string& filename : Files) items.Add(filename);
    } else if (SmartUI != nullptr) {
      BuildSmartMenu(*SmartUI);
    } else if (ParentForm != nullptr) {
      BuildMenu(*ParentForm);
    }
  } catch (...) {
    QDK_TRAILER(BuildMRU, QDK_PARAMETERS(ParentForm), QDK_LOCALS());
  }
}

// Errors of the displays are reported by BuildMRU.

void MRU::BuildSmartMenu(SmartMenu& menu) const {
  for (std::int32_t i = 1; menu.SubItem(kSmartItem, SmartKey(i)) != nullptr; ++i) {
    menu.RemoveSubItem(kSmartItem, SmartKey(i));
  }
  const auto emptyEntry = [&menu]() -> SmartSubItem& {
    if (auto* item = menu.SubItem(kSmartItem, kSmartPlaceholder)) return *item;
    throw RuntimeError(err::kInvalidCall, "The menu has no entry \"norecentfiles\".");
  };
  std::int32_t count = 0;
  for (const std::string& filename : Files) {
    if (filename.empty()) continue;
    ++count;
    SmartSubItem& item = menu.AddSubItem(kSmartItem, emptyEntry().Index() + count, SmartKey(count),
                                         NumberedCaption(count, filename));
    item.Tag(filename);
    item.Description(filename);
  }
  emptyEntry().Visibility(count == 0 ? 1 : 0);
}

void MRU::BuildMenu(MenuItems& window) const {
  UnloadMenu(window);
  std::int32_t count = 0;
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
