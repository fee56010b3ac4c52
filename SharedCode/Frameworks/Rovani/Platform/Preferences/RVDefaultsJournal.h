// The journal of a defaults store: one record per change, appended with a
// single write beside the store's file and folded into it now and then.
// Private: never installed.
//
// A record is "RVj1", the payload's length (4 bytes, little-endian), a
// 64-bit hash of the payload (8 bytes, little-endian) and the payload: an
// XML property list from its <plist> element on, the array [key, value]
// for a set or [key] for a removal. A record cut short (its writer killed,
// a full disk) fails its hash and is stepped over: reading goes on at the
// next whole record.
#ifndef ROVANI_PLATFORM_RVDEFAULTSJOURNAL_H
#define ROVANI_PLATFORM_RVDEFAULTSJOURNAL_H

#import <Foundation/Foundation.h>

#include <cstddef>
#include <string>

#include "Platform/PropertyLists/RVFormatFault.h"

// The record that sets key to value (nil: removes key), in *record; false
// when the library's writer refuses the value, with *fault (when given)
// saying why. The caller keeps an autorelease pool.
bool RVJournalRecord(NSString* key, id value, std::string* record, RVFormatFault* fault = nullptr);

// Applies every whole record of bytes, in order, to values (a removal
// removes its key, or sets it to removed when that is given) and answers
// how many bytes were read: up to the end of the last whole record, so
// that a record still being written is read again next time.
size_t RVJournalReplay(const char* bytes, size_t length, NSMutableDictionary* values,
                       id removed = nil);

#endif
