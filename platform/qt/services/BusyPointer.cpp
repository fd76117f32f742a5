#include "BusyPointer.h"

#include <QCursor>
#include <QGuiApplication>

#include "imaging/contract/FormUtility.h"

namespace kestrel::qt {
namespace {

std::int32_t& shown() {
  static std::int32_t pointer = kBusyDefault;
  return pointer;
}

}  // namespace

void BusyPointer::set(std::int32_t pointer) {
  if (pointer == shown()) return;
  if (shown() != kBusyDefault) QGuiApplication::restoreOverrideCursor();
  shown() = pointer;
  if (pointer != kBusyDefault) {
    QGuiApplication::setOverrideCursor(
        QCursor(pointer == kBusyArrowHourglass ? Qt::BusyCursor : Qt::WaitCursor));
  }
}

std::int32_t BusyPointer::current() { return shown(); }

BusyPause::BusyPause() : paused_(BusyPointer::current()) { BusyPointer::set(kBusyDefault); }

BusyPause::~BusyPause() { BusyPointer::set(paused_); }

}  // namespace kestrel::qt
