#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "browser/interface/IImageBrowserCtl.h"
#include "editor/interface/IImageProcessingCtl.h"
#include "imaging/contract/Platform.h"
#include "kestrel.h"

namespace kestrel::c {

/// A control of a host's window.
template <typename Control>
struct Embedded {
  Control* control = nullptr;
  void* widget = nullptr;
  std::weak_ptr<const void> life;  ///< expires with the widget
};

/// A thread that was started, with its platform.
class Apartment {
 public:
  /// That of the calling thread; null if it was not started.
  static std::shared_ptr<Apartment> Current();
  /// That of the calling thread, which is started on the desktop if it was not.
  static std::shared_ptr<Apartment> Started();
  /// See `kestrel_start` and `kestrel_stop`.
  static void Start(std::int32_t platform);
  static void Stop();

  virtual ~Apartment() = default;
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

  virtual std::int32_t Kind() const = 0;

  /// Does `work` on the apartment's thread when it next processes events or calls a function of the
  /// interface, unless the apartment ends before. False if it has ended. Can be called on any thread.
  bool Post(std::function<void()> work);
  void DoPosted();

  // -- Events; see kestrel.h ------------------------------------------------------------------------------
  virtual void ProcessEvents(std::chrono::milliseconds wait) = 0;
  /// Returns a KESTREL_RUN_... `isClosed` must not throw; null: until the last window is closed.
  virtual std::int32_t Run(const std::function<bool()>& isClosed,
                           std::optional<std::chrono::milliseconds> limit) = 0;
  virtual void Quit() = 0;

  // -- Controls; raise KESTREL_INVALID_CALL if there is no display
  // -------------------------------------------
  virtual Embedded<IImageProcessingCtl> EmbedEditor(void* parent) = 0;
  virtual Embedded<IImageBrowserCtl> EmbedBrowser(void* parent) = 0;
  virtual std::uint64_t WindowOf(void* widget) = 0;
  /// False if the control was not made by one of the above.
  virtual bool DestroyWidget(const void* control) = 0;

  /// One call of a function of the interface, or of a host's handler, while it runs. The apartment cannot be
  /// stopped meanwhile.
  class Call {
   public:
    explicit Call(std::shared_ptr<Apartment> apartment) : apartment_(std::move(apartment)) {
      ++apartment_->calls_;
    }
    ~Call() { --apartment_->calls_; }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

   private:
    const std::shared_ptr<Apartment> apartment_;
  };
  bool HasCalls() const { return calls_ > 0; }
  /// Whether the call in progress is the only one, so that no other code of ours is on the stack.
  bool IsOutermostCall() { return calls_ == 1 && !Platform().Calls.Any(); }
  bool IsEnding() const { return ending_; }
  /// Can be called on any thread.
  bool HasEnded() const { return ended_; }

 protected:
  Apartment() = default;
  virtual kestrel::Platform& Platform() = 0;
  /// Makes the thread call `DoPosted`. Can be called on any thread, before `Close`.
  virtual void Wake() = 0;
  /// Ends the platform.
  virtual void Close() = 0;
  /// Ends the apartment, which is that of the calling thread.
  void End();
  bool HasPosted() const { return hasPosted_; }

 private:
  std::int32_t calls_ = 0;
  bool ending_ = false;

  std::mutex mutex_;
  std::vector<std::function<void()>> posted_;
  std::atomic<bool> hasPosted_ = false;
  std::atomic<bool> ended_ = false;
};

}  // namespace kestrel::c
