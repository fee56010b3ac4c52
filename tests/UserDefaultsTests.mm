#import <Foundation/Foundation.h>

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cfloat>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <Rovani/RVBool.h>
#include <Rovani/RVDate.h>
#include <Rovani/RVUserDefaults.h>

#include "support/LogCapture.h"
#include "support/TestSupport.h"

// Foundation equality, with both sides described when it fails.
#define EXPECT_NSEQ(actual, expected)                                              \
  EXPECT_TRUE([(id)(actual) isEqual:(id)(expected)])                              \
      << [[(id)(actual) description] UTF8String] << " is not "                  \
      << [[(id)(expected) description] UTF8String]

namespace {

// The binary's application ID, as the library works it out.
std::string ApplicationID() {
  NSString* identifier = [[NSBundle mainBundle] bundleIdentifier];
  if ([identifier length] == 0) identifier = [[NSProcessInfo processInfo] processName];
  return [identifier UTF8String];
}

NSDictionary* PlistAt(const std::string& path) {
  return [NSDictionary dictionaryWithContentsOfFile:[NSString stringWithUTF8String:path.c_str()]];
}

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

unsigned Mode(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0 ? (info.st_mode & 07777) : 0;
}

// Points this process's all-users store at dir.
void UseAllUsersDirectory(const std::string& dir) {
  setenv("ROVANI_ALL_USERS_DEFAULTS_DIR", dir.c_str(), 1);
}

// Worker processes with stores of their own under one scratch directory:
// user defaults in <scratch>/user, all users' in <scratch>/all.
class Workers {
 public:
  Workers() {
    WriteFile(scratch_.File("GNUstep.conf"), "GNUSTEP_USER_DEFAULTS_DIR=" + UserDir() + "\n");
  }

  std::string UserDir() const { return scratch_.File("user"); }
  std::string AllDir() const { return scratch_.File("all"); }
  std::string AllUsersFile() const { return AllDir() + "/rovani_defaults_worker.plist"; }

