// A plain C++17 program (no Objective-C anywhere) built with g++ against the
// installed headers. Exits non-zero on the first check that fails.
#include <Rovani/Rovani.h>

#include <cstdio>
#include <cstring>

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

  // Strings and class types.
  RVString hello("hello");
  RVString world = hello + ", " + RVString("world");
  CHECK(world == "hello, world");
  CHECK(world.Length() == 12);
  CHECK(world.IsTypeOfClass(RVString::ClassType()));
  CHECK(world.ObjectsClassType() == "RVString");
  CHECK(RVString().IsEmpty() && RVString().Ref() != nullptr);
  CHECK(kgRVInternalEmptyString.Length() == 0 && kFilePathSeperator == "\\");
  CHECK(RVString("banana").StringByReplacingOccurrencesOfStringWithString("a", "b") == "bbnbnb");

  // Copies share the object.
  RVString copy(world);
  CHECK(copy.Ref() == world.Ref());
  RVObject base(world);
  CHECK(base.Ref() == world.Ref() && base.ObjectsClassType() == "RVObject");

  // Ranges.
  RVRange found = world.RangeOfString("world");
  CHECK(found.Location() == 7 && found.Length() == 5);

  // Bytes and scalars.
  CHECK(RVData(RVString("ab")).Length() == 2);
  CHECK(RVBool(7) == true && RVBool(7).Ref() == BoolToRVId(true));
  CHECK(static_cast<signed char>(RVNumber(5)) == 1);
  int target = 0;
  CHECK(RVValue::ValueFromPointer(&target).PointerValue() == &target);
  CHECK(static_cast<signed char>(RVValue(5)) == 1 && static_cast<int>(RVValue(5)) == 5);
  RVData appended = RVData::DataWithBytes("ab", 2);
  appended.AppendString("c");
  CHECK(RVString(appended) == "abc");

  // A dictionary built and read back typed.
  RVDictionary settings;
  settings.SetObjectForKey(RVString("Rovani"), "name");
  settings.SetObjectForKey(RVNumber(3), "count");
  settings.SetObjectForKey(RVBool(true), "enabled");
  RVArray tags = RVString("a,b,c").ComponentsSeparatedByString(",");
  settings.SetObjectForKey(tags, "tags");
  RVDictionary parsed{RVData(settings)};
  CHECK(parsed.StringForKey("name") == "Rovani");
  CHECK(static_cast<int>(parsed.NumberForKey("count")) == 3);
  CHECK(settings.BooleanForKey("enabled"));
  CHECK(parsed.ArrayForKey("tags").Count() == 3);
  CHECK(parsed.ObjectsClassType() == "2RVDictionary");

  // The out-of-range substring's error is caught here, in plain C++.
  bool caught = false;
  try {
    RVString("abc").SubstringWithRange(RVRange(1, 5));
  } catch (RVError* error) {
    caught = error->Code() == 1 && error->Domain() == "RVStringDomain";
    delete error;
  }
  CHECK(caught);

  RVLog("consumer: %s", "logged from plain C++");

  // A URL taken apart; a temporary directory made, listed and removed; the
  // program's own bundle.
  RVURL guide(RVString("https://example.com/docs/guide.html"));
  CHECK(guide.LastPathComponent() == "guide.html" && guide.PathExtension() == "html");
  RVURL chapter(guide, "chapter/one.html");
  CHECK(chapter.AbsoluteString() == "https://example.com/docs/chapter/one.html");
  CHECK(RVURL(RVString("not a url")).IsEmpty());

  RVString scratch = RVFileManager::TempDirectoryPath().StringByAppendingPathComponent(
      RVString::StringWithFormat("rovani-consumer-%d", static_cast<int>(getpid())));
  CHECK(RVFileManager::CreateDirectoryAtPath(scratch) && RVFileManager::IsDirectory(scratch));
  CHECK(RVData(RVString("one")).WriteToFile(scratch.StringByAppendingPathComponent("one.txt")));
  CHECK(RVFileManager::DirectoryContentsAtPath(scratch).Count() == 1);
  CHECK(RVFileManager::RemoveItemAtPath(scratch) && !RVFileManager::ItemExistsAtPath(scratch));
  CHECK(&RVBundle::MainBundle() == &RVBundle::MainBundle());

  // Settings for the current user and for all users, written and read back.
  RVUserDefaults defaults = RVUserDefaults::StandardUserDefaults();
  defaults.SetIntegerForKey(42, "consumer.answer");
  CHECK(defaults.IntegerForKey("consumer.answer") == 42 && !defaults.RemoveUserDefaults());
  RVUserDefaults machine = RVUserDefaults::StandardAllUsersDefaults();
  machine.SetObjectForKey(RVString("shared"), "consumer.machine");
  CHECK(machine.Synchronize() && machine.StringForKey("consumer.machine") == "shared");
  // JSON: parse, read typed values, encode back.
  RVJsonTranslator translator;
  RVObject* root = translator.Parse(
      "{\"name\": \"Rovani\", \"count\": 3, \"ratio\": 2.5, \"on\": true, "
      "\"tags\": [\"a\", \"b\"], \"owner\": null}");
  CHECK(root != nullptr && root->IsTypeOfClass(RVDictionary::ClassType()));
  if (root != nullptr) {
    RVDictionary& json = *static_cast<RVDictionary*>(root);
    CHECK(json.StringForKey("name") == "Rovani");
    CHECK(static_cast<int>(json.NumberForKey("count")) == 3);
    CHECK(static_cast<double>(json.NumberForKey("ratio")) == 2.5);
    CHECK(json.BooleanForKey("on") == true);
    CHECK(json.ArrayForKey("tags").StringAtIndex(1) == "b");
    CHECK(json.ObjectsClassTypeForKey("owner") == "RVObject");
    RVString encoded = translator.Encode(json);
    RVObject* again = translator.Parse(encoded);
    CHECK(again != nullptr && static_cast<RVDictionary*>(again)->Count() == 6);
    delete again;
    delete root;
  }
  CHECK(translator.Parse("{") == nullptr);
  CHECK(translator.Encode(RVArray()) == "[]\n");

  // Base64 and the short hash.
  RVData man = RVData::DataWithBytes("Man", 3);
  RVData base64 = Base64Encoding::EncodeData(man);
  CHECK(base64.Length() == 8 && std::memcmp(base64.Bytes(), "TWFu\0\0\0\0", 8) == 0);
  RVData decoded = Base64Encoding::DecodeData(base64);
  CHECK(decoded.Length() == 4 && std::memcmp(decoded.Bytes(), "Man\x13", 4) == 0);
  CHECK(RVUtilities::HashAsString("abc") == "90015098");
  CHECK(RVUtilities::CreateUUID().Length() == 36);
  // Dates: built from calendar fields, moved by days, written and read back.
  RVDate start = RVDate::DateFromMonthDayYear(1, 1, 2009);
  CHECK(!start.IsEmpty() && start.ObjectsClassType() == "RVDate");
  RVDate later(start);
  later.AddDays(10);
  CHECK(later > start && later != start && start <= later);
  CHECK(later.DaysSinceReferenceDate() - start.DaysSinceReferenceDate() == 10);
  RVString written = RVDateFormatter::DefaultFormatter().StringFromDate(later);
  CHECK(written == "01-11-2009");
  CHECK(RVDate::DateFromString(written) == later);
  CHECK(RVDate::DateFromString("01/11/2009") == later);
  CHECK(RVDate::DateFromStringUsingFormat("2009-01-11", RVDateFormat::yyyyMMddDateFormat()) ==
        static_cast<NSDate*>(later));
  CHECK(later == static_cast<CFDateRef>(later));
  CHECK(RVDate::DateFromMonthDayYearHourMinuteSecond(2, 30, 2009, 0, 0, 0.0).IsEmpty());
  CHECK(RVDate() == RVDate::DistantPast() && RVDate() < RVDate::ReferenceDate());
  CHECK(RVDate().TimeIntervalSinceDate(RVDate::Now()) ==
        RVDate::DistantPast().TimeIntervalSinceRefereceDate());
  CHECK(RVDate::DateWithTimeIntervalSinceNow(-36 * OneHourTimeInterval).DaysSinceNow() < -1.49);
  CHECK(RVDateFormatter::ClassType() == "5RVDateFormatter");
  CHECK(RVDateFormat::MMddyyyyHHmmssSSSDateFormat() == "MM-dd-yyyy HH:mm:ss.SSS");
  CHECK(RVDateFormatter().StringFromDate(RVDate()).Length() == 0);

  if (failures == 0) std::printf("plain C++ consumer: all checks passed\n");
  return failures == 0 ? 0 : 1;
}
