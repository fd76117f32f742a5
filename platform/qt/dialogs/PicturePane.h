#pragma once

#include <QImage>
#include <QWidget>
#include <filesystem>

namespace kestrel::engine {
class ThumbnailReader;
struct Thumbnail;
}  // namespace kestrel::engine

namespace kestrel::qt {

/// Shows a picture file at a reduced size, or why there is none to show. The file is read in the background.
class PicturePane final : public QWidget {
  Q_OBJECT

 public:
  /// The reader must outlive this pane, and is for its use alone until then.
  PicturePane(engine::ThumbnailReader& reader, QWidget* parent);
  ~PicturePane() override;

  /// Shows this file from now on; an empty name or a folder shows nothing. What was being read for another
  /// file is canceled.
  void showFile(const std::filesystem::path& name);

  /// Null while there is none to show.
  const QImage& picture() const { return picture_; }
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void accept(const engine::Thumbnail& thumbnail);
  void show(const QImage& picture, const QString& text);

  engine::ThumbnailReader& reader_;
  std::filesystem::path file_;
  QImage picture_;
  QString text_;
};

}  // namespace kestrel::qt
