#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "editor/ImageProcessingCtl.h"
#include "imaging/contract/Recovery.h"

namespace kestrel {

/// Keeps the unsaved changes of one editor on disk and offers those that were left: a process that was
/// killed, or a picture that was replaced or closed without a question, loses at most the last 30 seconds.
///
/// The container makes it after the editor and calls `End` before it destroys the editor's controls.
class Recovery {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// Changes are kept when the user pauses for this time with no button pressed.
  static constexpr std::chrono::seconds kPause{3};
  /// But at the latest this time after the first of them. The rest of the 30 seconds is for the disk.
  static constexpr std::chrono::seconds kLatest{20};
  /// The interval at which the container calls `Tick`, while `NeedsTicks`.
  static constexpr std::chrono::seconds kInterval{1};

  /// All arguments must outlive this object.
  Recovery(ImageProcessingCtl& editor, Moorage& bars, RecoveryStore& store);
  Recovery(const Recovery&) = delete;
  Recovery& operator=(const Recovery&) = delete;
  ~Recovery();

  void Tick(Time now);

  /// Whether `Tick` would do something, now or after some calls: changes wait to be kept, a kept state is to
  /// be removed, or the disk may fail to keep one. While there is no need the container does not call it.
  /// Cheap.
  bool NeedsTicks() const;

  /// Shows in the strip above the picture that there is something to recover, unless another notice is there.
  void Offer();

  /// Asks for each kept picture, the latest first, whether it shall be opened, until one is.
  void Recover();

  /// The user has agreed to close the editor: what was not saved is not wanted.
  void Close();

  /// Last call: keeps unsaved changes that nobody has declined.
  void End();

 private:
  void Changed();
  void MouseReleased();
  void PictureSet();
  void Saved();
  void UnsavedChanges(ChangesStep step);
  void NoticeAction();
  void AddMenuLine(std::vector<BarMenuLine>& lines);

  bool hasUnsavedChanges() const;
  void keep();
  void discard();
  void showFailure();
  void offer(const std::string& text);
  std::int32_t askToOpen(const KeptPicture& kept);
  /// Returns false if the user wants no more questions.
  bool askToDelete(const KeptPicture& kept, bool damaged);
  void open(const KeptPicture& kept);
  std::int32_t box(const std::string& text, std::int32_t style);
  std::string qdkDumpModuleVariables() const;

  ImageProcessingCtl& editor_;
  ImageView& view_;
  RecoveryStore& store_;
  std::unique_ptr<RecoveryJournal> journal_;

  bool changed_ = false;                          ///< since the last `Tick`
  std::optional<Time> firstChange_, lastChange_;  ///< of the changes that are not kept yet
  bool kept_ = false;                             ///< the journal keeps a state of this picture
  bool declined_ = false;                         ///< the user does not want to save the changes made so far
  bool pressed_ = false;      ///< a mouse button is down, perhaps with a drawing under way
  bool keptPressed_ = false;  ///< and was when the picture was kept
  bool ended_ = false;
  std::int32_t failureTicks_ = 0;  ///< for so many calls of `Tick` the disk may fail to keep the last state
  std::string name_;               ///< the file's name of the kept state
  std::string offer_;              ///< the notice in the strip; empty for none
  std::string failure_;            ///< the last one shown

  std::vector<Connection> connections_;
};

}  // namespace kestrel
