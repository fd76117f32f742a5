#pragma once

#include <memory>

#include "Apartment.h"
#include "platform/qt/foreign/ForeignDesktop.h"

namespace kestrel::c {

/// The thread of the desktop.
class DesktopApartment final : public Apartment {
 public:
  /// Raises as `qt::ForeignDesktop`, and KESTREL_WRONG_THREAD if another thread has the desktop.
  DesktopApartment();
  ~DesktopApartment() override;

  std::int32_t Kind() const override { return KESTREL_DESKTOP; }

  void ProcessEvents(std::chrono::milliseconds wait) override;
  std::int32_t Run(const std::function<bool()>& isClosed,
                   std::optional<std::chrono::milliseconds> limit) override;
  void Quit() override;

  Embedded<IImageProcessingCtl> EmbedEditor(void* parent) override;
  Embedded<IImageBrowserCtl> EmbedBrowser(void* parent) override;
  std::uint64_t WindowOf(void* widget) override;
  bool DestroyWidget(const void* control) override;

 private:
  kestrel::Platform& Platform() override { return desktop_->platform(); }
  void Wake() override;
  void Close() override;

  /// The desktop is one thread of the process.
  class Claim {
   public:
    Claim();
    ~Claim();
    Claim(const Claim&) = delete;
    Claim& operator=(const Claim&) = delete;
  };

  std::unique_ptr<Claim> claim_ = std::make_unique<Claim>();
  std::unique_ptr<qt::ForeignDesktop> desktop_;
};

}  // namespace kestrel::c
