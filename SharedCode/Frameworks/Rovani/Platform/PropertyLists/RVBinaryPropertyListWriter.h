// The library's own writer of binary property lists ("bplist00").
#ifndef ROVANI_PLATFORM_RVBINARYPROPERTYLISTWRITER_H
#define ROVANI_PLATFORM_RVBINARYPROPERTYLISTWRITER_H

#import <Foundation/Foundation.h>

#include "Platform/PropertyLists/RVFormatFault.h"

// The binary property-list bytes of list (autoreleased), exact for every
// value the XML writer takes, and refusing what it refuses
// (RVPropertyListRules.h); nil when any part of list has no exact form,
// with *fault (when given) saying why and naming the value's key path.
//
// - integers in the fewest of 1, 2, 4 or 8 bytes (negative ones in 8);
//   unsigned values above 2^63-1 in 16 bytes, as the positive two's-
//   complement number they are;
// - reals (float or double) in 8 bytes, every bit kept (NaN, -0);
// - dates as 8-byte seconds since 2001-01-01, fractions kept;
// - strings as ASCII when every character is, else UTF-16BE, a leading
//   U+FEFF kept; data; booleans (the platform's and the library's);
//   arrays; dictionaries in their enumeration order;
// - equal strings and scalars once (1 and 1.0 are not equal here);
//   offsets and references in the fewest bytes; the root is object 0.
// Also refused: lists of more than kRVPropertyListMaxObjects distinct
// objects or kRVPropertyListMaxBytes bytes, which the library's reader
// would not read back.
NSData* RVBinaryPropertyListData(id list, RVFormatFault* fault = nullptr);

#endif
