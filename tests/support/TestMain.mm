#import <Foundation/Foundation.h>

#include <unistd.h>

#include <cstdlib>

#include <gtest/gtest.h>

// The main program of both test binaries. One pool for the whole run; tests
// that count autoreleases keep their own. Run by hand as well as by ctest, a
// binary keeps away from the real user defaults and the machine's all-users
// store, and runs in the time zone its build gives it (GNUstep reads
// GNUSTEP_TZ, not TZ): one with daylight saving for the library's tests, so
// that moving a date by calendar days and by seconds really differ across a
// change; one far from UTC with a fractional offset for the property-list
// machinery, so that nothing written or read can depend on the local zone
// unnoticed. GNUstep has read its configuration before main runs, so the
// binary starts itself again once with its own.
// GNUstep makes its standard user defaults on first use (logging, date
// formatting, exceptions and property lists all ask for them) and keeps part
// of them where the leak checker cannot see it. Made here, once, that set-up
// has a name the sanitized run's suppressions can give (tests/sanitize).
__attribute__((noinline, disable_tail_calls)) static void SetUpGNUstepDefaultsOnce() {
  [NSUserDefaults standardUserDefaults];
}

int main(int argc, char** argv) {
  if (getenv("ROVANI_TEST_ENVIRONMENT") == nullptr) {
    setenv("ROVANI_TEST_ENVIRONMENT", "1", 1);
    setenv("GNUSTEP_CONFIG_FILE", ROVANI_TEST_GNUSTEP_CONFIG, 1);
    setenv("ROVANI_ALL_USERS_DEFAULTS_DIR", ROVANI_TEST_ALL_USERS_DIR, 1);
    setenv("GNUSTEP_TZ", ROVANI_TEST_TIME_ZONE, 1);
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
