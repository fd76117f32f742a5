#include "modTollgarthSupport.h"

#include <exception>
#include <memory>
#include <string_view>

#include "ErrorListener.h"
#include "Trailer.h"
#include "base/DescribedError.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "base/RuntimeError.h"
#include "base/ThrowRecord.h"
#include "imaging/contract/Platform.h"

namespace kestrel::modTollgarthSupport {
namespace {

const std::string kProject = "KestrelLib2";
const std::string kLineEnd = "\r\n";

struct Apartment {
  Platform* platform = nullptr;
  std::unique_ptr<ThrowRecord> throws;
  Fields fields;
};

/// Module state has one copy per apartment, that is, per thread.
Apartment& TheApartment() {
  thread_local Apartment apartment;
  return apartment;
}

}  // namespace

Fields& State() { return TheApartment().fields; }

void Attach(Platform* platform) {
  TheApartment().fields = Fields();
  TheApartment().platform = platform;
  TheApartment().throws = platform == nullptr ? nullptr : std::make_unique<ThrowRecord>();
}

Platform* AttachedPlatform() { return TheApartment().platform; }

void qdkMarkInitialised() {
  if (!State().qdkHasInitialised) State().qdkHasInitialised = true;
}

void qdkCaptureError(const CapturedError& error) {
  State().qdkErrorNumber = error.Number;
  State().qdkErrorDescription = error.Description;
  State().qdkErrorLine = error.Line;
  State().qdkErrorSource = error.Source;
}

std::string qdkDumpGlobals() {
  constexpr auto kNotShown = "{Cannot dump external UDTs}";
  const Fields& state = State();
  std::string text;
  const auto dump = [&text](const char* name, const auto& value) { text += qdk::DumpVariable(name, value); };
  const auto dumpFallback = [&text](const char* name) {
    text += qdk::DumpOrFallback(name, std::nullopt, kNotShown);
  };
  dump("qdkProjectId", state.qdkProjectId);
  dump("qdkProcessId", state.qdkProcessId);
  dump("qdkModuleFilename", state.qdkModuleFilename);
  dumpFallback("qdkDebugClient");
  dump("qdkDebuggerListening", state.qdkDebuggerListening);
  dump("qdkEnableInstanceCounts", state.qdkEnableInstanceCounts);
  dump("qdkInstanceCountsServerHandle", state.qdkInstanceCountsServerHandle);
  dump("qdkInstanceCountComponentNames", state.qdkInstanceCountComponentNames);
  dump("qdkSkipInstanceCount", state.qdkSkipInstanceCount);
  dumpFallback("qdkInstanceCountsMemory");
  dump("qdkComponentID", state.qdkComponentID);
  dump("qdkHasInitialised", state.qdkHasInitialised);
  dump("qdkVariableDump", state.qdkVariableDump);
  dump("qdkErrorNumber", state.qdkErrorNumber);
  dump("qdkErrorDescription", state.qdkErrorDescription);
  dump("qdkErrorLine", state.qdkErrorLine);
  dump("qdkErrorSource", state.qdkErrorSource);
  return text;
}

std::string qdkErrorHandler(std::int32_t Number, const std::string& Module, const std::string& Procedure,
                            const std::string& Description, std::int32_t Line, const std::string& Locals,
                            const std::string& ModuleVariables, const std::string& Parameters) {
  std::string Result;
  Platform& platform = Required(AttachedPlatform());
  std::unique_ptr<ErrorReporter> reporter;
  QDK_RESUME_NEXT(reporter = platform.ObjectFactory().CreateErrorReporter("BrindleError.Error"));
  if (reporter == nullptr) {
    ErrorListener* const listener = ErrorListener::Attached();
    if (listener != nullptr &&
        listener->Reported({Number, Module, Procedure, Line, Description, std::current_exception()})) {
      return Result;
    }
    const std::string text = kProject + " has encountered a problem. We are sorry for the inconvenience." +
                             kLineEnd + kLineEnd + "Module: " + Module + kLineEnd +
                             "Procedure: " + Procedure + kLineEnd + "Line Number: " + ToText(Line) +
                             kLineEnd + kLineEnd + Description + " (" + ToText(Number) + ")";
    platform.UserInterface().MessageBox(text, kBoxCritical | kBoxOK, "Application Error");
    return Result;
  }

  const auto section = [](const std::string& tag, const std::string& text) {
    return "<" + tag + ">" + kLineEnd + text + "</" + tag + ">";
  };
  const std::string variables =
      section("Variables", section("LocalVariables", Locals) + kLineEnd +
                               section("ModuleVariables", ModuleVariables) + kLineEnd +
                               section("GlobalVariables", qdkDumpGlobals()) + kLineEnd) +
      kLineEnd + section("Parameters", Parameters);
  const AppInfo& app = platform.App();
  const std::string version = ToText(app.Major()) + "." + ToText(app.Minor()) + "." + ToText(app.Revision());
  reporter->ErrorHandler(Number, kProject, Module, Procedure, Description, Line, variables, version);
  Result = reporter->Action();
  // The caller is in its trailer: the error propagates to the next trailer, which reports in turn.
  throw RuntimeError(err::kReported);
}

}  // namespace kestrel::modTollgarthSupport
