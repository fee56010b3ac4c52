// Byte input and output for the rovani program.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "Cli.h"
#include "Platform/Files/RVWriteAll.h"

namespace cli {

namespace {

std::string Reason(int error) { return std::strerror(error); }

bool ReadAll(int fd, std::string& bytes) {
  char buffer[65536];
  while (true) {
    ssize_t got = read(fd, buffer, sizeof buffer);
    if (got < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    if (got == 0) return true;
    bytes.append(buffer, static_cast<size_t>(got));
  }
}

bool WriteAll(int fd, const std::string& bytes) {
  return RVWriteAll(fd, bytes.data(), bytes.size());
}

}  // namespace

std::string DisplayName(const std::string& path) {
  return path == "-" ? "standard input" : path;
}

std::string ReadInput(const std::string& path) {
  std::string bytes;
  if (path == "-") {
    if (!ReadAll(STDIN_FILENO, bytes)) {
      throw InputError{"cannot read: " + Reason(errno)};
    }
    return bytes;
  }
  int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) throw InputError{"cannot open: " + Reason(errno)};
  bool ok = ReadAll(fd, bytes);
  int error = errno;
  close(fd);
  if (!ok) throw InputError{"cannot read: " + Reason(error)};
  return bytes;
}

void WriteOutput(const std::string& path, const std::string& bytes) {
  if (path == "-") {
    if (!WriteAll(STDOUT_FILENO, bytes)) {
      throw InputError{"cannot write: " + Reason(errno)};
    }
    return;
  }
  int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) throw InputError{"cannot create: " + Reason(errno)};
  bool ok = WriteAll(fd, bytes);
  int error = errno;
  if (close(fd) != 0 && ok) {
    ok = false;
    error = errno;
  }
  if (!ok) throw InputError{"cannot write: " + Reason(error)};
}

std::string Utf8(const RVString& text) {
  RVData bytes = text.DataContainingStringUsingEncoding(kRVStringEncodingUTF8);
  if (bytes.Length() == 0) return std::string();
  return std::string(static_cast<const char*>(bytes.Bytes()), bytes.Length());
}

RVString FromUtf8(const std::string& bytes) {
  return RVString(RVData::DataWithBytes(bytes.data(), static_cast<unsigned int>(bytes.size())));
}

}  // namespace cli
