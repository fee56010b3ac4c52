#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

#include "support/TestSupport.h"

namespace {

const RVString kPage("http://example.com/dir/page.html");

TEST(URL, MadeFromTextBaseAndFilePath) {
  RVURL page(kPage);
  EXPECT_EQ(Text(page.AbsoluteString()), "http://example.com/dir/page.html");
  EXPECT_EQ(Text(page.LastPathComponent()), "page.html");
  EXPECT_EQ(Text(page.PathExtension()), "html");
  EXPECT_TRUE(page == RVURL(kPage));
  EXPECT_TRUE(page.IsTypeOfClass("RVURL"));
  EXPECT_EQ(Text(RVURL::ClassType()), "RVURL");

  // Texts that are not URLs give empty handles, and empty handles answer
  // empty results.
  EXPECT_TRUE(RVURL(RVString("a b")).IsEmpty());
  RVURL assigned(kPage);
  assigned = RVString("http://exa mple.com/");
  EXPECT_TRUE(assigned.IsEmpty());
  EXPECT_TRUE(RVURL(RVString(static_cast<const char*>(nullptr))).IsEmpty());
  EXPECT_TRUE(assigned.AbsoluteString().IsEmpty());
  EXPECT_TRUE(assigned.BaseURL().IsEmpty());

  RVURL relative(page, "sub/file.txt");
  EXPECT_EQ(Text(relative.AbsoluteString()), "http://example.com/dir/sub/file.txt");
  EXPECT_EQ(Text(relative.RelativeString()), "sub/file.txt");
  EXPECT_TRUE(relative.BaseURL() == page);
  EXPECT_TRUE(relative.AbsoluteURL().BaseURL().IsEmpty());
  EXPECT_TRUE(RVURL(page, "a b").IsEmpty());

  // The relative path is a string in a URL's clothing.
  RVURL path = relative.RelativePath();
  EXPECT_TRUE(path.IsTypeOfClass("RVURL"));
  EXPECT_TRUE([path.Ref() isKindOfClass:[NSString class]]);
  EXPECT_EQ(Text(RVString(path.Ref())), "sub/file.txt");

  RVURL file = RVURL::URLFromFilePath("~/a folder/Grüße.txt");
  NSString* expected = [NSHomeDirectory() stringByAppendingPathComponent:@"a folder/Grüße.txt"];
  EXPECT_TRUE(file == [NSURL fileURLWithPath:expected]);
  EXPECT_TRUE(file.AbsoluteString().HasPrefix("file:///"));
  EXPECT_EQ(file.AbsoluteString().RangeOfString("~").Length(), 0u);
  EXPECT_EQ(Text(file.LastPathComponent()), "Grüße.txt");
}

TEST(URL, DerivationsWorkOnTheAbsoluteString) {
  RVURL relative(RVURL(kPage), "sub/file.txt");
  EXPECT_EQ(relative.URLByAppendingPathComponent("").Ref(), relative.Ref());
  EXPECT_TRUE(relative.URLByAppendingPathExtension("") == relative);

  // The results are new URLs of the derived text: no base URL is kept.
  RVString absolute = relative.AbsoluteString();
  RVURL appended = relative.URLByAppendingPathComponent("more");
  EXPECT_TRUE(appended == RVURL(absolute.StringByAppendingPathComponent("more")));
  EXPECT_TRUE(appended.BaseURL().IsEmpty());
  RVURL extended = relative.URLByAppendingPathExtension("gz");
  EXPECT_EQ(Text(extended.AbsoluteString()), "http://example.com/dir/sub/file.txt.gz");
  EXPECT_TRUE(relative.URLByDeletingLastPathComponent() ==
              RVURL(absolute.StringByDeletingLastPathComponent()));

  // Deleting the extension never looks at the URL it is called on.
  RVURL file = RVURL::URLFromFilePath("/tmp/report.txt");
  RVURL deleted = file.URLByDeletingPathExtension();
  EXPECT_EQ(deleted.Ref(), RVURL().URLByDeletingPathExtension().Ref());
  EXPECT_TRUE(deleted.IsEmpty());
  EXPECT_TRUE(relative.URLByDeletingPathExtension().IsEmpty());
}

}  // namespace
