// RVOwned: one reference to an Objective-C object, released when the owner
// goes out of scope.
#ifndef ROVANI_PLATFORM_RVOWNED_H
#define ROVANI_PLATFORM_RVOWNED_H

#import <Foundation/Foundation.h>

// The library's code keeps references by hand (no ARC), and every count is
// part of its behaviour. An owner holds exactly one reference: it adopts one
// the caller already owns (the +1 of alloc/init, copy, mutableCopy, new) or
// takes one of its own with a retain, and gives it back with one release at
// scope exit. It is move-only, so the reference is released once.
//
// Scope exit includes a platform exception: an NSException unwinding
// through these frames runs destructors, so an owner also releases what it
// holds when a message raises, and code needs no @catch to clean up. (Do
// not rely on a C++ catch in an Objective-C++ file to do the same: the
// runtime's personality never matches one.)
//
// Release() hands the reference on without releasing it (to a caller that
// answers +1, or to autorelease); Reset() releases and adopts another.
template <typename T = id>
class RVOwned {
 public:
  RVOwned() = default;
  ~RVOwned() { [ref_ release]; }
  RVOwned(const RVOwned&) = delete;
  RVOwned& operator=(const RVOwned&) = delete;
  RVOwned(RVOwned&& other) noexcept : ref_(other.ref_) { other.ref_ = nil; }
  // From an owner of a related type (an id to the class it is known to be).
  template <typename U>
  RVOwned(RVOwned<U>&& other) noexcept : ref_(other.Release()) {}
  RVOwned& operator=(RVOwned&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
  }

  // Takes over a reference the caller owns (+1): nothing is retained.
  static RVOwned Adopt(T owned) { return RVOwned(owned); }
  // Takes a reference of its own to an object the caller does not own.
  static RVOwned Retain(T unowned) { return RVOwned([unowned retain]); }

  T Get() const { return ref_; }
  explicit operator bool() const { return ref_ != nil; }

  // Gives up the reference without releasing it: the caller owns it now.
  T Release() {
    T owned = ref_;
    ref_ = nil;
    return owned;
  }
  // The object, now owned by the innermost autorelease pool.
  T Autorelease() { return [Release() autorelease]; }
  // Releases what is held and adopts owned (+1) instead.
  void Reset(T owned = nil) {
    T old = ref_;
    ref_ = owned;
    [old release];
  }

 private:
  explicit RVOwned(T owned) : ref_(owned) {}
  T ref_ = nil;
};

// Adopts an owned (+1) reference, its type deduced: RVAdopt([x copy]).
template <typename T>
RVOwned<T> RVAdopt(T owned) {
  return RVOwned<T>::Adopt(owned);
}

#endif
