#pragma once

#include <memory>

namespace kestrel::engine {
class ClipboardPort;
}

namespace kestrel::qt {

class RetiredEditors;

/// The component inside a host program: the desktop's platform, and the start and the end of what the editors
/// of this thread share. A host makes one on its main thread, after its application object and before any
/// editor, and lets it outlive them. All components of a thread are the same one, which ends with the last.
class Component {
 public:
  Component();
  ~Component();
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  engine::ClipboardPort& clipboardPort();
  RetiredEditors& retiredEditors();

 private:
  struct Inside;
  std::shared_ptr<Inside> inside_;
};

}  // namespace kestrel::qt
