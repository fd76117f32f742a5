#include "Recovery.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <utility>

#include "base/DescribedError.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr char kModule[] = "Recovery";
constexpr char kRecover[] = "&Recover...";
constexpr char kTitle[] = "Recover";
/// A failure of a slower disk is shown after the next change.
constexpr std::int32_t kFailureTicks = 30;

std::string PathOf(const KeptPicture& kept) { return kept.Filename.empty() ? "Untitled" : kept.Filename; }

std::string NameOf(const std::string& filename) {
  return filename.empty() ? "Untitled" : modProcessing::Platform().FileHelpers().GetFileName(filename);
}
std::string NameOf(const KeptPicture& kept) { return NameOf(kept.Filename); }

/// Date and time as the user's clock shows them, "2026-11-22 05:10".
std::string TimeOf(const KeptPicture& kept) {
  const std::time_t time = kept.Seconds;
  const std::tm* const local = std::localtime(&time);
  std::array<char, 32> text{};
  if (local == nullptr || std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", local) == 0) return "?";
  return text.data();
}

}  // namespace

Recovery::Recovery(ImageProcessingCtl& editor, Moorage& bars, RecoveryStore& store)
    : editor_(editor), view_(editor.ImageControl()), store_(store), journal_(store.CreateJournal()) {
  const auto keepConnected = [this](Connection connection) { connections_.push_back(std::move(connection)); };
  keepConnected(view_.Changed.Connect([this] { Changed(); }));
  keepConnected(
      view_.MouseDown.Connect([this](std::int32_t, std::int32_t, float, float) { pressed_ = true; }));
  keepConnected(view_.MouseUp.Connect([this](std::int32_t, std::int32_t, float, float) { MouseReleased(); }));
  keepConnected(view_.NoticeAction.Connect([this] { NoticeAction(); }));
  keepConnected(editor_.PictureSet.Connect([this] { PictureSet(); }));
  keepConnected(editor_.ImageSave.Connect([this](const std::string&) { Saved(); }));
  keepConnected(editor_.UnsavedChanges.Connect([this](ChangesStep step) { UnsavedChanges(step); }));
  keepConnected(bars.BarMenuOpening.Connect([this](std::vector<BarMenuLine>& lines) { AddMenuLine(lines); }));
}

Recovery::~Recovery() = default;

// -- Keeping ----------------------------------------------------------------------------------------------

bool Recovery::hasUnsavedChanges() const { return view_.Modified() && editor_.Changed(); }

bool Recovery::NeedsTicks() const {
  if (ended_) return false;
  return changed_ || firstChange_ || failureTicks_ > 0 || (kept_ && !hasUnsavedChanges());
}

