#include <algorithm>
#include <fstream>
#include <functional>
#include <ostream>
#include <string>

#include "Settings.h"
#include "diagnostics/modTollgarthSupport.h"
#include "settings/MRU.h"

namespace kestrel {
namespace {

/// A platform whose shared services fail on request of a case.
class FailingPlatform : public fakes::FakePlatform {
 public:
  std::string failing;
  int passesBefore = 0;  // calls that still succeed

  const AppInfo& App() override {
    maybeFail("App");
    return FakePlatform::App();
  }
  kestrel::FileHelpers& FileHelpers() override {
    maybeFail("FileHelpers");
    return FakePlatform::FileHelpers();
  }
  kestrel::FormUtility& FormUtility() override {
    maybeFail("FormUtility");
    return FakePlatform::FormUtility();
  }
  kestrel::WindowPositions& WindowPositions() override {
    maybeFail("WindowPositions");
    return FakePlatform::WindowPositions();
  }
  kestrel::RegistryStore& RegistryStore() override {
    maybeFail("RegistryStore");
    return FakePlatform::RegistryStore();
  }

 private:
  void maybeFail(const std::string& service) {
    if (service == failing && passesBefore-- <= 0) throw RuntimeError(err::kInternal, "Chosen to fail.");
  }
};

class FailingItems : public MenuItems {
 public:
  MenuItem& Item(const std::string&, std::int32_t) override { throw RuntimeError(340, "Chosen to fail."); }
  MenuItem& Load(const std::string&, std::int32_t) override { throw RuntimeError(360, "Chosen to fail."); }
  void Unload(const std::string&, std::int32_t) override { throw RuntimeError(340, "Chosen to fail."); }
};

struct World {
  FailingPlatform& platform;
  FailingStore& store;
  fakes::FakeForm& form;
  MRU& mru;
};

/// A statement of the component that fails in a case, as written in its source file.
struct Case {
  const char* procedure;
  const char* file;
  const char* statement;
  std::function<void(World&)> fail;
};

void PrintTo(const Case& chosen, std::ostream* out) { *out << chosen.procedure; }

const Case kCases[] = {
    {"Main", "settings/modProcessing.cpp", "WindowPositions().RegistryKey(std::string(kRootKey) + ",
     [](World& w) {
       w.platform.failing = "WindowPositions";
       modProcessing::Main();
     }},
    {"Main", "settings/modProcessing.cpp", "RegistryStore().RootHive(HKEY_CURRENT_USER)",
     [](World& w) {
       w.platform.failing = "RegistryStore";
       w.platform.passesBefore = 1;
       modProcessing::Main();
     }},
    {"GetColors", "settings/modProcessing.cpp", "pColors = Platform().CreateColors()",
     [](World&) { modProcessing::GetColors(); }},
    {"SetWindowCaption", "settings/modProcessing.cpp", "AppName = Platform().App().Title()",
     [](World& w) {
       w.platform.failing = "App";
       modProcessing::SetWindowCaption(w.form, "", "a.png");
     }},
    {"SetWindowCaption", "settings/modProcessing.cpp", "FileHelpers().GetFileName(Filename)",
     [](World& w) {
       w.platform.failing = "FileHelpers";
       modProcessing::SetWindowCaption(w.form, "App", "a.png");
     }},
    {"JPEGQuality", "settings/Options.cpp", "JPEGQuality,",
     [](World& w) {
       w.store.readsFail = true;
       modProcessing::GetOptions()->JPEGQuality();
     }},
    {"BackgroundGridSize", "settings/Options.cpp", "BackgroundGridSize,",
     [](World& w) {
       w.store.writesFail = true;
       modProcessing::GetOptions()->BackgroundGridSize(3);
     }},
    {"LoadFromRegistry", "settings/MRU.cpp", "RegistryStore().ReadValue(RootHive, RootKey, ValueName(i))",
     [](World& w) {
       w.store.readsFail = true;
       w.mru.LoadFromRegistry();
     }},
    {"SaveToRegistry", "settings/MRU.cpp", "store.WriteValue(RootHive, RootKey, ValueName(X)",
     [](World& w) {
       w.store.writesFail = true;
       w.mru.AddFile("/a.png");
     }},
    {"SaveToRegistry", "settings/MRU.cpp", "= modProcessing::RegistryStore()",
     [](World& w) {
       w.platform.failing = "RegistryStore";
       w.mru.SaveToRegistry();
     }},
    {"FileExist", "settings/MRU.cpp", "FormUtility().FileExists(Filename)",
     [](World& w) {
       w.store.WriteValue(HKEY_CURRENT_USER, w.mru.RootKey, "MRU1", "/a.png", kStoreString);
       w.platform.failing = "FormUtility";
       w.mru.LoadFromRegistry();
     }},
    {"BuildMRU", "settings/MRU.cpp", "BuildMenu(*ParentForm)",
     [](World& w) {
       FailingItems items;
       w.mru.BuildMRU(&items);
     }},
    {"qdkInitialise", "diagnostics/modTollgarthSupport.Counting.cpp", "->GetProjectHandle()",
     [](World&) { modTollgarthSupport::qdkInitialise(); }},
    {"qdkSendToServer", "diagnostics/modTollgarthSupport.Counting.cpp",
     "Required(ipc).SendMessage(Handle, Message",
     [](World&) {
       modTollgarthSupport::State().qdkDebugClient = std::make_shared<qdkClient>();
       std::int32_t result = 0;
       modTollgarthSupport::qdkSendToServer(1, 2, "text", result, 3);
     }},
    {"CommandLine", "diagnostics/qdkClient.cpp", "App().CommandLine()",
     [](World& w) {
       w.platform.failing = "App";
       std::make_shared<qdkClient>()->CommandLine();
     }},
};

class ReportedLine : public testing::TestWithParam<Case> {
 protected:
  ReportedLine() {
    platform_.store = &store_;
    platform_.positions = &positions_;
    platform_.lines = &lines_;
    platform_.makeLibrary = [] { return std::make_unique<FailingLibrary>(); };
    modProcessing::Attach(platform_);
  }
  ~ReportedLine() override { modProcessing::Detach(); }

