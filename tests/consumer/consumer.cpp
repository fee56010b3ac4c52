// A plain C++17 program (no Objective-C anywhere) built with g++ against the
// installed headers: one use of each family of the library, linked and run.
// The unit tests check the behaviour; this checks that a C++ caller reaches it.
#include <Rovani/Rovani.h>

#include <cstdio>
#include <cstring>
#include <memory>

#include <unistd.h>

static int failures = 0;

#define CHECK(cond)                                              \
  do {                                                           \
    if (!(cond)) {                                               \
      std::fprintf(stderr, "consumer check failed: %s\n", #cond); \
      ++failures;                                                \
    }                                                            \
  } while (0)

int main() {
  RVAutoreleasePool pool;

  // Strings, ranges, the library's constant strings and class types.
  RVString world = RVString("hello") + ", " + RVString("world");
  CHECK(world.RangeOfString("world").Location() == 7);
  CHECK(world.ObjectsClassType() == "RVString" && RVObject(world).ObjectsClassType() == "RVObject");
  CHECK(kgRVInternalEmptyString.Length() == 0 && kFilePathSeperator == "\\");

  // Scalars and a dictionary through a property list.
  CHECK(RVBool(7).Ref() == BoolToRVId(true) && static_cast<signed char>(RVNumber(5)) == 1);
  int target = 0;
  CHECK(RVValue::ValueFromPointer(&target).PointerValue() == &target);
  RVDictionary settings;
  settings.SetObjectForKey(RVString("Rovani"), "name");
  settings.SetObjectForKey(RVString("a,b,c").ComponentsSeparatedByString(","), "tags");
  RVDictionary parsed{RVData(settings)};
  CHECK(parsed.StringForKey("name") == "Rovani" && parsed.ArrayForKey("tags").Count() == 3);

  // The one member that throws, caught in plain C++.
  bool caught = false;
  try {
    RVString("abc").SubstringWithRange(RVRange(1, 5));
  } catch (RVError* error) {
    caught = error->Code() == 1 && error->Domain() == "RVStringDomain";
    delete error;
  }
  CHECK(caught);
  RVLog("consumer: %s", "logged from plain C++");

  // Dates: built from calendar fields, moved by days, formatted, read back.
  RVDate day = RVDate::DateFromMonthDayYear(12, 25, 2008);
  day.AddDays(1);
  RVDateFormatter formatter;
  RVString text = formatter.StringFromDate(day);
  CHECK(text == "12-26-2008" && formatter.DateFromString(text) == day);

  // JSON, Base64 and the short hash.
  RVJsonTranslator translator;
  std::unique_ptr<RVObject> root(translator.Parse("{\"count\": 3, \"on\": true}"));
  CHECK(root && root->IsTypeOfClass(RVDictionary::ClassType()));
  if (root) {
    RVDictionary& json = static_cast<RVDictionary&>(*root);
    CHECK(static_cast<int>(json.NumberForKey("count")) == 3 && json.BooleanForKey("on"));
    CHECK(translator.Encode(json).HasPrefix("{"));
  }
  RVData base64 = Base64Encoding::EncodeData(RVData::DataWithBytes("Man", 3));
  CHECK(base64.Length() == 8 && std::memcmp(base64.Bytes(), "TWFu", 4) == 0);
  CHECK(RVUtilities::HashAsString("abc") == "90015098");

  // A URL taken apart; a temporary directory made, listed and removed.
  RVURL guide(RVString("https://example.com/docs/guide.html"));
  CHECK(guide.LastPathComponent() == "guide.html");
  RVString scratch = RVFileManager::TempDirectoryPath().StringByAppendingPathComponent(
      RVString::StringWithFormat("rovani-consumer-%d", static_cast<int>(getpid())));
  CHECK(RVFileManager::CreateDirectoryAtPath(scratch));
  CHECK(RVData(RVString("one")).WriteToFile(scratch.StringByAppendingPathComponent("one.txt")));
  CHECK(RVFileManager::DirectoryContentsAtPath(scratch).Count() == 1);
  CHECK(RVFileManager::RemoveItemAtPath(scratch) && !RVFileManager::ItemExistsAtPath(scratch));

  // Settings for the current user and for all users (the run script points
  // both stores at scratch directories).
  RVUserDefaults defaults = RVUserDefaults::StandardUserDefaults();
  defaults.SetIntegerForKey(42, "consumer.answer");
  CHECK(defaults.IntegerForKey("consumer.answer") == 42);
  RVUserDefaults machine = RVUserDefaults::StandardAllUsersDefaults();
  machine.SetObjectForKey(RVString("shared"), "consumer.machine");
  CHECK(machine.Synchronize() && machine.StringForKey("consumer.machine") == "shared");

  if (failures == 0) std::printf("plain C++ consumer: all checks passed\n");
  return failures == 0 ? 0 : 1;
}
