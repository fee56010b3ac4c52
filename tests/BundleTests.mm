#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

#include "support/LogCapture.h"
#include "support/TestSupport.h"

// The test program's bundle is generated next to it by the build (see
// tests/bundle).
namespace {

const char kAssignWarning[] = "RVBundle RVId copy operator does not work; recode if you need this!";

TEST(Bundle, MainBundleIsOneObjectDescribingTheTestProgram) {
  RVBundle& main = RVBundle::MainBundle();
  EXPECT_EQ(&main, &RVBundle::MainBundle());
  EXPECT_EQ(main.Ref(), [NSBundle mainBundle]);
  EXPECT_EQ(Text(RVBundle::ClassType()), "RVBundle");
  EXPECT_EQ(Text(RVBundle::DefaultStringsTableName()), "localizable.strings");

  EXPECT_EQ(Text(main.BundleIdentifier()), "org.rovani.tests");
  EXPECT_EQ(Text(main.ExecutablePath().LastPathComponent()), "rovani_tests");
  EXPECT_TRUE(main.BundlePath().HasSuffix("/Resources/rovani_tests"));
  EXPECT_TRUE(main.ResourcePath() == main.BundlePath().StringByAppendingPathComponent("Resources"));
  EXPECT_TRUE(main.PathForResourceOfType("Greetings", "strings")
                  .HasSuffix("/English.lproj/Greetings.strings"));
  EXPECT_TRUE(main.PathForResourceOfType("Missing", "txt").IsEmpty());

  RVBundle none;
  EXPECT_TRUE(none.BundleIdentifier().IsEmpty());
  EXPECT_TRUE(none.LocalizedStringForKey("greeting").IsEmpty());
}

TEST(Bundle, LocalisedStringsFollowThePlatformsTableRules) {
  const RVBundle& main = RVBundle::MainBundle();
  EXPECT_EQ(Text(main.LocalizedStringForKey("greeting")), "Hello from the default table");
  EXPECT_EQ(Text(main.LocalizedStringForKey("farewell")), "Adiós, größte Grüße");
  EXPECT_EQ(Text(main.LocalizedStringForKeyInTableNamed("greeting", "Greetings")),
            "Hello from Greetings");
  // A missing key answers the default value, or the key itself without one.
  EXPECT_EQ(Text(main.LocalizedStringForKey("missing")), "missing");
  EXPECT_EQ(Text(main.LocalizedStringForKeyWithDefaultValue("missing", "fallback")), "fallback");
  EXPECT_EQ(Text(main.LocalizedStringForKeyWithDefaultValueInTableNamed("greeting", "fallback",
                                                                         "Greetings")),
            "Hello from Greetings");
  EXPECT_EQ(Text(main.LocalizedStringForKeyWithDefaultValueInTableNamed("missing", "fallback",
                                                                         "Greetings")),
            "fallback");
}

TEST(Bundle, AssignmentFromAnUntypedObjectWarnsEveryTime) {
  NSBundle* platform = [NSBundle mainBundle];
  LogCapture log;
  RVBundle bundle;
  bundle = static_cast<RVId>(platform);
  EXPECT_EQ(bundle.Ref(), platform);
  bundle = static_cast<RVId>(nil);
  EXPECT_TRUE(bundle.IsEmpty());
  EXPECT_EQ(log.Count(kAssignWarning), 2);

  bundle = static_cast<const NSBundle*>(platform);
  RVBundle other;
  other = bundle;
  unsigned int held = platform.retainCount;
  RVBundle copy(other);
  EXPECT_EQ(copy.Ref(), platform);
  EXPECT_EQ(copy.RetainCount(), held + 1);
  EXPECT_EQ(log.Count(kAssignWarning), 2);
}

}  // namespace
