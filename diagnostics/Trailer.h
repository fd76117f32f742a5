#pragma once

#include <cstdint>
#include <string>

#include "Dump.h"
#include "base/CallStack.h"

/// The tail of every ordinary procedure:
///
///     bool ImageProcessingCtl::OpenImage(std::string Filename) {
///       bool Result = false, Failed = false;
///       try {
///         ...
///       } catch (...) {
///         QDK_TRAILER(OpenImage, QDK_PARAMETERS(Filename), QDK_LOCALS(Failed, Result));
///       }
///       return Result;
///     }
///
/// It reports the error with the line of the failed statement and the current variables, and lets the
/// procedure return `Result`. Variables to report must be declared before the `try`. The module
/// name is the source file's name before the first point; the fields come from the class's
/// `qdkDumpModuleVariables`. Without an attached platform the error propagates to the caller.
#define QDK_TRAILER(procedure, parameters, locals) QDK_TRAILER_OF("", procedure, parameters, locals)

/// The same in a base class that several modules share: reports under the given module name, which is the
/// object's own. An empty name means the source file's.
#define QDK_TRAILER_OF(module, procedure, parameters, locals)                     \
  do {                                                                            \
    ::kestrel::qdk::Trailer qdkTrailer{{#procedure, __FILE__, __LINE__, module}}; \
    qdkTrailer.Locals(locals);                                                    \
    qdkTrailer.Parameters(parameters);                                            \
    qdkTrailer.Module(qdkDumpModuleVariables());                                  \
    qdkTrailer.Report();                                                          \
  } while (false)

/// The texts of parameters and locals for the trailer, in declaration order; "{None}" without arguments.
#define QDK_PARAMETERS(...) ::kestrel::qdk::DumpParameters("" #__VA_ARGS__ __VA_OPT__(, ) __VA_ARGS__)
#define QDK_LOCALS(...) ::kestrel::qdk::DumpLocals("" #__VA_ARGS__ __VA_OPT__(, ) __VA_ARGS__)

/// The text of an object's fields, in declaration order: the body of each `qdkDumpModuleVariables`. A field
/// that cannot be read is omitted.
#define QDK_FIELDS(...) ::kestrel::qdk::DumpFields("" #__VA_ARGS__ __VA_OPT__(, ) __VA_ARGS__)

/// Runs a statement of set-up or tear-down and ignores its errors: execution continues with the next one.
#define QDK_RESUME_NEXT(...) \
  do {                       \
    try {                    \
      __VA_ARGS__;           \
    } catch (...) {          \
    }                        \
  } while (false)

namespace kestrel {

/// The module variables of a trailer outside of any class, or in a class without fields.
inline std::string qdkDumpModuleVariables() { return "{None}"; }

namespace qdk {

/// The place of a trailer in the source.
struct Site {
  const char* procedure;
  const char* file;
  std::int32_t line;
  std::string module = {};  ///< empty: named by the file
};

/// A running trailer: records the error that is being handled, collects the texts, reports.
class Trailer {
 public:
  [[gnu::noinline]] explicit Trailer(const Site& site);

  void Locals(std::string text);
  void Parameters(std::string text) { parameters_ = std::move(text); }
  void Module(std::string text) { module_ = std::move(text); }
  void Report() const;

 private:
  Site site_;
  std::string locals_;
  std::string parameters_;
  std::string module_;
};

}  // namespace qdk
}  // namespace kestrel
