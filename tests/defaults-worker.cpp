// A separate process for the user-defaults tests: each run is one program
// using the library as any application would. Its application ID is its
// process name, so its all-users file is <dir>/rovani_defaults_worker.plist.
//
//   keys <first> <count>   sets key<i> = "value<i>" in the all-users store
//                          for i in [first, first + count), synchronising
//                          after each; exits 1 if any Synchronize fails
//   write <key> <value>    sets key in both stores, synchronises
//   read <key>             prints the string value of key, or "<none>"
//   churn <bytes>          forever: generation g, then a blob of <bytes>
//                          copies of the last digit of g, synchronised
#include <Rovani/Rovani.h>

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
  if (command == "churn" && argc == 3) {
    size_t size = std::strtoul(argv[2], nullptr, 10);
    for (unsigned long generation = 1;; ++generation) {
      RVAutoreleasePool each;
      std::string blob(size, static_cast<char>('0' + generation % 10));
      allUsers.SetObjectForKey(RVNumber(generation), "generation");
      allUsers.SetObjectForKey(RVString(blob.c_str()), "blob");
      if (!allUsers.Synchronize()) return 1;
    }
  }
  return 2;
}
