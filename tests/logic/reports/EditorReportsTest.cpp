#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <ostream>
#include <string>

#include "base/RuntimeError.h"
#include "editor/ImageProcessingCtl.h"
#include "platform/headless/Platform.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

[[noreturn]] void failByChoice() { throw RuntimeError(err::kInternal, "Chosen to fail."); }

/// A host's sink that fails in each notification.
class FailingSink : public IImageEvents {
 public:
  void RequestSaveFilename(std::string&, bool&) override { failByChoice(); }
  void RequestOpenFilename(std::string&, bool&) override { failByChoice(); }
  void ImageOpen(const std::string&) override { failByChoice(); }
};

/// An editor whose host fails: its handlers can fail in every file of the editor.
struct World {
  ImageProcessingCtl& editor;
  const std::string& picture;
  const std::shared_ptr<FailingSink>& sink;
  headless::Moorage& suite;

  template <typename... Args>
  void failAt(Event<Args...>& event, const std::function<void()>& call) {
    const Connection connection = event.Connect([](Args...) { failByChoice(); });
    call();
  }
  void dispatch(const std::string& key) { suite.CommandClick(suite.Commands()(key)); }
};

/// A statement that fails in a case, as written in its source file, and the index of that file in its module.
struct Case {
  const char* procedure;
  const char* file;
  std::int32_t place;
  const char* statement;
  std::function<void(World&)> fail;
};

void PrintTo(const Case& chosen, std::ostream* out) { *out << chosen.procedure; }

const Case kCases[] = {
    {"OpenImage", "ImageProcessingCtl.Files.cpp", 1, "zRaise(RequestOpenFilename, Filename, CancelDefault)",
     [](World& w) { w.failAt(w.editor.RequestOpenFilename, [&] { w.editor.OpenImage(""); }); }},
    {"OpenImage", "ImageProcessingCtl.Files.cpp", 1, "Sink.RequestOpenFilename(Filename, CancelDefault)",
     [](World& w) {
       w.editor.EventSink(w.sink);
       w.editor.OpenImage("");
     }},
    {"OpenImage", "ImageProcessingCtl.Files.cpp", 1, "zRaise(ImageOpen, Opened)",
     [](World& w) { w.failAt(w.editor.ImageOpen, [&] { w.editor.OpenImage(w.picture); }); }},
    {"OpenImage", "ImageProcessingCtl.Files.cpp", 1, "Sink.ImageOpen(Opened)",
     [](World& w) {
       w.editor.EventSink(w.sink);
       w.editor.OpenImage(w.picture);
     }},
    {"zPictureSet", "ImageProcessingCtl.Files.cpp", 1, "zRaise(PictureSet)",
     [](World& w) { w.failAt(w.editor.PictureSet, [&] { w.editor.OpenImage(w.picture); }); }},
    {"zSaveImage", "ImageProcessingCtl.Files.cpp", 1, "zRaise(RequestSaveFilename, Filename, CancelDefault)",
     [](World& w) {
       w.editor.OpenImage(w.picture);
       w.failAt(w.editor.RequestSaveFilename, [&] { w.editor.SaveImageAs(""); });
     }},
    {"zSaveImage", "ImageProcessingCtl.Files.cpp", 1, "Sink.RequestSaveFilename(Filename, CancelDefault)",
     [](World& w) {
       w.editor.OpenImage(w.picture);
       w.editor.EventSink(w.sink);
       w.editor.SaveImageAs("");
     }},
    {"mrgUI_CommandClick", "ImageProcessingCtl.Commands.cpp", 2, "row.Action(*this, Command)",
     [](World& w) { w.failAt(w.editor.ExitRequest, [&] { w.dispatch("btnFileClose"); }); }},
    {"mrgUI_CommandClick", "ImageProcessingCtl.Commands.cpp", 2, "row.Action(*this, Command)",
     [](World& w) { w.failAt(w.editor.SimpleSaveRequest, [&] { w.dispatch("btnFileSimpleSave"); }); }},
    {"Tool", "ImageProcessingCtl.Tools.cpp", 3, "zRaise(ToolChange, Value)",
     [](World& w) {
       w.editor.OpenImage(w.picture);
       w.failAt(w.editor.ToolChange, [&] { w.editor.Tool(ipToolRectangle); });
     }},
    {"Changed", "ImageProcessingCtl.Undo.cpp", 6, "zRaise(Change)",
     [](World& w) {
       w.editor.OpenImage(w.picture);
       w.failAt(w.editor.Change, [&] { w.editor.Changed(true); });
     }},
};

class EditorReports : public testing::TestWithParam<Case> {
 protected:
  EditorReports() {
    std::string folder = (std::filesystem::temp_directory_path() / "kestrel-reports-XXXXXX").string();
    folder_ = mkdtemp(folder.data());
    headless::Setup setup;
    setup.scratch = folder_;
    setup.helpFolder = folder_;
    platform_ = std::make_unique<headless::Platform>(std::move(setup));
    modProcessing::Attach(*platform_);
    modProcessing::Main();
    site_ = platform_->createEditorSite();
    editor_ = std::make_unique<ImageProcessingCtl>(*site_);
    site_->InitProperties();
    editor_->Initialize();
    picture_ = folder_ + "/open.png";
    const auto picture = platform_->CreateImgX();
    const Colour background(0x00336699);
    picture->Document().NewImage(40, 30, &background);
    picture->Writer().ToFile(picture_, 2);
  }
  ~EditorReports() override {
    editor_.reset();
    site_.reset();
    modProcessing::Detach();
    platform_.reset();
    std::filesystem::remove_all(folder_);
  }

  static std::string sourceLine(const std::string& file, std::int32_t line) {
    std::ifstream source(std::string(SOURCE_FOLDER "/editor/") + file);
    std::string text;
    for (std::int32_t i = 0; i < line; ++i) {
      if (!std::getline(source, text)) return {};
    }
    return text;
  }

  std::string folder_;
  std::string picture_;
  std::unique_ptr<headless::Platform> platform_;
  std::unique_ptr<headless::Site> site_;
  std::unique_ptr<ImageProcessingCtl> editor_;
};

TEST_P(EditorReports, LeadToTheStatementInTheSourceFile) {
  const Case& chosen = GetParam();
  const auto sink = std::make_shared<FailingSink>();
  platform_->user().answers(kAnswerOK);
  World world{*editor_, picture_, sink, Bind<headless::Moorage>(*site_, "mrgUI")};
  chosen.fail(world);

  ASSERT_EQ(platform_->user().boxes().size(), 1u);
  const std::string& text = platform_->user().boxes()[0].text;
  EXPECT_NE(text.find("Module: ImageProcessingCtl\r\nProcedure: " + std::string(chosen.procedure) + "\r\n"),
            text.npos)
      << text;
  const std::string label = "Line Number: ";
  const std::int32_t number = std::stoi(text.substr(text.find(label) + label.size()));
  EXPECT_EQ(number / 50'000, chosen.place);
  EXPECT_EQ(number % 5, 0);
  const std::int32_t line = number % 50'000 / 5;
  EXPECT_NE(sourceLine(chosen.file, line).find(chosen.statement), std::string::npos)
      << chosen.file << ":" << line << " is " << sourceLine(chosen.file, line);
}

INSTANTIATE_TEST_SUITE_P(OfTheEditor, EditorReports, testing::ValuesIn(kCases), [](const auto& chosen) {
  return std::string(chosen.param.procedure) + std::to_string(chosen.index);
});

}  // namespace
}  // namespace kestrel