  static std::string sourceLine(const std::string& file, std::int32_t line) {
    std::ifstream source(std::string(SOURCE_FOLDER "/") + file);
    std::string text;
    for (std::int32_t i = 0; i < line; ++i) {
      if (!std::getline(source, text)) return {};
    }
    return text;
  }

  class FailingClient : public DebugClient {
   public:
    std::int32_t GetProjectHandle() override { throw RuntimeError(err::kInternal, "Chosen to fail."); }
    std::int32_t GetWindowProcessId(std::int32_t) override { return 0; }
    bool PingServer(std::int32_t, std::int32_t) override { return false; }
    std::int32_t SendMessage(std::int32_t, std::int32_t, const std::string&, std::int32_t&,
                             std::int32_t) override {
      throw RuntimeError(err::kInternal, "Chosen to fail.");
    }
  };
  class FailingLibrary : public DebugClientLibrary {
   public:
    std::unique_ptr<DebugClient> CreateClient() override { return std::make_unique<FailingClient>(); }
    std::unique_ptr<SharedCounters> CreateCounters() override { return nullptr; }
    std::int32_t NextServerWindow(std::int32_t) override { return 0; }
  };

  FailingStore store_;
  fakes::FakeScreens screens_;
  store::StoredPositions positions_{store_, screens_};
  posix::LineTable lines_;
  FailingPlatform platform_;
};

TEST_P(ReportedLine, LeadsToTheStatementInTheSourceFile) {
  const Case& chosen = GetParam();
  fakes::FakeForm form("frmImageEditor");
  MRU mru;
  World world{platform_, store_, form, mru};
  chosen.fail(world);

  const auto& boxes = platform_.boxes.boxes;
  const auto box = std::find_if(boxes.begin(), boxes.end(), [&](const fakes::ShownBox& shown) {
    return shown.text.find("Procedure: " + std::string(chosen.procedure) + "\r\n") != shown.text.npos;
  });
  ASSERT_NE(box, boxes.end());
  const std::string label = "Line Number: ";
  const std::int32_t number = std::stoi(box->text.substr(box->text.find(label) + label.size()));
  EXPECT_EQ(number % 5, 0);
  const std::int32_t line = number % 50'000 / 5;
  EXPECT_NE(sourceLine(chosen.file, line).find(chosen.statement), std::string::npos)
      << chosen.file << ":" << line << " is " << sourceLine(chosen.file, line);
}

INSTANTIATE_TEST_SUITE_P(Of, ReportedLine, testing::ValuesIn(kCases), [](const auto& chosen) {
  return std::string(chosen.param.procedure) + std::to_string(chosen.index);
});

}  // namespace
}  // namespace kestrel
