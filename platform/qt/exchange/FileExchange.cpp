#include "FileExchange.h"

#include <QSysInfo>
#include <algorithm>
#include <string_view>

#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

const QString kUriList = QStringLiteral("text/uri-list");
const QString kPlainText = QStringLiteral("text/plain");
const QString kGnomeFiles = QStringLiteral("x-special/gnome-copied-files");
const QString kKdeCut = QStringLiteral("application/x-kde-cutselection");

constexpr std::string_view kFileScheme = "file:";
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

/// The unreserved characters of RFC 3986, and the separator of a path.
bool isPlainInUri(char letter) {
  constexpr std::string_view kMarks = "-._~/";
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
         (letter >= '0' && letter <= '9') || kMarks.find(letter) != std::string_view::npos;
}

int hexValue(char digit) {
  const char capital = digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A') : digit;
  const std::size_t value = kHexDigits.find(capital);
  return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

std::string percentDecoded(std::string_view encoded) {
  std::string decoded;
  decoded.reserve(encoded.size());
  for (std::size_t i = 0; i < encoded.size(); ++i) {
    const bool isCode = encoded[i] == '%' && i + 2 < encoded.size();
    const int high = isCode ? hexValue(encoded[i + 1]) : -1;
    const int low = isCode ? hexValue(encoded[i + 2]) : -1;
    if (high < 0 || low < 0) {
      decoded += encoded[i];
      continue;
    }
    decoded += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return decoded;
}

QByteArray joined(const std::vector<std::string>& parts, const char* separator) {
  QByteArray all;
  for (const std::string& part : parts) {
    if (!all.isEmpty()) all += separator;
    all += QByteArray::fromStdString(part);
  }
  return all;
}

/// The lines without their ends, "\n" or "\r\n", and without empty ones and comments.
std::vector<std::string> linesOf(const QByteArray& text) {
  std::vector<std::string> lines;
  for (const QByteArray& line : text.split('\n')) {
    const QByteArray trimmed = line.trimmed();
    if (!trimmed.isEmpty() && !trimmed.startsWith('#')) lines.push_back(trimmed.toStdString());
  }
  return lines;
}

void addFiles(std::vector<std::string>& names, const std::vector<std::string>& uris) {
  for (const std::string& uri : uris) {
    if (auto name = fileOf(uri)) names.push_back(std::move(*name));
  }
}

}  // namespace

std::string uriOf(const std::string& name) {
  std::string uri = "file://";
  for (const char letter : name) {
    if (isPlainInUri(letter)) {
      uri += letter;
      continue;
    }
    const auto byte = static_cast<unsigned char>(letter);
    uri += '%';
    uri += kHexDigits[byte / 16];
    uri += kHexDigits[byte % 16];
  }
  return uri;
}

std::optional<std::string> fileOf(const std::string& uri) {
  if (!uri.starts_with(kFileScheme)) return std::nullopt;
  std::string_view path = std::string_view(uri).substr(kFileScheme.size());
  if (path.starts_with("//")) {
    path.remove_prefix(2);
    const std::size_t slash = path.find('/');
    if (slash == std::string_view::npos) return std::nullopt;
    const std::string_view host = path.substr(0, slash);
    if (!host.empty() && host != "localhost" && host != fromQt(QSysInfo::machineHostName())) {
      return std::nullopt;
    }
    path.remove_prefix(slash);
  }
  if (!path.starts_with('/')) return std::nullopt;
  std::string name = percentDecoded(path);
  // No name of a file contains a NUL, which would end the name in a buffer of names.
  if (name.find('\0') != std::string::npos) return std::nullopt;
  // Some programs end the URI of a folder with a separator.
  name.erase(std::max<std::size_t>(name.find_last_not_of('/') + 1, 1));
  return name;
}

std::string nameBuffer(const std::vector<std::string>& names) {
  std::string buffer;
  for (const std::string& name : names) {
    buffer += name;
    buffer += '\0';
  }
  return buffer;
}

FilesMimeData::FilesMimeData(ExchangedFiles files) : files_(std::move(files)) {
  std::vector<std::string> uris;
  uris.reserve(files_.names.size());
  for (const std::string& name : files_.names) uris.push_back(uriOf(name));
  setData(kUriList, joined(uris, "\r\n") + "\r\n");
  setData(kPlainText, joined(files_.names, "\n"));
  setData(kGnomeFiles, (files_.move ? "cut\n" : "copy\n") + joined(uris, "\n"));
  setData(kKdeCut, files_.move ? "1" : "0");
}

bool holdsFiles(const QMimeData& data) { return data.hasFormat(kUriList) || data.hasFormat(kGnomeFiles); }

ExchangedFiles filesOf(const QMimeData& data) {
  ExchangedFiles files;
  if (data.hasFormat(kGnomeFiles)) {
    std::vector<std::string> lines = linesOf(data.data(kGnomeFiles));
    files.move = !lines.empty() && lines.front() == "cut";
    addFiles(files.names, lines);
    if (!files.names.empty()) return files;
  }
  files.move = data.hasFormat(kKdeCut) && data.data(kKdeCut).startsWith('1');
  addFiles(files.names, linesOf(data.data(kUriList)));
  return files;
}

}  // namespace kestrel::qt
