// The library's own reader of XML property lists.
#ifndef ROVANI_PLATFORM_RVXMLPROPERTYLIST_H
#define ROVANI_PLATFORM_RVXMLPROPERTYLIST_H

#import <Foundation/Foundation.h>

#include <cstddef>

#include "Platform/PropertyLists/RVFormatFault.h"

// The property list held in length bytes of UTF-8 XML (a declaration may
// name UTF-16 for text converted from it), immutable and
// autoreleased, or nil when the text is not a well-formed property list or
// nests deeper than kRVPropertyListMaxDepth or holds more than
// kRVPropertyListMaxObjects objects. Reads CDATA sections, the predefined and
// numeric character references, comments, processing instructions, a
// document type declaration, and empty elements (<key/>, <string/>). The
// root is a <plist> element holding one value, or a bare value element.
// *fault, when given, says why the text was refused and where (line and
// column of the first fault).
id RVXMLPropertyListRead(const unsigned char* bytes, size_t length,
                         RVFormatFault* fault = nullptr);

#endif
