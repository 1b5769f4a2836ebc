#pragma once

#ifndef __OBJC__
#error "platform/apple is Objective-C++: only .mm files include its headers"
#endif
#if defined(__has_feature)
#if __has_feature(objc_arc)
#error "platform/apple retains and releases by itself: compile it without -fobjc-arc"
#endif
#endif

#import <Foundation/Foundation.h>

#include <utility>

namespace Foundation {

/// Owns one reference to an Objective-C object, or none.
///
///     const auto formatter = Retained<NSNumberFormatter*>::adopt([[NSNumberFormatter alloc] init]);
///     const auto error = Retained<::NSError*>::retain(transaction.error);
///
/// `Pointer` is a pointer to a class, `id`, or `id<Protocol>`. How the reference was come by is
/// said by name, and never guessed from a bare pointer.
/// Thread: one owner is used by one thread at a time; the object may be shared.
template <class Pointer>
class Retained {
 public:
  Retained() = default;

  /// Takes over the reference that the caller owns: the answer of `alloc`, `new` or `copy`.
  [[nodiscard]] static Retained adopt(Pointer object) noexcept {
    Retained owner;
    owner.object_ = object;
    return owner;
  }

  /// Takes a reference of its own; the caller keeps what it has.
  [[nodiscard]] static Retained retain(Pointer object) noexcept { return adopt([object retain]); }

  Retained(const Retained& other) noexcept : object_([other.object_ retain]) {}
  Retained(Retained&& other) noexcept : object_(std::exchange(other.object_, nil)) {}
  Retained& operator=(Retained other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Retained() { reset(); }

  /// Valid as long as an owner is; may be nil.
  [[nodiscard]] Pointer get() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nil; }

  /// Empty first, then released: a `dealloc` that looks here finds nothing.
  void reset() noexcept { [std::exchange(object_, nil) release]; }

 private:
  Pointer object_ = nil;
};

}  // namespace Foundation
