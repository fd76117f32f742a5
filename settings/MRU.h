#pragma once

#include <cstdint>
#include <string>

#include "base/Collection.h"
#include "base/Object.h"
#include "diagnostics/modTollgarthSupport.h"
#include "imaging/contract/MenuItems.h"
#include "imaging/contract/Moorage.h"
#include "imaging/contract/RegistryStore.h"
#include "imaging/contract/SmartMenu.h"

namespace kestrel {

/// The list of recently used files: kept in the key store, shown in a list command, a smart menu or the menu
/// of a window.
///
/// While an object lives, the list may outgrow `MaxEntries`, in memory and in the store; only that many
/// values are ever read or cleared.
class MRU : public Object {
 public:
  MRU();
  std::string TypeName() const override { return "MRU"; }

  std::int32_t MaxEntries = 10;  ///< how many values are read and cleared
  std::int32_t RootHive = HKEY_CURRENT_USER;
  std::string RootKey;
  std::string RootValuePrefix = "MRU";  ///< value names are this and 1, 2, 3, ...
  Collection<std::string> Files;        ///< newest first, each under itself as key
  bool PurgeInvalidFiles = true;        ///< files that exist no longer are dropped on load
  Object* Band = nullptr;
  Command* CommandMRU = nullptr;  ///< the list command that shows the list
  SmartMenu* SmartUI = nullptr;   ///< or else the menu
  bool AddBandShortcuts = true;

  /// Puts a file first, wherever it stood, then stores and shows the list.
  void AddFile(std::string Filename);
  /// Takes a file out and stores the list. What is shown stays.
  void RemoveFile(std::string Filename);

  void LoadFromRegistry();
  /// Does nothing after a load that could not read the store: what is stored is not lost then.
  void SaveToRegistry();

  /// Shows the list in the first display that is set; the window's menu "mnuMRU" is the last to be asked.
  void BuildMRU(MenuItems* ParentForm);
  void ConstructToBand();

 private:
  bool FileExist(const std::string& Filename);
  std::string ValueName(std::int32_t index) const;
  void LoadUnread();
  void BuildSmartMenu(SmartMenu& menu) const;
  void BuildMenu(MenuItems& window) const;

  std::string qdkDumpModuleVariables() const;

  bool iUnread = false;  // the latest load could not read the store to the end
  InstanceCount count_{modTollgarthSupport::Counted::kMRU};
};

}  // namespace kestrel
