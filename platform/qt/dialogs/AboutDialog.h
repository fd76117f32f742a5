#pragma once

#include <QDialog>

#include "imaging/contract/Picture.h"

namespace kestrel::qt {

/// Shows the program's name and version, and its picture or else the application's icon.
class AboutDialog final : public QDialog {
  Q_OBJECT

 public:
  AboutDialog(const QString& title, const QString& version, const PicturePtr& picture, QWidget* parent);
};

}  // namespace kestrel::qt
