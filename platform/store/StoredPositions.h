#pragma once

#include <string>

#include "imaging/contract/RegistryStore.h"
#include "imaging/contract/WindowFunctions.h"
#include "imaging/contract/WindowPositions.h"

namespace kestrel::store {

/// Window positions in the key store: below the registry key, one key per window, named by the argument or by
/// the form. It has the numbers Left, Top, Width, Height and WindowState.
class StoredPositions : public WindowPositions {
 public:
  StoredPositions(RegistryStore& store, WindowFunctions& windows) : store_(store), windows_(windows) {}

  std::string RegistryKey() const override { return registryKey_; }
  void RegistryKey(const std::string& value) override { registryKey_ = value; }

  void LoadPosition(Form& form, const std::string& Name, std::int32_t Placement = kPlaceAsIs,
                    std::int32_t Screen = 0) override;
  void SavePosition(Form& form, const std::string& Name) override;

 private:
  std::string keyOf(const Form& form, const std::string& name) const;
  void center(Form& form, std::int32_t screen);
  void place(Form& form, const Rectangle& wanted);

  RegistryStore& store_;
  WindowFunctions& windows_;
  std::string registryKey_;
};

/// The rectangle moved into `area` by the shortest distance, and shrunk if it is larger.
Rectangle fitted(const Rectangle& rectangle, const Rectangle& area);

/// Moves and shrinks a window's client area so that the window with its frame is on one screen: the one with
/// the largest overlap, or else the nearest.
Rectangle keptOnScreen(const Rectangle& client, const Margins& frame, WindowFunctions& windows);

}  // namespace kestrel::store
