// A small tour of the handles, written as a plain C++ caller would.
#include <Rovani/Rovani.h>

#include <cstdio>

static void Show(const char* what, const RVString& value) {
  RVString line = RVString::StringWithFormat("%s: %@", what, value.Ref());
  RVLog("%@", line.Ref());
}

int main() {
  RVAutoreleasePool pool;

  RVString greeting("Hello");
  RVString sentence = greeting + ", " + "Rovani";
  Show("joined", sentence);
  Show("class type", sentence.ObjectsClassType());

  RVString path = RVString("/usr/share/doc").StringByAppendingPathComponent("readme.txt");
  Show("path", path);
  Show("last component", path.LastPathComponent());
  Show("extension", path.PathExtension());

  RVString replaced =
      RVString("banana").StringByReplacingOccurrencesOfStringWithString("an", "AN");
  Show("replaced", replaced);

  RVRange found = sentence.RangeOfString("Rovani");
  RVLog("found \"Rovani\" at %u, length %u", found.Location(), found.Length());
  RVRange joined = RVRange(0, 10).UnionRange(RVRange(5, 2));
  RVLog("union of (0,10) and (5,2) is (%u,%u)", joined.Location(), joined.Length());

  RVDictionary settings;
  settings.SetObjectForKey(sentence, "greeting");
  settings.SetObjectForKey(RVNumber(3), "retries");
  settings.SetObjectForKey(RVString("a,b,c").ComponentsSeparatedByString(","), "tags");
  RVDictionary reread{RVData(settings)};  // through an XML property list
  RVLog("reread %u entries: retries=%d, %u tags, greeting is %@", reread.Count(),
        static_cast<int>(reread.NumberForKey("retries")), reread.ArrayForKey("tags").Count(),
        reread.StringForKey("greeting").Ref());

  RVURL docs(RVString("https://example.com/docs/index.html"));
  RVURL guide(docs, "guide/start.html");
  Show("resolved URL", guide.AbsoluteString());
  Show("relative to", guide.BaseURL().AbsoluteString());
  // Derivations apply path rules to the whole text, which fold the "//"
  // after the scheme into one "/".
  Show("one level up", guide.URLByDeletingLastPathComponent().AbsoluteString());
  Show("home file URL", RVURL::URLFromFilePath("~/notes.txt").AbsoluteString());

  RVString workDir = RVFileManager::TempDirectoryPath().StringByAppendingPathComponent(
      "rovani-example");
  RVFileManager::RemoveItemAtPath(workDir);  // a leftover from an earlier run, if any
  if (RVFileManager::CreateDirectoryAtPath(workDir)) {
    RVData(settings).WriteToFile(workDir.StringByAppendingPathComponent("settings.plist"));
    RVData(RVString("hello")).WriteToFile(workDir.StringByAppendingPathComponent("hello.txt"));
    RVArray plists;
    plists.AddObject(RVString("plist"));
    RVLog("%@ holds %u entries, property lists: %@", workDir.Ref(),
          RVFileManager::DirectoryContentsAtPath(workDir).Count(),
          RVFileManager::DirectoryContentsAtPathWithMatchingExtensions(workDir, plists)
              .ComponentsJoinedByString(", ")
              .Ref());
    RVFileManager::RemoveItemAtPath(workDir);
  }
  Show("bundle path", RVBundle::MainBundle().BundlePath());

  try {
    sentence.SubstringWithRange(RVRange(100, 5));
  } catch (RVError* error) {
    RVLog("caught %@", error->Description().Ref());
    delete error;
  }

  // A setting for the current user, read back typed, then cleared again
  // (an empty value removes the key).
  RVUserDefaults defaults = RVUserDefaults::StandardUserDefaults();
  defaults.SetIntegerForKey(3, "example.launches");
  RVLog("launches setting: %d", defaults.IntegerForKey("example.launches"));
  defaults.SetObjectForKey(RVObject(), "example.launches");
  // Settings written as JSON and read back.
  RVJsonTranslator translator;
  RVString json = translator.Encode(settings);
  RVLog("settings as JSON:\n%@", json.Ref());
  RVObject* parsed = translator.Parse(json);
  if (parsed != nullptr && parsed->IsTypeOfClass(RVDictionary::ClassType())) {
    RVDictionary& fromJson = *static_cast<RVDictionary*>(parsed);
    RVLog("from JSON: retries=%d, first tag %@", static_cast<int>(fromJson.NumberForKey("retries")),
          fromJson.ArrayForKey("tags").StringAtIndex(0).Ref());
  }
  delete parsed;

  RVData encoded = Base64Encoding::EncodeData(RVData(RVString("Rovani!")));
  RVLog("Base64 of \"Rovani!\": %@", RVString(encoded).Ref());
  Show("hash of \"abc\"", RVUtilities::HashAsString("abc"));
  Show("a new UUID", RVUtilities::CreateUUID());
  // Dates: calendar days keep the wall-clock time, intervals are exact.
  RVDate meeting = RVDate::DateFromMonthDayYearHourMinuteSecond(3, 7, 2009, 9, 30, 0.0);
  RVDate nextDay = meeting;
  nextDay.AddDays(1);
  RVDate dayLater = meeting;
  dayLater.AddTimeInterval(OneDayTimeInterval);
  RVDateFormatter stamp =
      RVDateFormatter::DateFormatterUsingDateFormat(RVDateFormat::MMddyyyyHHmmssSSSDateFormat());
  Show("meeting", stamp.StringFromDate(meeting));
  Show("a calendar day later", stamp.StringFromDate(nextDay));
  Show("86400 seconds later", stamp.StringFromDate(dayLater));
  RVDate read = RVDate::DateFromString("12/25/2008");
  RVLog("12/25/2008 is %d days after the reference date, read as %@",
        read.DaysSinceReferenceDate(), read.Description().Ref());
  Show("today", RVDate::Today().Description());

  std::printf("example finished\n");
  return 0;
}
