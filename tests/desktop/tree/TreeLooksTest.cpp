#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <algorithm>
#include <cstdlib>

#include "../Themes.h"
#include "TreeBench.h"
#include "platform/qt/core/SvgIcon.h"

namespace kestrel::desktop {
namespace {

class TreeLooks : public testing::Test {
 protected:
  void SetUp() override {
    bench_.folder("Music");
    bench_.folder("Pictures/2023");
    bench_.folder("Pictures/2024/May");
    bench_.folder("Videos/raw");
    bench_.start();
    bench_.control().Path(bench_.home("Pictures"));
    QApplication::processEvents();
  }
  TreeBench& bench() { return bench_; }
  QImage picture(const char* name) {
    QApplication::processEvents();
    const QImage grabbed = bench_.widget().grab().toImage();
    QDir().mkpath(QStringLiteral(KESTREL_SCREENSHOTS));
    grabbed.save(QStringLiteral(KESTREL_SCREENSHOTS "/") + QLatin1String(name));
    return grabbed;
  }
  /// How many pixels of a node's row differ between two pictures.
  int differences(const QImage& one, const QImage& other, const QRect& rect) {
    const double scale = one.devicePixelRatio();
    const QRect area(rect.topLeft() * scale, rect.size() * scale);
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
      for (int x = area.left(); x <= area.right(); ++x) count += one.pixel(x, y) != other.pixel(x, y);
    }
    return count;
  }
  QRect rowOf(const std::string& path) {
    const QRect row = bench_.view().visualRect(bench_.indexOf(bench_.nodeOf(path).Key()));
    return QRect(bench_.view().viewport()->mapTo(&bench_.widget(), row.topLeft()), row.size())
        .intersected(bench_.widget().rect());
  }

 private:
  TreeBench bench_;
};

TEST_F(TreeLooks, InALightAndInADarkTheme) {
  picture("tree-light.png");
  const Theme dark(darkPalette());
  const QImage shown = picture("tree-dark.png");
  const QRect empty(10, bench().widget().height() - 30, 20, 20);
  EXPECT_LT(shown.pixelColor(empty.center() * shown.devicePixelRatio()).lightness(), 60);
}

TEST_F(TreeLooks, EveryNodeHasAnIconThatIsSharpAtTheScreensScale) {
  for (const char* key : {"Desktop", "My Computer", "/"}) {
    const auto icon = bench().indexOf(key).data(Qt::DecorationRole).value<QIcon>();
    ASSERT_FALSE(icon.isNull()) << key;
    EXPECT_EQ(icon.pixmap(QSize(16, 16), 2.0).size(), QSize(32, 32)) << key;
  }
  const auto folder = bench().indexOf(bench().nodeOf(bench().home("Music")).Key());
  EXPECT_FALSE(folder.data(Qt::DecorationRole).value<QIcon>().isNull());
}

TEST_F(TreeLooks, OurSetHasAnIconForEachPlace) {
  for (const char* name : {"folder", "folder-open", "drive", "removable", "network", "cd", "home", "desktop",
                           "documents", "computer"}) {
    EXPECT_FALSE(qt::svgIcon(name).isNull()) << name;
  }
}

TEST_F(TreeLooks, TheSelectionIsHiddenWithoutTheFocusOnlyIfAsked) {
  bench().view().clearFocus();
  const QRect row = rowOf(bench().home("Pictures"));
  const QImage shown = picture("tree-without-focus.png");
  bench().control().HideSelection(true);
  const QImage hidden = picture("tree-hidden-selection.png");
  EXPECT_GT(differences(shown, hidden, row), 100);
  EXPECT_EQ(differences(shown, hidden, rowOf(bench().home("Music"))), 0);
}

TEST_F(TreeLooks, TheSelectionIsDimmerWithoutTheFocus) {
  const QRect row = rowOf(bench().home("Pictures"));
  const auto ground = [&](const char* name) {
    const QImage shown = picture(name);
    return shown.pixelColor(QPoint(row.right() - 3, row.center().y()) * shown.devicePixelRatio());
  };
  const auto distance = [](const QColor& one, const QColor& other) {
    return std::abs(one.red() - other.red()) + std::abs(one.green() - other.green()) +
           std::abs(one.blue() - other.blue());
  };
  const auto check = [&](const char* withFocus, const char* without) {
    const QColor base = QApplication::palette().color(QPalette::Base);
    bench().view().setFocus();
    const QColor focused = ground(withFocus);
    bench().view().clearFocus();
    const QColor resting = ground(without);
    EXPECT_GT(distance(focused, base), distance(resting, base) + 60) << withFocus;
    EXPECT_GT(distance(resting, base), 40) << "but it is seen";
    EXPECT_GT(distance(resting, QApplication::palette().color(QPalette::Text)), 200) << "and can be read";
  };
  check("tree-focus.png", "tree-resting.png");
  const Theme dark(darkPalette());
  check("tree-focus-dark.png", "tree-resting-dark.png");
}

TEST_F(TreeLooks, TheIconOfTheSelectionIsSeenWithoutTheFocusToo) {
  const Theme light{QPalette(QColor(239, 239, 239))};
  bench().view().clearFocus();
  const QImage shown = picture("tree-resting-icon.png");
  const auto contrast = [&](const std::string& path) {
    const QRect row = rowOf(path);
    const QColor ground =
        shown.pixelColor(QPoint(row.right() - 3, row.center().y()) * shown.devicePixelRatio());
    int most = 0;
    for (int y = row.top() + 2; y < row.bottom() - 2; ++y) {
      for (int x = row.left() + 2; x < row.left() + 18; ++x) {
        const QColor pixel = shown.pixelColor(QPoint(x, y) * shown.devicePixelRatio());
        most = std::max(most, std::abs(pixel.lightness() - ground.lightness()));
      }
    }
    return most;
  };
  EXPECT_GT(contrast(bench().home("Pictures")), contrast(bench().home("Music")) / 2);
}

TEST_F(TreeLooks, SignsLinesAndPicturesAreShownAsTheStyleAsks) {
  const QImage all = picture("tree-all.png");
  std::vector<QImage> styles;
  for (std::int32_t style = 0; style < 7; ++style) {
    bench().control().Style(style);
    styles.push_back(picture("tree-style.png"));
  }
  const QRect whole = bench().widget().rect();
  for (const QImage& style : styles) EXPECT_GT(differences(all, style, whole), 0);
  EXPECT_GT(differences(styles[0], styles[2], whole), 0) << "signs";
  EXPECT_GT(differences(styles[0], styles[4], whole), 0) << "lines";
  EXPECT_GT(differences(styles[0], styles[1], whole), 0) << "pictures";
}

TEST_F(TreeLooks, IsATreeWithNamesForAccessibilityTools) {
  QAccessibleInterface* const tree = QAccessible::queryAccessibleInterface(&bench().view());
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->role(), QAccessible::Tree);
  EXPECT_EQ(tree->text(QAccessible::Name), QStringLiteral("Folders"));
  std::vector<QString> names;
  for (int i = 0; i < tree->childCount(); ++i) names.push_back(tree->child(i)->text(QAccessible::Name));
  EXPECT_THAT(names, testing::IsSupersetOf({QStringLiteral("Desktop"), QStringLiteral("Pictures")}));
  EXPECT_THAT(names, testing::Not(testing::Contains(QStringLiteral("1")))) << "the number of the column";
}

}  // namespace
}  // namespace kestrel::desktop
