#pragma once

#include <QImage>
#include <QMimeData>

namespace kestrel::qt {

/// Whether the data holds a bitmap. Texts and lists of files are none, even those that name pictures.
bool holdsPicture(const QMimeData& data);

/// The bitmap of the data, PNG first since it keeps transparency; null if there is none or it is damaged.
QImage pictureOf(const QMimeData& data);

/// Offers a picture as PNG and as bitmap; it is encoded only when somebody asks for it.
class PictureMimeData final : public QMimeData {
  Q_OBJECT

 public:
  explicit PictureMimeData(QImage picture);

  QStringList formats() const override;
  bool hasFormat(const QString& format) const override;

 protected:
  QVariant retrieveData(const QString& format, QMetaType type) const override;

 private:
  QImage picture_;
};

}  // namespace kestrel::qt
