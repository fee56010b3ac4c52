#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

#include <Rovani/Rovani.h>

#include "support/LogCapture.h"
#include "support/TestSupport.h"

namespace {

TEST(Logging, RVLogAndDebugLogWriteTheSameFormattedLine) {
  LogCapture log;
  RVLog("value %d of %@", 3, @"things");
  DebugLog("value %d of %@", 3, @"things");
  ASSERT_EQ(log.Lines().size(), 2u);
  EXPECT_EQ(log.Lines()[0], "value 3 of things");
  EXPECT_EQ(log.Lines()[1], log.Lines()[0]);
}

TEST(Utilities, HashIsTheFirstFourBytesOfTheMD5) {
  EXPECT_EQ(Text(RVUtilities::HashAsString("")), "D41D8CD9");
  EXPECT_EQ(RVUtilities::Hash(""), static_cast<int>(0xD41D8CD9u));
  EXPECT_LT(RVUtilities::Hash(""), 0);
  // The UTF-8 bytes of the text are hashed: MD5("\xc3\xa9") is 66ddcd97...
  EXPECT_EQ(Text(RVUtilities::HashAsString(RVString(static_cast<RVId>(@"\u00e9")))), "66DDCD97");
  // A byte below 0x10 keeps its leading zero: MD5("a") is 0cc175b9...
  EXPECT_EQ(Text(RVUtilities::HashAsString("a")), "0CC175B9");
}

TEST(Utilities, UUIDsAreFreshCanonicalUpperCaseText) {
  std::set<std::string> seen;
  for (int i = 0; i < 100; ++i) {
    std::string uuid = Text(RVUtilities::CreateUUID());
    EXPECT_EQ(uuid.find_first_not_of("0123456789ABCDEF-"), std::string::npos) << uuid;
    EXPECT_TRUE(uuid.size() == 36 && uuid[8] == '-' && uuid[13] == '-' && uuid[23] == '-') << uuid;
    seen.insert(uuid);
  }
  EXPECT_EQ(seen.size(), 100u);
}

}  // namespace
