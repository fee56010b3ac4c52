// Where a defaults store's files are, and the locks and moves around them.
// Private: never installed.
#ifndef ROVANI_PLATFORM_RVSTOREPATHS_H
#define ROVANI_PLATFORM_RVSTOREPATHS_H

#import <Foundation/Foundation.h>

#include <sys/types.h>

#include <string>

// What tells one store from the other.
struct RVStoreKind {
  std::string (*directory)();  // empty when there is none
  mode_t fileMode;
  mode_t directoryMode;
  bool currentUser;  // journal, private directory, GNUstep's file taken over
};

// The current user's: Rovani/ in GNUstep's user defaults directory, 0600
// files in a 0700 directory. Every user's: $ROVANI_ALL_USERS_DEFAULTS_DIR or
// /var/lib/rovani/defaults, 0644 files in 0755 directories.
const RVStoreKind& RVCurrentUserStoreKind();
const RVStoreKind& RVAllUsersStoreKind();

// An application's files in a store.
struct RVStorePaths {
  std::string dir, name;
  std::string file;          // <dir>/<name>.plist
  std::string journal;       // <file>.journal
  std::string imported;      // <file>.imported: GNUstep's file, taken over
  std::string notTakenOver;  // <file>.gnustep-kept: GNUstep's file is still read
  std::string legacy;        // GNUstep's own <name>.plist (current user only)
};

// The paths for application; false when it names no file of the store's
// directory (empty, ".", "..", a slash) or the store has no directory.
bool RVStorePathsFor(const RVStoreKind& kind, NSString* application, RVStorePaths* paths);

// Holds an exclusive flock on a directory for as long as it lives; fd() is
// -1 when the directory could not be opened or locked.
class RVDirectoryLock {
 public:
  explicit RVDirectoryLock(const std::string& dir);
  ~RVDirectoryLock();
  RVDirectoryLock(const RVDirectoryLock&) = delete;
  RVDirectoryLock& operator=(const RVDirectoryLock&) = delete;
  int fd() const { return fd_; }

 private:
  int fd_;
};

// flock, again when a signal interrupts it.
void RVLockFile(int fd, int how);

// Whether the process has no file-size limit now.
bool RVNoFileSizeLimit();

// GNUstep's file, now in the store's own, moves beside it as
// <name>.plist.imported: kept, out of GNUstep's sight. Where it cannot
// move, a copy goes there when it can, and a log line says so.
void RVRetireGNUstepFile(const RVStorePaths& paths, mode_t fileMode);

#endif
