#include "QtUserInterface.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QInputDialog>
#include <QMessageBox>
#include <QTextEdit>

#include "AboutDialog.h"
#include "BoxStyle.h"
#include "Modal.h"
#include "platform/qt/core/Caption.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/services/BusyPointer.h"

namespace kestrel::qt {
namespace {

/// A message box that can always be closed, with any buttons, so that it never keeps the program from ending.
class Box final : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;

 protected:
  void closeEvent(QCloseEvent* event) override {
    QMessageBox::closeEvent(event);
    if (event->isAccepted()) return;
    event->accept();
    QDialog::closeEvent(event);
  }
};

/// Inserts the lines above the buttons, in a list that can be scrolled.
void addList(QMessageBox& box, const QString& lines) {
  constexpr QSize kSize(520, 200);
  auto* const grid = qobject_cast<QGridLayout*>(box.layout());
  auto* const buttons = box.findChild<QDialogButtonBox*>();
  if (!grid || !buttons) return;
  int row = 0, column = 0, rows = 0, columns = 0;
  grid->getItemPosition(grid->indexOf(buttons), &row, &column, &rows, &columns);
  auto* const list = new QTextEdit(&box);
  list->setReadOnly(true);
  list->setPlainText(lines);
  list->setFixedHeight(kSize.height());
  list->setMinimumWidth(kSize.width());
  grid->removeWidget(buttons);
  grid->addWidget(list, row, 0, 1, grid->columnCount());
  grid->addWidget(buttons, row + 1, column, rows, columns);
}

/// A text with many lines would be higher than the screen: what follows the first paragraph is in a list.
void setText(QMessageBox& box, const QString& text) {
  constexpr int kMostLines = 15;
  const QString end = QStringLiteral("\n\n");
  const qsizetype first = text.indexOf(end);
  if (first < 0 || text.count(u'\n') < kMostLines) {
    box.setText(text);
    return;
  }
  box.setText(text.left(first));
  addList(box, text.mid(first + end.size()));
}

/// "Version 2.0" in the user's language.
QString versionOf(const std::string& text) {
  constexpr std::string_view kVersion = "Version ";
  return text.starts_with(kVersion) ? translated("Version %1").arg(toQt(text.substr(kVersion.size())))
                                    : translated(text);
}

}  // namespace

QString QtUserInterface::titleOf(const std::string& title) const {
  return translated(title.empty() ? applicationTitle_ : title);
}

std::int32_t QtUserInterface::MessageBox(const std::string& text, std::int32_t style,
                                         const std::string& title, WindowHandle owner) {
  const BusyPause pause;
  Box box(dialogParent(owner));
  box.setTextFormat(Qt::PlainText);
  setCaption(box, titleOf(title));
  box.setIcon(iconOf(style));
  const auto buttons = buttonsOf(style);
  for (const auto button : buttons) box.addButton(button);
  box.setDefaultButton(defaultButtonOf(style));
  if (buttons.size() == 1) box.setEscapeButton(buttons.front());
  setText(box, withLineFeeds(translated(text)));
  return answerOf(execModal(box, calls_));
}

std::string QtUserInterface::InputBox(const std::string& prompt, const std::string& title,
                                      const std::string& defaultText, const Point* position,
                                      WindowHandle owner) {
  const BusyPause pause;
  QInputDialog box(dialogParent(owner));
  setCaption(box, titleOf(title));
  box.setLabelText(withLineFeeds(translated(prompt)));
  box.setTextValue(toQt(defaultText));
  if (position) box.move(position->X, position->Y);
  return execModal(box, calls_) == QDialog::Accepted ? fromQt(box.textValue()) : std::string();
}

void QtUserInterface::AboutBox(const std::string& title, const std::string& versionText,
                               const PicturePtr& picture, WindowHandle owner) {
  const BusyPause pause;
  AboutDialog box(translated(title), versionOf(versionText), picture, dialogParent(owner));
  execModal(box, calls_);
}

}  // namespace kestrel::qt
