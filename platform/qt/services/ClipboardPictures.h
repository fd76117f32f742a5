#pragma once

#include <QImage>
#include <QMimeData>

namespace kestrel::qt {

/// Whether the data holds a bitmap. Texts and file lists do not count, even if they name pictures.
bool holdsPicture(const QMimeData& data);

/// The bitmap of the data, preferably PNG since it keeps transparency; null if there is none or it cannot be
/// decoded.
QImage pictureOf(const QMimeData& data);

/// Offers a picture as PNG and as bitmap; encodes it on request.
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
