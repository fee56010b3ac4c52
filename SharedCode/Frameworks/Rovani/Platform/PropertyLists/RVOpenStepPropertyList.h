// OpenStep text property lists (and strings tables), checked by the
// library's own grammar before GNUstep's parser sees them.
#ifndef ROVANI_PLATFORM_RVOPENSTEPPROPERTYLIST_H
#define ROVANI_PLATFORM_RVOPENSTEPPROPERTYLIST_H

#import <Foundation/Foundation.h>

#include <cstddef>

#include "Platform/PropertyLists/RVFormatFault.h"

// The property list (or strings table of "key" = "value"; entries) held
// in length bytes of UTF-8 OpenStep text, immutable and autoreleased; nil
// when the text fails the grammar or the bounds, with *fault (when given)
// saying why and where (line and column).
id RVOpenStepPropertyListRead(const unsigned char* bytes, size_t length,
                              RVFormatFault* fault = nullptr);

#endif
