// The whole-buffer write loop every file writer uses: write(2) may take
// fewer bytes than asked, and a signal may interrupt it before any.
// Header-only plain C++, shared by the library and the rovani program.
#ifndef ROVANI_PLATFORM_RVWRITEALL_H
#define ROVANI_PLATFORM_RVWRITEALL_H

#include <unistd.h>

#include <cerrno>
#include <cstddef>

// Writes every one of length bytes to fd. False, with errno set, when a
// write fails for another reason than an interruption.
inline bool RVWriteAll(int fd, const void* bytes, size_t length) {
  const char* at = static_cast<const char*>(bytes);
  while (length > 0) {
    ssize_t written = write(fd, at, length);
    if (written < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    at += written;
    length -= static_cast<size_t>(written);
  }
  return true;
}

#endif
