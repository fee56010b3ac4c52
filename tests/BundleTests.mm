#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

#include "support/LogCapture.h"
#include "support/TestSupport.h"

// The build puts a bundle of the test program's own next to it (from
// tests/bundle).
namespace {

TEST(Bundle, MainBundleIsOneObjectDescribingTheTestProgram) {
  RVBundle& main = RVBundle::MainBundle();
  EXPECT_EQ(&main, &RVBundle::MainBundle());
  EXPECT_EQ(Text(RVBundle::DefaultStringsTableName()), "localizable.strings");
  EXPECT_EQ(Text(main.BundleIdentifier()), "org.rovani.tests");
  EXPECT_TRUE(main.ResourcePath() == main.BundlePath().StringByAppendingPathComponent("Resources"));
  EXPECT_TRUE(main.PathForResourceOfType("Greetings", "strings")
                  .HasSuffix("/English.lproj/Greetings.strings"));
  EXPECT_TRUE(main.PathForResourceOfType("Missing", "txt").IsEmpty());

  EXPECT_EQ(Text(main.LocalizedStringForKey("farewell")), "Adiós, größte Grüße");
  EXPECT_EQ(Text(main.LocalizedStringForKeyInTableNamed("greeting", "Greetings")),
            "Hello from Greetings");
  // A missing key answers the default value, or the key itself without one.
  EXPECT_EQ(Text(main.LocalizedStringForKey("missing")), "missing");
  EXPECT_EQ(Text(main.LocalizedStringForKeyWithDefaultValueInTableNamed("missing", "fallback",
                                                                        "Greetings")),
            "fallback");
}

TEST(Bundle, AssignmentFromAnUntypedObjectWarnsEveryTime) {
  const char warning[] = "RVBundle RVId copy operator does not work; recode if you need this!";
  NSBundle* platform = [NSBundle mainBundle];
  LogCapture log;
  RVBundle bundle;
  bundle = static_cast<RVId>(platform);
  EXPECT_EQ(bundle.Ref(), platform);
  bundle = static_cast<RVId>(nil);
  EXPECT_TRUE(bundle.IsEmpty());
  EXPECT_EQ(log.Count(warning), 2);

  bundle = static_cast<const NSBundle*>(platform);
  RVBundle other;
  other = bundle;
  EXPECT_EQ(other.Ref(), platform);
  EXPECT_EQ(log.Count(warning), 2);
}

}  // namespace
