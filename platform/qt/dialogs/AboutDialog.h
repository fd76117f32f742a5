#pragma once

#include <QDialog>

#include "imaging/contract/Picture.h"

namespace kestrel::qt {

/// Names the program and its version, with its picture or, without one, the application's icon.
class AboutDialog final : public QDialog {
  Q_OBJECT

 public:
  AboutDialog(const QString& title, const QString& version, const PicturePtr& picture, QWidget* parent);
};

}  // namespace kestrel::qt
