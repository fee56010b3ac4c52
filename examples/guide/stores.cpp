// Defaults stores, property lists and JSON: settings kept for the current
// user and for every user, and settings documents in both file formats.
//
// Run it with GNUSTEP_CONFIG_FILE and ROVANI_ALL_USERS_DEFAULTS_DIR pointing
// into a scratch directory (its test does), so it keeps away from your own
// settings and from the machine's.
#include <Rovani/Rovani.h>

#include <cstdio>
#include <memory>

#include <unistd.h>

static int Check(bool ok, const char* what) {
  std::printf("%-55s %s\n", what, ok ? "yes" : "NO");
  return ok ? 0 : 1;
}

int main() {
  RVAutoreleasePool pool;
  int failures = 0;

  //! [standard]
  RVUserDefaults defaults = RVUserDefaults::StandardUserDefaults();
  defaults.SetIntegerForKey(3, "launches");
  defaults.SetObjectForKey(RVString("dark"), "theme");
  failures += Check(defaults.IntegerForKey("launches") == 3, "the current user's value reads back");
  defaults.SetObjectForKey(RVObject(), "theme");  // an empty handle removes the key
  failures += Check(defaults.StringForKey("theme").IsEmpty(), "an empty value removed it");
  //! [standard]

  //! [all-users]
  RVUserDefaults machine = RVUserDefaults::StandardAllUsersDefaults();
  machine.SetObjectForKey(RVString("https://updates.example.com"), "updateServer");
  if (!machine.Synchronize()) {  // all-users changes wait for Synchronize
    std::printf("the all-users store could not be written; the change is still pending\n");
    return 1;
  }
  // Every store reads the current user's value first, then every user's.
  failures += Check(defaults.StringForKey("updateServer") == "https://updates.example.com",
                    "the current user sees the all-users value");
  //! [all-users]

  RVString dir = RVFileManager::TempDirectoryPath().StringByAppendingPathComponent(
      RVString::StringWithFormat("rovani-guide-%d", static_cast<int>(getpid())));
  if (!RVFileManager::CreateDirectoryAtPath(dir)) return 1;

  //! [plist]
  RVDictionary window;
  window.SetObjectForKey(RVNumber(1280), "width");
  window.SetObjectForKey(RVNumber(true), "fullscreen");
  RVDictionary settings;
  settings.SetObjectForKey(window, "window");
  settings.SetObjectForKey(RVDate::Now(), "saved");

  RVString plistPath = dir.StringByAppendingPathComponent("settings.plist");
  failures += Check(settings.WriteToFileAtomically(plistPath), "the property list was written");
  RVDictionary fromPlist = RVDictionary::DictionaryWithContentsOfFile(plistPath);
  failures += Check(static_cast<int>(fromPlist.DictionaryForKey("window").NumberForKey("width")) == 1280,
                    "the property list reads back");

  RVDictionary refused = settings;
  refused.SetObjectForKey(RVObject(), "nothing");  // stored as NSNull
  failures += Check(!refused.WriteToFile(plistPath), "a property list holds no null");
  failures += Check(RVDictionary::DictionaryWithContentsOfFile(plistPath).Count() == 2,
                    "the file is left as it was");
  //! [plist]

  //! [json]
  RVJsonTranslator json;
  RVString jsonPath = dir.StringByAppendingPathComponent("settings.json");
  RVDictionary forJson = settings;
  forJson.RemoveObjectForKey("saved");  // JSON has no dates: it would be null
  RVError error = json.EncodeToFilePath(forJson, jsonPath);
  failures += Check(!error.IsError(), "the JSON file was written");
  std::unique_ptr<RVObject> root(json.ParseFromFilePath(jsonPath));
  failures += Check(root && root->IsTypeOfClass(RVDictionary::ClassType()) &&
                        RVDictionary(root->Ref()).DictionaryForKey("window").Count() == 2,
                    "the JSON file reads back");
  //! [json]

  RVFileManager::RemoveItemAtPath(dir);
  return failures == 0 ? 0 : 1;
}
