#pragma once

#include <array>
#include <memory>

#include "base/OpenCalls.h"
#include "imaging/contract/UserInterface.h"
#include "platform/filetransfer/FileTransfer.h"
#include "platform/store/FileNames.h"

class QWidget;

namespace kestrel::engine {
class ThumbnailReader;
}

namespace kestrel::transfer {
class BackgroundTransfer;
}

namespace kestrel::qt {

/// File operations on a thread of their own. No call returns before its work has ended. Short work shows
/// nothing; longer work shows a window with its progress.
class QtFileHelpers final : public store::FileNames {
 public:
  /// `boxes` asks before files are deleted, and shows what was not done.
  QtFileHelpers(UserInterface& boxes, OpenCalls& calls);
  ~QtFileHelpers() override;

  std::string ResolvePath(const std::string& Path) override;
  bool CopyFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                 WindowHandle Owner) override;
  bool MoveFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                 WindowHandle Owner) override;
  bool DeleteFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                   WindowHandle Owner) override;

 private:
  bool run(const transfer::Request& request, WindowHandle owner);
  /// False if the owner was destroyed.
  bool attend(transfer::BackgroundTransfer& transfer, const transfer::Request& request, WindowHandle owner);
  bool ask(transfer::BackgroundTransfer& transfer, const transfer::Request& request, QWidget* parent);

  UserInterface& boxes_;
  OpenCalls& calls_;
  /// For the pictures of the two files of a question.
  std::array<std::unique_ptr<engine::ThumbnailReader>, 2> readers_;
};

}  // namespace kestrel::qt
