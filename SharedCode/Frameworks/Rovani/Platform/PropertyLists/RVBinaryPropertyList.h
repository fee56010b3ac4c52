// The library's own reader of binary property lists ("bplist00").
#ifndef ROVANI_PLATFORM_RVBINARYPROPERTYLIST_H
#define ROVANI_PLATFORM_RVBINARYPROPERTYLIST_H

#import <Foundation/Foundation.h>

#include <cstddef>

#include "Platform/PropertyLists/RVFormatFault.h"

// The property list held in length bytes of binary property-list data,
// immutable and autoreleased, or nil when the data is not one the reader can
// prove well-formed: every offset and reference inside the data, offsets and
// references of 1 to 8 bytes, counts that fit the data, no object that
// contains itself, dictionary keys that are strings, nesting within
// kRVPropertyListMaxDepth. Nulls, UIDs and sets have no place in the
// library's property lists and make the whole list unreadable. *fault, when
// given, says why and at which byte offset.
id RVBinaryPropertyListRead(const unsigned char* bytes, size_t length,
                            RVFormatFault* fault = nullptr);

#endif
