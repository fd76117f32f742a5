#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "platform/qt/embed/ImageEditor.h"

namespace kestrel::desktop {
namespace {

TEST(EmbeddedEditor, NotifiesItsHostOfAChangedProperty) {
  const QTemporaryDir folder;
  qputenv("KESTREL_STORE", folder.filePath(QStringLiteral("settings.sqlite")).toUtf8());
  qt::Component component;
  qt::ImageEditor editor(component);
  QStringList changed;
  QObject::connect(&editor, &qt::ImageEditor::propertyChanged, [&](const QString& name) { changed += name; });
  editor.control().UseSimpleTools(true);
  editor.control().UseSimpleTools(true);
  editor.control().ShowClose(true);
  EXPECT_EQ(changed, (QStringList{QStringLiteral("UseSimpleTools"), QStringLiteral("ShowClose")}));
}

}  // namespace
}  // namespace kestrel::desktop
