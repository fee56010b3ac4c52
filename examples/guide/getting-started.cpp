// Getting started: a pool, a few handles, a settings document read from
// JSON, changed, written as an XML property list and read back.
#include <Rovani/Rovani.h>

#include <cstdio>
#include <memory>

#include <unistd.h>

int main() {
  //! [pool]
  RVAutoreleasePool pool;  // first thing in main(), and in every thread
  //! [pool]

  //! [handles]
  RVString name("Rovani");
  RVString greeting = "Hello, " + name;
  RVNumber retries(3);
  RVArray tags = RVString("linux,gnustep").ComponentsSeparatedByString(",");

  RVDictionary settings;
  settings.SetObjectForKey(greeting, "greeting");
  settings.SetObjectForKey(retries, "retries");
  settings.SetObjectForKey(tags, "tags");
  std::printf("%u keys, greeting: %s\n", settings.Count(),
              settings.StringForKey("greeting").DataContainingUTF8CString().CharPointer());
  //! [handles]

  //! [json]
  RVJsonTranslator json;
  std::unique_ptr<RVObject> root(
      json.Parse(R"({"window": {"width": 1280, "fullscreen": false}, "owner": "Zoë"})"));
  if (!root || !root->IsTypeOfClass(RVDictionary::ClassType())) return 1;
  RVDictionary document(root->Ref());
  RVDictionary window = document.DictionaryForKey("window");
  int width = window.NumberForKey("width");
  bool fullscreen = window.BooleanForKey("fullscreen");
  //! [json]
  if (width != 1280 || fullscreen) return 1;

  //! [plist]
  settings.AddDictionary(document);
  RVString path = RVFileManager::TempDirectoryPath().StringByAppendingPathComponent(
      RVString::StringWithFormat("rovani-guide-%d.plist", static_cast<int>(getpid())));
  if (!settings.WriteToFileAtomically(path)) return 1;
  RVDictionary reread = RVDictionary::DictionaryWithContentsOfFile(path);
  RVFileManager::RemoveItemAtPath(path);
  std::printf("read back %u keys; owner is %s\n", reread.Count(),
              reread.StringForKey("owner").DataContainingUTF8CString().CharPointer());
  //! [plist]
  return reread.Count() == 5 && reread.StringForKey("owner") == "Zoë" ? 0 : 1;
}
