// Errors and empty results: what a member answers when it has nothing, an
// RVError when the caller must see why, and the one member that throws.
#include <Rovani/Rovani.h>

#include <cstdio>
#include <memory>
#include <string>

static int Check(bool ok, const char* what) {
  std::printf("%-55s %s\n", what, ok ? "yes" : "NO");
  return ok ? 0 : 1;
}

int main() {
  RVAutoreleasePool pool;
  int failures = 0;

  //! [empty]
  RVDictionary settings;
  settings.SetObjectForKey(RVString("8080"), "port");
  RVString missing = settings.StringForKey("host");   // no such key
  RVNumber wrongClass = settings.NumberForKey("port");  // a string, not a number
  failures += Check(missing.IsEmpty(), "a missing key gives an empty string");
  failures += Check(wrongClass.IsEmpty(), "a value of another class gives an empty number");
  failures += Check(settings.StringForKey("port").IntValue() == 8080, "the string reads as 8080");
  //! [empty]

  //! [null]
  RVJsonTranslator json;
  std::unique_ptr<RVObject> root(json.Parse("{ not json"));  // logs why, answers null
  failures += Check(root == nullptr, "text that does not parse gives null");
  //! [null]

  //! [rverror]
  RVDictionary document;
  document.SetObjectForKey(RVString("value"), "key");
  RVError error = json.EncodeToFilePath(document, "/nonexistent-directory/out.json");
  if (error.IsError()) {
    std::printf("could not write: code %d in %s\n", error.Code(),
                error.Domain().DataContainingUTF8CString().CharPointer());
  }
  failures += Check(error.IsError() && error.Domain() == "RVJsonTranslatorDomain",
                    "an unwritable path gives an error");
  //! [rverror]

  //! [make]
  RVError none = MakeRVError(0, "nothing wrong", "", "ExampleDomain");
  RVError some = MakeRVError(7, "The disk is full", "Free some space", "ExampleDomain");
  failures += Check(!none.IsError(), "code 0 makes no error");
  failures += Check(some.Code() == 7, "code 7 makes an error");
  //! [make]

  //! [where]
  RVFormatError where;
  std::unique_ptr<RVObject> list(RVPropertyList::Read("<plist>\n  <dict><key>a</key><integer>12x</integer></dict></plist>", &where));
  std::printf("settings.plist:%s\n", where.Description().c_str());  // 2:21: not an integer ...
  failures += Check(list == nullptr && where.line == 2 && where.column == 21,
                    "a malformed property list says its line and column");

  std::unique_ptr<RVObject> parsed(RVJsonDocument::Parse("{\"a\": {\"b\": null}}", &where));
  std::string written = RVPropertyList::Write(*parsed, RVDocumentFormat::kBinaryPropertyList, &where);
  std::printf("refused: %s\n", where.Description().c_str());  // a.b: a null value
  failures += Check(written.empty() && where.keyPath == "a.b",
                    "a value a writer refuses is named by its key path");
  //! [where]

  //! [throw]
  try {
    RVString("short").SubstringWithRange(RVRange(2, 10));
    failures += Check(false, "a range past the end throws");
  } catch (RVError* thrown) {  // the catcher owns the pointer
    std::unique_ptr<RVError> owned(thrown);
    failures += Check(owned->IsError(), "a range past the end throws an RVError*");
  }
  //! [throw]

  return failures == 0 ? 0 : 1;
}
