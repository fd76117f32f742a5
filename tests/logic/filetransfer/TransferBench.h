#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "OrdinaryUser.h"
#include "platform/filetransfer/FileTransfer.h"

namespace kestrel::transfer {

namespace fs = std::filesystem;
using kestrel::test::OrdinaryUser;

inline std::string contentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void write(const fs::path& path, const std::string& content) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << content;
}

/// A caller whose answers are given in advance.
class ScriptedCaller : public Caller {
 public:
  std::deque<Answer> answers;
  std::vector<Question> questions;
  std::vector<Progress> shown;
  /// Asked with the progress; true cancels.
  std::function<bool(const Progress&)> cancelAt;
  /// Done by another program meanwhile.
  std::function<void(const Progress&)> whenShown;

  Answer ask(const Question& question) override {
    questions.push_back(question);
    if (answers.empty()) {
      ADD_FAILURE() << "an unexpected question about " << question.source.path;
      return {};
    }
    const Answer answer = answers.front();
    answers.pop_front();
    return answer;
  }
  void show(const Progress& progress) override {
    shown.push_back(progress);
    if (whenShown) whenShown(progress);
  }
  bool canceled() override { return cancelAt && !shown.empty() && cancelAt(shown.back()); }
};

/// The folders "from" and "to" in a folder of its own.
class TransferTest : public testing::Test {
 protected:
  TransferTest() {
    fs::create_directory(from);
    fs::create_directory(to);
  }
  ~TransferTest() override {
    std::error_code ignored;
    fs::remove_all(root, ignored);
  }

  Report run(Operation operation, const std::vector<fs::path>& sources) {
    EXPECT_TRUE(caller.answers.empty() || caller.questions.empty());
    return carryOut({operation, sources, to, root / "home/Trash"}, caller);
  }
  Report copy(const std::vector<fs::path>& sources) { return run(Operation::kCopy, sources); }
  Report move(const std::vector<fs::path>& sources) { return run(Operation::kMove, sources); }

  /// All files below a folder with their contents, as "a/b=content"; folders as "a/", links as "a->text".
  static std::string listed(const fs::path& folder) {
    std::map<std::string, std::string> entries;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
      const std::string name = entry.path().lexically_relative(folder).string();
      entries[name] = entry.is_symlink()     ? "->" + fs::read_symlink(entry.path()).string()
                      : entry.is_directory() ? "/"
                                             : "=" + contentOf(entry.path());
    }
    std::string text;
    for (const auto& [name, content] : entries) text += (text.empty() ? "" : " ") + name + content;
    return text;
  }
  static std::string reasons(const std::vector<NotDone>& entries) {
    std::string text;
    for (const NotDone& entry : entries) {
      text += (text.empty() ? "" : "; ") + entry.path.filename().string();
      if (!entry.reason.empty()) text += ": " + entry.reason;
    }
    return text;
  }

  static fs::path newFolder() {
    std::string folder = (fs::temp_directory_path() / "kestrel-transfer-XXXXXX").string();
    return fs::canonical(mkdtemp(folder.data()));
  }

  const fs::path root = newFolder();
  const fs::path from = root / "from", to = root / "to";
  ScriptedCaller caller;
};

}  // namespace kestrel::transfer
