// A plain C++17 program (no Objective-C anywhere) built with g++ against the
// installed headers. Exits non-zero on the first check that fails.
#include <Rovani/Rovani.h>

#include <cstdio>
#include <cstring>

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
  CHECK(RVString(static_cast<const char*>(nullptr)).Ref() == nullptr);
  CHECK(kgRVInternalEmptyString.Length() == 0 && kFilePathSeperator == "\\");
  CHECK(RVString::StringWithFormat("%d-%@", 7, hello.Ref()) == "7-hello");
  CHECK(RVString("banana").StringByReplacingOccurrencesOfStringWithString("a", "b") == "bbnbnb");

  // Copies share the object.
  RVString copy(world);
  CHECK(copy.Ref() == world.Ref());
  RVObject base(world);
  CHECK(base.Ref() == world.Ref() && base.ObjectsClassType() == "RVObject");

  // Ranges.
  RVRange found = world.RangeOfString("world");
  CHECK(found.Location() == 7 && found.Length() == 5);
  CHECK(RVRange(0, 10).UnionRange(RVRange(5, 2)) == RVRange(0, 15));

  // Bytes and scalars.
  CHECK(RVData(RVString("ab")).Length() == 2);
  CHECK(RVString("ab").DataContainingUnicodeCString().Length() == 8);
  CHECK(RVBool(7) == true && RVBool(7).Ref() == BoolToRVId(true));
  CHECK(static_cast<signed char>(RVNumber(5)) == 1);
  CHECK(RVNumber(2.5).IsFloatType() && !RVNumber(2).IsFloatType());
  int target = 0;
  CHECK(RVValue::ValueFromPointer(&target).PointerValue() == &target);
  CHECK(trueBoolNumberConst != nullptr && trueBoolNumberConst == RVBool(true).Ref());
  CHECK(RVNumber(300) == static_cast<unsigned char>(44));
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
  CHECK(parsed.StringForKey("count").IsEmpty());
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
