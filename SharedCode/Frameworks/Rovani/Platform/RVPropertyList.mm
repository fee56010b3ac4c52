#import <Foundation/Foundation.h>

#include "Platform/RVPropertyList.h"

NSData* RVPropertyListXMLData(id list) {
  if (list == nil) return nil;
  NSString* error = nil;  // autoreleased by GNUstep
  NSData* serialised = nil;
  @try {
    serialised = [NSPropertyListSerialization dataFromPropertyList:list
                                                            format:NSPropertyListXMLFormat_v1_0
                                                  errorDescription:&error];
  } @catch (NSException*) {
    serialised = nil;
  }
  // The serialiser answers a mutable buffer; callers keep what cannot change.
  return [[serialised copy] autorelease];
}

id RVPropertyListFromData(NSData* data) {
  if (data == nil) return nil;
  NSPropertyListFormat format;
  NSString* error = nil;
  @try {
    return [NSPropertyListSerialization propertyListFromData:data
                                            mutabilityOption:NSPropertyListImmutable
                                                      format:&format
                                            errorDescription:&error];
  } @catch (NSException*) {
    return nil;
  }
}

id RVPropertyListFromString(NSString* text) {
  @try {
    return [text propertyList];
  } @catch (NSException*) {
    return nil;
  }
}
