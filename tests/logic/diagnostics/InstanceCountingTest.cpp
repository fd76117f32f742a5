#include <string>
#include <vector>

#include "Diagnostics.h"
#include "FakeDebugClient.h"

namespace kestrel {
namespace {

using modTollgarthSupport::Counted;
using modTollgarthSupport::qdkCountInstance;
using modTollgarthSupport::qdkInitialise;
using modTollgarthSupport::qdkUncountInstance;

constexpr std::int32_t kRegister = 502;
constexpr std::int32_t kIsSkipped = 10;

class InstanceCounting : public Diagnostics {
 protected:
  InstanceCounting() {
    platform_.makeLibrary = [this] { return std::make_unique<fakes::Library>(tool_); };
    tool_.servers = {100};
    tool_.answering = {100};
    tool_.answers[kRegister] = 12;
    tool_.answers[kIsSkipped] = 0;
  }
  ~InstanceCounting() override { modTollgarthSupport::Attach(nullptr); }

  fakes::DebugTool tool_;
};

TEST_F(InstanceCounting, IsInertWithoutTheLibrary) {
  platform_.makeLibrary = nullptr;
  EXPECT_FALSE(qdkInitialise());
  EXPECT_FALSE(state().qdkDebuggerListening);
  EXPECT_EQ(state().qdkDebugClient->IPC(), nullptr);
  qdkCountInstance(Counted::kOptions);
  qdkUncountInstance(Counted::kOptions);
  EXPECT_TRUE(boxes().empty());
}

TEST_F(InstanceCounting, IsInertIfTheClientCannotBeCreated) {
  tool_.clientCanBeMade = false;
  EXPECT_FALSE(qdkInitialise());
  EXPECT_TRUE(boxes().empty());
}

TEST_F(InstanceCounting, TakesTheIdentityOfTheProcess) {
  EXPECT_TRUE(qdkInitialise());
  EXPECT_EQ(state().qdkProjectId, 4711);
  EXPECT_EQ(state().qdkProcessId, 4712);
  EXPECT_EQ(state().qdkModuleFilename, "/opt/kestrel/BrindleImgPro2");
  platform_.app.moduleFilename = "";
  qdkInitialise();
  EXPECT_EQ(state().qdkModuleFilename, "/opt/kestrel/BrindleImgPro2") << "an empty answer gives nothing";
}

TEST_F(InstanceCounting, WithoutServersIsOffButHasItsClient) {
  tool_.servers.clear();
  EXPECT_TRUE(qdkInitialise());
  EXPECT_FALSE(state().qdkDebuggerListening);
  EXPECT_FALSE(state().qdkEnableInstanceCounts);
  EXPECT_EQ(tool_.counters, "");
}

TEST_F(InstanceCounting, OpensTheSharedBlock) {
  qdkInitialise();
  EXPECT_TRUE(state().qdkDebuggerListening);
  EXPECT_EQ(tool_.counters, "open 10000 #TollgarthInstanceCounting#;");
}

TEST_F(InstanceCounting, TakesTheLastServerThatAnswers) {
  tool_.servers = {100, 200, 300, 400};
  tool_.answering = {100, 300};
  qdkInitialise();
  EXPECT_EQ(tool_.pinged, (std::vector<std::int32_t>{100, 200, 300, 400}));
  EXPECT_EQ(state().qdkInstanceCountsServerHandle, 300);
  EXPECT_TRUE(state().qdkEnableInstanceCounts);
}

TEST_F(InstanceCounting, IsOffIfNoServerAnswers) {
  tool_.answering.clear();
  EXPECT_TRUE(qdkInitialise());
  EXPECT_TRUE(state().qdkDebuggerListening);
  EXPECT_FALSE(state().qdkEnableInstanceCounts);
  qdkCountInstance(Counted::kOptions);
  EXPECT_TRUE(tool_.sent.empty());
}

TEST_F(InstanceCounting, RegistersAnObjectOnceAndCountsIt) {
  qdkInitialise();
  tool_.counters.clear();
  qdkCountInstance(Counted::kfrmRotate);
  ASSERT_EQ(tool_.sent.size(), 2u);
  EXPECT_EQ(tool_.sent[0].handle, 100);
  EXPECT_EQ(tool_.sent[0].message, 502);
  EXPECT_EQ(tool_.sent[0].text, "frmRotate,3,4711");
  EXPECT_EQ(tool_.sent[0].timeout, 2000);
  EXPECT_EQ(tool_.sent[1].handle, 100);
  EXPECT_EQ(tool_.sent[1].message, 10);
  EXPECT_EQ(tool_.sent[1].text, "/opt/kestrel/BrindleImgPro2,12,4711");
  EXPECT_EQ(tool_.sent[1].timeout, 2000);
  EXPECT_EQ(tool_.counters, "12+1;");

  qdkCountInstance(Counted::kfrmRotate);
  EXPECT_EQ(tool_.sent.size(), 2u);
  qdkUncountInstance(Counted::kfrmRotate);
  EXPECT_EQ(tool_.counters, "12+1;12+1;12-1;");
}

TEST_F(InstanceCounting, RegistersEachObjectOfTheComponentUnderItsNameAndKind) {
  qdkInitialise();
  std::string texts;
  for (std::int32_t i = 0; i <= static_cast<std::int32_t>(Counted::kImageBrowserCtl); ++i) {
    qdkCountInstance(static_cast<Counted>(i));
    const std::string& text = tool_.sent.at(tool_.sent.size() - 2).text;
    EXPECT_TRUE(text.ends_with(",4711"));
    texts += text.substr(0, text.size() - 4) + " ";
  }
  EXPECT_EQ(texts,
            "ImageProcessing,1, Options,1, MRU,1, ImageBrowser,1, IImageEvents,1, frmMaterials,3, "
            "frmImageEditor,3, "
            "frmRotate,3, frmOptions,3, frmDropShadow,3, frmResize,3, frmFlattenAlpha,3, frmPasteSpecial,3, "
            "frmResizeCanvas,3, frmZoom,3, frmResources,3, frmImageBrowser,3, frmExport,3, frmGetThumnail,3, "
            "Preview,4, ImageProcessingCtl,4, FolderTreeView,4, ImageBrowserCtl,4, ");
}

TEST_F(InstanceCounting, DoesNotCountObjectsThatTheServerSkips) {
  tool_.answers[kIsSkipped] = 1;
  qdkInitialise();
  tool_.counters.clear();
  qdkCountInstance(Counted::kMRU);
  EXPECT_EQ(tool_.counters, "");
  tool_.sent.clear();
  qdkCountInstance(Counted::kMRU);
  qdkUncountInstance(Counted::kMRU);
  EXPECT_TRUE(tool_.sent.empty());
  EXPECT_EQ(tool_.counters, "");
}

TEST_F(InstanceCounting, ContinuesAfterAFailingStatement) {
  qdkInitialise();
  tool_.counters.clear();
  tool_.answers[kRegister] = 70'000;  // no component id
  qdkCountInstance(Counted::kMRU);
  EXPECT_EQ(tool_.sent.size(), 2u);
  EXPECT_EQ(state().qdkInstanceCountComponentNames[2], 0);
  EXPECT_EQ(tool_.counters, "0+1;");
}

TEST_F(InstanceCounting, ReportsAServerThatIsGone) {
  qdkInitialise();
  tool_.sendingFails = true;
  qdkCountInstance(Counted::kMRU);
  EXPECT_EQ(boxes().size(), 2u) << "one for each message";
}

TEST_F(InstanceCounting, ReportsAMessageWithoutAClient) {
  std::int32_t result = 7;
  EXPECT_EQ(modTollgarthSupport::qdkSendToServer(100, 33, "text", result, 500), 0);
  EXPECT_EQ(result, 7);
  ASSERT_EQ(boxes().size(), 1u);
  EXPECT_TRUE(boxes()[0].text.ends_with("(91)")) << boxes()[0].text;
}

TEST_F(InstanceCounting, ReportsAMissingLibraryAtABroadcast) {
  qdkInitialise();
  platform_.makeLibrary = nullptr;
  tool_.client->OnBroadcast();
  EXPECT_FALSE(state().qdkDebuggerListening);
  EXPECT_EQ(state().qdkDebugClient->IPC(), nullptr);
  tool_.counters.clear();
  qdkCountInstance(Counted::kMRU);
  EXPECT_EQ(boxes().size(), 2u) << "one for each message";
  EXPECT_EQ(tool_.counters, "0+1;");
}

TEST_F(InstanceCounting, IsInertOnAThreadWithoutAPlatform) {
  modTollgarthSupport::Attach(nullptr);
  EXPECT_FALSE(qdkInitialise());
  EXPECT_FALSE(state().qdkEnableInstanceCounts);
}

TEST_F(InstanceCounting, CountsLivingObjects) {
  qdkInitialise();
  tool_.counters.clear();
  { const InstanceCount first(Counted::kOptions), second(Counted::kOptions); }
  EXPECT_EQ(tool_.counters, "12+1;12+1;12-1;12-1;");
}

TEST_F(InstanceCounting, FindsAServerThatStartsLater) {
  tool_.servers.clear();
  qdkInitialise();
  qdkCountInstance(Counted::kOptions);
  EXPECT_TRUE(tool_.sent.empty());
  tool_.servers = {100};
  tool_.client->OnBroadcast();
  EXPECT_TRUE(state().qdkEnableInstanceCounts);
  tool_.counters.clear();
  qdkUncountInstance(Counted::kOptions);
  EXPECT_EQ(tool_.counters, "0-1;") << "it was not counted at its creation";
}

TEST_F(InstanceCounting, DropsItsIdsWhenAServerAnnouncesItself) {
  qdkInitialise();
  qdkCountInstance(Counted::kOptions);
  tool_.client->OnBroadcast();
  EXPECT_EQ(state().qdkInstanceCountComponentNames[1], 0);
  tool_.sent.clear();
  qdkCountInstance(Counted::kOptions);
  EXPECT_EQ(tool_.sent.size(), 2u);
}

TEST_F(InstanceCounting, KeepsItsTablesIfABroadcastFindsNoServer) {
  qdkInitialise();
  qdkCountInstance(Counted::kOptions);
  tool_.servers.clear();
  tool_.client->OnBroadcast();
  EXPECT_EQ(state().qdkInstanceCountComponentNames[1], 12);
  EXPECT_FALSE(state().qdkDebuggerListening);
}

TEST_F(InstanceCounting, IsMarkedOnce) {
  EXPECT_FALSE(state().qdkHasInitialised);
  modTollgarthSupport::qdkMarkInitialised();
  modTollgarthSupport::qdkMarkInitialised();
  EXPECT_TRUE(state().qdkHasInitialised);
}

TEST_F(InstanceCounting, SendsAMessageAndReturnsTheAnswer) {
  qdkInitialise();
  tool_.answers[33] = 44;
  std::int32_t result = 0;
  EXPECT_EQ(modTollgarthSupport::qdkSendToServer(100, 33, "text", result, 500), 1);
  EXPECT_EQ(result, 44);
  EXPECT_EQ(tool_.sent.back().text, "text");
  EXPECT_EQ(tool_.sent.back().timeout, 500);
}

}  // namespace
}  // namespace kestrel
