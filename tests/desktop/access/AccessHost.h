#pragma once

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>
#include <stdexcept>
#include <string>

#include "imaging/contract/ImageView.h"
#include "imaging/contract/Moorage.h"
#include "platform/qt/embed/ImageEditor.h"

namespace kestrel::desktop {

inline void settle() {
  for (int round = 0; round < 5; ++round) {
    QTest::qWait(2);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

/// A host's window with an editor in its layout.
class AccessHost : public testing::Test {
 protected:
  AccessHost() {
    layout_ = new QVBoxLayout(&window_);
    editor_ = new qt::ImageEditor(component_);
    layout_->addWidget(editor_);
    control().Initialize();
    window_.resize(1100, 760);
  }
  ~AccessHost() override {
    delete editor_;
    settle();
  }

  void SetUp() override {
    window_.show();
    QApplication::setActiveWindow(&window_);
    settle();
  }

  IImageProcessingCtl& control() { return editor_->control(); }

  void openPicture(int width = 300, int height = 200) {
    const QString file = folder_.filePath(QStringLiteral("picture.png"));
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    ASSERT_TRUE(image.save(file));
    ASSERT_TRUE(control().OpenImage(file.toStdString()));
    settle();
  }

  /// The only widget of that name, hidden ones included.
  template <typename T = QWidget>
  T& part(const char* name) {
    const QList<T*> found = editor_->findChildren<T*>(QLatin1String(name));
    EXPECT_EQ(found.size(), 1) << name;
    if (found.isEmpty()) throw std::runtime_error(name);
    return *found.front();
  }
  /// The widget of the picture.
  QWidget& picture() { return *editor_->focusProxy()->focusProxy()->focusProxy(); }

  static QAccessibleInterface& face(QObject& object) {
    return *QAccessible::queryAccessibleInterface(&object);
  }
  static std::string nameOf(QObject& object) { return face(object).text(QAccessible::Name).toStdString(); }

  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(window_.windowHandle(), key, modifiers);
    settle();
  }

  const QTemporaryDir folder_;
  qt::Component component_;
  QWidget window_;
  QVBoxLayout* layout_;
  qt::ImageEditor* editor_;
};

}  // namespace kestrel::desktop