void Recovery::Tick(Time now) {
  try {
    if (ended_) return;
    failureTicks_ = std::max(failureTicks_ - 1, 0);
    if (std::exchange(changed_, false)) {
      lastChange_ = now;
      if (!firstChange_) firstChange_ = now;
    }
    if (!hasUnsavedChanges()) return discard();
    if (firstChange_) {
      const bool pauses = now - *lastChange_ >= kPause && !pressed_;
      if (pauses || now - *firstChange_ >= kLatest) keep();
    }
    showFailure();
  } catch (...) {
    QDK_TRAILER_OF(kModule, Tick, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void Recovery::keep() {
  changed_ = false;
  firstChange_.reset();
  const std::shared_ptr<ImgX> picture = view_.ImgX();
  journal_->Keep(Required(picture), editor_.Filename());
  kept_ = true;
  failureTicks_ = kFailureTicks;
  name_ = NameOf(editor_.Filename());
  keptPressed_ = pressed_;
}

void Recovery::discard() {
  changed_ = false;
  firstChange_.reset();
  if (std::exchange(kept_, false)) journal_->Discard();
}

void Recovery::Changed() {
  changed_ = true;
  declined_ = false;
}

/// A drawing that was kept half done may have been taken back, which is no change.
void Recovery::MouseReleased() {
  pressed_ = false;
  if (std::exchange(keptPressed_, false)) changed_ = true;
}

void Recovery::Saved() {
  if (!hasUnsavedChanges()) discard();
}

void Recovery::UnsavedChanges(ChangesStep step) {
  try {
    switch (step) {
      case ChangesStep::kDeclined:
        declined_ = true;
        break;
      case ChangesStep::kStaying:
        declined_ = false;
        break;
      case ChangesStep::kReplacing:
        if (!hasUnsavedChanges()) {
          discard();
        } else if (!declined_ && (changed_ || firstChange_)) {
          keep();
        }
        if (view_.Notice() != offer_) offer_.clear();  // the user has closed it
        break;
    }
  } catch (...) {
    QDK_TRAILER_OF(kModule, UnsavedChanges, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

/// The previous picture is gone: its unsaved changes stay on disk unless the user has declined them.
void Recovery::PictureSet() {
  bool Left = false;
  try {
    Left = kept_ && !declined_;
    if (Left) {
      journal_->Leave();
      kept_ = false;
    }
    discard();
    declined_ = false;
    pressed_ = keptPressed_ = false;
    offer(Left ? "Unsaved changes to \"" + name_ + "\" can be recovered." : offer_);
  } catch (...) {
    QDK_TRAILER_OF(kModule, PictureSet, QDK_PARAMETERS(), QDK_LOCALS(Left));
  }
}

void Recovery::Close() {
  declined_ = true;
  End();
}

void Recovery::End() {
  try {
    if (std::exchange(ended_, true)) return;
    connections_.clear();
    if (hasUnsavedChanges() && !declined_) {
      if (changed_ || firstChange_) keep();
    } else {
      discard();
    }
    journal_.reset();
  } catch (...) {
    QDK_TRAILER_OF(kModule, End, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

/// Once for each different failure; the user goes on working.
void Recovery::showFailure() {
  std::string failure = journal_->Failure();
  if (failure == failure_) return;
  failure_ = std::move(failure);
  if (!failure_.empty() && view_.Notice().empty()) {
    view_.Notice("Changes cannot be kept for recovery after a crash. " + failure_);
  }
}

// -- Recovering -------------------------------------------------------------------------------------------

void Recovery::AddMenuLine(std::vector<BarMenuLine>& lines) {
  try {
    lines.push_back({kRecover, !store_.Kept().empty(), [this] { Recover(); }});
  } catch (...) {
    QDK_TRAILER_OF(kModule, AddMenuLine, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

/// Shows the offer unless another notice is there.
void Recovery::offer(const std::string& text) {
  offer_ = text;
  if (!offer_.empty() && view_.Notice().empty()) view_.Notice(offer_, kRecover);
}

void Recovery::Offer() {
  std::vector<KeptPicture> Kept;
  try {
    Kept = store_.Kept();
    std::erase_if(Kept, [](const KeptPicture& kept) { return kept.Damaged; });
    if (Kept.empty()) {
      offer({});
    } else if (Kept.size() == 1) {
      offer("Unsaved changes to \"" + NameOf(Kept.front()) + "\" of " + TimeOf(Kept.front()) +
            " can be recovered.");
    } else {
      offer("Unsaved changes to " + std::to_string(Kept.size()) + " pictures can be recovered.");
    }
  } catch (...) {
    QDK_TRAILER_OF(kModule, Offer, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void Recovery::NoticeAction() {
  try {
    if (!offer_.empty() && view_.Notice() == offer_) Recover();
  } catch (...) {
    QDK_TRAILER_OF(kModule, NoticeAction, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void Recovery::Recover() {
  std::vector<KeptPicture> Kept;
  try {
    if (!offer_.empty() && view_.Notice() == offer_) view_.Notice({});
    offer_.clear();
    journal_->Finish();
    Kept = store_.Kept();
    if (Kept.empty()) box("There is no picture to recover.", kBoxInformation);
    for (const KeptPicture& kept : Kept) {
      const std::int32_t answer = kept.Damaged ? kAnswerNo : askToOpen(kept);
      if (answer == kAnswerYes) return open(kept);
      if (answer != kAnswerNo || !askToDelete(kept, kept.Damaged)) return;
    }
  } catch (...) {
    QDK_TRAILER_OF(kModule, Recover, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

std::int32_t Recovery::askToOpen(const KeptPicture& kept) {
  return box("Unsaved changes to \"" + PathOf(kept) + "\" of " + TimeOf(kept) + " can be recovered, " +
                 ToText(kept.Width) + " x " + ToText(kept.Height) +
                 " pixels.\r\rDo you want to open the picture with these changes?",
             kBoxYesNoCancel + kBoxQuestion);
}

bool Recovery::askToDelete(const KeptPicture& kept, bool damaged) {
  const std::string text =
      damaged ? "A picture that was kept for recovery at " + TimeOf(kept) +
                    " cannot be recovered: its file is damaged.\r\rDo you want to delete this file?"
              : "Do you want to delete the unsaved changes to \"" + PathOf(kept) + "\" of " + TimeOf(kept) +
                    "? They cannot be recovered after that.";
  const std::int32_t answer = box(text, kBoxYesNoCancel + kBoxExclamation);
  if (answer == kAnswerYes) store_.Delete(kept);
  return answer != kAnswerCancel;
}

void Recovery::open(const KeptPicture& kept) {
  std::unique_ptr<TakenPicture> taken;
  try {
    taken = store_.Take(kept);
  } catch (...) {
    const DescribedError error = DescribeErrorToShow();
    if (error.Number == err::kInvalidPicture) {
      askToDelete(kept, true);
    } else {
      box("Unable to recover the picture due to error \"" + error.Description + "\".", kBoxExclamation);
    }
    return;
  }
  if (!editor_.SaveChanges() || ended_) return;
  if (editor_.Restore(taken->Picture(), kept.Filename) && !ended_) {
    journal_->Adopt(std::move(taken));
    kept_ = true;
    name_ = NameOf(kept);
    Offer();
  }
  declined_ = false;
}

/// Cancel once the editor has ended, which may be while the box is shown.
std::int32_t Recovery::box(const std::string& text, std::int32_t style) {
  if (ended_) return kAnswerCancel;
  const std::int32_t answer =
      modProcessing::Platform().UserInterface().MessageBox(text, style, kTitle, view_.hWnd());
  return ended_ ? kAnswerCancel : answer;
}

std::string Recovery::qdkDumpModuleVariables() const {
  return QDK_FIELDS(changed_, kept_, declined_, pressed_, keptPressed_, ended_, failureTicks_, offer_,
                    failure_, name_);
}

}  // namespace kestrel
