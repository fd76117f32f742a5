#include "Trailer.h"

#include <utility>

#include "CapturedError.h"
#include "ModuleFiles.h"
#include "modTollgarthSupport.h"

namespace kestrel::qdk {

Trailer::Trailer(const Site& site) : site_(site) {
  if (modTollgarthSupport::AttachedPlatform() == nullptr) throw;
  modTollgarthSupport::qdkCaptureError(CurrentError(site, CallStack::Record()));
}

void Trailer::Locals(std::string text) {
  locals_ = std::move(text);
  modTollgarthSupport::State().qdkVariableDump = locals_;
}

void Trailer::Report() const {
  // A failure during the report, such as in the search for the reporting object, overwrites the same fields.
  const auto& state = modTollgarthSupport::State();
  const std::string description = state.qdkErrorDescription;
  const std::string module = site_.module.empty() ? ModuleName(site_.file) : site_.module;
  modTollgarthSupport::qdkErrorHandler(state.qdkErrorNumber, module, site_.procedure, description,
                                       state.qdkErrorLine, locals_, module_, parameters_);
}

}  // namespace kestrel::qdk
