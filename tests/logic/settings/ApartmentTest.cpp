// The state of modProcessing exists once per thread.

#include <thread>

#include "Settings.h"

namespace kestrel {
namespace {

/// The services of one thread.
struct Services {
  FailingStore store;
  fakes::FakeScreens screens;
  store::StoredPositions positions{store, screens};
  fakes::FakePlatform platform;

  Services() {
    platform.store = &store;
    platform.positions = &positions;
    platform.makeColors = [] { return std::make_shared<NoColors>(); };
  }
  void start() {
    modProcessing::Attach(platform);
    modProcessing::Main();
  }

 private:
  class NoColors : public Colors {
   public:
    std::string TypeName() const override { return "Colors"; }
    Colour Create(OLE_COLOR, std::uint8_t) const override { return {}; }
  };
};

TEST(Apartments, HaveTheirOwnPlatformOptionsAndColors) {
  Services first, second;
  first.start();
  const auto options = modProcessing::GetOptions();
  const auto colors = modProcessing::GetColors();
  options->JPEGQuality(40);

  std::shared_ptr<Options> otherOptions;
  std::shared_ptr<Colors> otherColors;
  std::thread([&] {
    EXPECT_THROW(modProcessing::Platform(), RuntimeError) << "none is attached to this thread";
    second.start();
    EXPECT_EQ(&modProcessing::Platform(), &second.platform);
    otherOptions = modProcessing::GetOptions();
    otherColors = modProcessing::GetColors();
    EXPECT_EQ(otherOptions->JPEGQuality(), 75) << "read from the thread's own store";
    otherOptions->JPEGQuality(60);
    modProcessing::KillShared();
    modProcessing::Detach();
  }).join();

  EXPECT_NE(otherOptions, nullptr);
  EXPECT_NE(otherOptions, options);
  EXPECT_NE(otherColors, nullptr);
  EXPECT_NE(otherColors, colors);
  EXPECT_EQ(&modProcessing::Platform(), &first.platform);
  EXPECT_EQ(modProcessing::GetOptions(), options) << "the other thread released its own";
  EXPECT_EQ(modProcessing::GetColors(), colors);
  EXPECT_EQ(options->JPEGQuality(), 40);
  modProcessing::Detach();
}

}  // namespace
}  // namespace kestrel
