// Built against an installed Rovani, by find_package and by pkg-config.
#include <Rovani/Rovani.h>

#include <cstdio>

int main() {
  RVAutoreleasePool pool;
  RVDictionary settings;
  settings.SetObjectForKey(RVString("downstream"), "name");
  RVDictionary back{RVData(settings)};
  if (!(back.StringForKey("name") == "downstream")) return 1;
  std::printf("downstream: ok\n");
  return 0;
}
