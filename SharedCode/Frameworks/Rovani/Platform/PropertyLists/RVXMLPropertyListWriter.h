// The library's own writer of XML property lists.
#ifndef ROVANI_PLATFORM_RVXMLPROPERTYLISTWRITER_H
#define ROVANI_PLATFORM_RVXMLPROPERTYLISTWRITER_H

#import <Foundation/Foundation.h>

#include <string>

#include "Platform/PropertyLists/RVFormatFault.h"

// Writes list as an XML property-list document into *out (replacing what
// it held) and answers true; answers false, with *out unspecified, when
// any part of list has no exact form in the format. Nothing is ever
// written with a changed value:
//
// - strings and keys: UTF-8, every character as itself; "&", "<", ">",
//   '"' and "'" as entity references and CR as "&#13;" (a raw CR comes
//   back from any XML reader as LF); a leading U+FEFF is kept. Refused:
//   characters XML 1.0 forbids (controls other than tab, LF and CR,
//   U+FFFE, U+FFFF) and unpaired surrogates;
// - numbers: the platform's booleans and the library's BoolNumber as
//   <true/>/<false/>; integers of any width up to 64 bits, signed or
//   unsigned, in decimal; reals (float or double) as the shortest text
//   that reads back to the same double, or "nan", "inf", "-inf"; an
//   NSDecimalNumber as a real when a double holds its value exactly
//   (refused otherwise: never rounded);
// - dates: in UTC as YYYY-MM-DDTHH:MM:SSZ, floored to the second, for
//   years 1 to 9999 (others refused);
// - data: standard Base64 with padding;
// - dictionaries: keys must be strings; entries sorted by key as
//   -[NSString compare:] orders them, keys that compare the same in
//   UTF-16 code-unit order;
// - containers nested deeper than kRVPropertyListMaxDepth, lists of more
//   than kRVPropertyListMaxObjects objects or texts over
//   kRVPropertyListMaxBytes are refused: the library could not read them
//   back;
// - anything else (NSNull, a nil root, other classes) is refused.
//
// The layout is the platform's: declaration, document type, <plist
// version="1.0">, one element a line indented four columns a level with
// each eight columns as a tab, Base64 on the line after <data>, empty
// containers as an open and a close tag, no newline after </plist>.
// What a list may hold is shared with the binary writer
// (RVPropertyListRules.h). *fault, when given, says why a write was refused
// and gives the refused value's key path.
bool RVXMLPropertyListWrite(id list, std::string* out, RVFormatFault* fault = nullptr);

// Appends the <plist> element alone (no declaration, no document type) of
// an array of count items, which need not be made first, to *out: for
// records too small to carry the rest. False, with *out unspecified and
// *fault (when given) saying why, where the items have no exact form. It
// drains no pool of its own: the caller keeps one.
bool RVXMLPropertyListAppendArrayElement(const id* items, size_t count, std::string* out,
                                         RVFormatFault* fault = nullptr);

// The same text as data (autoreleased), or nil where the write above
// answers false.
NSData* RVXMLPropertyListData(id list, RVFormatFault* fault = nullptr);

#endif
