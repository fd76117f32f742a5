#pragma once

#include <cstdint>
#include <functional>

#include "imaging/contract/ThumbnailView.h"

namespace kestrel::contract {

/// A visible thumbnail view of a platform, 600 by 400, at run time and with the focus, and the actions of its
/// user. Thumbnails are counted from 1 and must be visible.
class ThumbnailsUser {
 public:
  virtual ~ThumbnailsUser() = default;

  virtual ThumbnailView& view() = 0;

  virtual void click(std::int32_t index, std::int32_t shift) = 0;
  virtual void doubleClick(std::int32_t index) = 0;
  virtual void contextClick(std::int32_t index) = 0;
  /// False if the view does not use the key.
  virtual bool pressKey(std::int32_t keyCode, std::int32_t shift) = 0;

  /// Processes events until the condition holds. False if it does not within a minute.
  virtual bool waitFor(const std::function<bool()>& condition) = 0;
};

}  // namespace kestrel::contract
