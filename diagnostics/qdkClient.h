#pragma once

#include <memory>
#include <string>

#include "base/Event.h"
#include "imaging/contract/DebugClient.h"

namespace kestrel {

/// The process's connection to the diagnostics servers, if the client's library is installed.
class qdkClient : public std::enable_shared_from_this<qdkClient> {
 public:
  qdkClient();
  qdkClient(const qdkClient&) = delete;
  qdkClient& operator=(const qdkClient&) = delete;

  /// The client of the library; null if there is none.
  DebugClient* IPC();
  /// The library that made the client; null if there is none.
  DebugClientLibrary* Library() { return library_.get(); }

  /// The process's command line: the program without quotes, then a blank and the arguments if there are any.
  std::string CommandLine();

 private:
  void pIPC_OnBroadcast();
  std::string qdkDumpModuleVariables();

  std::unique_ptr<DebugClientLibrary> library_;
  std::unique_ptr<DebugClient> pIPC;
  Connection broadcast_;
};

}  // namespace kestrel
