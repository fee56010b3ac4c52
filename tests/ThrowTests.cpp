// Exceptions reach plain C++ callers: catching needs a C++ frame, so these
// tests are plain C++.
#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

#include <Rovani/Rovani.h>

namespace {

std::string Text(const RVString& s) {
  RVData bytes = s.DataContainingUTF8CString();
  return bytes.IsEmpty() ? std::string() : std::string(bytes.CharPointer());
}

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

}  // namespace
