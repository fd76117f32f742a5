// What assistive technology sees of a browser in a host.

#include <QToolButton>

#include "AccessHost.h"
#include "imaging/contract/ThumbnailView.h"
#include "platform/qt/embed/ImageBrowser.h"

namespace kestrel::desktop {
namespace {

constexpr int kPatience = 60'000;  // only a failing test waits this long

class BrowserAccess : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"lake.png", "sea.png"}) {
      QImage image(40, 30, QImage::Format_RGB32);
      image.fill(Qt::blue);
      ASSERT_TRUE(image.save(folder_.filePath(QLatin1String(name))));
    }
    bool loaded = false;
    const Connection done = browser_.control().ObjectThumbnailView().FolderLoadComplete.Connect(
        [&](bool canceled) { loaded = !canceled; });
    browser_.resize(1000, 700);
    browser_.show();
    browser_.control().Path(folder_.path().toStdString());
    ASSERT_TRUE(QTest::qWaitFor([&] { return loaded; }, kPatience));
    settle();
  }

  /// The shown object of that role and name; null without one.
  QAccessibleInterface* find(QAccessible::Role role, const QString& name) {
    for (QWidget* const widget : browser_.findChildren<QWidget*>()) {
      QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(widget);
      if (widget->isVisible() && face->role() == role && face->text(QAccessible::Name) == name) return face;
    }
    return nullptr;
  }

  const QTemporaryDir folder_;
  qt::Component component_;
  qt::ImageBrowser browser_{component_};
};

TEST_F(BrowserAccess, ViewsAreRadioButtons) {
  QStringList checked;
  for (const char* name : {"btnViewThumbnail", "btnViewFilmstrip", "btnViewSingle"}) {
    auto* const button = browser_.findChild<QToolButton*>(QLatin1String(name));
    ASSERT_NE(button, nullptr) << name;
    QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(button);
    EXPECT_EQ(face->role(), QAccessible::RadioButton) << name;
    if (face->state().checked) checked += QLatin1String(name);
  }
  EXPECT_EQ(checked.size(), 1);
}

TEST_F(BrowserAccess, FoldersAreATreeAndPicturesAList) {
  QAccessibleInterface* const tree = find(QAccessible::Tree, QStringLiteral("Folders"));
  ASSERT_NE(tree, nullptr);
  // The toolkit's first child is the hidden header.
  ASSERT_GT(tree->childCount(), 1);
  EXPECT_EQ(tree->child(1)->role(), QAccessible::TreeItem);

  QAccessibleInterface* const list = find(QAccessible::List, QStringLiteral("Thumbnails"));
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->childCount(), 2);
  EXPECT_EQ(list->child(0)->role(), QAccessible::ListItem);
  EXPECT_EQ(list->child(0)->text(QAccessible::Name), "lake.png");
  EXPECT_EQ(list->child(1)->text(QAccessible::Name), "sea.png");
}

TEST_F(BrowserAccess, EveryObjectThatTakesTheFocusHasAName) {
  for (QWidget* const widget : browser_.findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus || widget->focusProxy()) continue;
    QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(widget);
    EXPECT_FALSE(face->text(QAccessible::Name).isEmpty())
        << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
  }
}

}  // namespace
}  // namespace kestrel::desktop
