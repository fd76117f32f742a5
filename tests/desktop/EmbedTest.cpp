#include <gtest/gtest.h>

#include <QStringList>

#include "platform/qt/embed/ImageEditor.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

TEST(EmbeddedEditor, NotifiesItsHostOfAChangedProperty) {
  qt::Component component;
  qt::ImageEditor editor(component);
  QStringList changed;
  QObject::connect(&editor, &qt::ImageEditor::propertyChanged, [&](const QString& name) { changed += name; });
  editor.control().UseSimpleTools(true);
  editor.control().UseSimpleTools(true);
  editor.control().ShowClose(true);
  EXPECT_EQ(changed, (QStringList{QStringLiteral("UseSimpleTools"), QStringLiteral("ShowClose")}));
}

TEST(EmbeddedEditor, KeepsTheSharedServicesUntilTheProcessEnds) {
  const std::string moved = "Software\\Brindlewick\\ImageProcessing2";
  std::string first;
  {
    const qt::Component component;
    first = modProcessing::WindowPositions().RegistryKey();
    modProcessing::WindowPositions().RegistryKey(moved);
  }
  const qt::Component next;
  EXPECT_EQ(modProcessing::WindowPositions().RegistryKey(), moved) << "Main runs once per process";
  modProcessing::WindowPositions().RegistryKey(first);
}

}  // namespace
}  // namespace kestrel::desktop
