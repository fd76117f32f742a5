#pragma once

#include <QMimeData>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestrel::qt {

/// Files that programs exchange through the clipboard or a drag. Names are absolute and have the bytes of the
/// file system, which need not be UTF-8.
struct ExchangedFiles {
  std::vector<std::string> names;
  bool move = false;  ///< cut: the receiver moves them
};

/// The files in the forms that file managers read: a list of URIs, with the action of GNOME and of KDE, and a
/// text with one path per line.
class FilesMimeData final : public QMimeData {
  Q_OBJECT

 public:
  explicit FilesMimeData(ExchangedFiles files);

  const ExchangedFiles& files() const { return files_; }

 private:
  ExchangedFiles files_;
};

/// Whether the data has a list of files, without reading it.
bool holdsFiles(const QMimeData& data);

/// The local files of the data; none for data without any.
ExchangedFiles filesOf(const QMimeData& data);

/// The URI of a file, percent-encoded.
std::string uriOf(const std::string& name);

/// The file of a URI, without separators at its end; no value for a URI of another machine or scheme.
std::optional<std::string> fileOf(const std::string& uri);

/// The names as one buffer, each terminated by a NUL.
std::string nameBuffer(const std::vector<std::string>& names);

}  // namespace kestrel::qt
