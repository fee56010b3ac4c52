// A separate process for the user-defaults tests: each run is one program
// using the library as any application would. Its application ID is its
// process name, so its all-users file is <dir>/rovani_defaults_worker.plist.
//
//   keys <first> <count>   sets key<i> = "value<i>" in the all-users store
//                          for i in [first, first + count), synchronising
//                          after each; exits 1 if any Synchronize fails
//   write <key> <value>    sets key in both stores, synchronises
//   read <key>             prints the string value of key, or "<none>"
//   watch <count>          reads the all-users file until it holds count
//                          keys; exits 1 as soon as a read of the file, once
//                          it exists, gives no dictionary or fewer keys than
//                          the read before
#include <Rovani/Rovani.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

std::string Text(const RVString& s) {
  RVData bytes(s);
  return std::string(static_cast<const char*>(bytes.Bytes()), bytes.Length());
}

}  // namespace

int main(int argc, char** argv) {
  RVAutoreleasePool pool;
  if (argc < 2) return 2;
  std::string command = argv[1];
  RVUserDefaults allUsers = RVUserDefaults::StandardAllUsersDefaults();

  if (command == "keys" && argc == 4) {
    int first = std::atoi(argv[2]);
    int count = std::atoi(argv[3]);
    bool ok = true;
    for (int i = first; i < first + count; ++i) {
      RVAutoreleasePool each;
      std::string n = std::to_string(i);
      allUsers.SetObjectForKey(RVString(("value" + n).c_str()), RVString(("key" + n).c_str()));
      ok = allUsers.Synchronize() && ok;
    }
    return ok ? 0 : 1;
  }
  if (command == "write" && argc == 4) {
    RVString value(argv[3]);
    allUsers.SetObjectForKey(value, RVString(argv[2]));
    RVUserDefaults::StandardUserDefaults().SetObjectForKey(value,
                                                           RVString(argv[2]) + ".standard");
    return allUsers.Synchronize() ? 0 : 1;
  }
  if (command == "read" && argc == 3) {
    RVString value = allUsers.StringForKey(RVString(argv[2]));
    std::printf("%s\n", value.IsEmpty() ? "<none>" : Text(value).c_str());
    return 0;
  }
  if (command == "watch" && argc == 3) {
    unsigned long expected = std::strtoul(argv[2], nullptr, 10);
    const char* dir = std::getenv("ROVANI_ALL_USERS_DEFAULTS_DIR");
    RVString path = RVString(dir != nullptr ? dir : "") + "/rovani_defaults_worker.plist";
    unsigned long seen = 0;
    for (unsigned long reads = 1;; ++reads) {
      RVAutoreleasePool each;
      if (!RVFileManager::ItemExistsAtPath(path)) {
        if (seen > 0) return 1;
        usleep(1000);
        continue;
      }
      RVDictionary values = RVDictionary::DictionaryWithContentsOfFile(path);
      unsigned long count = values.Count();
      if (count == 0 || count < seen) {
        std::printf("read %lu: %lu keys after %lu\n", reads, count, seen);
        return 1;
      }
      seen = count;
      if (seen >= expected) {
        std::printf("%lu reads\n", reads);
        return 0;
      }
      usleep(50000);  // leave the writers most of the machine
    }
  }
  return 2;
}
