// Whole-file writes that are atomic and durable and leave nothing behind.
// Private: hidden symbols, never installed.
//
// How a file is replaced:
// 1. The bytes go to an unnamed file (O_TMPFILE) in the target's directory,
//    which is flushed (fsync). A process killed now leaves nothing: the
//    unnamed file goes with its last descriptor.
// 2. Under an exclusive flock on the directory, the file gets a name: when
//    the target does not exist it is linked as the target at once;
//    otherwise it is linked under the target's side name (below) and
//    renamed over the target. The directory is then flushed and unlocked.
// 3. Only a process killed between that link and the rename leaves a named
//    file: the side name. Every side name is written under the directory
//    lock, so one found there while holding the lock belongs to a dead
//    writer: the next write of the same target removes it first.
// Where the filesystem refuses O_TMPFILE (or linking an open file), the
// bytes are written to the side name itself, under the lock from the start,
// with the same clean-up.
//
// The side name of "name" is ".name.rv-tmp" (when that is longer than a
// file name may be: ".rv-tmp.<16 hex digits of a hash of name>").
//
// A target that is a symbolic link is replaced by the file, not written
// through. The readers of the target see the old file or the new one,
// never a part of either.
#ifndef ROVANI_PLATFORM_RVATOMICFILE_H
#define ROVANI_PLATFORM_RVATOMICFILE_H

#include <sys/types.h>

#include <cstddef>
#include <string>

// The mode of a new file when none is given: 0666 less the umask, and an
// existing target's own mode (and, where allowed, owner and group) kept.
constexpr int kRVAtomicFileKeepMode = -1;

// Replaces the file at path with length bytes. A given mode (0644, say) is
// the file's mode whether it is new or replaces one. False when the
// directory cannot be written, the target is a directory or the bytes do not
// fit (a full disk, the file-size limit, a read-only filesystem); the target
// is then untouched and nothing is left behind.
bool RVWriteFileAtomically(const char* path, const void* bytes, size_t length,
                           int mode = kRVAtomicFileKeepMode);

// The same for name in the open directory dirFD, whose flock the caller
// already holds exclusively (so the write takes no lock of its own).
bool RVWriteFileAtomicallyInLockedDirectory(int dirFD, const std::string& name, const void* bytes,
                                            size_t length, int mode = kRVAtomicFileKeepMode);

// Writes all length bytes to fd: 0, or the error that stopped it (ENOSPC,
// EFBIG past the file-size limit, ...), some bytes perhaps written. A write
// past the file-size limit answers EFBIG and never ends the process with
// SIGXFSZ. Every write of the functions above goes through it. A caller
// that knows the process has no file-size limit may pass false for
// guarded, saving the two system calls that hold the signal back.
int RVWriteWholly(int fd, const void* bytes, size_t length, bool guarded = true);

// The side name of name.
std::string RVAtomicFileSideName(const std::string& name);

#if defined(__OBJC__)
@class NSData;
@class NSString;
// RVWriteFileAtomically for data at path in the file system's
// representation; false for nil data or an empty path.
bool RVWriteDataToFileAtomically(NSData* data, NSString* path);
#endif

#endif
