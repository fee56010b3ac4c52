#import <Foundation/Foundation.h>

#include "Platform/Files/RVAtomicFile.h"
#include "Platform/Files/RVWriteAll.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <pthread.h>
#include <signal.h>
#include <time.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>

namespace {

bool WriteAll(int fd, const void* bytes, size_t length) {
  return RVWriteWholly(fd, bytes, length) == 0;
}

// Holds an exclusive flock on a directory for as long as it lives; holds
// nothing when the directory was opened without read access or the
// filesystem refuses the lock.
class DirectoryLock {
 public:
  DirectoryLock(int dirFD, bool alreadyHeld) : fd_(dirFD) {
    while (!alreadyHeld && !(locked_ = flock(fd_, LOCK_EX) == 0) && errno == EINTR) {
    }
  }
  ~DirectoryLock() {
    if (locked_) flock(fd_, LOCK_UN);
  }
  DirectoryLock(const DirectoryLock&) = delete;
  DirectoryLock& operator=(const DirectoryLock&) = delete;

 private:
  int fd_;
  bool locked_ = false;
};

// Gives the file at fd the mode it is to have: the one asked for, or the
// target's own (with its owner and group where we may set them).
void SetMode(int fd, int mode, const struct stat* target) {
  if (mode != kRVAtomicFileKeepMode) {
    fchmod(fd, static_cast<mode_t>(mode));
  } else if (target != nullptr) {
    struct stat own;
    if (fstat(fd, &own) == 0 && (own.st_uid != target->st_uid || own.st_gid != target->st_gid)) {
      if (fchown(fd, target->st_uid, target->st_gid) != 0) {
        // Not ours to give away: the file stays the writer's.
      }
    }
    fchmod(fd, target->st_mode & 07777);
  }
}

// Links the open unnamed file fd into dirFD as name; replaces an existing
// name through its side name. The caller holds the directory lock. 0, or
// the error that stopped it.
int LinkUnnamed(int fd, int dirFD, const std::string& name, const std::string& side,
                bool targetExists) {
  char procPath[64];
  std::snprintf(procPath, sizeof procPath, "/proc/self/fd/%d", fd);
  auto linkAs = [&](const std::string& as) {
    if (linkat(AT_FDCWD, procPath, dirFD, as.c_str(), AT_SYMLINK_FOLLOW) == 0) return 0;
    // Without /proc, linking by descriptor needs a capability; try it.
    if (errno == ENOENT && linkat(fd, "", dirFD, as.c_str(), AT_EMPTY_PATH) == 0) return 0;
    return errno;
  };
  int error = EEXIST;
  if (!targetExists) error = linkAs(name);
  if (error != EEXIST) return error;
  // A writer that could not take the lock may clear our side name between
  // link and rename; we still hold the file, so link it again.
  for (int attempt = 0; attempt < 3; ++attempt) {
    unlinkat(dirFD, side.c_str(), 0);
    error = linkAs(side);
    if (error != 0) return error;
    if (renameat(dirFD, side.c_str(), dirFD, name.c_str()) == 0) return 0;
    error = errno;
    unlinkat(dirFD, side.c_str(), 0);
    if (error != ENOENT) return error;
  }
  return error;
}

// Writes the side name itself and renames it over name; for filesystems
// without unnamed files. The caller holds the directory lock.
bool WriteNamed(int dirFD, const std::string& name, const std::string& side, const void* bytes,
                size_t length, int mode, const struct stat* target) {
  unlinkat(dirFD, side.c_str(), 0);
  int fd = openat(dirFD, side.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd < 0) return false;
  SetMode(fd, mode, target);
  bool ok = WriteAll(fd, bytes, length) && fsync(fd) == 0;
  ok = close(fd) == 0 && ok;
  if (ok) ok = renameat(dirFD, side.c_str(), dirFD, name.c_str()) == 0;
  if (!ok) unlinkat(dirFD, side.c_str(), 0);
  return ok;
}

bool WriteInDirectory(int dirFD, const std::string& name, const void* bytes, size_t length,
                      int mode, bool lockHeld) {
  if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) {
    return false;
  }
  if (bytes == nullptr && length > 0) return false;
  struct stat targetInfo;
  const struct stat* target = nullptr;
  if (fstatat(dirFD, name.c_str(), &targetInfo, 0) == 0) {
    if (S_ISDIR(targetInfo.st_mode)) return false;
    target = &targetInfo;
  }
  std::string side = RVAtomicFileSideName(name);

