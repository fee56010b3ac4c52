// What the translator lets through reaches plain C++ callers, who can catch
// it; a C++ catch needs a C++ frame, so this test is plain C++.
#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

namespace {

TEST(JsonTranslatorThrows, ARefusedArrayElementReachesPlainCxxCallers) {
  RVAutoreleasePool pool;
  RVJsonTranslator translator;
  bool caught = false;
  try {
    delete translator.Parse("{\"list\":[1, {\"a\":[]}, null]}");
  } catch (...) {
    caught = true;
  }
  EXPECT_TRUE(caught);
  // The translator is usable afterwards.
  RVObject* parsed = translator.Parse("{\"list\":[1]}");
  ASSERT_NE(parsed, nullptr);
  EXPECT_EQ(static_cast<RVDictionary*>(parsed)->ArrayForKey("list").Count(), 1u);
  delete parsed;
}

}  // namespace
