#include "QuestionWindow.h"

#include <QDateTime>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

#include "ElidedLabel.h"
#include "engine/thumbnails/ThumbnailReader.h"
#include "platform/filetransfer/Texts.h"
#include "platform/os/Paths.h"
#include "platform/qt/core/Caption.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/dialogs/PicturePane.h"

namespace kestrel::qt {
namespace {

using os::EntryType;
using transfer::Choice;
using transfer::FileInQuestion;
using transfer::Question;

constexpr QSize kPicture(170, 120);
constexpr int kWidth = 440;

QString sizeText(const os::EntryFacts& facts) {
  switch (facts.type) {
    case EntryType::kFile:
      return QLocale().formattedDataSize(static_cast<qint64>(facts.size), 1, QLocale::DataSizeSIFormat);
    case EntryType::kFolder:
      return translated("Folder");
    case EntryType::kLink:
      return translated("Symbolic link");
    default:
      return {};
  }
}

QString dateText(const os::EntryFacts& facts) {
  const auto moment = std::chrono::floor<std::chrono::milliseconds>(facts.modified);
  const QDateTime date = QDateTime::fromMSecsSinceEpoch(moment.time_since_epoch().count());
  return QLocale().toString(date, QLocale::ShortFormat);
}

/// As exact as the shown date.
auto secondOf(const os::EntryFacts& facts) {
  return std::chrono::floor<std::chrono::seconds>(facts.modified);
}

/// The text with a remark where the file differs from the other one.
QString remarked(const QString& text, bool differs, const char* remark) {
  return differs ? translated("%1 (%2)").arg(text, translated(remark)) : text;
}

QGroupBox* groupOf(const char* title, const FileInQuestion& file, const FileInQuestion& other,
                   engine::ThumbnailReader& reader) {
  auto* const group = new QGroupBox(translated(title));
  auto* const picture = new PicturePane(reader, group);
  picture->setMinimumSize(kPicture);
  picture->showFile(file.path);
  const os::EntryFacts &own = file.facts, &another = other.facts;
  const bool bothFiles = own.type == EntryType::kFile && another.type == EntryType::kFile;
  auto* const size = new QLabel(remarked(sizeText(own), bothFiles && own.size > another.size, "larger"));
  auto* const date = new QLabel(remarked(dateText(own), secondOf(own) > secondOf(another), "newer"));
  auto* const column = new QVBoxLayout(group);
  column->addWidget(picture, 1);
  for (QLabel* label : {size, date}) {
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter);
    column->addWidget(label);
  }
  return group;
}

QLabel* sentence(const QString& text) {
  auto* const label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

}  // namespace

QuestionWindow::QuestionWindow(const Question& question, transfer::Operation operation,
                               engine::ThumbnailReader& oldReader, engine::ThumbnailReader& newReader,
                               QWidget* parent)
    : UserDialog(parent), forAll_(new QCheckBox(translated("Do the same for &all further files"), this)) {
  setCaption(*this, translated(transfer::titleOf(operation)));
  setMinimumWidth(kWidth);
  forAll_->setObjectName(QStringLiteral("forAll"));
  forAll_->setVisible(question.more);

  auto* const all = new QVBoxLayout(this);
  all->setSpacing(12);
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  QPushButton* first = nullptr;
  if (question.kind != Question::Kind::kNoTrash) {
    auto* const name = new ElidedLabel(toQt(transfer::nameOf(question.source.path)));
    QFont bold = name->font();
    bold.setBold(true);
    name->setFont(bold);
    all->addWidget(name);
    const char* const taken = question.target.facts.type == EntryType::kFolder
                                  ? "There is already a folder with this name in %1. What do you want to do?"
                                  : "There is already a file with this name in %1. What do you want to do?";
    all->addWidget(
        sentence(translated(taken).arg(toQt(transfer::nameOf(question.target.path.parent_path())))));
    auto* const files = new QHBoxLayout;
    files->addWidget(groupOf("Existing", question.target, question.source, oldReader));
    files->addWidget(groupOf("New", question.source, question.target, newReader));
    all->addLayout(files, 1);
    if (question.kind == Question::Kind::kFolders) {
      addButton(*buttons, "merge", "&Merge", Choice::kMerge);
    } else if (question.canReplace) {
      addButton(*buttons, "replace", "&Replace", Choice::kReplace);
    }
    addButton(*buttons, "keepBoth", "&Keep Both", Choice::kKeepBoth);
    first = addButton(*buttons, "skip", "&Skip", Choice::kSkip);
  } else {
    all->addWidget(sentence(translated(transfer::noTrashQuestionOf(question))));
    addButton(*buttons, "delete", "&Delete", Choice::kDelete);
    first = addButton(*buttons, "skip", "&Skip", Choice::kSkip);
  }
  addButton(*buttons, "cancel", "Cancel", Choice::kCancel);
  all->addWidget(forAll_);
  all->addLayout(buttons);
  // What loses nothing.
  first->setDefault(true);
  first->setFocus();
}

QPushButton* QuestionWindow::addButton(QHBoxLayout& row, const char* name, const char* text, Choice choice) {
  auto* const button = new QPushButton(translated(text));
  button->setObjectName(QLatin1String(name));
  connect(button, &QPushButton::clicked, this, [this, choice] { choose(choice); });
  row.addWidget(button);
  return button;
}

void QuestionWindow::choose(Choice choice) {
  answer_ = {choice, forAll_->isChecked()};
  closeWith(Accepted);
}

void QuestionWindow::cancel() { choose(Choice::kCancel); }

}  // namespace kestrel::qt
