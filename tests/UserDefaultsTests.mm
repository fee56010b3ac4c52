#import <Foundation/Foundation.h>

#include <fcntl.h>
#include <glob.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
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

std::string ApplicationID() {
  NSString* identifier = [[NSBundle mainBundle] bundleIdentifier];
  if ([identifier length] == 0) identifier = [[NSProcessInfo processInfo] processName];
  return [identifier UTF8String];
}

NSDictionary* PlistAt(const std::string& path) {
  return [NSDictionary dictionaryWithContentsOfFile:[NSString stringWithUTF8String:path.c_str()]];
}

std::string Contents(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// The paths that match pattern.
std::vector<std::string> Glob(const std::string& pattern) {
  glob_t found;
  if (glob(pattern.c_str(), 0, nullptr, &found) != 0) return {};
  std::vector<std::string> paths(found.gl_pathv, found.gl_pathv + found.gl_pathc);
  globfree(&found);
  return paths;
}

// A property-list file holding the dictionary whose body is given.
std::string Plist(const std::string& body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>" + body +
         "</dict></plist>";
}

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

unsigned Mode(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0 ? (info.st_mode & 07777) : 0;
}

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
  std::string AllUsersFile() const { return scratch_.File("all/rovani_defaults_worker.plist"); }

  // Starts the worker in zone (if given); its stdout goes to <scratch>/output
  // or to the pipe *fromWorker, its stdin from the pipe *input if asked,
  // its log lines to <scratch>/log.
  pid_t Start(std::vector<std::string> args, const std::string& zone = "", int* input = nullptr,
              int* fromWorker = nullptr) {
    args.insert(args.begin(), ROVANI_DEFAULTS_WORKER);
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(&a[0]);
    argv.push_back(nullptr);
    const std::string config = scratch_.File("GNUstep.conf"), all = scratch_.File("all");
    int in[2] = {-1, -1}, out[2] = {-1, -1};
    if ((input && pipe2(in, O_CLOEXEC) != 0) || (fromWorker && pipe2(out, O_CLOEXEC) != 0)) return -1;
    int output = fromWorker != nullptr ? out[1]
                                       : open(scratch_.File("output").c_str(),
                                              O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    int log = open(scratch_.File("log").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    pid_t pid = fork();
    if (pid == 0) {
      setenv("GNUSTEP_CONFIG_FILE", config.c_str(), 1);
      setenv("ROVANI_ALL_USERS_DEFAULTS_DIR", all.c_str(), 1);
      if (!zone.empty()) setenv("GNUSTEP_TZ", zone.c_str(), 1);
      if (input != nullptr) dup2(in[0], STDIN_FILENO);
      dup2(log, STDERR_FILENO);
      if (dup2(output, STDOUT_FILENO) >= 0) execv(argv[0], argv.data());
      _exit(127);
    }
    close(output);
    close(log);
    if (input != nullptr) close(in[0]), *input = in[1];
    if (fromWorker != nullptr) *fromWorker = out[0];
    return pid;
  }

  std::string Log() const { return Contents(scratch_.File("log")); }

  static int Wait(pid_t pid) {
    int status = 0;
    if (waitpid(pid, &status, 0) != pid) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

  // Runs the worker to the end: its exit status; its output less the last
  // newline in *text.
  int Run(const std::vector<std::string>& args, std::string* text = nullptr,
          const std::string& zone = "") {
    int status = Wait(Start(args, zone));
    if (text != nullptr) {
      *text = Contents(scratch_.File("output"));
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
  EXPECT_TRUE(defaults.IsEmpty());
  defaults.SetObjectForKey(RVString("text"), "typed.string");
  defaults.SetIntegerForKey(2, "typed.two");
  defaults.SetDoubleForKey(2.5, "typed.double");
  NSArray* numbers = @[ @1, @2, @3 ];
  defaults.SetObjectForKey(RVArray(numbers), "typed.numbers");
  defaults.SetObjectForKey(DataFromText("bytes"), "typed.data");
  defaults.SetObjectForKey(RVDate::DateWithTimeIntervalSinceReferenceDate(90), "typed.date");

  EXPECT_EQ(Text(defaults.StringForKey("typed.string")), "text");
  EXPECT_EQ(defaults.FloatForKey("typed.double"), 2.5f);
  EXPECT_EQ(defaults.DateForKey("typed.date").TimeIntervalSinceRefereceDate(), 90.0);
  // Kept quirks: a number is a true boolean, text none; text is integer 0;
  // numbers pass as a string array; a wrong type gives the empty handle.
  EXPECT_TRUE(defaults.BoolForKey("typed.two"));
  EXPECT_FALSE(defaults.BoolForKey("typed.string"));
  EXPECT_EQ(defaults.IntegerForKey("typed.string"), 0);
  EXPECT_EQ(defaults.StringArrayForKey("typed.numbers").Count(), 3u);
  EXPECT_TRUE(defaults.DateForKey("typed.data").IsEmpty());
  EXPECT_TRUE(defaults.ArrayForKey("typed.string").IsEmpty());

  // A value of another type leaks the handle made for it (one more
  // reference on the stored object); BoolForKey never does.
  RVNumber two = defaults.NumberForKey("typed.two");
  unsigned int before = two.RetainCount();
  @autoreleasepool { EXPECT_TRUE(defaults.StringForKey("typed.two").IsEmpty()); }
  EXPECT_EQ(two.RetainCount(), before + 1);
  @autoreleasepool { defaults.BoolForKey("typed.two"); }
  EXPECT_EQ(two.RetainCount(), before + 1);

  EXPECT_FALSE(defaults.RemoveUserDefaults());
  defaults.SetObjectForKey(RVBool(true), "typed.boolnumber");
  EXPECT_EQ(defaults.ObjectForKey("typed.boolnumber"), nullptr);
}

// The object as set reads back; the file is the store's own, not GNUstep's;
// a file replaced from outside is read again.
TEST(UserDefaults, CurrentUserValuesReadBackAsSet) {
  RVUserDefaults defaults("org.rovani.tests.exact", false);
  defaults.SetObjectForKey(RVNumber(0.1f), "exact.float");
  defaults.SetObjectForKey(RVDate::DateWithTimeIntervalSinceReferenceDate(90.25), "exact.date");
  EXPECT_STREQ([(NSNumber*)defaults.NumberForKey("exact.float").Ref() objCType], "f");
  EXPECT_EQ(defaults.DateForKey("exact.date").TimeIntervalSinceRefereceDate(), 90.25);

  EXPECT_TRUE(defaults.Synchronize());
  std::string file = std::string([GSDefaultsRootForUser(NSUserName()) fileSystemRepresentation]) +
                     "/Rovani/org.rovani.tests.exact.plist";
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
  EXPECT_EQ(Contents(file).compare(0, 5, "<?xml"), 0);
  EXPECT_NSEQ([PlistAt(file) objectForKey:@"pend.key"], @"machine");

  // The current user's value comes first; removal leaves it alone.
  standard.SetObjectForKey(RVString("mine"), "pend.key");
  EXPECT_EQ(Text(allUsers.StringForKey("pend.key")), "mine");
  EXPECT_TRUE(standard.RemoveObjectForKey("pend.key"));
  EXPECT_TRUE(allUsers.Synchronize());
  EXPECT_EQ([PlistAt(file) objectForKey:@"pend.key"], nil);
  EXPECT_EQ(Text(allUsers.StringForKey("pend.key")), "mine");
  standard.SetObjectForKey(RVObject(), "pend.key");

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
}

// What holds no dictionary at a store's path is read as no values without
// blocking on or following it, and is moved aside, named in one log line,
// before a new file is written.
TEST(UserDefaults, DamagedOrOddStoreFilesAreKeptAside) {
  const std::string xml = Plist("<key>damaged.key</key><string>lost</string>");
  const std::string damaged[] = {xml.substr(0, xml.size() / 2 + 20), "\x01\x02\xff garbage",
                                 "\"just a string\"", "fifo", "directory", "link"};
  RVUserDefaults allUsers = RVUserDefaults::StandardAllUsersDefaults();
  for (const std::string& contents : damaged) {
    ScratchDir scratch;
    UseAllUsersDirectory(scratch.Path());
    std::string file = scratch.File(ApplicationID() + ".plist");
    if (contents == "link") WriteFile(scratch.File("target"), xml);
    int made = contents == "fifo"        ? mkfifo(file.c_str(), 0644)
               : contents == "directory" ? mkdir(file.c_str(), 0755)
               : contents == "link"      ? symlink(scratch.File("target").c_str(), file.c_str())
                                         : (WriteFile(file, contents), 0);
    ASSERT_EQ(made, 0) << contents;
    EXPECT_EQ(allUsers.ObjectForKey("damaged.key"), nullptr) << contents;
    allUsers.SetObjectForKey(RVString("fresh"), "damaged.after");
    LogCapture log;
    EXPECT_TRUE(allUsers.Synchronize()) << contents;
    EXPECT_NSEQ(PlistAt(file), @{@"damaged.after" : @"fresh"});
    std::vector<std::string> aside = Glob(file + ".damaged-*");
    ASSERT_EQ(aside.size(), 1u) << contents;
    if (contents.size() > 9) EXPECT_EQ(Contents(aside[0]), contents);
    if (contents == "link") EXPECT_EQ(Contents(scratch.File("target")), xml);
    ASSERT_EQ(log.Lines().size(), 1u) << contents;
    EXPECT_NE(log.Lines()[0].find(aside[0].substr(aside[0].rfind('/') + 1)), std::string::npos)
        << log.Lines()[0];
    allUsers.SetObjectForKey(RVObject(), "damaged.after");
  }
}

// Values the writer cannot write again (a raw U+FFFE as Python's plistlib
// writes it, a date in year 0) are kept as written; later changes still land.
TEST(UserDefaults, ValuesTheWriterRefusesAreKeptAsWritten) {
  ScratchDir scratch;
  UseAllUsersDirectory(scratch.Path());
  std::string file = scratch.File(ApplicationID() + ".plist");
  const std::string odd = "<key>odd.char</key><string>a\xEF\xBF\xBE" "b</string>"
                          "<key>odd.date</key><date>0000-01-01T00:00:00Z</date>";
  WriteFile(file, Plist(odd + "<key>odd.plain</key><string>p</string>"));
  RVUserDefaults allUsers = RVUserDefaults::StandardAllUsersDefaults();
  for (const char* value : {"first", "second"}) {
    allUsers.SetObjectForKey(RVString(value), "odd.new");
    EXPECT_TRUE(allUsers.Synchronize());
    std::string text = Contents(file);
    EXPECT_NE(text.find("<string>a\xEF\xBF\xBE" "b</string>"), std::string::npos) << text;
    EXPECT_NE(text.find("<date>0000-01-01T00:00:00Z</date>"), std::string::npos) << text;
    EXPECT_NE(text.find(std::string("<string>") + value + "</string>"), std::string::npos) << text;
  }
  EXPECT_EQ(Text(allUsers.StringForKey("odd.plain")), "p");
}

// Neither application reads the other's values nor the program's own; only
// the program's own store is published to GNUstep's shared defaults. A
// domain's whole contents add its pending all-users values, the current
// user's first.
TEST(UserDefaults, ApplicationsReadOnlyTheirOwnValues) {
  ScratchDir scratch;
  UseAllUsersDirectory(scratch.Path());
  RVUserDefaults a("org.example.a", false), b("org.example.b", false), bAll("org.example.b", true);
  RVUserDefaults own = RVUserDefaults::StandardUserDefaults();
  b.SetObjectForKey(RVString("b's"), "isolated.only.b");
  b.SetObjectForKey(RVString("b's"), "isolated.shared");
  a.SetObjectForKey(RVString("a's"), "isolated.shared");
  own.SetObjectForKey(RVString("own"), "isolated.own");
  bAll.SetObjectForKey(RVString("machine"), "isolated.shared");
  bAll.SetObjectForKey(RVString("machine"), "isolated.machine");
  EXPECT_EQ(a.ObjectForKey("isolated.only.b"), nullptr);
  EXPECT_EQ(a.ObjectForKey("isolated.own"), nullptr);
  EXPECT_EQ(own.ObjectForKey("isolated.shared"), nullptr);
  a.SetObjectForKey(RVObject(), "isolated.shared");
  EXPECT_EQ(Text(b.StringForKey("isolated.shared")), "b's");
  RVDictionary whole = bAll.DictionaryRepresentation();
  EXPECT_EQ(whole.Count(), 3u);
  EXPECT_EQ(Text(whole.StringForKey("isolated.shared")), "b's");
  EXPECT_EQ(Text(whole.StringForKey("isolated.machine")), "machine");
  EXPECT_TRUE(bAll.Synchronize());
  EXPECT_NSEQ([PlistAt(scratch.File("org.example.b.plist")) objectForKey:@"isolated.shared"],
              @"machine");

  NSUserDefaults* standard = [NSUserDefaults standardUserDefaults];
  for (NSString* domain in [standard searchList]) {
    EXPECT_FALSE([domain hasPrefix:@"Rovani/org.example."]) << [domain UTF8String];
  }
  std::unique_ptr<RVObject> read(own.ObjectForKey("isolated.own"));
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->Ref(), [standard objectForKey:@"isolated.own"]);
  own.SetObjectForKey(RVObject(), "isolated.own");
}

// Eight writers of 500 keys each, a reader reading the file meanwhile: every
// read parses, no write is lost.
TEST(UserDefaultsProcesses, ConcurrentWritersLoseNoKeyAndReadersSeeWholeFiles) {
  Workers workers;
  pid_t reader = workers.Start({"watch", "4000"});
  std::vector<pid_t> running;
  for (int i = 0; i < 8; ++i) running.push_back(workers.Start({"keys", std::to_string(i * 500), "500"}));
  int failed = 0;
  for (pid_t pid : running) failed += Workers::Wait(pid) != 0;
  EXPECT_EQ(failed, 0);
  if (failed != 0) kill(reader, SIGKILL);
  EXPECT_EQ(Workers::Wait(reader), 0);
  NSDictionary* values = PlistAt(workers.AllUsersFile());
  ASSERT_EQ([values count], 4000u);
  for (int i = 0; i < 4000; ++i) {
    EXPECT_NSEQ(([values objectForKey:[NSString stringWithFormat:@"key%d", i]]),
                ([NSString stringWithFormat:@"value%d", i]));
  }
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
    std::vector<std::string> rewrite = {"set", "rovani_defaults_worker", "touched", "yes"};
    if (store == "all") rewrite = {"keys", "0", "1"};
    EXPECT_EQ(workers.Run(rewrite, nullptr, "Pacific/Chatham"), 0) << store;
    EXPECT_EQ(workers.Run(check, &output, "UTC"), 0) << store << ":\n" << output;
  }
}

// The first write takes GNUstep's file for an application over: whatever
// GNUstep's reader accepts is kept, and the file is retired, so a key
// removed afterwards stays removed. What the library cannot write keeps the
// file where it is, still read, with a log line.
TEST(UserDefaultsProcesses, TakeoverKeepsEverythingGNUstepKept) {
  const std::string head =
      "<key>plain</key><string>kept</string><key>answer</key><string>42</string><key>odd</key>";
  std::string deep, many = "<array>";
  for (int i = 0; i < 300; ++i) deep += "<array>";
  deep += "<string>bottom</string>";
  for (int i = 0; i < 300; ++i) deep += "</array>";
  for (int i = 0; i < 1000000; ++i) many += "<integer>7</integer>";
  many += "</array>";
  for (const std::string* odd : {&deep, &many}) {
    Workers workers;
    mkdir(workers.UserDir().c_str(), 0700);
    std::string gnustepFile = workers.UserDir() + "/org.example.gs.plist";
    WriteFile(gnustepFile, Plist(head + *odd));
    std::string output;
    EXPECT_EQ(workers.Run({"set", "org.example.gs", "new", "value"}, &output), 0);
    EXPECT_EQ(workers.Run({"get", "org.example.gs", "plain", "answer", "new"}, &output), 0);
    EXPECT_EQ(output, "kept\n42\nvalue");
    if (odd == &deep) {
      EXPECT_EQ(access(gnustepFile.c_str(), F_OK), 0);
      EXPECT_NE(workers.Log().find(gnustepFile), std::string::npos) << workers.Log();
    } else {
      EXPECT_NE(access(gnustepFile.c_str(), F_OK), 0);
      EXPECT_EQ(workers.Run({"set", "org.example.gs", "answer", "-"}, &output), 0);
      EXPECT_EQ(workers.Run({"get", "org.example.gs", "answer"}, &output), 0);
      EXPECT_EQ(output, "<none>");
      RVDictionary stored = RVDictionary::DictionaryWithContentsOfFile(
          (workers.UserDir() + "/Rovani/org.example.gs.plist").c_str());
      EXPECT_EQ(stored.ArrayForKey("odd").Count(), 1000000u);
    }
  }
}

// The program's own GNUstep file is read with the library's reader (an
// escape stays text). When it cannot be moved away after the takeover, a key
// removed afterwards stays removed, in a new process and in one that was
// already running (its GNUstep has the file's values in memory).
TEST(UserDefaultsProcesses, KeyRemovedAfterAFailedRetirementStaysRemoved) {
  Workers workers;
  std::string own = "rovani_defaults_worker", store = workers.UserDir() + "/Rovani";
  ASSERT_EQ(mkdir(workers.UserDir().c_str(), 0700), 0);
  ASSERT_EQ(mkdir(store.c_str(), 0700), 0);
  // Where it would move is taken by a directory that is not empty.
  ASSERT_EQ(mkdir((store + "/" + own + ".plist.imported").c_str(), 0700), 0);
  WriteFile(store + "/" + own + ".plist.imported/other", "x");
  std::string gnustepFile = workers.UserDir() + "/" + own + ".plist";
  WriteFile(gnustepFile,
            Plist("<key>kept</key><string>\\U0041</string><key>dropped</key><string>soon</string>"));
  int input = -1, fromWorker = -1;
  pid_t running = workers.Start({"get", own, "--wait", "dropped"}, "", &input, &fromWorker);
  FILE* lines = fdopen(fromWorker, "r");
  char line[64] = "";
  ASSERT_NE(fgets(line, sizeof line, lines), nullptr);
  EXPECT_STREQ(line, "soon\n");

  std::string output;
  EXPECT_EQ(workers.Run({"get", own, "kept"}, &output), 0);
  EXPECT_EQ(output, "\\U0041");  // GNUstep's reader would give "A"
  EXPECT_EQ(workers.Run({"set", own, "dropped", "-"}, &output), 0);
  EXPECT_EQ(output, "1");
  EXPECT_EQ(access(gnustepFile.c_str(), F_OK), 0);
  EXPECT_EQ(workers.Run({"get", own, "dropped", "kept"}, &output), 0);
  EXPECT_EQ(output, "<none>\n\\U0041");
  ASSERT_EQ(write(input, "\n", 1), 1);
  ASSERT_NE(fgets(line, sizeof line, lines), nullptr);
  EXPECT_STREQ(line, "<none>\n");
  close(input);
  fclose(lines);
  EXPECT_EQ(Workers::Wait(running), 0);
}

// Two values each within the file's bound but together over it: one stays
// pending, named in a log line; every other change reaches the file.
TEST(UserDefaultsProcesses, AChangeTheFileCannotTakeHoldsNoOtherBack) {
  Workers workers;
  std::string output;
  EXPECT_EQ(workers.Run({"big", "org.example.big", "33", "big1", "big2"}, &output), 0);
  EXPECT_EQ(output, "1");
  EXPECT_NE(workers.Log().find("the change to big"), std::string::npos) << workers.Log();
  std::string file = workers.UserDir() + "/Rovani/org.example.big.plist";
  RVDictionary stored = RVDictionary::DictionaryWithContentsOfFile(file.c_str());
  EXPECT_EQ(Text(stored.StringForKey("small")), "yes");
  EXPECT_EQ(stored.StringForKey("big1").Length() + stored.StringForKey("big2").Length(),
            33u << 20);
  EXPECT_EQ(workers.Run({"set", "org.example.big", "later", "too"}, &output), 0);
  EXPECT_EQ(Text(RVDictionary::DictionaryWithContentsOfFile(file.c_str()).StringForKey("later")),
            "too");
}

// Writes past the file-size limit fail (EFBIG, no SIGXFSZ) and leave the
// files as they were; for every user's store, Synchronize answers false.
TEST(UserDefaultsProcesses, AFullDiskLeavesTheFilesAsTheyWere) {
  Workers workers;
  std::string output;
  EXPECT_EQ(workers.Run({"set", "org.example.full", "first", "value"}, &output), 0);
  EXPECT_EQ(output, "1");
  std::string file = workers.UserDir() + "/Rovani/org.example.full.plist";
  std::string before = Contents(file);
  EXPECT_EQ(workers.Run({"limit", "2048", "big", "org.example.full", "1", "huge"}, &output), 0);
  EXPECT_EQ(output, "1");
  EXPECT_EQ(Contents(file), before);
  EXPECT_EQ(workers.Run({"get", "org.example.full", "first", "huge"}, &output), 0);
  EXPECT_EQ(output, "value\n<none>");

  EXPECT_EQ(workers.Run({"keys", "0", "50"}), 0);
  before = Contents(workers.AllUsersFile());
  EXPECT_EQ(workers.Run({"limit", "1024", "keys", "50", "1"}), 1);
  EXPECT_EQ(Contents(workers.AllUsersFile()), before);
}

// Every set that returned outlives kill -9 and is read by the next process;
// the file stays one Python reads; a store directory open to others is
// tightened.
TEST(UserDefaultsProcesses, SetsThatReturnedOutliveKill9) {
  Workers workers;
  std::string store = workers.UserDir() + "/Rovani";
  ASSERT_EQ(mkdir(workers.UserDir().c_str(), 0700), 0);
  ASSERT_EQ(mkdir(store.c_str(), 0700), 0);
  ASSERT_EQ(chmod(store.c_str(), 0777), 0);
  int fromWorker = -1;
  pid_t pid = workers.Start({"setloop", "org.example.kill"}, "", nullptr, &fromWorker);
  FILE* lines = fdopen(fromWorker, "r");
  int last = -1;
  char line[32];
  // Past the first fold of the journal (at 1 MB).
  while (last < 12000 && fgets(line, sizeof line, lines) != nullptr) last = std::atoi(line);
  kill(pid, SIGKILL);
  Workers::Wait(pid);
  fclose(lines);
  ASSERT_GE(last, 12000);
  EXPECT_EQ(Mode(store), 0700u);
  std::string output;
  std::string lastKey = "key" + std::to_string(last);
  EXPECT_EQ(workers.Run({"get", "org.example.kill", "key0", "key9000", lastKey}, &output), 0);
  EXPECT_EQ(output, "value0\nvalue9000\nvalue" + std::to_string(last));
  std::string check = "python3 -c 'import plistlib,sys; "
                      "assert isinstance(plistlib.load(open(sys.argv[1],\"rb\")), dict)' " +
                      store + "/org.example.kill.plist";
  EXPECT_EQ(std::system(check.c_str()), 0);
}
