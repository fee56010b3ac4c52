#import <Foundation/Foundation.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "Platform/PropertyLists/RVBinaryPropertyList.h"
#include "Platform/PropertyLists/RVOpenStepPropertyList.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyListWriter.h"
#include "Platform/Runtime/RVOwned.h"

NSData* RVPropertyListXMLData(id list) { return RVXMLPropertyListData(list); }

namespace {

bool IsSpaceByte(unsigned char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool StartsWith(const unsigned char* p, size_t n, const char* text) {
  size_t length = strlen(text);
  return n >= length && memcmp(p, text, length) == 0;
}

id ReadText(const unsigned char* bytes, size_t length, RVFormatFault* fault,
             RVPropertyListKind* format) {
  // A C string's terminator is not part of the text.
  if (length > 0 && bytes[length - 1] == 0)
    length = strnlen(reinterpret_cast<const char*>(bytes), length);
  size_t start = StartsWith(bytes, length, "\xEF\xBB\xBF") ? 3 : 0;
  size_t first = start;
  while (first < length && IsSpaceByte(bytes[first])) ++first;
  const unsigned char* lead = bytes + first;
  size_t rest = length - first;
  // OpenStep text never has '<' before '?', '!' or a name: that is XML.
  if (StartsWith(lead, rest, "<?") || StartsWith(lead, rest, "<!") ||
      StartsWith(lead, rest, "<plist")) {
    if (format != nullptr) *format = kRVPropertyListXML;
    return RVXMLPropertyListRead(bytes, length, fault);
  }
  if (format != nullptr) *format = kRVPropertyListOpenStep;
  // Places are counted in the text as given, the byte-order mark included.
  id list = RVOpenStepPropertyListRead(bytes + start, length - start, fault);
  if (list == nil && fault != nullptr && start > 0 && fault->line == 1) ++fault->column;
  return list;
}

}  // namespace

id RVPropertyListFromBytes(const void* bytes, size_t length, RVFormatFault* fault,
                           RVPropertyListKind* format) {
  if (fault != nullptr) fault->Clear();
  if (bytes == nullptr || length == 0 || length > kRVPropertyListMaxBytes) {
    if (fault != nullptr)
      fault->message = length == 0 ? "empty: no property list" : "larger than a property list may be";
    return nil;
  }
  const unsigned char* p = static_cast<const unsigned char*>(bytes);
  if (StartsWith(p, length, "bplist00")) {
    if (format != nullptr) *format = kRVPropertyListBinary;
    return RVBinaryPropertyListRead(p, length, fault);
  }
  if (length >= 2 && ((p[0] == 0xFF && p[1] == 0xFE) || (p[0] == 0xFE && p[1] == 0xFF))) {
    // UTF-16 text: read as the UTF-8 it converts to.
    NSStringEncoding encoding =
        p[0] == 0xFF ? NSUTF16LittleEndianStringEncoding : NSUTF16BigEndianStringEncoding;
    RVOwned<NSString*> text =
        RVAdopt([[NSString alloc] initWithBytes:p + 2 length:length - 2 encoding:encoding]);
    NSData* utf8 = [text.Get() dataUsingEncoding:NSUTF8StringEncoding];
    if ([utf8 length] == 0) {
      if (fault != nullptr) fault->message = "UTF-16 text that cannot be decoded";
      return nil;
    }
    return ReadText(static_cast<const unsigned char*>([utf8 bytes]), [utf8 length], fault, format);
  }
  return ReadText(p, length, fault, format);
}

id RVPropertyListFromOpenFile(int fd) {
  struct stat info;
  std::vector<unsigned char> contents;
  if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) || info.st_size <= 0 ||
      static_cast<unsigned long long>(info.st_size) > kRVPropertyListMaxBytes) {
    return nil;
  }
  // Read at most one byte more than the limit: a file that grew since is
  // refused as well.
  contents.resize(static_cast<size_t>(info.st_size) + 1);
  size_t filled = 0;
  while (filled < contents.size()) {
    ssize_t got = read(fd, contents.data() + filled, contents.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    filled += static_cast<size_t>(got);
  }
  if (filled == 0 || filled > kRVPropertyListMaxBytes) return nil;
  return RVPropertyListFromBytes(contents.data(), filled);
}

id RVPropertyListFromFile(NSString* path) {
  const char* name = [path fileSystemRepresentation];
  if (name == nullptr) return nil;
  int fd = open(name, O_RDONLY | O_CLOEXEC);
  if (fd < 0) return nil;
  id list = RVPropertyListFromOpenFile(fd);
  close(fd);
  return list;
}
