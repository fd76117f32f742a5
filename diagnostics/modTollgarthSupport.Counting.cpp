#include <algorithm>
#include <array>
#include <string>

#include "Trailer.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "base/RuntimeError.h"
#include "imaging/contract/Platform.h"
#include "modTollgarthSupport.h"

namespace kestrel::modTollgarthSupport {
namespace {

constexpr std::int32_t kPingTimeoutMs = 100;
constexpr std::int32_t kAnswerTimeoutMs = 2000;
constexpr std::int32_t kMessageRegister = 502;
constexpr std::int32_t kMessageIsSkipped = 10;
constexpr std::int32_t kSharedBytes = 10'000;
const std::string kSharedName = "#TollgarthInstanceCounting#";

/// The registration text of each object: its name, and 1 for a class, 3 for a window, 4 for a control.
constexpr std::array kRegistrationTexts{
    "ImageProcessing,1,", "Options,1,",         "MRU,1,",
    "ImageBrowser,1,",    "IImageEvents,1,",    "frmMaterials,3,",
    "frmImageEditor,3,",  "frmRotate,3,",       "frmOptions,3,",
    "frmDropShadow,3,",   "frmResize,3,",       "frmFlattenAlpha,3,",
    "frmPasteSpecial,3,", "frmResizeCanvas,3,", "frmZoom,3,",
    "frmResources,3,",    "frmImageBrowser,3,", "frmExport,3,",
    "frmGetThumnail,3,",  "Preview,4,",         "ImageProcessingCtl,4,",
    "FolderTreeView,4,",  "ImageBrowserCtl,4,",
};
static_assert(kRegistrationTexts.size() == static_cast<std::size_t>(Counted::kImageBrowserCtl) + 1);

/// Converts a server's answer to the type of the tables.
void TakeId(std::int16_t& id, std::int32_t answer) { id = ToInt16(answer); }

}  // namespace

bool qdkInitialise() {
  bool Result = false;
  std::int32_t Handle = 0;
  std::string Buffer;
  Fields& state = State();
  try {
    state.qdkDebugClient = std::make_shared<qdkClient>();
    DebugClient* const ipc = state.qdkDebugClient->IPC();
    if (ipc == nullptr) {
      state.qdkDebuggerListening = false;
      return false;
    }
    DebugClientLibrary& library = *state.qdkDebugClient->Library();
    state.qdkProjectId = ipc->GetProjectHandle();
    state.qdkProcessId = ipc->GetWindowProcessId(state.qdkProjectId);
    Buffer = Required(AttachedPlatform()).App().ModuleFilename();
    if (!Buffer.empty()) state.qdkModuleFilename = Buffer;

    state.qdkDebuggerListening = library.NextServerWindow(0) != 0;
    if (state.qdkDebuggerListening) {
      state.qdkInstanceCountsServerHandle = 0;
      state.qdkEnableInstanceCounts = false;
      state.qdkInstanceCountComponentNames.fill(0);
      state.qdkSkipInstanceCount.fill(false);
      state.qdkInstanceCountsMemory = library.CreateCounters();
      Required(state.qdkInstanceCountsMemory).Open(kSharedBytes, kSharedName);
    }
    // The last server that answers is used.
    for (Handle = library.NextServerWindow(0); Handle != 0; Handle = library.NextServerWindow(Handle)) {
      if (!ipc->PingServer(Handle, kPingTimeoutMs)) continue;
      state.qdkInstanceCountsServerHandle = Handle;
      state.qdkEnableInstanceCounts = true;
    }
    Result = true;
  } catch (...) {
    QDK_TRAILER(qdkInitialise, QDK_PARAMETERS(), QDK_LOCALS(Handle, Buffer, Result));
  }
  return Result;
}

std::int32_t qdkSendToServer(std::int32_t Handle, std::int32_t Message, const std::string& Text,
                             std::int32_t& ResultValue, std::int32_t TimeoutMs) {
  std::int32_t Result = 0;
  try {
    DebugClient* const ipc = Required(State().qdkDebugClient).IPC();
    Result = Required(ipc).SendMessage(Handle, Message, Text, ResultValue, TimeoutMs);
  } catch (...) {
    QDK_TRAILER(qdkSendToServer, QDK_PARAMETERS(Handle, Message, Text, ResultValue, TimeoutMs),
                QDK_LOCALS(Result));
  }
  return Result;
}

Counted CountedWindow(const std::string& name) {
  const auto row = std::ranges::find(kRegistrationTexts, name + ",3,");
  if (row == kRegistrationTexts.end())
    throw RuntimeError(err::kInvalidCall, "No window \"" + name + "\" is counted.");
  return static_cast<Counted>(row - kRegistrationTexts.begin());
}

void qdkCountInstance(Counted object) {
  Fields& state = State();
  const auto index = static_cast<std::size_t>(object);
  std::int16_t& id = state.qdkInstanceCountComponentNames[index];
  bool& skip = state.qdkSkipInstanceCount[index];
  if (!state.qdkEnableInstanceCounts || skip) return;
  if (id != 0) {
    QDK_RESUME_NEXT(Required(state.qdkInstanceCountsMemory).Increment(id, 1));
    return;
  }

  const std::int32_t server = state.qdkInstanceCountsServerHandle;
  const std::string project = ToText(state.qdkProjectId);
  std::int32_t answer = id;
  QDK_RESUME_NEXT(qdkSendToServer(server, kMessageRegister, kRegistrationTexts[index] + project, answer,
                                  kAnswerTimeoutMs));
  QDK_RESUME_NEXT(TakeId(id, answer));
  answer = skip ? 1 : 0;
  QDK_RESUME_NEXT(qdkSendToServer(server, kMessageIsSkipped,
                                  state.qdkModuleFilename + "," + ToText(std::int32_t{id}) + "," + project,
                                  answer, kAnswerTimeoutMs));
  skip = answer != 0;
  if (!skip) QDK_RESUME_NEXT(Required(state.qdkInstanceCountsMemory).Increment(id, 1));
}

void qdkUncountInstance(Counted object) {
  Fields& state = State();
  const auto index = static_cast<std::size_t>(object);
  if (!state.qdkEnableInstanceCounts || state.qdkSkipInstanceCount[index]) return;
  QDK_RESUME_NEXT(
      Required(state.qdkInstanceCountsMemory).Decrement(state.qdkInstanceCountComponentNames[index], 1));
}

}  // namespace kestrel::modTollgarthSupport
