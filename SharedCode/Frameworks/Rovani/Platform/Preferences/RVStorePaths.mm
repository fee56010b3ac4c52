#import <Foundation/Foundation.h>

#include "Platform/Preferences/RVStorePaths.h"
#include "Platform/Preferences/RVAllUsersDirectory.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "Platform/Files/RVAtomicFile.h"
#include "Platform/Preferences/RVStoreFiles.h"

namespace {


// GNUstep's user defaults directory; empty when there is none. GNUstep
// reads its configuration once, at start-up, so this is asked once.
const std::string& GNUstepUserDefaultsDirectory() {
  static const std::string* directory = [] {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSString* root = GSDefaultsRootForUser(NSUserName());
    const char* path = [root length] > 0 ? [root fileSystemRepresentation] : nullptr;
    std::string* found = new std::string(path != nullptr ? path : "");
    [pool drain];
    return found;
  }();
  return *directory;
}

// GNUstep reads and rewrites only the *.plist files directly in its
// directory, so it never touches a directory of our own inside it.
std::string CurrentUserDirectory() {
  const std::string& root = GNUstepUserDefaultsDirectory();
  return root.empty() ? root : root + "/Rovani";
}

}  // namespace

const RVStoreKind& RVCurrentUserStoreKind() {
  static const RVStoreKind kind = {CurrentUserDirectory, 0600, 0700, true};
  return kind;
}

const RVStoreKind& RVAllUsersStoreKind() {
  static const RVStoreKind kind = {RVAllUsersDefaultsDirectory, 0644, 0755, false};
  return kind;
}

bool RVStorePathsFor(const RVStoreKind& kind, NSString* application, RVStorePaths* p) {
  const char* utf8 = [application UTF8String];
  p->name = utf8 != nullptr ? utf8 : "";
  if (p->name.empty() || p->name == "." || p->name == ".." ||
      p->name.find('/') != std::string::npos) {
    return false;
  }
  p->dir = kind.directory();
  if (p->dir.empty()) return false;
  p->file = p->dir + "/" + p->name + ".plist";
  p->journal = p->file + ".journal";
  p->imported = p->file + ".imported";
  p->notTakenOver = p->file + ".gnustep-kept";
  p->legacy.clear();
  if (kind.currentUser && !GNUstepUserDefaultsDirectory().empty()) {
    p->legacy = GNUstepUserDefaultsDirectory() + "/" + p->name + ".plist";
  }
  return true;
}

RVDirectoryLock::RVDirectoryLock(const std::string& dir)
    : fd_(open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)) {
  while (fd_ >= 0 && flock(fd_, LOCK_EX) != 0) {
    if (errno != EINTR) {
      close(fd_);
      fd_ = -1;
    }
  }
}

RVDirectoryLock::~RVDirectoryLock() {
  if (fd_ >= 0) {
    flock(fd_, LOCK_UN);
    close(fd_);
  }
}

void RVLockFile(int fd, int how) {
  while (flock(fd, how) != 0 && errno == EINTR) {
  }
}

bool RVNoFileSizeLimit() {
  struct rlimit limit;
  return getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur == RLIM_INFINITY;
}

void RVRetireGNUstepFile(const RVStorePaths& p, mode_t fileMode) {
  if (rename(p.legacy.c_str(), p.imported.c_str()) == 0) return;
  int error = errno;
  std::string text;
  bool notRegular = false;
  int fd = RVOpenRegularFile(p.legacy, O_RDONLY, 0, &notRegular);
  bool copied = fd >= 0 && RVReadWholeFile(fd, SIZE_MAX, &text) &&
                RVWriteFileAtomically(p.imported.c_str(), text.data(), text.size(),
                                      static_cast<int>(fileMode));
  if (fd >= 0) close(fd);
  NSLog(@"Rovani defaults: %s cannot be moved to %s (%s); %s", p.legacy.c_str(),
        p.imported.c_str(), strerror(error),
        copied ? "a copy is kept there; the file is left and no longer read"
               : "the file is left where it is and no longer read");
}
