#include <algorithm>
#include <string_view>
#include <vector>

#include "TreeServices.h"
#include "base/CaseFolding.h"
#include "base/Numbers.h"
#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"
#include "modFolderTreeView.h"

namespace kestrel::modFolderTreeView {
namespace {

constexpr char kComputerKey[] = R"(SOFTWARE\Classes\CLSID\{20D04FE0-3AEA-1069-A2D8-08002B30309D})";
/// The place of the server in the parts of a network name: `\\SERVER\photos` begins with two empty parts.
constexpr std::size_t kServerPart = 2;

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts{std::string()};
  for (const char c : text) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

std::size_t CharacterLength(const std::string& text, std::size_t at) {
  std::size_t end = at + 1;
  while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) ++end;
  return end - at;
}

/// A character outside of ASCII that folding leaves alone counts as small: a name with such characters keeps
/// its spelling unless it is in capitals beyond doubt.
bool HasSmallLetter(const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::string character = text.substr(at, CharacterLength(text, at));
    const bool ascii = character.size() == 1;
    if (ascii ? character[0] >= 'a' && character[0] <= 'z' : FoldCase(character) == character) return true;
    at += character.size();
  }
  return false;
}

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r') || c == '\0'; }

/// The first letter of each word stays, the rest becomes small.
std::string ProperCase(const std::string& capitals) {
  std::string proper;
  for (std::size_t at = 0; at < capitals.size();) {
    const std::string character = capitals.substr(at, CharacterLength(capitals, at));
    const bool first = at == 0 || IsBlank(capitals[at - 1]);
    proper += first ? character : FoldCase(character);
    at += character.size();
  }
  return proper;
}

}  // namespace

std::string AddRight(const std::string& Text, const std::string& Suffix) {
  return Text.ends_with(Suffix) ? Text : Text + Suffix;
}

std::string RegGetValue(std::int32_t Root, const std::string& Key, const std::string& ValueName) {
  const Variant value = modProcessing::RegistryStore().ReadValue(Root, Key, ValueName);
  switch (static_cast<Variant::Type>(value.TypeCode())) {
    case Variant::Type::kEmpty:
      throw RuntimeError(err::kInvalidCall, "There is no stored value \"" + ValueName + "\".");
    case Variant::Type::kString:
    case Variant::Type::kInt32:
      return value.ToString();
    default:
      return {};
  }
}