  int fd = openat(dirFD, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
  if (fd < 0) {
    if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) return false;
    DirectoryLock lock(dirFD, lockHeld);
    bool ok = WriteNamed(dirFD, name, side, bytes, length, mode, target);
    if (ok) fsync(dirFD);
    return ok;
  }
  SetMode(fd, mode, target);
  bool ok = WriteAll(fd, bytes, length) && fsync(fd) == 0;
  if (ok) {
    DirectoryLock lock(dirFD, lockHeld);
    int error = LinkUnnamed(fd, dirFD, name, side, target != nullptr);
    ok = error == 0;
    if (error == EOPNOTSUPP || error == EPERM || error == ENOENT) {
      // The filesystem gives unnamed files but will not name them.
      ok = WriteNamed(dirFD, name, side, bytes, length, mode, target);
    }
    if (ok) fsync(dirFD);
  }
  close(fd);
  return ok;
}

}  // namespace

int RVWriteWholly(int fd, const void* bytes, size_t length, bool guarded) {
  // A write past the process's file-size limit raises SIGXFSZ, which ends
  // the process unless it is held back: it is blocked on this thread for
  // the write, and the one a failed write raised is taken off again.
  sigset_t xfsz, old;
  sigemptyset(&xfsz);
  sigaddset(&xfsz, SIGXFSZ);
  if (guarded) pthread_sigmask(SIG_BLOCK, &xfsz, &old);
  int error = RVWriteAll(fd, bytes, length) ? 0 : errno;
  if (error == EFBIG && guarded) {
    const struct timespec now = {0, 0};
    while (sigtimedwait(&xfsz, nullptr, &now) < 0 && errno == EINTR) {
    }
  }
  if (guarded) pthread_sigmask(SIG_SETMASK, &old, nullptr);
  return error;
}

std::string RVAtomicFileSideName(const std::string& name) {
  std::string side = "." + name + ".rv-tmp";
  if (side.size() <= NAME_MAX) return side;
  uint64_t hash = 14695981039346656037ull;  // FNV-1a
  for (unsigned char c : name) hash = (hash ^ c) * 1099511628211ull;
  char hex[17];
  std::snprintf(hex, sizeof hex, "%016llx", static_cast<unsigned long long>(hash));
  return std::string(".rv-tmp.") + hex;
}

bool RVWriteFileAtomicallyInLockedDirectory(int dirFD, const std::string& name, const void* bytes,
                                            size_t length, int mode) {
  return WriteInDirectory(dirFD, name, bytes, length, mode, true);
}

bool RVWriteFileAtomically(const char* path, const void* bytes, size_t length, int mode) {
  if (path == nullptr || path[0] == '\0') return false;
  std::string whole = path;
  std::string::size_type slash = whole.rfind('/');
  std::string dir = slash == std::string::npos ? "." : (slash == 0 ? "/" : whole.substr(0, slash));
  std::string name = slash == std::string::npos ? whole : whole.substr(slash + 1);
  // Read access lets us lock and flush the directory; a directory we may
  // only write into still takes the file.
  int dirFD = open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (dirFD < 0 && errno == EACCES) dirFD = open(dir.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (dirFD < 0) return false;
  bool ok = WriteInDirectory(dirFD, name, bytes, length, mode, false);
  close(dirFD);
  return ok;
}

bool RVWriteDataToFileAtomically(NSData* data, NSString* path) {
  if (data == nil || [path length] == 0) return false;
  const char* fileSystemPath = nullptr;
  @try {
    fileSystemPath = [path fileSystemRepresentation];
  } @catch (NSException*) {
    return false;
  }
  return RVWriteFileAtomically(fileSystemPath, [data bytes], [data length]);
}
