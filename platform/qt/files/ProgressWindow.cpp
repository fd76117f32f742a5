#include "ProgressWindow.h"

#include <QDialogButtonBox>
#include <QLocale>
#include <QPointer>
#include <QVBoxLayout>

#include "ElidedLabel.h"
#include "platform/filetransfer/Texts.h"
#include "platform/qt/core/Caption.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

using transfer::BackgroundTransfer;

constexpr int kRoundMilliseconds = 50;
/// A canceled transfer ends within one call of the system, unless the disk hangs.
constexpr qint64 kPatienceMilliseconds = 4000;
constexpr int kWidth = 440;
/// Of the bar, which has numbers of 32 bits only.
constexpr int kSteps = 1000;

QString sizeOf(std::uint64_t bytes) {
  return QLocale().formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeSIFormat);
}

/// As "3 of 10 files, 1.2 MB of 8.0 MB", without files if there is one, without bytes if none are copied.
QString countsOf(const transfer::Progress& progress) {
  const QLocale locale;
  QStringList counts;
  if (progress.files > 1) {
    counts += translated("%1 of %2 files")
                  .arg(locale.toString(static_cast<qulonglong>(progress.filesDone)),
                       locale.toString(static_cast<qulonglong>(progress.files)));
  }
  if (progress.bytes > 0) {
    counts += translated("%1 of %2").arg(sizeOf(progress.bytesDone), sizeOf(progress.bytes));
  }
  return counts.join(QStringLiteral(", "));
}

}  // namespace

ProgressWindow::ProgressWindow(BackgroundTransfer& transfer, transfer::Operation operation, Ask ask,
                               QWidget* parent)
    : UserDialog(parent),
      transfer_(transfer),
      process_(translated(transfer::processOf(operation))),
      ask_(std::move(ask)),
      name_(new ElidedLabel),
      counts_(new QLabel),
      time_(new QLabel),
      bar_(new QProgressBar) {
  setCaption(*this, translated(transfer::titleOf(operation)));
  setMinimumWidth(kWidth);
  name_->setObjectName(QStringLiteral("fileName"));
  counts_->setObjectName(QStringLiteral("counts"));
  time_->setObjectName(QStringLiteral("timeLeft"));
  bar_->setAccessibleName(translated("Progress"));
  bar_->setRange(0, 0);

  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  button_ = buttons->button(QDialogButtonBox::Cancel);
  // Enter is often pressed for something else.
  button_->setAutoDefault(false);
  connect(button_, &QPushButton::clicked, this, [this] { cancel(); });

  auto* const facts = new QHBoxLayout;
  facts->addWidget(counts_, 1);
  facts->addWidget(time_);
  auto* const all = new QVBoxLayout(this);
  all->setSpacing(10);
  all->addWidget(name_);
  all->addWidget(bar_);
  all->addLayout(facts);
  all->addSpacing(4);
  all->addWidget(buttons);

  show(transfer_.progress());
  clock_.start();
  // The transfer may not outlive the dialog's end.
  connect(this, &QDialog::finished, &timer_, &QTimer::stop);
  connect(&timer_, &QTimer::timeout, this, [this] { look(); });
  timer_.start(kRoundMilliseconds);
}

bool ProgressWindow::hangs() const {
  return canceled_.isValid() && canceled_.hasExpired(kPatienceMilliseconds);
}

void ProgressWindow::cancel() {
  if (hangs()) return closeWith(Rejected);
  if (canceled_.isValid()) return;
  canceled_.start();
  transfer_.cancel();
  button_->setEnabled(false);
  name_->setText(translated("Canceling..."));
  time_->clear();
}

void ProgressWindow::look() {
  switch (transfer_.state()) {
    case BackgroundTransfer::State::kFinished:
      timer_.stop();
      closeWith(Accepted);
      return;
    case BackgroundTransfer::State::kAsking: {
      timer_.stop();
      const qint64 before = clock_.elapsed();
      const QPointer<ProgressWindow> alive(this);
      if (!ask_(this)) {
        // The owner closes this window too, unless it has done so already.
        if (alive && isVisible()) reject();
        return;
      }
      asked_ += clock_.elapsed() - before;
      timer_.start(kRoundMilliseconds);
      return;
    }
    case BackgroundTransfer::State::kWorking:
      if (!canceled_.isValid()) return show(transfer_.progress());
      if (!hangs() || button_->isEnabled()) return;
      name_->setText(translated("The disk does not answer."));
      button_->setText(translated("&Close"));
      button_->setEnabled(true);
      return;
  }
}

void ProgressWindow::show(const transfer::Progress& progress) {
  if (progress.current.empty()) {
    name_->setText(translated("Counting the files..."));
    return;
  }
  name_->setText(process_ + u' ' + toQt(transfer::nameOf(progress.current)));
  const double all = static_cast<double>(progress.bytes > 0 ? progress.bytes : progress.files);
  const double done = static_cast<double>(progress.bytes > 0 ? progress.bytesDone : progress.filesDone);
  bar_->setRange(0, kSteps);
  bar_->setValue(all > 0 ? qRound(done / all * kSteps) : 0);

  counts_->setText(countsOf(progress));
  const auto left = transfer::timeLeft(progress, std::chrono::milliseconds(clock_.elapsed() - asked_));
  time_->setText(left ? translated(transfer::textOf(*left)) : QString());
}

}  // namespace kestrel::qt
