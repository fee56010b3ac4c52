#import <Foundation/Foundation.h>

#include "Platform/Preferences/RVDefaultsJournal.h"

#include <cstdint>
#include <cstring>

#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyListWriter.h"

namespace {

const char kMagic[4] = {'R', 'V', 'j', '1'};
constexpr size_t kHeader = 16;

uint64_t Hash(const char* bytes, size_t length) {
  uint64_t hash = 14695981039346656037ull;
  for (size_t i = 0; i < length; ++i) {
    hash = (hash ^ static_cast<unsigned char>(bytes[i])) * 1099511628211ull;
  }
  return hash;
}

void PutLittleEndian(char* at, uint64_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) at[i] = static_cast<char>((value >> (8 * i)) & 0xff);
}

uint64_t GetLittleEndian(const char* at, int bytes) {
  uint64_t value = 0;
  for (int i = bytes - 1; i >= 0; --i) value = (value << 8) | static_cast<unsigned char>(at[i]);
  return value;
}

// The length of the whole record at bytes, or 0 when there is none there.
size_t WholeRecord(const char* bytes, size_t length) {
  if (length < kHeader || memcmp(bytes, kMagic, 4) != 0) return 0;
  uint64_t payload = GetLittleEndian(bytes + 4, 4);
  if (payload > length - kHeader) return 0;
  if (Hash(bytes + kHeader, payload) != GetLittleEndian(bytes + 8, 8)) return 0;
  return kHeader + payload;
}

}  // namespace

bool RVJournalRecord(NSString* key, id value, std::string* record) {
  if (key == nil) return false;
  // Looked up once: a class named in code is looked up by name at each use.
  static Class arrays = [NSArray class];
  NSArray* change = value != nil ? [arrays arrayWithObjects:key, value, nil]
                                 : [arrays arrayWithObject:key];
  std::string payload;
  if (!RVXMLPropertyListWrite(change, &payload) || payload.size() > 0xffffffffu) return false;
  // The plist element alone reads the same: the declaration and document
  // type only lengthen every record.
  std::string::size_type plist = payload.find("<plist");
  if (plist != std::string::npos) payload.erase(0, plist);
  record->assign(kHeader, '\0');
  memcpy(&(*record)[0], kMagic, 4);
  PutLittleEndian(&(*record)[4], payload.size(), 4);
  PutLittleEndian(&(*record)[8], Hash(payload.data(), payload.size()), 8);
  record->append(payload);
  return true;
}

size_t RVJournalReplay(const char* bytes, size_t length, NSMutableDictionary* values,
                       id removed) {
  size_t at = 0, consumed = 0;
  while (at < length) {
    size_t whole = WholeRecord(bytes + at, length - at);
    if (whole == 0) {
      // Not a record here: a torn one. Look for the next whole one.
      const void* next = memchr(bytes + at + 1, kMagic[0], length - at - 1);
      if (next == nullptr) break;
      at = static_cast<const char*>(next) - bytes;
      continue;
    }
    @autoreleasepool {
      id change = RVPropertyListFromBytes(bytes + at + kHeader, whole - kHeader);
      if ([change isKindOfClass:[NSArray class]] && [change count] >= 1 && [change count] <= 2 &&
          [[change objectAtIndex:0] isKindOfClass:[NSString class]]) {
        NSString* key = [change objectAtIndex:0];
        if ([change count] == 2) {
          [values setObject:[change objectAtIndex:1] forKey:key];
        } else if (removed != nil) {
          [values setObject:removed forKey:key];
        } else {
          [values removeObjectForKey:key];
        }
      }
    }
    at += whole;
    consumed = at;
  }
  return consumed;
}
