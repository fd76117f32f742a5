#include "QtFileHelpers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

/// Copies to a temporary file in the target's folder first, so that a failed copy loses nothing.
bool copyFile(const QString& from, const QString& to) {
  const QString partial = to + QStringLiteral(".part");
  QFile::remove(partial);
  if (!QFile::copy(from, partial)) return false;
  if (QFile::exists(to) && !QFile::remove(to)) {
    QFile::remove(partial);
    return false;
  }
  return QFile::rename(partial, to);
}

bool moveFile(const QString& from, const QString& to) {
  // Across file systems a move copies; the source is deleted after the copy is complete.
  if (!QFile::exists(to) && QFile::rename(from, to)) return true;
  return copyFile(from, to) && QFile::remove(from);
}

}  // namespace

QtFileHelpers::QtFileHelpers(UserInterface& boxes)
    : FileNames(QString(QDir::separator()).toStdString()), boxes_(boxes) {}

std::string QtFileHelpers::ResolvePath(const std::string& Path) {
  const QFileInfo info(toQt(Path));
  return info.exists() ? fromQt(QDir::toNativeSeparators(info.canonicalFilePath())) : Path;
}

bool QtFileHelpers::forEach(const std::string& buffer, const char* failure,
                            const std::function<QString(const QString&)>& work) {
  bool allDone = true;
  for (const QString& name : toQt(buffer).split(QChar::Null, Qt::SkipEmptyParts)) {
    const QString problem = work(name);
    if (problem.isEmpty()) continue;
    allDone = false;
    boxes_.MessageBox(fromQt(translated(failure).arg(QDir::toNativeSeparators(name), problem)),
                      kBoxExclamation);
  }
  return allDone;
}

QtFileHelpers::Answer QtFileHelpers::mayReplace(const QString& target) {
  if (!QFile::exists(target)) return Answer::kGoOn;
  const QString question = translated("The file \"%1\" already exists. Do you want to replace it?")
                               .arg(QDir::toNativeSeparators(target));
  switch (boxes_.MessageBox(fromQt(question), kBoxYesNoCancel + kBoxQuestion)) {
    case kAnswerYes:
      return Answer::kGoOn;
    case kAnswerNo:
      return Answer::kSkip;
    default:
      return Answer::kStop;
  }
}

bool QtFileHelpers::transferFiles(const std::string& buffer, const std::string& folder, const char* failure,
                                  bool (*carry)(const QString&, const QString&)) {
  const QDir targetFolder(toQt(folder));
  bool skipped = false;
  bool stopped = false;
  const bool allDone = forEach(buffer, failure, [&](const QString& name) -> QString {
    if (stopped) return {};
    const QString target = targetFolder.filePath(QFileInfo(name).fileName());
    if (QFileInfo(name).canonicalFilePath() == QFileInfo(target).canonicalFilePath() &&
        QFile::exists(target)) {
      return translated("it is already in that folder.");
    }
    const Answer answer = mayReplace(target);
    stopped = answer == Answer::kStop;
    skipped = skipped || answer != Answer::kGoOn;
    if (answer != Answer::kGoOn || carry(name, target)) return {};
    return translated(QFile::exists(name) ? "the folder cannot be written to." : "the file was not found.");
  });
  return allDone && !skipped;
}

bool QtFileHelpers::CopyFiles(const std::string& Buffer, const std::string& Folder, std::int32_t /*Flags*/,
                              WindowHandle /*Owner*/) {
  return transferFiles(Buffer, Folder, "Unable to copy \"%1\": %2", &copyFile);
}

bool QtFileHelpers::MoveFiles(const std::string& Buffer, const std::string& Folder, std::int32_t /*Flags*/,
                              WindowHandle /*Owner*/) {
  return transferFiles(Buffer, Folder, "Unable to move \"%1\": %2", &moveFile);
}

bool QtFileHelpers::DeleteFiles(const std::string& Buffer, const std::string& /*Folder*/, std::int32_t Flags,
                                WindowHandle /*Owner*/) {
  return forEach(Buffer, "Unable to delete \"%1\": %2", [&](const QString& name) -> QString {
    const bool done = Flags & kAllowUndo ? QFile::moveToTrash(name) : QFile::remove(name);
    if (done) return {};
    return translated(QFile::exists(name) ? "it is protected." : "the file was not found.");
  });
}

}  // namespace kestrel::qt
