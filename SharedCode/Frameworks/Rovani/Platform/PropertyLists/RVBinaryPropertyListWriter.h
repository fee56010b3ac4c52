// The library's own writer of binary property lists ("bplist00").
#ifndef ROVANI_PLATFORM_RVBINARYPROPERTYLISTWRITER_H
#define ROVANI_PLATFORM_RVBINARYPROPERTYLISTWRITER_H

#import <Foundation/Foundation.h>

#include "Platform/PropertyLists/RVFormatFault.h"

// The binary property-list bytes of list (autoreleased), exact for every
// value the XML writer takes; nil when any part of list has no exact form,
// with *fault (when given) saying why and naming the value's key path.
NSData* RVBinaryPropertyListData(id list, RVFormatFault* fault = nullptr);

#endif
