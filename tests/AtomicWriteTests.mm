#import <Foundation/Foundation.h>

#include <dirent.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include <Rovani/RVData.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVUserDefaults.h>

#include "support/TestSupport.h"

namespace {

std::string Contents(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::set<std::string> Entries(const std::string& dir) {
  std::set<std::string> names;
  if (DIR* listing = opendir(dir.c_str())) {
    while (struct dirent* entry = readdir(listing)) {
      std::string name = entry->d_name;
      if (name != "." && name != "..") names.insert(name);
    }
    closedir(listing);
  }
  return names;
}

unsigned Mode(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0 ? (info.st_mode & 07777) : 0;
}

// One generation of the three files a writer replaces: data, a dictionary
// and the all-users defaults file. Generations differ in size, so a file
// cut short or mixed from two shows.
struct Generation {
  std::string bytes;
  RVDictionary dictionary;

  explicit Generation(char mark) : bytes((mark == 'a' ? 200000 : 300000), mark) {
    NSString* text = [NSString stringWithUTF8String:bytes.substr(0, bytes.size() / 4).c_str()];
    dictionary = RVDictionary([NSDictionary dictionaryWithObject:text forKey:@"blob"]);
  }

  // Writes file number `which`: 0 data, 1 dictionary, 2 defaults.
  void Write(int which, const ScratchDir& dir, RVUserDefaults& defaults) const {
    if (which == 0) {
      RVData::DataWithBytes(bytes.data(), static_cast<unsigned>(bytes.size()))
          .WriteToFileAtomically(dir.File("data.bin").c_str());
    } else if (which == 1) {
      dictionary.WriteToFileAtomically(dir.File("dictionary.plist").c_str());
    } else {
      defaults.SetObjectForKey(RVString(bytes.substr(0, 1000).c_str()), "generation");
      defaults.Synchronize();
    }
  }
  void WriteAll(const ScratchDir& dir, RVUserDefaults& defaults) const {
    for (int which = 0; which < 3; ++which) Write(which, dir, defaults);
  }
};

}  // namespace

// Writers are killed at random points of their writes; every file is then
// one generation whole, and nothing but the targets is in the
// directory. A writer killed between naming its file and renaming it over
// the target leaves the side name, which the next write of that file
// removes.
TEST(AtomicWrites, KilledWritersLeaveOldOrNewFilesAndNothingElse) {
  ScratchDir dir;
  std::string savedAllUsers = getenv("ROVANI_ALL_USERS_DEFAULTS_DIR");
  setenv("ROVANI_ALL_USERS_DEFAULTS_DIR", dir.Path().c_str(), 1);
  RVUserDefaults defaults = RVUserDefaults::StandardAllUsersDefaults();
  const Generation generations[] = {Generation('a'), Generation('b')};
  auto started = std::chrono::steady_clock::now();
  generations[0].WriteAll(dir, defaults);
  double writeSeconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count() / 3;

  mode_t mask = umask(0);
  umask(mask);
  EXPECT_EQ(Mode(dir.File("data.bin")), 0666u & ~mask);
  chmod(dir.File("data.bin").c_str(), 0640);
  const std::set<std::string> targets = Entries(dir.Path());
  ASSERT_EQ(targets.size(), 3u);
  std::string defaultsFile;
  for (const std::string& name : targets)
    if (name != "data.bin" && name != "dictionary.plist") defaultsFile = dir.File(name);
  ASSERT_FALSE(defaultsFile.empty());
  // Each replacement gives a file a new inode.
  int replaced = 0;
  std::map<std::string, ino_t> inodes;
  auto countReplaced = [&] {
    for (const std::string& name : targets) {
      struct stat info;
      if (stat(dir.File(name).c_str(), &info) != 0) continue;
      if (inodes.count(name) != 0 && inodes[name] != info.st_ino) ++replaced;
      inodes[name] = info.st_ino;
    }
  };
  countReplaced();

  unsigned seedValue = std::random_device()();
  std::mt19937 random(seedValue);
  // Kills are placed by the writers' own progress, not by the clock: each
  // writer reports every write it finishes through a pipe, and is killed
  // after a chosen number of them (none for a third of the writers), at a
  // random point of the time one write took. A loaded machine stretches
  // the writes and the delays alike; it cannot keep writers from finishing.
  std::uniform_int_distribution<int> finishedWrites(0, 2);
  std::uniform_real_distribution<double> intoNextWrite(0.0, 1.5);
  int sideNamesSeen = 0, finished = 0;
  for (int kill = 0; kill < 200; ++kill) {
    int progress[2];
    ASSERT_EQ(pipe(progress), 0);
    pid_t writer = fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
      close(progress[0]);
      // Each writer starts on another of the three files.
      for (int step = kill;; ++step) {
        generations[(step / 3 + kill) % 2].Write(step % 3, dir, defaults);
        if (write(progress[1], "+", 1) != 1) _exit(1);
      }
    }
    close(progress[1]);
    char reported;
    bool died = false;
    for (int wanted = finishedWrites(random); wanted > 0 && !died; --wanted) {
      died = read(progress[0], &reported, 1) != 1;
      finished += died ? 0 : 1;
    }
    if (!died) usleep(static_cast<useconds_t>(intoNextWrite(random) * writeSeconds * 1e6));
    ::kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
    close(progress[0]);
    ASSERT_FALSE(died) << "writer " << kill << " stopped on its own";

    std::string data = Contents(dir.File("data.bin"));
    ASSERT_TRUE(data == generations[0].bytes || data == generations[1].bytes)
        << "kill " << kill << " (seed " << seedValue << "): " << data.size() << " bytes";
    RVDictionary dictionary = RVDictionary::DictionaryWithContentsOfFile(dir.File("dictionary.plist").c_str());
    ASSERT_TRUE(dictionary == generations[0].dictionary || dictionary == generations[1].dictionary)
        << "kill " << kill << " (seed " << seedValue << ")";
    countReplaced();
    NSDictionary* stored = [NSDictionary
        dictionaryWithContentsOfFile:[NSString stringWithUTF8String:defaultsFile.c_str()]];
    ASSERT_EQ([[stored objectForKey:@"generation"] length], 1000u) << "kill " << kill;
    for (const std::string& name : Entries(dir.Path())) {
      if (targets.count(name) == 0) {
        ++sideNamesSeen;
        ASSERT_EQ(name.rfind(".rv-tmp"), name.size() - 7) << name;
      }
    }
  }
  // Writers that finished writes replaced files.
  EXPECT_GT(finished, 0);
  EXPECT_GT(replaced, 0);
  generations[1].WriteAll(dir, defaults);
  EXPECT_EQ(Entries(dir.Path()), targets) << sideNamesSeen << " side names seen";
  EXPECT_EQ(Mode(dir.File("data.bin")), 0640u);
  EXPECT_EQ(Mode(defaultsFile), 0644u);
  setenv("ROVANI_ALL_USERS_DEFAULTS_DIR", savedAllUsers.c_str(), 1);
}
