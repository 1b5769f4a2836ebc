#include <utility>

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace Foundation {

namespace {

class NativeHandle final : public NativeObject {
 public:
  explicit NativeHandle(Retained<id> object) : object_(std::move(object)) {}

  [[nodiscard]] id object() const { return object_.get(); }

  [[nodiscard]] bool isEqual(const NativeObject& other) const override {
    const auto* const handle = dynamic_cast<const NativeHandle*>(&other);
    return handle != nullptr && askPlatform("NativeObject::isEqual", false, [&] {
             return [object() isEqual:handle->object()] != NO;
           });
  }

  [[nodiscard]] std::size_t hash() const override {
    return askPlatform("NativeObject::hash", 0, [&] { return std::size_t{[object() hash]}; });
  }

 private:
  Retained<id> object_;
};

}  // namespace

std::shared_ptr<const NativeObject> handleOn(id object) {
  if (object == nil) return nullptr;
  return std::make_shared<const NativeHandle>(Retained<id>::retain(object));
}

id nativeObject(const std::shared_ptr<const NativeObject>& handle) {
  const auto* const ours = dynamic_cast<const NativeHandle*>(handle.get());
  return ours != nullptr ? ours->object() : nil;
}

}  // namespace Foundation
