#include "AboutDialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "platform/qt/core/Caption.h"
#include "platform/qt/core/Pictures.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kIconSize = 64;

QPixmap pixmapOf(const PicturePtr& picture) {
  if (picture) return QPixmap::fromImage(borrowedImage(picture->Pixels()));
  return QApplication::windowIcon().pixmap(kIconSize);
}

}  // namespace

AboutDialog::AboutDialog(const QString& title, const QString& version, const PicturePtr& picture,
                         QWidget* parent)
    : QDialog(parent) {
  setCaption(*this, translated("About %1").arg(title));

  auto* const name = new QLabel(title);
  QFont large = name->font();
  large.setPointSizeF(large.pointSizeF() * 1.6);
  large.setBold(true);
  name->setFont(large);
  name->setTextFormat(Qt::PlainText);

  auto* const versionLabel = new QLabel(version);
  versionLabel->setTextFormat(Qt::PlainText);
  versionLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);

  auto* const texts = new QVBoxLayout;
  texts->addWidget(name);
  texts->addWidget(versionLabel);
  texts->addStretch();

  auto* const head = new QHBoxLayout;
  head->setSpacing(20);
  const QPixmap image = pixmapOf(picture);
  if (!image.isNull()) {
    auto* const icon = new QLabel;
    icon->setPixmap(image);
    head->addWidget(icon, 0, Qt::AlignTop);
  }
  head->addLayout(texts, 1);

  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(24, 24, 24, 16);
  all->setSpacing(20);
  all->addLayout(head);
  all->addWidget(buttons);
  all->setSizeConstraint(QLayout::SetFixedSize);
  setMinimumWidth(360);
}

}  // namespace kestrel::qt
