#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "browser/interface/IImageBrowserCtl.h"
#include "editor/interface/IImageProcessingCtl.h"
#include "imaging/contract/Platform.h"

namespace kestrel::qt {

/// The desktop for hosts that do not know the toolkit: joins the application object of the host's program, or
/// makes one. One at a time per process. The header includes none of the toolkit's.
class ForeignDesktop {
 public:
  /// `ending` is called before the application object ends while this object exists; it must destroy this
  /// object. Raises RuntimeError 429 if there is no display, or an application object without windows, and
  /// `KESTREL_WRONG_THREAD`'s number on another thread than the application object's.
  explicit ForeignDesktop(std::function<void()> ending);
  /// Destroys the controls that are left, and the application object if it was made here.
  ~ForeignDesktop();
  ForeignDesktop(const ForeignDesktop&) = delete;
  ForeignDesktop& operator=(const ForeignDesktop&) = delete;

  kestrel::Platform& platform();

  // -- Events ---------------------------------------------------------------------------------------------

  /// Calls `work` on this object's thread when it processes events. Can be called on any thread.
  void post(std::function<void()> work);
  /// Processes the pending events, or waits for some. `outermost`: no frame of the logic is on the stack, so
  /// what the toolkit deletes later can be deleted.
  void processEvents(std::chrono::milliseconds wait, bool outermost);

  enum class Reason { kQuit, kDone, kTimedOut };
  /// Processes events until `isDone`, which is asked whenever none are pending and must not throw.
  Reason run(const std::function<bool()>& isDone, std::optional<std::chrono::milliseconds> limit);
  /// Ends the innermost `run`; false if there is none.
  bool quit();
  /// Whether a window of the program is visible.
  static bool showsWindows();

  // -- Controls -------------------------------------------------------------------------------------------

  template <typename Control>
  struct Embedded {
    Control* control = nullptr;
    void* widget = nullptr;          ///< a `QWidget*`
    std::weak_ptr<const void> life;  ///< expires with the widget
  };
  /// `parent` is a `QWidget*` or null. Raises RuntimeError 5 for a pointer that is no widget of the program.
  Embedded<IImageProcessingCtl> embedEditor(void* parent);
  Embedded<IImageBrowserCtl> embedBrowser(void* parent);
  /// The number of the widget's native window, which is made if there is none.
  static std::uint64_t windowOf(void* widget);
  /// Destroys the widget of a control; false if it was not made here.
  bool destroy(const void* control);

 private:
  struct Inside;
  std::unique_ptr<Inside> inside_;
};

}  // namespace kestrel::qt
