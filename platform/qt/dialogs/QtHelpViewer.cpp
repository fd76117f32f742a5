#include "QtHelpViewer.h"

#include <QDir>
#include <QFileInfo>

#include "base/RuntimeError.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {

void QtHelpViewer::ShowTopic(const std::string& topic, std::int32_t /*context*/) {
  const QString book = QFileInfo(toQt(helpFile_)).completeBaseName();
  const QDir folder(helpRoot_ + u'/' + book);
  if (book.isEmpty() || !folder.exists()) {
    throw RuntimeError(err::kFileNotFound, "The help book \"" + helpFile_ + "\" was not found.");
  }
  if (!folder.exists(toQt(topic))) {
    throw RuntimeError(err::kFileNotFound, "The help page \"" + topic + "\" was not found.");
  }
  if (!window_) window_ = std::make_unique<HelpWindow>();
  window_->showPage(folder.absolutePath(), toQt(topic));
}

}  // namespace kestrel::qt
