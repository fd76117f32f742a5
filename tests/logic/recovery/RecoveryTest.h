#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "../editor/EditorTest.h"
#include "recovery/Recovery.h"

namespace kestrel {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// A store in memory that records what it is asked for.
class FakeStore final : public RecoveryStore {
 public:
  std::vector<std::string> asked;
  std::vector<KeptPicture> kept;
  std::string failure;       ///< of the journals
  std::int32_t refusal = 0;  ///< the error that `Take` raises
  std::int32_t red = 0;      ///< in the first pixel of the latest kept state

  std::unique_ptr<RecoveryJournal> CreateJournal() override { return std::make_unique<Journal>(*this); }
  std::vector<KeptPicture> Kept() override { return kept; }
  std::unique_ptr<TakenPicture> Take(const KeptPicture& Kept) override {
    if (refusal != 0) throw RuntimeError(refusal, "The file is in use.");
    asked.push_back("take " + Kept.Id);
    return std::make_unique<Taken>(Kept);
  }
  void Delete(const KeptPicture& Kept) override {
    asked.push_back("delete " + Kept.Id);
    std::erase_if(kept, [&](const KeptPicture& each) { return each.Id == Kept.Id; });
  }
  std::vector<std::string> takeAsked() { return std::exchange(asked, {}); }

 private:
  class Taken final : public TakenPicture {
   public:
    explicit Taken(const KeptPicture& kept) : picture_(modProcessing::Platform().CreateImgX()) {
      const Colour color(0x00203040);
      picture_->Document().NewImage(kept.Width, kept.Height, &color);
    }
    ImgX& Picture() override { return *picture_; }

   private:
    std::shared_ptr<ImgX> picture_;
  };

  class Journal final : public RecoveryJournal {
   public:
    explicit Journal(FakeStore& store) : store_(store) {}
    ~Journal() override { store_.asked.push_back("end"); }
    void Keep(ImgX& Picture, const std::string& Filename) override {
      store_.red = Picture.Image()->GetPixel(0, 0).Red();
      const std::size_t slash = Filename.find_last_of("/\\");
      store_.asked.push_back("keep " + (slash == std::string::npos ? Filename : Filename.substr(slash + 1)));
    }
    void Discard() override { store_.asked.push_back("discard"); }
    void Leave() override { store_.asked.push_back("leave"); }
    void Adopt(std::unique_ptr<TakenPicture>) override {
      store_.asked.push_back("adopt");
      store_.kept.clear();
    }
    void Finish() override {}
    std::string Failure() const override { return store_.failure; }

   private:
    FakeStore& store_;
  };
};

/// An editor whose unsaved changes are kept.
class RecoveryTest : public EditorTest {
 protected:
  void TearDown() override {
    if (recovery_) recovery_->End();
    recovery_.reset();
    EditorTest::TearDown();
  }

  std::string startRecovery() {
    const std::string file = startWithPicture();
    recover();
    return file;
  }
  void recover() { recovery_ = std::make_unique<Recovery>(control(), suite(), store_); }
  Recovery& recovery() { return *recovery_; }

  /// Lets the time pass in steps of one second, with a tick where one is needed, as a container does.
  void pass(seconds time) {
    for (const auto end = now_ + time; now_ < end;) {
      now_ += seconds(1);
      if (recovery().NeedsTicks()) recovery().Tick(now_);
    }
  }

  FakeStore store_;
  std::unique_ptr<Recovery> recovery_;
  Recovery::Time now_{seconds(1000)};
};

}  // namespace kestrel
