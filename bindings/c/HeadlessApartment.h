#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

#include "Apartment.h"

namespace kestrel::headless {
class Platform;
}

namespace kestrel::c {

/// A thread without a display. It has no events but the work that other threads post.
class HeadlessApartment final : public Apartment {
 public:
  /// Raises KESTREL_INVALID_CALL if the thread serves another host already.
  HeadlessApartment();
  ~HeadlessApartment() override;

  std::int32_t Kind() const override { return KESTREL_HEADLESS; }

  void ProcessEvents(std::chrono::milliseconds wait) override;
  std::int32_t Run(const std::function<bool()>& isClosed,
                   std::optional<std::chrono::milliseconds> limit) override;
  void Quit() override;

  Embedded<IImageProcessingCtl> EmbedEditor(void* parent) override;
  Embedded<IImageBrowserCtl> EmbedBrowser(void* parent) override;
  std::uint64_t WindowOf(void* widget) override;
  bool DestroyWidget(const void* control) override;

 private:
  kestrel::Platform& Platform() override;
  void Wake() override;
  void Close() override;

  /// A folder for what the platform writes by itself.
  std::string scratch_;
  std::unique_ptr<headless::Platform> platform_;
  std::mutex mutex_;
  std::condition_variable woken_;
};

}  // namespace kestrel::c