std::string GetMyComputer() {
  std::string Result;
  try {
    QDK_RESUME_NEXT(Result = RegGetValue(HKEY_CURRENT_USER, kComputerKey, ""));
    if (Result.empty()) Result = kMyComputer;
  } catch (...) {
    QDK_TRAILER(GetMyComputer, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

std::string StripTerminator(const std::string& Text) { return Text.substr(0, Text.find('\0')); }

void CaseIt(std::string& Text) {
  try {
    if (!HasSmallLetter(Text)) Text = ProperCase(Text);
  } catch (...) {
    QDK_TRAILER(CaseIt, QDK_PARAMETERS(Text), QDK_LOCALS());
  }
}

std::string SingleUpper(const std::string& Text) {
  std::string Result;
  try {
    if (Text.empty()) return Result;
    const std::size_t first = CharacterLength(Text, 0);
    Result = UpperCase(Text.substr(0, first)) + FoldCase(Text.substr(first));
  } catch (...) {
    QDK_TRAILER(SingleUpper, QDK_PARAMETERS(Text), QDK_LOCALS(Result));
  }
  return Result;
}

std::string GetNetPath(const std::string& Drive) {
  std::string Result;
  try {
    Result = StripTerminator(Shell().NetworkPath(Drive));
  } catch (...) {
    QDK_TRAILER(GetNetPath, QDK_PARAMETERS(Drive), QDK_LOCALS(Result));
  }
  return Result;
}

std::string GetNetPathEx(const std::string& Drive) {
  std::string Result, name;
  std::vector<std::string> parts;
  try {
    name = GetNetPath(Drive);
    parts = Split(name, '\\');
    if (name.empty() || parts.size() <= kServerPart) return Result;
    Result = SingleUpper(parts.back()) + " on '" + SingleUpper(parts[kServerPart]) + "'";
  } catch (...) {
    QDK_TRAILER(GetNetPathEx, QDK_PARAMETERS(Drive), QDK_LOCALS(Result, name, parts));
  }
  return Result;
}

std::string GetDriveName(const std::string& RootPath) {
  std::string Result;
  try {
    Result = StripTerminator(Shell().VolumeLabel(RootPath));
    CaseIt(Result);
  } catch (...) {
    QDK_TRAILER(GetDriveName, QDK_PARAMETERS(RootPath), QDK_LOCALS(Result));
  }
  return Result;
}

std::string HasSubDirs(const std::string& Folder, std::string* Spelled) {
  std::string Result;
  try {
    if (Folder.empty()) return Result;
    Result = StripTerminator(Shell().FirstSubfolder(Folder));
    if (Spelled != nullptr) *Spelled = Result;
    CaseIt(Result);
  } catch (...) {
    QDK_TRAILER(HasSubDirs, QDK_PARAMETERS(Folder), QDK_LOCALS(Result));
  }
  return Result;
}

std::string GetSysPath() {
  std::string Result;
  try {
    Result = StripTerminator(Shell().SystemFolder());
  } catch (...) {
    QDK_TRAILER(GetSysPath, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

std::string GetWinPath() {
  std::string Result;
  try {
    Result = StripTerminator(Shell().WindowsFolder());
  } catch (...) {
    QDK_TRAILER(GetWinPath, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

std::string GetDesktopPath() {
  std::string Result, windows;
  try {
    Result = StripTerminator(Shell().SpecialFolder(kFolderDesktop));
    if (!Result.empty()) return Result;
    windows = GetWinPath();
    if (windows.empty()) return Result;
    const std::size_t drive = std::min(windows.find(Separator()), windows.size() - 1) + 1;
    Result = windows.substr(0, drive) + ProperCase(UpperCase(windows.substr(drive))) + Separator() +
             kDesktop + Separator();
  } catch (...) {
    QDK_TRAILER(GetDesktopPath, QDK_PARAMETERS(), QDK_LOCALS(Result, windows));
  }
  return Result;
}

std::int16_t RetrieveIconNumber(const ImageList& IL, const std::string& pTypeName) {
  std::int16_t Result = 0;
  try {
    for (std::int32_t i = 1; i <= IL.Count(); ++i) {
      if (IL.Key(i) != pTypeName) continue;
      Result = ToInt16(i);
      break;
    }
  } catch (...) {
    QDK_TRAILER(RetrieveIconNumber, QDK_PARAMETERS(IL, pTypeName), QDK_LOCALS(Result));
  }
  return Result;
}

std::int16_t FTVRetrieveIcon(const std::string& pFilename, ImageList& IL, PictureBox& PIC) {
  std::int16_t Result = 0;
  std::int32_t icon = 0;
  std::string key;
  try {
    icon = Shell().IconIndex(pFilename);
    key = ToText(icon) + "A";
    Result = RetrieveIconNumber(IL, key);
    if (Result != 0) return Result;
    PIC.Picture(nullptr);
    Shell().DrawIcon(icon, PIC.hWnd());
    IL.Set(key, PIC.hWnd());
    Result = ToInt16(IL.Count());
  } catch (...) {
    QDK_TRAILER(FTVRetrieveIcon, QDK_PARAMETERS(pFilename, IL, PIC), QDK_LOCALS(Result, icon, key));
  }
  return Result;
}

bool GetIconFromFile(const std::string& Filename, std::int32_t IconIndex, bool UseLargeIcon, PictureBox& PB) {
  bool Result = false;
  try {
    // The icon replaces the picture. Without one the picture is left alone.
    Result = Shell().DrawFileIcon(Filename, IconIndex, UseLargeIcon, PB.hWnd());
  } catch (...) {
    QDK_TRAILER(GetIconFromFile, QDK_PARAMETERS(Filename, IconIndex, UseLargeIcon, PB), QDK_LOCALS(Result));
  }
  return Result;
}

}  // namespace kestrel::modFolderTreeView
