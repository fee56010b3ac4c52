#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

#include "support/LogCapture.h"

namespace {

TEST(Logging, RVLogAndDebugLogWriteTheSameFormattedLine) {
  LogCapture log;
  RVLog("value %d of %@", 3, @"things");
  DebugLog("value %d of %@", 3, @"things");
  ASSERT_EQ(log.Lines().size(), 2u);
  EXPECT_EQ(log.Lines()[0], "value 3 of things");
  EXPECT_EQ(log.Lines()[1], log.Lines()[0]);
}

}  // namespace
