#include "SharedLibraryFactory.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <utility>

#include "BrindleError.h"
#include "base/RuntimeError.h"

namespace kestrel::posix {
namespace {

[[noreturn]] void raiseNotCreated(const std::string& why) {
  throw RuntimeError(err::kCannotCreateObject, "The reporting object could not be created: " + why);
}

/// A loaded library with the functions of a reporting object.
class Library {
 public:
  explicit Library(const std::string& path) : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) raiseNotCreated(dlerror());
    find(create, "brindle_error_create");
    find(handler, "brindle_error_handler");
    find(action, "brindle_error_action");
    find(destroy, "brindle_error_destroy");
  }

  decltype(&brindle_error_create) create = nullptr;
  decltype(&brindle_error_handler) handler = nullptr;
  decltype(&brindle_error_action) action = nullptr;
  decltype(&brindle_error_destroy) destroy = nullptr;

 private:
  struct Unload {
    void operator()(void* handle) const { dlclose(handle); }
  };

  template <typename Function>
  void find(Function& function, const char* name) {
    function = reinterpret_cast<Function>(dlsym(handle_.get(), name));
    if (function == nullptr) raiseNotCreated("its library has no function " + std::string(name) + ".");
  }

  std::unique_ptr<void, Unload> handle_;
};

class LibraryReporter : public ErrorReporter {
 public:
  explicit LibraryReporter(const std::string& path) : library_(path), object_(library_.create()) {
    if (object_ == nullptr) raiseNotCreated("its library refused.");
  }
  ~LibraryReporter() override { library_.destroy(object_); }
  LibraryReporter(const LibraryReporter&) = delete;
  LibraryReporter& operator=(const LibraryReporter&) = delete;

  void ErrorHandler(std::int32_t& Number, const std::string& Project, const std::string& Module,
                    const std::string& Procedure, const std::string& Description, std::int32_t& Line,
                    const std::string& Variables, const std::string& Version) override {
    const std::int32_t raised =
        library_.handler(object_, &Number, Project.c_str(), Module.c_str(), Procedure.c_str(),
                         Description.c_str(), &Line, Variables.c_str(), Version.c_str());
    if (raised != 0) throw RuntimeError(raised, "The reporting object could not take the report.");
  }

  std::string Action() const override {
    const char* const text = library_.action(object_);
    return text == nullptr ? "" : text;
  }

 private:
  Library library_;
  void* object_;
};

}  // namespace

std::unique_ptr<ErrorReporter> SharedLibraryFactory::CreateErrorReporter(const std::string& Identifier) {
  const std::string path = libraryOf(Identifier);
  if (path.empty()) raiseNotCreated("none is installed.");
  // The loader would search its path for a bare name, and could load another library.
  if (!std::filesystem::path(path).is_absolute()) raiseNotCreated("the path of its library is not absolute.");
  return std::make_unique<LibraryReporter>(path);
}

std::string SharedLibraryFactory::libraryOf(const std::string& identifier) {
  if (const char* const named = std::getenv("KESTREL_ERROR_REPORTER"); named != nullptr && *named != '\0')
    return named;
  const Variant stored = store_.ReadValue(HKEY_CURRENT_USER, "Software\\Classes\\" + identifier, "Library");
  return stored.TypeCode() == static_cast<std::int32_t>(Variant::Type::kString) ? stored.ToString()
                                                                                : std::string();
}

}  // namespace kestrel::posix
