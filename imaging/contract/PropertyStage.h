#pragma once

namespace kestrel {

/// The forms of a platform are also of this class, for a window whose controls are used before its first
/// `Form::Show`.
class PropertyStage {
 public:
  virtual ~PropertyStage() = default;

  /// Raises the property event of each of our controls on the form, unless that was done before. Without this
  /// call the first `Form::Show` does it, before `Form::Load`.
  virtual void InitializeControls() = 0;
};

}  // namespace kestrel
