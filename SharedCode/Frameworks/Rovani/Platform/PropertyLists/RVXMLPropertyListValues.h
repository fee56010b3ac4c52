// The leaves of an XML property list made from their elements' text. Each
// answers a new object (+1), or nil when the text is not one of its kind.
#ifndef ROVANI_PLATFORM_RVXMLPROPERTYLISTVALUES_H
#define ROVANI_PLATFORM_RVXMLPROPERTYLISTVALUES_H

#import <Foundation/Foundation.h>

#include <string>

// <integer>: decimal with an optional sign, or hexadecimal after 0x; any
// value that fits 64 bits, signed or unsigned. White space around is skipped.
id RVXMLMakeInteger(const std::string& text);
// <real>: decimal or "nan", "inf", "-inf".
id RVXMLMakeReal(const std::string& text);
// <date>: YYYY[-MM[-DD[THH[:MM[:SS]]]]]Z, in UTC.
id RVXMLMakeDate(const std::string& text);
// <data>: Base64, white space ignored, padding optional at the very end.
id RVXMLMakeData(const std::string& text);
// <string> and <key>, and any text made from UTF-8: nil for bytes that are
// not UTF-8; a leading U+FEFF is kept (the platform would drop it).
id RVNewStringFromUTF8(const std::string& text);

#endif
