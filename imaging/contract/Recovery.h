#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ImgX.h"

namespace kestrel {

/// A picture with unsaved changes that was kept on disk and that no living editor has.
struct KeptPicture {
  std::string Id;        ///< its name in the store
  std::string Filename;  ///< empty for an unnamed picture
  std::int32_t Width = 0;
  std::int32_t Height = 0;
  std::int64_t Seconds = 0;  ///< when it was kept, since 1970 in UTC
  bool Damaged = false;      ///< the store cannot read it; only `Id` and `Seconds` are known
};

/// A kept picture that this process has taken over: no other editor can take it. Destroying it gives it back.
class TakenPicture {
 public:
  virtual ~TakenPicture() = default;
  /// Pixels, file format and metadata as they were kept.
  virtual ImgX& Picture() = 0;
};

/// Keeps the state of one editor's picture on disk. The members return at once; a thread does the work, in
/// the order of the calls. On disk there is at every moment the previous state or the next one, whole.
///
/// Destroying it waits some seconds for a `Keep` that was not discarded, and then cancels it; what is on disk
/// can be recovered.
class RecoveryJournal {
 public:
  virtual ~RecoveryJournal() = default;

  /// Keeps the picture's present state instead of the previous one. The picture can be changed at once.
  virtual void Keep(ImgX& Picture, const std::string& Filename) = 0;
  /// Removes what is kept; a write under way is canceled.
  virtual void Discard() = 0;
  /// Leaves what is kept to be recovered. The next `Keep` begins a new file.
  virtual void Leave() = 0;
  /// The taken picture is from now on the state that this journal keeps.
  virtual void Adopt(std::unique_ptr<TakenPicture> Taken) = 0;

  /// Waits until all calls so far have been carried out.
  virtual void Finish() = 0;
  /// A sentence for the user why the last `Keep` failed; empty if it did not.
  virtual std::string Failure() const = 0;
};

/// The kept pictures of all processes of the user. It must outlive its journals and taken pictures.
class RecoveryStore {
 public:
  virtual ~RecoveryStore() = default;

  virtual std::unique_ptr<RecoveryJournal> CreateJournal() = 0;
  /// The pictures that can be recovered, the latest first.
  virtual std::vector<KeptPicture> Kept() = 0;
  /// Raises RuntimeError 481 if it is damaged, 75 if another editor has taken it, and 53 if it is gone, with
  /// a sentence for the user.
  virtual std::unique_ptr<TakenPicture> Take(const KeptPicture& Kept) = 0;
  /// Removes it for good. Raises RuntimeError as `Take`, but not for damage.
  virtual void Delete(const KeptPicture& Kept) = 0;
};

}  // namespace kestrel
