#pragma once

#include <gtest/gtest.h>

#include <string>

#include "diagnostics/modTollgarthSupport.h"
#include "platform/posix/LineTable.h"
#include "tests/logic/fakes/FakePlatform.h"

namespace kestrel {

/// An apartment on the fake platform.
class Diagnostics : public testing::Test {
 protected:
  Diagnostics() {
    platform_.lines = &lines_;
    modTollgarthSupport::Attach(&platform_);
  }
  ~Diagnostics() override { modTollgarthSupport::Attach(nullptr); }

  static modTollgarthSupport::Fields& state() { return modTollgarthSupport::State(); }
  std::vector<fakes::Report>& reports() { return platform_.factory.reports; }
  std::vector<fakes::ShownBox>& boxes() { return platform_.boxes.boxes; }

  fakes::FakePlatform platform_;
  posix::LineTable lines_;
};

}  // namespace kestrel
