#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

#include "support/TestSupport.h"

namespace {

const char kPage[] = "http://example.com/dir/page.html";

TEST(URL, MadeFromTextBaseAndFilePath) {
  RVURL page{RVString(kPage)};
  RVURL relative(page, "sub/file.txt");
  EXPECT_EQ(Text(relative.AbsoluteString()), "http://example.com/dir/sub/file.txt");
  EXPECT_EQ(Text(relative.RelativeString()), "sub/file.txt");
  EXPECT_EQ(Text(relative.PathExtension()), "txt");
  EXPECT_TRUE(relative.BaseURL() == page);

  // The relative path is a string held by a URL's handle.
  RVURL path = relative.RelativePath();
  EXPECT_TRUE(path.IsTypeOfClass("RVURL"));
  EXPECT_TRUE([path.Ref() isKindOfClass:[NSString class]]);
  EXPECT_EQ(Text(RVString(path.Ref())), "sub/file.txt");

  // Texts that are not URLs give empty handles, which answer empty results.
  EXPECT_TRUE(RVURL(RVString("a b")).IsEmpty());
  EXPECT_TRUE(RVURL(page, "a b").IsEmpty());
  EXPECT_TRUE(RVURL(RVString(static_cast<const char*>(nullptr))).AbsoluteString().IsEmpty());

  RVURL file = RVURL::URLFromFilePath("~/a folder/Grüße.txt");
  NSString* expanded = [NSHomeDirectory() stringByAppendingPathComponent:@"a folder/Grüße.txt"];
  EXPECT_TRUE(file == [NSURL fileURLWithPath:expanded]);
  EXPECT_EQ(Text(file.LastPathComponent()), "Grüße.txt");
}

TEST(URL, DerivationsWorkOnTheAbsoluteString) {
  RVURL relative(RVURL(RVString(kPage)), "sub/file.txt");
  EXPECT_EQ(relative.URLByAppendingPathComponent("").Ref(), relative.Ref());
  EXPECT_EQ(relative.URLByAppendingPathExtension("").Ref(), relative.Ref());

  // New URLs made from the derived text: no base URL is kept, and the path
  // rules apply to the scheme's slashes too.
  RVString absolute = relative.AbsoluteString();
  RVURL appended = relative.URLByAppendingPathComponent("more");
  EXPECT_TRUE(appended == RVURL(absolute.StringByAppendingPathComponent("more")));
  EXPECT_TRUE(appended.BaseURL().IsEmpty());
  EXPECT_EQ(Text(relative.URLByAppendingPathExtension("gz").AbsoluteString()),
            "http://example.com/dir/sub/file.txt.gz");
  EXPECT_TRUE(relative.URLByDeletingLastPathComponent() ==
              RVURL(absolute.StringByDeletingLastPathComponent()));

  // Deleting the extension never looks at the URL it is called on.
  EXPECT_TRUE(RVURL::URLFromFilePath("/tmp/report.txt").URLByDeletingPathExtension().IsEmpty());
  EXPECT_TRUE(RVURL().URLByDeletingPathExtension().IsEmpty());
}

}  // namespace
