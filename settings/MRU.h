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

/// The list of recently used files: stored in the key store, shown in a list command, a smart menu or the
/// menu of a window.
///
/// The list may grow beyond `MaxEntries` during an object's lifetime, in memory and in the store; only
/// `MaxEntries` values are read or cleared.
class MRU : public Object {
 public:
  MRU();
  std::string TypeName() const override { return "MRU"; }

  std::int32_t MaxEntries = 10;  ///< number of values that are read and cleared
  std::int32_t RootHive = HKEY_CURRENT_USER;
  std::string RootKey;
  std::string RootValuePrefix = "MRU";  ///< value names are this and 1, 2, 3, ...
  Collection<std::string> Files;        ///< newest first, keyed by file name
  bool PurgeInvalidFiles = true;        ///< missing files are removed on load
  Object* Band = nullptr;
  Command* CommandMRU = nullptr;  ///< the list command that shows the list
  SmartMenu* SmartUI = nullptr;   ///< the menu that shows the list if there is no list command
  bool AddBandShortcuts = true;

  /// Moves or adds a file to the front, then stores and shows the list.
  void AddFile(std::string Filename);
  /// Removes a file and stores the list. The displayed list is unchanged.
  void RemoveFile(std::string Filename);

  void LoadFromRegistry();
  /// Stores all of the list, or leaves the stored list as it is. Reports a failure, once per run of failing
  /// writes. After a load that could not read the store it fails, to keep the stored list.
  void SaveToRegistry();

  /// Shows the list in the first of its displays that is set: list command, smart menu, the window's menu
  /// "mnuMRU".
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
