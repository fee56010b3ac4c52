// Any bytes as a defaults store's files: the first byte splits the rest
// into a store file and a journal. The all-users store gets the file; the
// current user's store (only where GNUSTEP_CONFIG_FILE names a scratch
// configuration) gets both. Each is read (values or none), changed and
// synchronised: the change reads back, in this process and after the
// merge, and what could not be read is moved aside rather than lost.
#include <Rovani/Rovani.h>

#include <dirent.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "FuzzSupport.h"

namespace {

std::string AllUsersDirectory() {
  static std::string dir;
  if (dir.empty()) {
    // The store named by the environment (scripts/fuzz and the corpus
    // replay give a scratch one), else a fresh one: never the machine's.
    const char* given = getenv("ROVANI_ALL_USERS_DEFAULTS_DIR");
    if (given != nullptr && *given != '\0') {
      dir = given;
    } else {
      char pattern[] = "/tmp/rovani-fuzz-defaults-XXXXXX";
      dir = mkdtemp(pattern);
      setenv("ROVANI_ALL_USERS_DEFAULTS_DIR", dir.c_str(), 1);
    }
    mkdir(dir.c_str(), 0755);
  }
  return dir;
}

// The current user's store directory, or empty when the user's defaults
// are not a scratch configuration's.
std::string CurrentUserDirectory() {
  static std::string dir = [] {
    if (getenv("GNUSTEP_CONFIG_FILE") == nullptr) return std::string();
    NSString* root = GSDefaultsRootForUser(NSUserName());
    std::string made = std::string([root fileSystemRepresentation]) + "/Rovani";
    mkdir([root fileSystemRepresentation], 0700);
    mkdir(made.c_str(), 0700);
    return made;
  }();
  return dir;
}

void Write(const std::string& path, const uint8_t* data, size_t size) {
  unlink(path.c_str());
  if (FILE* out = std::fopen(path.c_str(), "wb")) {
    std::fwrite(data, 1, size, out);
    std::fclose(out);
  }
}

// Removes what the input left beside the files (damaged files kept aside).
void Sweep(const std::string& dir) {
  std::vector<std::string> names;
  if (DIR* listing = opendir(dir.c_str())) {
    while (struct dirent* entry = readdir(listing)) {
      if (std::string(entry->d_name).find(".damaged-") != std::string::npos)
        names.push_back(dir + "/" + entry->d_name);
    }
    closedir(listing);
  }
  for (const std::string& name : names) unlink(name.c_str());
}

void Exercise(RVUserDefaults& store) {
  delete store.ObjectForKey("key");
  (void)store.StringForKey("other");
  store.SetObjectForKey(RVString("value"), "key");
  if (store.StringForKey("key") != RVString("value")) abort();
  store.Synchronize();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  rovani_fuzz::Quiet();
  @autoreleasepool {
    size_t split = size > 1 ? 1 + data[0] * (size - 1) / 255 : size;
    std::string application = [[[NSProcessInfo processInfo] processName] UTF8String];
    std::string allUsers = AllUsersDirectory();
    Write(allUsers + "/" + application + ".plist", data + (size > 0 ? 1 : 0), split - (size > 0 ? 1 : 0));
    RVUserDefaults everyone = RVUserDefaults::StandardAllUsersDefaults();
    Exercise(everyone);
    Sweep(allUsers);

    std::string user = CurrentUserDirectory();
    if (!user.empty()) {
      std::string file = user + "/org.rovani.fuzz.journal.plist";
      Write(file, data + (size > 0 ? 1 : 0), split - (size > 0 ? 1 : 0));
      Write(file + ".journal", data + split, size - split);
      RVUserDefaults mine("org.rovani.fuzz.journal", false);
      Exercise(mine);
      // After the merge, the file itself holds the change.
      RVDictionary stored = RVDictionary::DictionaryWithContentsOfFile(file.c_str());
      if (stored.StringForKey("key") != RVString("value")) abort();
      Sweep(user);
    }
  }
  return 0;
}
