#include "diagnostics/CapturedError.h"

#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <stdexcept>
#include <system_error>
#include <variant>

#include "Diagnostics.h"
#include "base/DescribedError.h"
#include "base/RuntimeError.h"
#include "diagnostics/ModuleFiles.h"
#include "diagnostics/Trailer.h"

namespace kestrel {
namespace {

class CapturedError : public Diagnostics {
 protected:
  /// The number that is reported for what `statement` raises.
  std::int32_t numberOf(const std::function<void()>& statement) {
    try {
      statement();
    } catch (...) {
      trailerLine_ = __LINE__ + 1;
      QDK_TRAILER(numberOf, QDK_PARAMETERS(), QDK_LOCALS());
    }
    return state().qdkErrorNumber;
  }
  std::int32_t numberOf(std::errc code) {
    return numberOf([code] { throw std::system_error(std::make_error_code(code)); });
  }

  std::int32_t trailerLine_ = 0;
};

TEST_F(CapturedError, HasTheEquivalentNumber) {
  EXPECT_EQ(numberOf([] { throw std::bad_alloc(); }), 7);
  EXPECT_EQ(numberOf([] { std::vector<int>().at(3); }), 9);
  EXPECT_EQ(numberOf([] { (void)std::stoi("x"); }), 5);
  EXPECT_EQ(numberOf([] { throw std::overflow_error("too large"); }), 6);
  EXPECT_EQ(numberOf([] { (void)std::get<int>(std::variant<int, bool>(true)); }), 13);
  EXPECT_EQ(numberOf([] { (void)std::optional<int>().value(); }), 91);
  EXPECT_EQ(numberOf([] { std::function<void()>()(); }), 91);
  EXPECT_EQ(numberOf([] { throw std::runtime_error("any"); }), 51);
  EXPECT_EQ(numberOf([] { throw 5; }), 51);
}

TEST_F(CapturedError, HasTheNumberOfTheSystemsError) {
  EXPECT_EQ(numberOf(std::errc::no_such_file_or_directory), 53);
  EXPECT_EQ(numberOf(std::errc::file_exists), 58);
  EXPECT_EQ(numberOf(std::errc::no_space_on_device), 61);
  EXPECT_EQ(numberOf(std::errc::permission_denied), 70);
  EXPECT_EQ(numberOf(std::errc::not_a_directory), 76);
  EXPECT_EQ(numberOf(std::errc::io_error), 57);
  EXPECT_EQ(numberOf(std::errc::too_many_files_open), 75);
  EXPECT_EQ(numberOf([] { (void)std::filesystem::file_size("/no such file"); }), 53);
}

/// The description of an error that the user is shown.
class DescribedErrorTest : public testing::Test {
 protected:
  static DescribedError described(const std::function<void()>& statement) {
    try {
      statement();
    } catch (...) {
      return DescribeCurrentError();
    }
    return {};
  }
};

TEST_F(DescribedErrorTest, OfTheStandardLibraryHasATextOfOurs) {
  const std::map<std::string, std::function<void()>> statements{
      {"There is no element at that position.", [] { (void)std::array<int, 2>().at(std::stoul("7")); }},
      {"There is not enough memory.", [] { throw std::bad_alloc(); }},
      {"A text or list would become too long.", [] { std::string().resize(std::string().max_size() + 1); }},
      {"A value is not valid here.", [] { (void)std::stoi("x"); }},
      {"A number is too large.", [] { throw std::overflow_error("library text"); }},
      {"A value is of the wrong type.", [] { (void)std::get<int>(std::variant<int, bool>(true)); }},
      {"A value that is needed is missing.", [] { (void)std::optional<int>().value(); }},
      {"A function that is needed is missing.", [] { std::function<void()>()(); }},
      {"An object that is needed is gone.", [] { std::shared_ptr<int>{std::weak_ptr<int>()}; }},
      {"The disk is full.",
       [] { throw std::system_error(std::make_error_code(std::errc::no_space_on_device), "library text"); }},
      {"The operating system refused access to a path or another resource.",
       [] { throw std::system_error(std::make_error_code(std::errc::too_many_files_open)); }},
      {"The file was not found. (/no such file)", [] { (void)std::filesystem::file_size("/no such file"); }},
      {"An internal error occurred.", [] { throw std::runtime_error("library text"); }},
      {"An error of an unknown kind was raised.", [] { throw 5; }},
  };
  for (const auto& [sentence, statement] : statements) EXPECT_EQ(described(statement).Description, sentence);
}

TEST_F(DescribedErrorTest, KeepsTheLibrarysTextForDevelopers) {
  EXPECT_EQ(described([] { throw std::runtime_error("library text"); }).Source, "library text");
}

TEST_F(DescribedErrorTest, OfAHostsClassKeepsItsText) {
  struct HostError : std::runtime_error {
    using std::runtime_error::runtime_error;
  };
  const DescribedError error = described([] { throw HostError("The archive is offline."); });
  EXPECT_EQ(error.Description, "The archive is offline.");
  EXPECT_EQ(error.Number, 51);
}

TEST_F(DescribedErrorTest, ThatWasReportedIsNotShownAgain) {
  try {
    throw RuntimeError(err::kReported);
  } catch (...) {
    EXPECT_THROW(DescribeErrorToShow(), RuntimeError);
  }
  try {
    throw RuntimeError(err::kDiskFull, "The disk is full.");
  } catch (...) {
    EXPECT_EQ(DescribeErrorToShow().Description, "The disk is full.");
  }
}

TEST_F(CapturedError, RaisedElsewhereHasTheLineOfItsTrailer) {
  // Raised before the procedure was entered, so the procedure isn't on the error's stack.
  std::exception_ptr kept;
  try {
    throw RuntimeError(err::kInvalidCall, "Kept.");
  } catch (...) {
    kept = std::current_exception();
  }
  std::function<void()>([&] { numberOf([&] { std::rethrow_exception(kept); }); })();
  EXPECT_EQ(state().qdkErrorLine, 5 * trailerLine_);
  EXPECT_EQ(state().qdkErrorNumber, err::kInvalidCall);
}

TEST(ModuleFiles, NameTheModuleByTheFile) {
  EXPECT_EQ(qdk::ModuleName("/src/settings/Options.cpp"), "Options");
  EXPECT_EQ(qdk::ModuleName("editor/ImageProcessingCtl.Files.cpp"), "ImageProcessingCtl");
  EXPECT_EQ(qdk::ModuleName("modImgX.cpp"), "modImgX");
}

TEST(ModuleFiles, NumberEachFurtherFileFromAMultipleOf50000) {
  EXPECT_EQ(qdk::LineNumber("/src/settings/Options.cpp", 55), 275);
  EXPECT_EQ(qdk::LineNumber("/src/editor/ImageProcessingCtl.cpp", 1), 5);
  EXPECT_EQ(qdk::LineNumber("/src/editor/ImageProcessingCtl.Files.cpp", 1), 50'005);
  EXPECT_EQ(qdk::LineNumber("/src/editor/ImageProcessingCtl.Commands.cpp", 123), 100'615);
  EXPECT_EQ(qdk::LineNumber("/src/editor/ImageProcessingCtl.Thumbnails.cpp", 10), 400'050);
}

TEST(ModuleFiles, GiveEachFileOfAModuleItsOwnLineRange) {
  std::map<std::string, std::set<std::int32_t>> places;
  int furtherFiles = 0;
  for (const char* folder :
       {"browser", "diagnostics", "dialogs", "editor", "host", "imaging", "settings", "toolwindows"}) {
    const auto path = std::filesystem::path(SOURCE_FOLDER) / folder;
    if (!std::filesystem::exists(path)) continue;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
      const std::string name = entry.path().filename().string();
      if (entry.path().extension() != ".cpp") continue;
      // The tables of the public interface have the names of the classes, and no procedures that report.
      if (entry.path().parent_path().filename() == "tables") continue;
      const std::int32_t place = qdk::LineNumber(name, 0) / 50'000;
      EXPECT_TRUE(places[qdk::ModuleName(name)].insert(place).second)
          << name << " shares the numbers of another file";
      // The base classes of the dialogs belong to the module of each dialog.
      const bool isShared =
          name == "DialogBase.cpp" || name == "PreviewDialog.cpp" || name == "SizeDialog.cpp";
      const bool isFurther = isShared || name != qdk::ModuleName(name) + ".cpp";
      EXPECT_EQ(isFurther, place > 0) << name;
      furtherFiles += isFurther ? 1 : 0;
    }
  }
  EXPECT_GE(furtherFiles, 11) << "the source tree was searched";
}

}  // namespace
}  // namespace kestrel
