#include <gtest/gtest.h>

#include <QImage>
#include <QTemporaryDir>

#include "host/interface/IImageEvents.h"
#include "imaging/contract/Image.h"
#include "imaging/contract/Moorage.h"
#include "platform/qt/embed/ImageEditor.h"
#include "settings/Options.h"

#if __has_include("editor/ImageProcessingCtl.h") || __has_include("platform/qt/app/QtPlatform.h")
#error "A host sees what is private to the editor."
#endif

namespace kestrel::desktop {
namespace {

/// An editor in a host that links nothing but the widget.
class EmbeddedEditor : public testing::Test {
 protected:
  EmbeddedEditor() {
    qputenv("KESTREL_STORE", folder_.filePath(QStringLiteral("settings.sqlite")).toUtf8());
    component_ = std::make_unique<qt::Component>();
    editor_ = std::make_unique<qt::ImageEditor>(*component_);
  }

  qt::ImageEditor& widget() { return *editor_; }
  IImageProcessingCtl& control() { return editor_->control(); }

  const QTemporaryDir folder_;

 private:
  std::unique_ptr<qt::Component> component_;
  std::unique_ptr<qt::ImageEditor> editor_;
};

TEST_F(EmbeddedEditor, NotifiesItsHostOfAChangedProperty) {
  QStringList changed;
  QObject::connect(&widget(), &qt::ImageEditor::propertyChanged,
                   [&](const QString& name) { changed += name; });
  control().UseSimpleTools(true);
  control().UseSimpleTools(true);
  control().ShowClose(true);
  EXPECT_EQ(changed, (QStringList{QStringLiteral("UseSimpleTools"), QStringLiteral("ShowClose")}));
}

TEST_F(EmbeddedEditor, ShowOpenHidesTheCommandAndSwitchesShowMRU) {
  Command& open = control().Commands().Item("btnFileOpen");
  EXPECT_TRUE(open.Visible());
  control().ShowOpen(false);
  EXPECT_FALSE(open.Visible());
  EXPECT_FALSE(control().ShowMRU());
}

TEST_F(EmbeddedEditor, RaisesChangeWhenChangedBecomesTrue) {
  int raised = 0;
  const Connection watch = control().Change.Connect([&] { ++raised; });
  control().Changed(true);
  control().Changed(true);
  control().Changed(false);
  EXPECT_EQ(raised, 1);
}

TEST_F(EmbeddedEditor, WritesItsColorsToTheSharedOptionsWithAutoUpdateGlobal) {
  control().Initialize();
  control().AutoUpdateGlobal(true);
  control().ForeColor(0x102030);
  EXPECT_EQ(control().Options()->MaterialForeColor(), 0x102030);
}

TEST_F(EmbeddedEditor, AsksTheEventAndThenTheSinkForTheNameOfAPicture) {
  struct Sink final : IImageEvents {
    void RequestOpenFilename(std::string& filename, bool& /*cancelDefault*/) override { seen = filename; }
    std::string seen;
  };
  const std::string file = folder_.filePath(QStringLiteral("picture.png")).toStdString();
  ASSERT_TRUE(QImage(20, 10, QImage::Format_RGB32).save(QString::fromStdString(file)));
  const auto sink = std::make_shared<Sink>();
  control().Initialize();
  control().EventSink(sink);
  const Connection watch =
      control().RequestOpenFilename.Connect([&](std::string& filename, bool&) { filename = file; });
  EXPECT_TRUE(control().OpenImage());
  EXPECT_EQ(sink->seen, file);
  EXPECT_EQ(control().Image()->Width(), 20);
}

}  // namespace
}  // namespace kestrel::desktop
