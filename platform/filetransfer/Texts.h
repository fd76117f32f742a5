#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "FileTransfer.h"

/// What file operations say to the user. Line ends of boxes are CR.
namespace kestrel::transfer {

/// The style of a box with Yes and No.
inline constexpr std::int32_t kBoxYesNo = 4;

/// The names of a buffer, each terminated by a NUL; the last NUL may be missing. A name is listed once.
std::vector<std::string> namesOf(std::string_view buffer);

/// The title of all windows of an operation.
std::string titleOf(Operation operation);

/// The operation as a process, as in "Copying".
std::string processOf(Operation operation);

/// The question before files are deleted.
std::string confirmationOf(const Request& request);

/// The style of the box for that question. What cannot be undone is not the default.
std::int32_t confirmationStyleOf(Operation operation);

/// The name of an entry in quotation marks, without control characters and separators at the end of the path.
std::string nameOf(const std::filesystem::path& path);

/// The question whether to delete for good what cannot be restored.
std::string noTrashQuestionOf(const Question& question);

/// What was not done and why, line by line, with a heading. Entries of one folder and reason are listed
/// together. Empty if all was done or skipped by the user, or if the user canceled before anything was done.
std::string textOf(const Report& report, const Request& request);

/// The time that the rest takes at the speed so far; none while that cannot be estimated.
std::optional<std::chrono::seconds> timeLeft(const Progress& progress, std::chrono::milliseconds elapsed);

/// "About 2 minutes left"
std::string textOf(std::chrono::seconds left);

}  // namespace kestrel::transfer
