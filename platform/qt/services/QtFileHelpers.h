#pragma once

#include <QString>
#include <functional>

#include "imaging/contract/UserInterface.h"
#include "platform/store/FileNames.h"

namespace kestrel::qt {

class QtFileHelpers final : public store::FileNames {
 public:
  /// `boxes` shows questions before data is lost, and failures.
  explicit QtFileHelpers(UserInterface& boxes);

  std::string ResolvePath(const std::string& Path) override;
  bool CopyFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                 WindowHandle Owner) override;
  bool MoveFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                 WindowHandle Owner) override;
  bool DeleteFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                   WindowHandle Owner) override;

 private:
  enum class Answer { kGoOn, kSkip, kStop };

  /// Calls `work` with each name of the buffer; `work` returns an empty text or the error.
  bool forEach(const std::string& buffer, const char* failure,
               const std::function<QString(const QString&)>& work);
  /// Copies or moves files into a folder with `carry`.
  bool transferFiles(const std::string& buffer, const std::string& folder, const char* failure,
                     bool (*carry)(const QString& from, const QString& to));
  Answer mayReplace(const QString& target);

  UserInterface& boxes_;
};

}  // namespace kestrel::qt
