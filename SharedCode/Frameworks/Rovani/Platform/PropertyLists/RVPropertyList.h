// Property lists in and out: the one serialiser, and the one guarded entry
// through which the library reads every property list it is handed (data,
// files, dictionary bodies, defaults files).
#ifndef ROVANI_PLATFORM_RVPROPERTYLIST_H
#define ROVANI_PLATFORM_RVPROPERTYLIST_H

#import <Foundation/Foundation.h>

#include <cstddef>

#include "Platform/PropertyLists/RVFormatFault.h"

// Bounds on what a property list read from untrusted bytes may cost. Input
// beyond them is unreadable: refused before anything is built.
constexpr size_t kRVPropertyListMaxBytes = 64u << 20;  // input size
constexpr unsigned kRVPropertyListMaxDepth = 256;      // nested containers
constexpr size_t kRVPropertyListMaxObjects = 1u << 20; // objects in one list

// Runs one of the library's own readers over bytes within the size bound:
// Reader(bytes, length).ReadRoot() answers the root (+1), or nil after
// which Report(fault) says why and where, or raises. The root comes back
// autoreleased; a raise, or bytes over the bound, give nil, and what the
// reader made on the way is drained with its own pool.
template <typename Reader>
id RVReadPropertyListWith(const unsigned char* bytes, size_t length, RVFormatFault* fault) {
  if (fault != nullptr) fault->Clear();
  if (bytes == nullptr || length > kRVPropertyListMaxBytes) {
    if (fault != nullptr) fault->message = "larger than a property list may be";
    return nil;
  }
  id root = nil;
  @autoreleasepool {
    @try {
      Reader reader(bytes, length);
      root = reader.ReadRoot();
      if (root == nil && fault != nullptr) reader.Report(fault);
    } @catch (NSException*) {
      root = nil;
      if (fault != nullptr) fault->message = "the platform refused a value";
    }
  }
  return [root autorelease];
}

// The XML property-list bytes of list, immutable and autoreleased; nil when
// the list has no exact form in the format (RVXMLPropertyListWriter.h):
// then nothing of it is written.
NSData* RVPropertyListXMLData(id list);

// The property list that length bytes describe, immutable (containers and
// leaves) and autoreleased; nil when the bytes are no property list, exceed
// the bounds above, or are in a format the library does not read.
//
// The format is recognised from the first bytes:
// - "bplist00": a binary property list, read by the library's own
//   bounds-checked reader (RVBinaryPropertyList.h);
// - "<?", "<!" or "<plist" after an optional byte-order mark and white
//   space (a declaration, comment or document type, or the plist element):
//   an XML property list, read by the library's own reader
//   (RVXMLPropertyList.h);
// - UTF-16 with a byte-order mark: decoded, then read as the text it holds;
// - anything else is OpenStep text (a property list, or failing that a
//   strings table of "key" = "value"; entries). It is checked completely
//   against the grammar and the bounds first, and only text that passes
//   goes to GNUstep's parser. Text that does not, GNUstep's own private
//   serialisation format included, is unreadable.
// Text ending in a zero byte is read up to its first zero byte, as a C
// string would be.
//
// *fault, when given, says why the bytes were refused and where, and
// *format (when given) which format the bytes were taken for.
enum RVPropertyListKind { kRVPropertyListXML, kRVPropertyListBinary, kRVPropertyListOpenStep };
id RVPropertyListFromBytes(const void* bytes, size_t length, RVFormatFault* fault = nullptr,
                           RVPropertyListKind* format = nullptr);

// The property list in the file at path, as RVPropertyListFromBytes reads
// it; nil when the file cannot be read, is not a regular file or is larger
// than kRVPropertyListMaxBytes (then nothing of it is read).
id RVPropertyListFromFile(NSString* path);

// The same for a file already open for reading, read from its current
// offset; the caller keeps and closes fd.
id RVPropertyListFromOpenFile(int fd);

#endif
