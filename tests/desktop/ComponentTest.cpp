// The component in hosts that end in other ways than by destroying component and application object in order.
// Each host is a process of its own, since a process has one application object at a time.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QLocale>
#include <QMenuBar>
#include <QMessageBox>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <memory>
#include <string>

#include "base/RuntimeError.h"
#include "imaging/contract/Image.h"
#include "imaging/contract/Moorage.h"
#include "platform/qt/embed/HostServices.h"
#include "platform/qt/embed/ImageEditor.h"
#include "settings/Options.h"

namespace kestrel::desktop {
namespace {

class ComponentOf : public testing::Test {
 protected:
  ComponentOf() { setenv("KESTREL_STORE", file("settings.store").c_str(), 1); }

  std::string file(const char* name) const { return folder_.filePath(QLatin1String(name)).toStdString(); }

  /// Runs a host in another process. Returns its exit code, -1 if it crashed.
  static int run(const std::function<int()>& host) {
    const pid_t process = fork();
    if (process == 0) {
      int code = 1;
      try {
        code = host();
      } catch (const std::exception& error) {
        std::fprintf(stderr, "The host failed: %s\n", error.what());
      }
      _exit(code);
    }
    int status = 0;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  static std::unique_ptr<QApplication> application() {
    static int count = 1;
    static char name[] = "host";
    static char* values[] = {name, nullptr};
    return std::make_unique<QApplication>(count, values);
  }

 private:
  const QTemporaryDir folder_;
};

TEST_F(ComponentOf, AHostThatCallsExitDoesNotFail) {
  EXPECT_EQ(run([] {
              const auto host = application();
              qt::Component component;
              qt::ImageEditor editor(component);
              editor.control().Initialize();
              std::exit(7);
              return 1;
            }),
            7);
}

TEST_F(ComponentOf, AHostWithASecondApplicationServesIt) {
  const std::string picture = file("picture.png");
  ASSERT_TRUE(QImage(20, 10, QImage::Format_RGB32).save(QString::fromStdString(picture)));
  EXPECT_EQ(run([&] {
              auto host = application();
              qt::Component component;
              { qt::ImageEditor(component).control().Initialize(); }
              host.reset();
              host = application();
              qt::ImageEditor editor(component);
              editor.control().Initialize();
              if (!editor.control().OpenImage(picture)) return 1;
              return editor.control().Image()->Width();
            }),
            20);
}

TEST_F(ComponentOf, AHostWithANameHasSettingsRecentFilesAndRecoveryOfItsOwn) {
  const std::string picture = file("picture.png");
  ASSERT_TRUE(QImage(20, 10, QImage::Format_RGB32).save(QString::fromStdString(picture)));
  /// A host that returns the stored number of undo levels, and stores another and a recent file if it is
  /// asked to.
  const auto use = [&](const std::string& name, std::int32_t stored) {
    return run([&] {
      const auto host = application();
      qt::Component component(name);
      qt::ImageEditor editor(component);
      editor.control().Initialize();
      const std::int32_t found = editor.control().Options()->UndoLevels();
      if (stored != 0) {
        editor.control().Options()->UndoLevels(stored);
        if (!editor.control().OpenImage(picture)) return 1;
      }
      return editor.control().Commands()("mnuFileMRU").Items().Count() == (found == 7 ? 1 : 0) || stored != 0
                 ? found
                 : 1;
    });
  };
  const int usual = use("", 0);
  EXPECT_NE(usual, 7);
  EXPECT_EQ(use("org.example.viewer", 7), usual);
  EXPECT_EQ(use("org.example.viewer", 0), 7);
  EXPECT_EQ(use("other", 0), usual);
  EXPECT_EQ(use("", 0), usual);
  EXPECT_TRUE(QFile::exists(QString::fromStdString(file("settings-org.example.viewer.store"))));
  EXPECT_FALSE(QFile::exists(QString::fromStdString(file("settings.store"))));
}

TEST_F(ComponentOf, ANameOfSettingsIsAPlainNameAndTheSameForAll) {
  EXPECT_EQ(run([] {
              const auto host = application();
              const auto refused = [](const std::string& name) {
                try {
                  const qt::Component component(name);
                } catch (const RuntimeError& error) {
                  return error.Number() == err::kInvalidCall && !error.Description().empty();
                }
                return false;
              };
              for (const char* name : {"a/b", "../a", "a b", "\xc3\xa4"}) {
                if (!refused(name)) return 1;
              }
              if (!refused(std::string(65, 'a')) || refused(std::string(64, 'a'))) return 2;
              {
                const qt::Component named("viewer");
                const qt::Component same("viewer"), any;
                if (!refused("other") || !refused("")) return 3;
              }
              return refused("other") ? 4 : 0;
            }),
            0);
}

TEST_F(ComponentOf, AHostSpeaksTheLanguageOfItsToolkitUntilItSetsAnother) {
  EXPECT_EQ(run([] {
              const auto host = application();
              QLocale::setDefault(QLocale(QStringLiteral("ja_JP")));
              qt::Component component;
              qt::ImageEditor editor(component);
              editor.control().Initialize();
              const auto fileMenu = [&] {
                QApplication::processEvents();
                return editor.findChild<QMenuBar*>()->actions().first()->text();
              };
              if (component.language() != "ja" || fileMenu() != QStringLiteral("ファイル(&F)")) return 1;
              component.setLanguage(QStringLiteral("ar_EG"));
              if (component.language() != "ar" || fileMenu() != QStringLiteral("&ملف")) return 2;
              if (!editor.isRightToLeft()) return 3;
              component.setLanguage(QStringLiteral("fr"));
              if (component.language() != "en" || fileMenu() != "&File") return 4;
              return editor.isRightToLeft() ? 5 : 0;
            }),
            0);
}

TEST_F(ComponentOf, SettingsAndServicesOfAHostServeItsSecondApplication) {
  struct Services final : qt::HostServices {
    QMessageBox::StandardButton message(const qt::HostMessage&) override {
      ++messages;
      return QMessageBox::Ok;
    }
    int messages = 0;
  };
  EXPECT_EQ(run([&] {
              auto host = application();
              qt::Component component("viewer");
              const auto services = std::make_shared<Services>();
              component.setServices(services);
              host.reset();
              host = application();
              qt::ImageEditor editor(component);
              editor.control().Initialize();
              editor.control().Options()->UndoLevels(9);
              editor.control().OpenImage(file("missing.png"));
              return services->messages;
            }),
            1);
  EXPECT_TRUE(QFile::exists(QString::fromStdString(file("settings-viewer.store"))));
}

}  // namespace
}  // namespace kestrel::desktop

int main(int count, char** values) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&count, values);
  return RUN_ALL_TESTS();
}
