#import <Foundation/Foundation.h>

#include "Platform/Preferences/RVDefaultsJournal.h"

#include <cstdint>
#include <cstring>

#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyListWriter.h"

namespace {

const char kMagic[4] = {'R', 'V', 'j', '1'};
constexpr size_t kHeader = 16;

// A check of a record's bytes, eight at a time (a byte at a time cost as
// much as the rest of a record's making): a torn or overwritten record
// fails it. Not a defence against a forger, who could write the file anyway.
uint64_t Hash(const char* bytes, size_t length) {
  const uint64_t kMultiplier = 0x9E3779B97F4A7C15ull;
  uint64_t hash = 14695981039346656037ull ^ (length * kMultiplier);
  size_t i = 0;
  for (; i + 8 <= length; i += 8) {
    uint64_t word;
    memcpy(&word, bytes + i, 8);
    hash = (hash ^ word) * kMultiplier;
    hash ^= hash >> 29;
  }
  uint64_t tail = 0;
  memcpy(&tail, bytes + i, length - i);
  hash = (hash ^ tail) * kMultiplier;
  return hash ^ (hash >> 32);
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

bool RVJournalRecord(NSString* key, id value, std::string* record, RVFormatFault* fault) {
  if (key == nil) return false;
  const id change[] = {key, value};
  record->assign(kHeader, '\0');
  if (!RVXMLPropertyListAppendArrayElement(change, value != nil ? 2 : 1, record, fault)) return false;
  size_t payload = record->size() - kHeader;
  if (payload > 0xffffffffu) return false;
  memcpy(&(*record)[0], kMagic, 4);
  PutLittleEndian(&(*record)[4], payload, 4);
  PutLittleEndian(&(*record)[8], Hash(record->data() + kHeader, payload), 8);
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
