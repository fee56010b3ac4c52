// Property lists in and out: the one serialiser and the guarded parsers
// that dictionaries and data share.
#ifndef ROVANI_PLATFORM_RVPROPERTYLIST_H
#define ROVANI_PLATFORM_RVPROPERTYLIST_H

#import <Foundation/Foundation.h>

// The XML property-list bytes of list, immutable and autoreleased; nil when
// GNUstep cannot serialise it (it raises for a nil root or a key that is
// not a string: either way there is no data).
NSData* RVPropertyListXMLData(id list);

// The property list that data or text describe, autoreleased; nil for
// malformed input (GNUstep's parsers raise on it).
id RVPropertyListFromData(NSData* data);
id RVPropertyListFromString(NSString* text);

#endif
