#pragma once

#include <memory>

#include "imaging/contract/SinkHolder.h"

namespace kestrel::qt {

class WeakSinkHolder final : public SinkHolder {
 public:
  std::shared_ptr<kestrel::Object> Object() const override { return object_.lock(); }
  void Object(const std::shared_ptr<kestrel::Object>& value) override { object_ = value; }

 private:
  std::weak_ptr<kestrel::Object> object_;
};

}  // namespace kestrel::qt
