// One application run for the user-defaults tests; its ID is its process
// name, so its all-users file is <dir>/rovani_defaults_worker.plist.
//
//   keys <first> <count>     key<i> = "value<i>" in the all-users store, each
//                            synchronised; exits 1 if any Synchronize fails
//   put|check user|all       stores ExactValues and kDates in one store, or
//                            exits 1 naming each that reads back otherwise
//   set <app> <key> <value>  in app's current user store ("-" removes);
//                            prints Synchronize's answer
//   get <app> [--wait] <key>... prints each value or "<none>"; with --wait,
//                            again after a line on stdin
//   big <app> <MB> <key>...  each key a text of MB megabytes, then "small";
//                            prints Synchronize's answer
//   setloop <app>            key<i> = "value<i>", printing i after each set
//   limit <bytes> <command...> the command under that file-size limit
//   watch <count>            reads the all-users file until it holds count
//                            keys; exits 1 if a read once it exists gives
//                            no dictionary or fewer keys than the one before
#include <Rovani/Rovani.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cfloat>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

namespace {

// GNUstep's standard user defaults, made on first use, keep part of them out
// of the leak checker's sight: made here first, under the name
// tests/sanitize/lsan.supp gives. The asm keeps this frame off a tail call.
__attribute__((noinline)) void SetUpGNUstepDefaultsOnce() {
  delete RVUserDefaults::StandardUserDefaults().ObjectForKey("rovani.worker.none");
  asm volatile("" ::: "memory");
}

std::string Text(const RVString& s) {
  RVData bytes(s);
  return std::string(static_cast<const char*>(bytes.Bytes()), bytes.Length());
}

// Values the platform's own store used to change on their way through: an
// escape, the empty key, integer extremes, U+FEFF, CR, reals of 17 digits.
RVDictionary ExactValues() {
  RVDictionary values;
  values.SetObjectForKey(RVString("\\U0041 stays text"), "escaped");
  values.SetObjectForKey(RVString("empty key"), "");
  values.SetObjectForKey(RVNumber(LONG_MIN), "int64");
  RVDictionary inner;
  inner.SetObjectForKey(RVString("a,b").ComponentsSeparatedByString(","), "list");
  inner.SetObjectForKey(RVData::DataWithBytes("\0\xff", 2), "data");
  values.SetObjectForKey(inner, "nested");
  values.SetObjectForKey(RVString("\xF0\x9F\x98\x80 smile"), "\xF0\x9F\x98\x80");
  // From UTF-16: text made from UTF-8 loses a leading U+FEFF.
  values.SetObjectForKey(RVString(reinterpret_cast<const wchar_t*>(u"\uFEFFmarked")),
                         RVString(reinterpret_cast<const wchar_t*>(u"\uFEFF")));
  values.SetObjectForKey(RVString("a\r\nb\rc"), "cr");
  values.SetObjectForKey(RVNumber(DBL_MAX), "dblmax");
  values.SetObjectForKey(RVNumber(0.1f), "float");
  values.SetObjectForKey(RVNumber(123456789.12345679), "double");
  values.SetObjectForKey(RVNumber(ULONG_MAX), "uint64");
  return values;
}

// Dates are kept to the second, floored.
const struct { const char* key; double set, stored; } kDates[] = {
    {"date", 1234567890.75, 1234567890.0}, {"early", -1000.5, -1001.0}};

int Report(const std::string& key, const std::string& found) {
  return std::printf("%s: %s\n", key.c_str(), found.c_str()) > 0;
}

// Stores ExactValues and the dates, or checks that they read back.
int PutOrCheck(bool put, const std::string& store) {
  RVUserDefaults defaults(store == "all");
  RVDictionary values = ExactValues();
  RVArray keys = values.KeyEnumerator().AllObjects();
  int wrong = 0;
  for (unsigned int i = 0; i < keys.Count(); ++i) {
    RVString key = keys.StringAtIndex(i);
    std::unique_ptr<RVObject> expected(values.ValueForKey(key));
    std::unique_ptr<RVObject> found(put ? nullptr : defaults.ObjectForKey(key));
    if (put) {
      defaults.SetObjectForKey(*expected, key);
    } else if (found == nullptr || !(*found == *expected)) {
      wrong += Report(Text(key), found == nullptr ? "<none>" : Text(found->Description()));
    }
  }
  for (const auto& date : kDates) {
    if (put) {
      defaults.SetObjectForKey(RVDate::DateWithTimeIntervalSinceReferenceDate(date.set), date.key);
    } else if (defaults.DateForKey(date.key).TimeIntervalSinceRefereceDate() != date.stored) {
      wrong += Report(date.key, Text(defaults.DateForKey(date.key).Description()));
    }
  }
  if (put && store == "all" && !defaults.Synchronize()) return 1;
  return wrong == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  RVAutoreleasePool pool;
  setvbuf(stdout, nullptr, _IONBF, 0);
  SetUpGNUstepDefaultsOnce();
  if (argc > 3 && std::string(argv[1]) == "limit") {
    // The shared log may be past the limit already: this one goes nowhere.
    int none = open("/dev/null", O_WRONLY);
    if (none >= 0) dup2(none, STDERR_FILENO);
    struct rlimit limit = {std::strtoul(argv[2], nullptr, 10), RLIM_INFINITY};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 3;
    argv += 2;
    argc -= 2;
  }
  if (argc < 2) return 2;
  std::string command = argv[1];
  if (command == "set" && argc == 5) {
    RVUserDefaults defaults(RVString(argv[2]), false);
    if (std::string(argv[4]) == "-") defaults.SetObjectForKey(RVObject(), RVString(argv[3]));
    else defaults.SetObjectForKey(RVString(argv[4]), RVString(argv[3]));
    std::printf("%d\n", defaults.Synchronize() ? 1 : 0);
    return 0;
  }
  if (command == "get" && argc >= 4) {
    RVUserDefaults defaults(RVString(argv[2]), false);
    bool wait = std::string(argv[3]) == "--wait";
    for (int round = 0; round < (wait ? 2 : 1); ++round) {
      if (round == 1) {
        std::string line;
        std::getline(std::cin, line);
      }
      for (int i = wait ? 4 : 3; i < argc; ++i) {
        RVString value = defaults.StringForKey(RVString(argv[i]));
        std::printf("%s\n", value.IsEmpty() ? "<none>" : Text(value).c_str());
      }
    }
    return 0;
  }
  if (command == "big" && argc >= 5) {
    RVUserDefaults defaults(RVString(argv[2]), false);
    std::string text(std::strtoul(argv[3], nullptr, 10) << 20, 'x');
    for (int i = 4; i < argc; ++i) defaults.SetObjectForKey(RVString(text.c_str()), RVString(argv[i]));
    defaults.SetObjectForKey(RVString("yes"), "small");
    std::printf("%d\n", defaults.Synchronize() ? 1 : 0);
    return 0;
  }
  if (command == "setloop" && argc == 3) {
    RVUserDefaults defaults(RVString(argv[2]), false);
    for (int i = 0;; ++i) {
      RVAutoreleasePool each;
      std::string n = std::to_string(i);
      defaults.SetObjectForKey(RVString(("value" + n).c_str()), RVString(("key" + n).c_str()));
      std::printf("%d\n", i);
    }
  }
  if (command == "keys" && argc == 4) {
    RVUserDefaults allUsers = RVUserDefaults::StandardAllUsersDefaults();
    int first = std::atoi(argv[2]), count = std::atoi(argv[3]);
    bool ok = true;
    for (int i = first; i < first + count; ++i) {
      RVAutoreleasePool each;
      std::string n = std::to_string(i);
      allUsers.SetObjectForKey(RVString(("value" + n).c_str()), RVString(("key" + n).c_str()));
      ok = allUsers.Synchronize() && ok;
    }
    return ok ? 0 : 1;
  }
  if ((command == "put" || command == "check") && argc == 3) {
    return PutOrCheck(command == "put", argv[2]);
  }
  if (command == "watch" && argc == 3) {
    unsigned long expected = std::strtoul(argv[2], nullptr, 10);
    const char* dir = std::getenv("ROVANI_ALL_USERS_DEFAULTS_DIR");
    RVString path = RVString(dir != nullptr ? dir : "") + "/rovani_defaults_worker.plist";
    unsigned long seen = 0;
    while (seen < expected) {
      RVAutoreleasePool each;
      if (RVFileManager::ItemExistsAtPath(path)) {
        unsigned long count = RVDictionary::DictionaryWithContentsOfFile(path).Count();
        if (count == 0 || count < seen) return std::printf("%lu keys after %lu\n", count, seen), 1;
        seen = count;
      } else if (seen > 0) {
        return 1;
      }
      usleep(seen > 0 ? 50000 : 1000);  // leave the writers most of the machine
    }
    return 0;
  }
  return 2;
}
