#pragma once

#include <QString>
#include <memory>

#include "HelpWindow.h"
#include "imaging/contract/HelpViewer.h"

namespace kestrel::qt {

class QtHelpViewer final : public HelpViewer {
 public:
  /// `helpRoot` is the folder with one folder of pages per book.
  explicit QtHelpViewer(const QString& helpRoot) : helpRoot_(helpRoot) {}

  std::string HelpFile() const override { return helpFile_; }
  void HelpFile(const std::string& value) override { helpFile_ = value; }
  void ShowTopic(const std::string& topic, std::int32_t context) override;

 private:
  QString helpRoot_;
  std::string helpFile_;
  std::unique_ptr<HelpWindow> window_;
};

}  // namespace kestrel::qt
