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
/// It reports the error with the line of the failed statement and the variables as they stand, and lets the
/// procedure return what `Result` holds. What is to be shown must be declared before the `try`. The module
/// is named by the source file (all of its name before the first point), its fields by the class's
/// `qdkDumpModuleVariables`. Without a platform to report through, the error goes on to the caller.
#define QDK_TRAILER(procedure, parameters, locals) QDK_TRAILER_OF("", procedure, parameters, locals)

/// The same in a base that several modules share: reports under the module of that name, which is the
/// object's own. An empty name stands for the source file's.
#define QDK_TRAILER_OF(module, procedure, parameters, locals)                     \
  do {                                                                            \
    ::kestrel::qdk::Trailer qdkTrailer{{#procedure, __FILE__, __LINE__, module}}; \
    qdkTrailer.Locals(locals);                                                    \
    qdkTrailer.Parameters(parameters);                                            \
    qdkTrailer.Module(qdkDumpModuleVariables());                                  \
    qdkTrailer.Report();                                                          \
  } while (false)

/// The texts of parameters and locals for the trailer, in declaration order; empty brackets where there are
/// none.
#define QDK_PARAMETERS(...) ::kestrel::qdk::DumpParameters("" #__VA_ARGS__ __VA_OPT__(, ) __VA_ARGS__)
#define QDK_LOCALS(...) ::kestrel::qdk::DumpLocals("" #__VA_ARGS__ __VA_OPT__(, ) __VA_ARGS__)

/// The text of an object's fields, in declaration order: the body of each `qdkDumpModuleVariables`. A field
/// that can't be read is left out.
#define QDK_FIELDS(...) ::kestrel::qdk::DumpFields("" #__VA_ARGS__ __VA_OPT__(, ) __VA_ARGS__)

/// A statement of plumbing or tear-down: when it fails, the next one is carried on with.
#define QDK_RESUME_NEXT(...) \
  do {                       \
    try {                    \
      __VA_ARGS__;           \
    } catch (...) {          \
    }                        \
  } while (false)

namespace kestrel {

/// What a trailer outside of any class, or in a class without fields, has to tell of its module.
inline std::string qdkDumpModuleVariables() { return "{None}"; }

namespace qdk {

/// Where a trailer stands.
struct Site {
  const char* procedure;
  const char* file;
  std::int32_t line;
  std::string module = {};  ///< empty: named by the file
};

/// A trailer at work: takes down the error that is being handled, collects the texts, reports.
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
