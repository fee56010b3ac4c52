#import <Foundation/Foundation.h>

#include <unistd.h>

#include <cstdlib>

#include <gtest/gtest.h>

// The direct tests of the property-list machinery: one pool for the run,
// and a time zone far from UTC with a fractional offset (GNUstep reads
// GNUSTEP_TZ, not TZ, when it starts), so that nothing written or read can
// depend on the local zone unnoticed. GNUstep asks for its user defaults
// on some first uses: they are the test suite's, never the real ones.
// GNUstep sets up its standard user defaults on first use (the comparisons
// with its own serialiser ask for them) and keeps part of them where the
// leak checker cannot see it: made here first, under the name the
// sanitized run's suppressions give that set-up (tests/sanitize).
__attribute__((noinline, disable_tail_calls)) static void SetUpGNUstepDefaultsOnce() {
  [NSUserDefaults standardUserDefaults];
}

int main(int argc, char** argv) {
  if (getenv("ROVANI_TEST_ENVIRONMENT") == nullptr) {
    setenv("ROVANI_TEST_ENVIRONMENT", "1", 1);
    setenv("GNUSTEP_TZ", "Pacific/Chatham", 1);
    setenv("GNUSTEP_CONFIG_FILE", ROVANI_TEST_GNUSTEP_CONFIG, 1);
    execv("/proc/self/exe", argv);
    return 127;
  }
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  SetUpGNUstepDefaultsOnce();
  ::testing::InitGoogleTest(&argc, argv);
  int result = RUN_ALL_TESTS();
  [pool drain];
  return result;
}
