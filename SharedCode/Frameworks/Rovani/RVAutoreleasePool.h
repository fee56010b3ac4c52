/// \file
/// RVAutoreleasePool, an autorelease pool for plain C++ callers.
#ifndef ROVANI_RVAUTORELEASEPOOL_H
#define ROVANI_RVAUTORELEASEPOOL_H

#include <Rovani/RVDefines.h>

/// Keeps an autorelease pool in place for the lifetime of
/// the object, for plain C++ callers that cannot write `@autoreleasepool`.
/// Members that autorelease need one on the calling thread.
///
/// Make one at the top of main() and of every thread that uses the library;
/// a nested one around a loop keeps the loop's temporaries from piling up.
class RV_EXPORT RVAutoreleasePool {
 public:
  /// Pushes a new pool.
  RVAutoreleasePool();
  /// Drains it: every object autoreleased since the push is released.
  ~RVAutoreleasePool();

  RVAutoreleasePool(const RVAutoreleasePool&) = delete;
  RVAutoreleasePool& operator=(const RVAutoreleasePool&) = delete;

 private:
  RVId pool_;
};

#endif
