// Why a document could not be read or written, and where. Every reader and
// writer of the library fills one when the caller passes it; the public
// RVFormatError is made from it.
#ifndef ROVANI_PLATFORM_RVFORMATFAULT_H
#define ROVANI_PLATFORM_RVFORMATFAULT_H

#include <cstddef>
#include <string>

struct RVFormatFault {
  // Why, in plain English, without the place ("expected a value").
  std::string message;
  // For text formats (XML, OpenStep, JSON): 1-based line and column of the
  // fault; 0 when the fault has no place in text.
  size_t line = 0;
  size_t column = 0;
  // For binary property lists: the byte offset of the fault; -1 for none.
  long long byteOffset = -1;
  // For a value a writer refuses: its key path, keys joined by "." with a
  // "." or "\" inside a key written "\." and "\\", array elements by their
  // decimal index ("servers.2.name"). Empty for the root or no value.
  std::string keyPath;
  // Whether the fault names a value in a tree rather than a place in bytes.
  bool refusedValue = false;

  void Clear() { *this = RVFormatFault(); }
};

#endif
