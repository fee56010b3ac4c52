#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

// One pool for the whole run; tests that count autoreleases keep their own.
int main(int argc, char** argv) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  ::testing::InitGoogleTest(&argc, argv);
  int result = RUN_ALL_TESTS();
  [pool drain];
  return result;
}
