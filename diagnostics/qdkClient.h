#pragma once

#include <memory>
#include <string>

#include "base/Event.h"
#include "imaging/contract/DebugClient.h"

namespace kestrel {

/// The process's connection to the diagnostics servers, where the client's library is installed.
class qdkClient : public std::enable_shared_from_this<qdkClient> {
 public:
  qdkClient();
  qdkClient(const qdkClient&) = delete;
  qdkClient& operator=(const qdkClient&) = delete;

  /// The client of the library; null where there is none.
  DebugClient* IPC();
  /// The library the client is from; null where there is none.
  DebugClientLibrary* Library() { return library_.get(); }

  /// The process's command line: the program without its quotes, and, where there are arguments, one blank
  /// and the arguments.
  std::string CommandLine();

 private:
  void pIPC_OnBroadcast();
  std::string qdkDumpModuleVariables();

  std::unique_ptr<DebugClientLibrary> library_;
  std::unique_ptr<DebugClient> pIPC;
  Connection broadcast_;
};

}  // namespace kestrel
