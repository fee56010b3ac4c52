// A plain C++ program against the installed headers and library: settings
// through JSON, an XML property list and back, each step checked.
#include <Rovani/Rovani.h>

#include <cstdio>
#include <memory>

static int Fail(const char* what) {
  std::fprintf(stderr, "installed: %s\n", what);
  return 1;
}

int main() {
  RVAutoreleasePool pool;

  RVJsonTranslator json;
  std::unique_ptr<RVObject> root(json.Parse(R"({"name": "Zoë", "retries": 3, "tags": ["a", "b"]})"));
  if (!root || !root->IsTypeOfClass(RVDictionary::ClassType())) return Fail("JSON did not parse");
  RVDictionary settings(*static_cast<RVDictionary*>(root.get()));

  RVDictionary back{RVData(settings)};  // through an XML property list
  if (!(back.StringForKey("name") == "Zoë")) return Fail("name lost");
  if (static_cast<int>(back.NumberForKey("retries")) != 3) return Fail("retries lost");
  if (back.ArrayForKey("tags").Count() != 2) return Fail("tags lost");
  if (!back.StringForKey("missing").IsEmpty()) return Fail("missing key answered");

  std::printf("installed: ok, %u keys\n", back.Count());
  return 0;
}
