#pragma once

#include <cerrno>
#include <string>
#include <vector>

namespace kestrel::transfer::test {

/// What the system calls of the transfer do besides their work. The linker directs them here.
struct Faults {
  enum class Kind { kNone, kKilled, kFails, kFailsFromThereOn, kVanishes };

  Kind kind = Kind::kNone;
  int at = 0;             ///< the number of the call that is struck, from 1
  int error = EIO;        ///< its error, of kFails
  int calls = 0;          ///< so far
  bool reading = false;   ///< calls that only read are counted and struck too
  std::string vanishing;  ///< the file that another program removes before the call, of kVanishes
  std::string struck;     ///< the call that was

  // File systems that can do less.
  std::vector<std::string> volumes;  ///< below each of these folders is another file system
  bool namelessFiles = true;         ///< files without a name can be made
  bool namelessLinked = true;        ///< and can get a name
  bool renamesToNew = true;          ///< without replacing, in one call
  bool hardLinks = true;
  int copiesInside = 0;     ///< the error of the copy inside the system; 0 for none
  std::string refusedName;  ///< of an entry that cannot be made
  int copies = 0;           ///< calls of the copy inside the system so far
  /// A file that gets the content "changed" when a folder is flushed.
  std::string changeOnFolderFlush;
};

/// Of this process.
Faults& faults();

}  // namespace kestrel::transfer::test
