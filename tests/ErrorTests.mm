#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

#include "support/TestSupport.h"

namespace {

TEST(Error, CodeZeroNeverMakesAnError) {
  RVDictionary info;
  info.SetObjectForKey(RVString("x"), "k");
  RVArray options;
  options.AddObject(RVString("retry"));
  EXPECT_FALSE(MakeRVError(0, "D", info).IsError());
  EXPECT_FALSE(MakeRVError(0, "desc", "fix", info, "D").IsError());
  EXPECT_FALSE(MakeRVError(0, "desc", "fix", options, "D").IsError());
  EXPECT_FALSE(RVError::ErrorWithCodeDescriptionAndDomain(0, "x", "D").IsError());
  EXPECT_TRUE(MakeRVError(-1, "D", RVDictionary()).IsError());
}

TEST(Error, TextsGoUnderThePlatformKeys) {
  RVError error = RVError::ErrorWithCodeDescriptionAndDomain(5, "x", "D");
  ASSERT_TRUE(error.IsError());
  EXPECT_EQ(error.Code(), 5);
  EXPECT_TRUE(error.Domain() == "D");
  EXPECT_TRUE(error.UserInfo().StringForKey(RVError::LocalizedDescriptionKey()) == "x");
  RVString suggestion = error.UserInfo().StringForKey(RVError::LocalizedRecoverySuggestionErrorKey());
  EXPECT_NE(suggestion.Ref(), nil);
  EXPECT_TRUE(suggestion == "");

  // The user info copies on change: the error keeps what it was made with.
  error.SetValueForKey(RVString("added"), "extra");
  EXPECT_EQ(error.ValueForKey("extra"), nullptr);
}

TEST(Error, ExtraInfoWinsAndEmptyOptionsAreLeftOut) {
  RVDictionary extra;
  extra.SetObjectForKey(RVString("from extra"), RVError::LocalizedDescriptionKey());
  extra.SetObjectForKey(RVNumber(9), "n");
  RVError withExtra = MakeRVError(2, "from argument", "fix", extra, "D");
  EXPECT_TRUE(withExtra.UserInfo().StringForKey(RVError::LocalizedDescriptionKey()) ==
              "from extra");
  EXPECT_EQ(withExtra.UserInfo().Count(), 3u);

  RVError noOptions = MakeRVError(3, "d", "s", RVArray(), "D");
  EXPECT_EQ(noOptions.UserInfo().Count(), 2u);
  RVArray options;
  options.AddObject(RVString("retry"));
  RVError withOptions = MakeRVError(3, "d", "s", options, "D");
  EXPECT_EQ(withOptions.UserInfo().ArrayForKey(RVError::LocalizedRecoveryOptionsErrorKey()).Count(),
            1u);
}

TEST(Error, DomainsAndDescriptions) {
  EXPECT_EQ(Text(FilePathToDomain("SharedCode/Frameworks/Rovani/RVJsonTranslator.mm")),
            "RVJsonTranslatorDomain");
  EXPECT_EQ(Text(FilePathToDomain("Bare")), "BareDomain");

  EXPECT_EQ(Text(RVError().Description()), "code = 0 Domain =  UserInfo = ");

  RVError error = MakeRVError(3, "RVStringDomain", RVDictionary());
  EXPECT_EQ(Text(error.Description()), "code = 3 Domain = RVStringDomain UserInfo = ");
  RVDictionary info;
  info.SetObjectForKey(RVString("b"), "a");
  RVError described = MakeRVError(3, "RVStringDomain", info);
  EXPECT_EQ(Text(described.Description()),
            "code = 3 Domain = RVStringDomain UserInfo = " + Text(info.Description()));
}

}  // namespace
