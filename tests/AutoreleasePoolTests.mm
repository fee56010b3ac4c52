#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

namespace {

TEST(AutoreleasePool, DrainsWhatWasAutoreleasedInsideIt) {
  NSObject* object = [[NSObject alloc] init];
  [object retain];
  {
    RVAutoreleasePool pool;
    [object autorelease];
    EXPECT_EQ([object retainCount], 2u);
  }
  EXPECT_EQ([object retainCount], 1u);
  [object release];
}

}  // namespace
