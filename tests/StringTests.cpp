// Exceptions reach plain C++ callers: catching needs a C++ frame, so these
// tests are plain C++.
#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

#include <Rovani/Rovani.h>

#include "support/TestSupport.h"

namespace {

TEST(Throws, OutOfRangeSubstringThrowsAHeapError) {
  RVAutoreleasePool pool;
  RVError* caught = nullptr;
  try {
    RVString("abc").SubstringWithRange(RVRange(1, 5));
  } catch (RVError* error) {
    caught = error;
  }
  ASSERT_NE(caught, nullptr);
  EXPECT_EQ(caught->Code(), 1);
  EXPECT_EQ(Text(caught->Domain()), "RVStringDomain");
  std::string description =
      Text(caught->UserInfo().StringForKey(RVError::LocalizedDescriptionKey()));
  EXPECT_EQ(description.rfind("Exception NSRangeException - ", 0), 0u) << description;
  EXPECT_NE(description.find("NSRangeException"), std::string::npos);
  delete caught;
}

TEST(Throws, OtherPlatformExceptionsThrowAHeapString) {
  RVAutoreleasePool pool;
  // Data answers length but not substringWithRange:.
  RVString notAString(RVData(RVString("bytes")).Ref());
  RVString* caught = nullptr;
  try {
    notAString.SubstringWithRange(RVRange(0, 2));
  } catch (RVString* description) {
    caught = description;
  }
  ASSERT_NE(caught, nullptr);
  EXPECT_FALSE(caught->IsEmpty());
  delete caught;
}

TEST(Throws, PlatformExceptionsPassThroughUncaught) {
  RVAutoreleasePool pool;
  RVArray array;
  array.AddObject(RVString("only"));
  bool caught = false;
  try {
    RVString s = array.StringAtIndex(4);
  } catch (...) {
    caught = true;
  }
  EXPECT_TRUE(caught);

  EXPECT_THROW(RVArray{RVObject(RVString("not an array").Ref())}, std::bad_cast);
}

TEST(Throws, HandlesAreReleasedWhenAPlatformExceptionUnwindsThroughTheirOwner) {
  RVAutoreleasePool pool;
  RVData bytes = RVData::DataWithBytes("abc", 3);
  RVString text("unwound");
  const unsigned int bytesCount = bytes.RetainCount();
  const unsigned int textCount = text.RetainCount();
  auto owner = [&] {
    RVData heldBytes(bytes);
    RVString heldText(text);
    RVArray one;
    one.AddObject(heldText);
    delete one.ObjectAtIndex(3);  // raises NSRangeException
  };
  bool caught = false;
  {
    RVAutoreleasePool exceptionPool;  // holds the exception and what it keeps
    try {
      owner();
    } catch (...) {
      caught = true;
    }
  }
  EXPECT_TRUE(caught);
  EXPECT_EQ(bytes.RetainCount(), bytesCount);
  EXPECT_EQ(text.RetainCount(), textCount);
}

}  // namespace
