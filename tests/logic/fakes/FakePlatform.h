#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/RuntimeError.h"
#include "imaging/contract/Platform.h"

namespace kestrel::fakes {

/// The arguments of a report.
struct Report {
  std::int32_t number;
  std::string project, module, procedure, description;
  std::int32_t line;
  std::string variables, version;
};

/// Records every report.
class RecordingReporter : public ErrorReporter {
 public:
  explicit RecordingReporter(std::vector<Report>& reports) : reports_(reports) {}
  void ErrorHandler(std::int32_t& Number, const std::string& Project, const std::string& Module,
                    const std::string& Procedure, const std::string& Description, std::int32_t& Line,
                    const std::string& Variables, const std::string& Version) override {
    reports_.push_back({Number, Project, Module, Procedure, Description, Line, Variables, Version});
  }
  std::string Action() const override { return "continue"; }

 private:
  std::vector<Report>& reports_;
};

class FakeObjectFactory : public ObjectFactory {
 public:
  std::unique_ptr<ErrorReporter> CreateErrorReporter(const std::string& Identifier) override {
    asked.push_back(Identifier);
    if (!present) throw RuntimeError(err::kCannotCreateObject, "The component can't create the object.");
    return std::make_unique<RecordingReporter>(reports);
  }
  bool present = false;
  std::vector<std::string> asked;
  std::vector<Report> reports;
};

struct ShownBox {
  std::string text;
  std::int32_t style;
  std::string title;
};

class FakeUserInterface : public UserInterface {
 public:
  std::int32_t MessageBox(const std::string& text, std::int32_t style, const std::string& title,
                          WindowHandle) override {
    boxes.push_back({text, style, title});
    return kAnswerOK;
  }
  std::string InputBox(const std::string&, const std::string&, const std::string&, const Point*,
                       WindowHandle) override {
    return {};
  }
  void AboutBox(const std::string&, const std::string&, const PicturePtr&, WindowHandle) override {}
  std::vector<ShownBox> boxes;
};

class FakeApp : public AppInfo {
 public:
  std::string Title() const override { return "Brindle Image Pro"; }
  std::int32_t Major() const override { return 2; }
  std::int32_t Minor() const override { return 7; }
  std::int32_t Revision() const override { return 31; }
  std::string ModuleFilename() const override { return moduleFilename; }
  std::string CommandLine() const override { return commandLine; }
  std::string moduleFilename = "/opt/kestrel/BrindleImgPro2";
  std::string commandLine;
};

/// Splits names at both separators without disk access.
class FakeFileHelpers : public FileHelpers {
 public:
  std::string PathWithoutExtension(const std::string& Path) override { return Path.substr(0, Point(Path)); }
  std::string GetExtension(const std::string& Path, std::int32_t) override {
    const auto point = Point(Path);
    return point == Path.size() ? std::string() : Path.substr(point + 1);
  }
  std::string GetFileName(const std::string& Path) override {
    return Path.substr(Path.find_last_of("/\\") + 1);
  }
  std::string ResolvePath(const std::string& Path) override { return Path; }
  std::string CompactPath(const std::string& Path, std::int32_t Length,
                          const std::string& Separator) override {
    compacted.push_back(Path + "|" + std::to_string(Length) + "|" + Separator);
    return "compact:" + Path;
  }
  std::string PathSeparator() const override { return "/"; }
  bool CopyFiles(const std::string&, const std::string&, std::int32_t, WindowHandle) override {
    return false;
  }
  bool MoveFiles(const std::string&, const std::string&, std::int32_t, WindowHandle) override {
    return false;
  }
  bool DeleteFiles(const std::string&, const std::string&, std::int32_t, WindowHandle) override {
    return false;
  }
  std::vector<std::string> compacted;

 private:
  static std::size_t Point(const std::string& path) {
    const auto point = path.find_last_of('.');
    const auto name = path.find_last_of("/\\");
    return point == path.npos || (name != path.npos && point < name) ? path.size() : point;
  }
};

/// Files exist as the test defines.
class FakeFormUtility : public FormUtility {
 public:
  void SetPointer(std::int32_t) override {}
  void SelectAllText(TextBox&) override {}
  void SetFocusTo(Control&) override {}
  bool ShowDialog(Form&, std::int32_t, Control*) override { return false; }
  bool FileExists(const std::string& path) override { return existing.contains(path); }
  bool IsModifierDown() override { return false; }
  std::set<std::string> existing;
};

/// The part of a platform that settings and diagnostics use. A missing service raises 429; services of a test
/// are set as pointers.
class FakePlatform : public Platform {
 public:
  FakeObjectFactory factory;
  FakeUserInterface boxes;
  FakeApp app;
  FakeFileHelpers files;
  FakeFormUtility forms;
  kestrel::RegistryStore* store = nullptr;
  kestrel::WindowPositions* positions = nullptr;
  kestrel::WindowFunctions* windows = nullptr;
  kestrel::StackResolver* lines = nullptr;
  kestrel::Shell* shell = nullptr;
  std::function<std::unique_ptr<DebugClientLibrary>()> makeLibrary;
  std::function<std::shared_ptr<Colors>()> makeColors;

  std::shared_ptr<ImgX> CreateImgX() override { return Missing<ImgX>(); }
  std::shared_ptr<Colors> CreateColors() override { return makeColors ? makeColors() : Missing<Colors>(); }
  std::unique_ptr<ImgXDialog> CreateImgXDialog() override { return Missing<ImgXDialog>(); }
  std::unique_ptr<Form> CreateForm(const std::string&) override { return Missing<Form>(); }
  std::unique_ptr<HelpViewer> CreateHelpViewer() override { return Missing<HelpViewer>(); }
  std::unique_ptr<SinkHolder> CreateSinkHolder() override { return Missing<SinkHolder>(); }
  std::unique_ptr<MouseTracker> CreateMouseTracker() override { return Missing<MouseTracker>(); }
  std::unique_ptr<Canvas> CreateCanvas(std::int32_t, std::int32_t) override { return Missing<Canvas>(); }

  kestrel::FormUtility& FormUtility() override { return forms; }
  kestrel::FormSkin& FormSkin() override { RaiseMissing(); }
  kestrel::WindowFunctions& WindowFunctions() override { return Given(windows); }
  kestrel::WindowPositions& WindowPositions() override { return Given(positions); }
  kestrel::RegistryStore& RegistryStore() override { return Given(store); }
  kestrel::FileHelpers& FileHelpers() override { return files; }
  kestrel::UserInterface& UserInterface() override { return boxes; }
  kestrel::Clipboard& Clipboard() override { RaiseMissing(); }
  kestrel::Shell& Shell() override { return Given(shell); }
  kestrel::Screen& Screen() override { RaiseMissing(); }
  const AppInfo& App() override { return app; }

  std::unique_ptr<DebugClientLibrary> CreateDebugClientLibrary() override {
    return makeLibrary ? makeLibrary() : nullptr;
  }
  kestrel::ObjectFactory& ObjectFactory() override { return factory; }
  kestrel::StackResolver& StackResolver() override { return Given(lines); }
  void Retire(std::shared_ptr<void> /*object*/) override {}

 private:
  [[noreturn]] static void RaiseMissing() {
    throw RuntimeError(err::kCannotCreateObject, "The component can't create the object.");
  }
  template <typename T>
  static std::unique_ptr<T> Missing() {
    RaiseMissing();
  }
  template <typename T>
  static T& Given(T* service) {
    if (service == nullptr) RaiseMissing();
    return *service;
  }
};

}  // namespace kestrel::fakes
