#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "base/Variant.h"
#include "imaging/contract/DebugClient.h"
#include "qdkClient.h"

namespace kestrel {

class Platform;

/// The support module of the diagnostics: captures errors, renders variables, reports, and counts instances.
/// It runs on the apartment's thread only.
namespace modTollgarthSupport {

/// An error as the trailers report it, with the line of the failed statement.
struct CapturedError {
  std::int32_t Number = 0;
  std::string Description;
  std::int32_t Line = 0;
  std::string Source;
};

/// The objects of the component whose instances are counted.
enum class Counted : std::int32_t {
  kImageProcessing,
  kOptions,
  kMRU,
  kImageBrowser,
  kIImageEvents,
  kfrmMaterials,
  kfrmImageEditor,
  kfrmRotate,
  kfrmOptions,
  kfrmDropShadow,
  kfrmResize,
  kfrmFlattenAlpha,
  kfrmPasteSpecial,
  kfrmResizeCanvas,
  kfrmZoom,
  kfrmResources,
  kfrmImageBrowser,
  kfrmExport,
  kfrmGetThumnail,
  kPreview,
  kImageProcessingCtl,
  kFolderTreeView,
  kImageBrowserCtl,
};
inline constexpr std::size_t kCountedObjects = 29;  // size of the tables; not all entries are in use

/// The module's fields, one copy per apartment, in the order in which they are dumped.
struct Fields {
  std::int32_t qdkProjectId = 0;
  std::int32_t qdkProcessId = 0;
  std::string qdkModuleFilename;
  std::shared_ptr<qdkClient> qdkDebugClient;
  bool qdkDebuggerListening = false;
  bool qdkEnableInstanceCounts = false;
  std::int32_t qdkInstanceCountsServerHandle = 0;
  std::array<std::int16_t, kCountedObjects> qdkInstanceCountComponentNames{};
  std::array<bool, kCountedObjects> qdkSkipInstanceCount{};
  std::unique_ptr<SharedCounters> qdkInstanceCountsMemory;
  std::string qdkComponentID;
  bool qdkHasInitialised = false;
  std::string qdkVariableDump;
  std::int32_t qdkErrorNumber = 0;
  std::string qdkErrorDescription;
  std::int32_t qdkErrorLine = 0;
  std::string qdkErrorSource;
};
Fields& State();

/// Sets the platform through which the apartment reports. Null removes it and releases everything that the
/// module got from it.
void Attach(Platform* platform);
Platform* AttachedPlatform();

void qdkMarkInitialised();

/// Finds the debug client and the servers. True when a client exists.
bool qdkInitialise();

std::int32_t qdkSendToServer(std::int32_t Handle, std::int32_t Message, const std::string& Text,
                             std::int32_t& Result, std::int32_t TimeoutMs);

void qdkCaptureError(const CapturedError& error);

/// One variable as tagged text. The name may carry an attribute behind a blank: `Items Index="1"`.
std::string qdkFormatVariable(const std::string& Name, const Variant& Value, std::int32_t Depth,
                              std::int32_t Indent);

/// True when that dimension of the array, counted from 1, cannot be read.
bool qdkDimensionMissing(const VariantArray& Value, std::int32_t Dimension);

std::string qdkDumpGlobals();

/// Passes the report to the reporting object and raises 65535, or shows the message box. Raises 91 without a
/// platform.
std::string qdkErrorHandler(std::int32_t Number, const std::string& Module, const std::string& Procedure,
                            const std::string& Description, std::int32_t Line, const std::string& Locals,
                            const std::string& ModuleVariables, const std::string& Parameters);

/// The counted window of that name. Raises RuntimeError 5 for a name that is not counted.
Counted CountedWindow(const std::string& name);

void qdkCountInstance(Counted object);
void qdkUncountInstance(Counted object);

}  // namespace modTollgarthSupport

/// Counts an instance during its lifetime. It is the first field of each class that is counted from creation
/// to destruction; a copy counts as an instance of its own. Windows, which are counted from load to unload,
/// use CountedForm.
class InstanceCount {
 public:
  explicit InstanceCount(modTollgarthSupport::Counted object) : object_(object) {
    modTollgarthSupport::qdkCountInstance(object_);
  }
  ~InstanceCount() { modTollgarthSupport::qdkUncountInstance(object_); }
  InstanceCount(const InstanceCount& other) : InstanceCount(other.object_) {}
  InstanceCount& operator=(const InstanceCount&) { return *this; }

 private:
  modTollgarthSupport::Counted object_;
};

}  // namespace kestrel
