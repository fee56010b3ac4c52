// Any bytes as the all-users defaults file of an application: read as
// values or as none, and replaced by the next synchronise.
#include <Rovani/Rovani.h>

#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "FuzzSupport.h"

namespace {

std::string StoreFile() {
  static std::string file;
  if (file.empty()) {
    // The store named by the environment (scripts/fuzz and the corpus
    // replay give a scratch one), else a fresh one: never the machine's.
    const char* given = getenv("ROVANI_ALL_USERS_DEFAULTS_DIR");
    std::string dir;
    if (given != nullptr && *given != '\0') {
      dir = given;
    } else {
      char pattern[] = "/tmp/rovani-fuzz-defaults-XXXXXX";
      dir = mkdtemp(pattern);
      setenv("ROVANI_ALL_USERS_DEFAULTS_DIR", dir.c_str(), 1);
    }
    file = dir + "/" + [[[NSProcessInfo processInfo] processName] UTF8String] + ".plist";
  }
  return file;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  rovani_fuzz::Quiet();
  @autoreleasepool {
    std::string file = StoreFile();
    FILE* out = std::fopen(file.c_str(), "wb");
    if (out == nullptr) return 0;
    std::fwrite(data, 1, size, out);
    std::fclose(out);
    RVUserDefaults store = RVUserDefaults::StandardAllUsersDefaults();
    delete store.ObjectForKey("key");
    (void)store.StringForKey("other");
    store.SetObjectForKey(RVString("value"), "key");
    store.Synchronize();
  }
  return 0;
}