  // Starts the worker, its output going to <scratch>/output; in the time
  // zone zone when one is given.
  pid_t Start(std::vector<std::string> args, const std::string& zone = "") {
    args.insert(args.begin(), ROVANI_DEFAULTS_WORKER);
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(&a[0]);
    argv.push_back(nullptr);
    const std::string config = scratch_.File("GNUstep.conf"), all = AllDir();
    int output = open(scratch_.File("output").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    pid_t pid = fork();
    if (pid == 0) {
      setenv("GNUSTEP_CONFIG_FILE", config.c_str(), 1);
      setenv("ROVANI_ALL_USERS_DEFAULTS_DIR", all.c_str(), 1);
      if (!zone.empty()) setenv("GNUSTEP_TZ", zone.c_str(), 1);
      if (dup2(output, STDOUT_FILENO) >= 0) execv(argv[0], argv.data());
      _exit(127);
    }
    close(output);
    return pid;
  }

  static int Wait(pid_t pid) {
    int status = 0;
    if (waitpid(pid, &status, 0) != pid) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

  // Runs the worker to the end: its exit status, and its output (less the
  // final newline) in *text.
  int Run(const std::vector<std::string>& args, std::string* text = nullptr,
          const std::string& zone = "") {
    int status = Wait(Start(args, zone));
    if (text != nullptr) {
      std::ifstream output(scratch_.File("output"));
      text->assign(std::istreambuf_iterator<char>(output), std::istreambuf_iterator<char>());
      if (!text->empty() && text->back() == '\n') text->pop_back();
    }
    return status;
  }

 private:
  ScratchDir scratch_;
};

}  // namespace

TEST(UserDefaults, TypedGettersAndTheirKeptQuirks) {
  RVUserDefaults defaults = RVUserDefaults::StandardUserDefaults();
  EXPECT_FALSE(defaults.AccessingAllUsersDefaults());
  EXPECT_TRUE(RVUserDefaults::StandardAllUsersDefaults().AccessingAllUsersDefaults());
  EXPECT_EQ(Text(defaults.ObjectsClassType()), "4RVUserDefaults");
  EXPECT_TRUE(defaults.IsEmpty());

  defaults.SetObjectForKey(RVString("text"), "typed.string");
  defaults.SetIntegerForKey(2, "typed.two");
  defaults.SetDoubleForKey(2.5, "typed.double");
  defaults.SetBoolForKey(true, "typed.bool");
  defaults.SetObjectForKey(RVString("1,2,3").ComponentsSeparatedByString(","), "typed.array");
  NSArray* numbers = @[ @1, @2, @3 ];
  defaults.SetObjectForKey(RVArray(numbers), "typed.numbers");
  defaults.SetObjectForKey(DataFromText("bytes"), "typed.data");
  defaults.SetObjectForKey(RVDate::DateWithTimeIntervalSinceReferenceDate(90), "typed.date");

  EXPECT_EQ(Text(defaults.StringForKey("typed.string")), "text");
  EXPECT_EQ(defaults.IntegerForKey("typed.two"), 2);
  EXPECT_EQ(defaults.FloatForKey("typed.double"), 2.5f);
  EXPECT_TRUE(defaults.BoolForKey("typed.bool"));
  EXPECT_TRUE(defaults.BoolForKey("typed.two"));
  EXPECT_FALSE(defaults.BoolForKey("typed.string"));
  EXPECT_EQ(defaults.IntegerForKey("typed.string"), 0);
  EXPECT_EQ(defaults.ArrayForKey("typed.array").Count(), 3u);
  EXPECT_EQ(defaults.StringArrayForKey("typed.numbers").Count(), 3u);
  EXPECT_EQ(defaults.DataForKey("typed.data").Length(), 5u);
  EXPECT_EQ(defaults.DateForKey("typed.date").TimeIntervalSinceRefereceDate(), 90.0);
  EXPECT_TRUE(defaults.DateForKey("typed.data").IsEmpty());
  EXPECT_TRUE(defaults.ArrayForKey("typed.string").IsEmpty());
  EXPECT_EQ(defaults.DoubleForKey("typed.missing"), 0.0);

  // A value of another type leaks the handle made for it (one more
  // reference on the stored object); BoolForKey never does.
  RVNumber two = defaults.NumberForKey("typed.two");
  unsigned int before = two.RetainCount();
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  EXPECT_TRUE(defaults.StringForKey("typed.two").IsEmpty());
  [pool drain];
  EXPECT_EQ(two.RetainCount(), before + 1);
  pool = [[NSAutoreleasePool alloc] init];
  defaults.BoolForKey("typed.two");
  [pool drain];
  EXPECT_EQ(two.RetainCount(), before + 1);

  EXPECT_FALSE(defaults.RemoveUserDefaults());
  // The library's own booleans are no property-list objects: not stored.
  defaults.SetObjectForKey(RVBool(true), "typed.boolnumber");
  EXPECT_EQ(defaults.ObjectForKey("typed.boolnumber"), nullptr);
}

// The current user's store: what reads back in the setting process is the
// object as set; the file is the store's own; what cannot be stored is not;
// a file replaced from outside is read again.
TEST(UserDefaults, CurrentUserValuesReadBackAsSet) {
  // A domain no other test (nor test process) writes: its file is replaced
  // by hand below.
  RVUserDefaults defaults("org.rovani.tests.exact", false);
  defaults.SetObjectForKey(RVNumber(0.1f), "exact.float");
  defaults.SetObjectForKey(RVDate::DateWithTimeIntervalSinceReferenceDate(90.25), "exact.date");
  EXPECT_STREQ([(NSNumber*)defaults.NumberForKey("exact.float").Ref() objCType], "f");
  EXPECT_EQ(defaults.DateForKey("exact.date").TimeIntervalSinceRefereceDate(), 90.25);

  // Each set is in the store at once; a synchronise folds it into the file.
  EXPECT_TRUE(defaults.Synchronize());
  NSString* root = GSDefaultsRootForUser(NSUserName());
  std::string file = std::string([root fileSystemRepresentation]) + "/Rovani/org.rovani.tests.exact.plist";
  NSDictionary* stored = PlistAt(file);
  EXPECT_NE([stored objectForKey:@"exact.date"], nil);
  EXPECT_EQ([[NSUserDefaults standardUserDefaults] persistentDomainForName:@"org.rovani.tests.exact"],
            nil);

  struct stat before, after;
  ASSERT_EQ(stat(file.c_str(), &before), 0);
  defaults.SetObjectForKey(RVObject([NSNull null]), "exact.null");
  EXPECT_EQ(defaults.ObjectForKey("exact.null"), nullptr);
  ASSERT_EQ(stat(file.c_str(), &after), 0);
  EXPECT_EQ(before.st_ino, after.st_ino);

  NSMutableDictionary* replaced = [NSMutableDictionary dictionaryWithDictionary:stored];
  [replaced setObject:@"from outside" forKey:@"exact.outside"];
  [replaced removeObjectForKey:@"exact.float"];
  ASSERT_TRUE(RVDictionary(replaced).WriteToFile(file.c_str()));
  EXPECT_EQ(Text(defaults.StringForKey("exact.outside")), "from outside");
  EXPECT_EQ(defaults.ObjectForKey("exact.float"), nullptr);
  for (const char* key : {"exact.outside", "exact.date"}) defaults.SetObjectForKey(RVObject(), key);
  EXPECT_EQ(defaults.ObjectForKey("exact.date"), nullptr);
}

TEST(UserDefaults, AllUsersChangesPendUntilSynchronized) {
  ScratchDir scratch;
  std::string dir = scratch.File("made/defaults");
  std::string file = dir + "/" + ApplicationID() + ".plist";
  UseAllUsersDirectory(dir);
  RVUserDefaults allUsers = RVUserDefaults::StandardAllUsersDefaults();
  RVUserDefaults standard = RVUserDefaults::StandardUserDefaults();
  standard.SetObjectForKey(RVObject(), "pend.key");  // left by an earlier run

  allUsers.SetObjectForKey(RVString("machine"), "pend.key");
  EXPECT_EQ(Text(allUsers.StringForKey("pend.key")), "machine");
  EXPECT_NE(access(file.c_str(), F_OK), 0);

  // A standard-store object flushes the all-users store; modes do not
  // depend on the umask.
  mode_t oldMask = umask(077);
  EXPECT_TRUE(standard.Synchronize());
  umask(oldMask);
  EXPECT_EQ(Mode(scratch.File("made")), 0755u);
  EXPECT_EQ(Mode(dir), 0755u);
  EXPECT_EQ(Mode(file), 0644u);
  EXPECT_EQ(Text(RVString(RVData::DataWithContentsOfFile(file.c_str())).SubstringToIndex(5)),
            "<?xml");
  EXPECT_NSEQ([PlistAt(file) objectForKey:@"pend.key"], @"machine");

  // The current user's value comes first; removal leaves it alone.
  standard.SetObjectForKey(RVString("mine"), "pend.key");
  EXPECT_EQ(Text(allUsers.StringForKey("pend.key")), "mine");
  EXPECT_TRUE(standard.RemoveObjectForKey("pend.key"));
  EXPECT_TRUE(allUsers.Synchronize());
  EXPECT_EQ([PlistAt(file) objectForKey:@"pend.key"], nil);
  EXPECT_EQ(Text(allUsers.StringForKey("pend.key")), "mine");
  standard.SetObjectForKey(RVObject(), "pend.key");
  EXPECT_EQ(allUsers.ObjectForKey("pend.key"), nullptr);

  // A value that is no property-list object stays pending, named in a log
  // line, and holds nothing else back.
  allUsers.SetObjectForKey(RVString("later"), "pend.kept");
  allUsers.SetObjectForKey(RVBool(true), "pend.bad");
  {
    LogCapture log;
    EXPECT_FALSE(allUsers.Synchronize());
    EXPECT_EQ(log.Lines().size(), 1u);
    EXPECT_NE(log.Lines().at(0).find("pend.bad"), std::string::npos);
  }
  EXPECT_NSEQ([PlistAt(file) objectForKey:@"pend.kept"], @"later");
  allUsers.SetObjectForKey(RVObject(), "pend.bad");
  allUsers.SetObjectForKey(RVString("later"), "pend.kept");

  // A directory that cannot be made keeps everything pending.
  WriteFile(scratch.File("plain"), "a file");
  UseAllUsersDirectory(scratch.File("plain/defaults"));
  EXPECT_FALSE(allUsers.Synchronize());
  UseAllUsersDirectory(dir);
  EXPECT_TRUE(allUsers.Synchronize());
  EXPECT_NSEQ([PlistAt(file) objectForKey:@"pend.kept"], @"later");
  EXPECT_EQ(Text(allUsers.StringForKey("pend.kept")), "later");
}

TEST(UserDefaults, DamagedAllUsersFileReadsAsNoValuesAndIsReplaced) {
  const std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>"
      "<key>damaged.key</key><string>lost</string></dict></plist>";
  const std::string damaged[] = {"", xml.substr(0, xml.size() / 2 + 20), "\x01\x02\xff garbage",
                                 "\"just a string\""};
  RVUserDefaults allUsers = RVUserDefaults::StandardAllUsersDefaults();
  for (const std::string& contents : damaged) {
    ScratchDir scratch;
    UseAllUsersDirectory(scratch.Path());
    std::string file = scratch.File(ApplicationID() + ".plist");
    WriteFile(file, contents);
    EXPECT_EQ(allUsers.ObjectForKey("damaged.key"), nullptr);
    allUsers.SetObjectForKey(RVString("fresh"), "damaged.after");
    EXPECT_TRUE(allUsers.Synchronize());
    EXPECT_NSEQ(PlistAt(file), @{@"damaged.after" : @"fresh"});
  }
}

// Eight processes synchronise keys of their own one at a time while a
// reader keeps reading the file: every read parses, no write is lost.
TEST(UserDefaultsProcesses, ConcurrentWritersLoseNoKeyAndReadersSeeWholeFiles) {
  Workers workers;
  pid_t reader = workers.Start({"watch", "4000"});
  std::vector<pid_t> running;
  for (int i = 0; i < 8; ++i) {
    running.push_back(workers.Start({"keys", std::to_string(i * 500), "500"}));
  }
  bool written = true;
  for (pid_t pid : running) {
    int status = Workers::Wait(pid);
    EXPECT_EQ(status, 0);
    written = written && status == 0;
  }
  if (!written) kill(reader, SIGKILL);
  EXPECT_EQ(Workers::Wait(reader), 0);
  NSDictionary* values = PlistAt(workers.AllUsersFile());
  ASSERT_EQ([values count], 4000u);
  for (int i = 0; i < 4000; ++i) {
    NSString* key = [NSString stringWithFormat:@"key%d", i];
    EXPECT_NSEQ([values objectForKey:key], ([NSString stringWithFormat:@"value%d", i])) << i;
  }
}

// One process reads what another wrote. What GNUstep kept for the
// application before is read with the library's reader until the first
// write takes it over; GNUstep's file then leaves its sight, so a key
// removed afterwards stays removed.
TEST(UserDefaultsProcesses, NextProcessReadsWhatOneWroteAndWhatGNUstepKept) {
  Workers workers;
  mkdir(workers.UserDir().c_str(), 0700);
  std::string old = workers.UserDir() + "/rovani_defaults_worker.plist";
  WriteFile(old, "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>"
                 "<key>kept</key><string>\\U0041</string><key>dropped</key><string>soon</string>"
                 "</dict></plist>");
  std::string output;
  EXPECT_EQ(workers.Run({"read", "kept"}, &output), 0);
  EXPECT_EQ(output, "\\U0041");  // GNUstep's reader would give "A"
  EXPECT_EQ(workers.Run({"write", "new", "value"}), 0);
  // The current user's file is in a directory of its own, where GNUstep
  // neither reads nor writes.
  EXPECT_EQ(access((workers.UserDir() + "/Rovani/rovani_defaults_worker.plist").c_str(), F_OK), 0);
  EXPECT_NE(access(old.c_str(), F_OK), 0);
  EXPECT_EQ(access((workers.UserDir() + "/Rovani/rovani_defaults_worker.plist.imported").c_str(),
                   F_OK), 0);
  EXPECT_EQ(workers.Run({"remove", "dropped"}), 0);
  EXPECT_EQ(workers.Run({"read", "dropped"}, &output), 0);
  EXPECT_EQ(output, "<none>");
  EXPECT_EQ(workers.Run({"read", "kept"}, &output), 0);
  EXPECT_EQ(output, "\\U0041");
}

// Each store gives a later process exactly what was set, whatever the time
// zones of the process that wrote and the one that reads, and a process in
// yet another zone that rewrites the file changes none of it.
TEST(UserDefaultsProcesses, EveryValueCrossesProcessesAndTimeZonesExactly) {
  for (std::string store : {"user", "all"}) {
    Workers workers;
    std::string output;
    std::vector<std::string> put = {"put", store}, check = {"check", store};
    EXPECT_EQ(workers.Run(put, nullptr, "America/New_York"), 0) << store;
    EXPECT_EQ(workers.Run(check, &output, "Asia/Kolkata"), 0) << store << ":\n" << output;
    EXPECT_EQ(workers.Run({"touch", store}, nullptr, "Pacific/Chatham"), 0) << store;
    EXPECT_EQ(workers.Run(check, &output, "UTC"), 0) << store << ":\n" << output;
  }
}

TEST(UserDefaults, NamedDomainAndItsWholeContents) {
  ScratchDir scratch;
  UseAllUsersDirectory(scratch.File("all"));
  RVUserDefaults mine("com.example.named", false);
  RVUserDefaults everyone("com.example.named", true);
  EXPECT_TRUE(everyone.AccessingAllUsersDefaults());
  EXPECT_EQ(mine.DictionaryRepresentation().Count(), 0u);

  // Pending all-users values count; the current user's win.
  everyone.SetObjectForKey(RVString("machine"), "shared");
  everyone.SetObjectForKey(RVString("machine"), "only.machine");
  mine.SetObjectForKey(RVString("mine"), "shared");
  RVDictionary whole = everyone.DictionaryRepresentation();
  EXPECT_EQ(whole.Count(), 2u);
  EXPECT_EQ(Text(whole.StringForKey("shared")), "mine");
  EXPECT_EQ(Text(whole.StringForKey("only.machine")), "machine");
  EXPECT_TRUE(everyone.Synchronize());
  EXPECT_NSEQ([PlistAt(scratch.File("all/com.example.named.plist")) objectForKey:@"shared"],
              @"machine");

  // Only the domain: neither this program's own settings nor its arguments.
  RVUserDefaults::StandardUserDefaults().SetIntegerForKey(1, "named.own");
  EXPECT_EQ(mine.DictionaryRepresentation().ObjectsClassTypeForKey("named.own").Length(), 0u);
  RVUserDefaults::StandardUserDefaults().SetObjectForKey(RVObject(), "named.own");

  mine.SetObjectForKey(RVObject(), "shared");
  everyone.RemoveObjectForKey("shared");
  everyone.RemoveObjectForKey("only.machine");
  EXPECT_TRUE(everyone.Synchronize());
  EXPECT_EQ(mine.DictionaryRepresentation().Count(), 0u);
}
