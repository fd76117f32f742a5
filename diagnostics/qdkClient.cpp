#include "qdkClient.h"

#include "Trailer.h"
#include "base/Required.h"
#include "imaging/contract/Platform.h"
#include "modTollgarthSupport.h"

namespace kestrel {

qdkClient::qdkClient() {
  QDK_RESUME_NEXT(library_ = Required(modTollgarthSupport::AttachedPlatform()).CreateDebugClientLibrary());
  if (library_ == nullptr) return;
  QDK_RESUME_NEXT(pIPC = library_->CreateClient());
  if (pIPC != nullptr) {
    broadcast_ = pIPC->OnBroadcast.Connect([this] {
      // The handler may replace this client: keep it alive during the call.
      const auto self = shared_from_this();
      pIPC_OnBroadcast();
    });
  }
}

DebugClient* qdkClient::IPC() {
  DebugClient* Result = nullptr;
  try {
    Result = pIPC.get();
  } catch (...) {
    QDK_TRAILER(IPC, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

std::string qdkClient::CommandLine() {
  constexpr std::size_t kBufferLength = 512;
  std::string Result, Buffer, Arguments;
  try {
    Buffer = Required(modTollgarthSupport::AttachedPlatform()).App().CommandLine().substr(0, kBufferLength);
    Buffer = Buffer.substr(0, Buffer.find('\0'));
    const bool quoted = Buffer.starts_with('"');
    const std::size_t first = quoted ? 1 : 0;
    const std::size_t end = Buffer.find(quoted ? '"' : ' ', first);
    Result = Buffer.substr(first, end == Buffer.npos ? end : end - first);
    if (end != Buffer.npos) Arguments = Buffer.substr(end + 1);
    Arguments.erase(0, Arguments.find_first_not_of(' '));
    if (!Arguments.empty()) Result += ' ' + Arguments;
  } catch (...) {
    QDK_TRAILER(CommandLine, QDK_PARAMETERS(), QDK_LOCALS(Buffer, Arguments, Result));
  }
  return Result;
}

void qdkClient::pIPC_OnBroadcast() {
  try {
    modTollgarthSupport::qdkInitialise();
  } catch (...) {
    QDK_TRAILER(pIPC_OnBroadcast, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

std::string qdkClient::qdkDumpModuleVariables() { return QDK_FIELDS(pIPC); }

}  // namespace kestrel
