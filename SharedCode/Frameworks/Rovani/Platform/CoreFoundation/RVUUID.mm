#import <Foundation/Foundation.h>

#include <uuid/uuid.h>

#include "Platform/CoreFoundation/RVUUID.h"

// The object behind a CFUUIDRef: the sixteen bytes of one UUID.
@interface RVUUIDObject : NSObject {
 @public
  uuid_t bytes;
}
@end

@implementation RVUUIDObject
@end

CFUUIDRef CFUUIDCreate(CFAllocatorRef allocator) {
  RVUUIDObject* uuid = [[RVUUIDObject alloc] init];
  uuid_generate(uuid->bytes);
  return (CFUUIDRef)uuid;
}

CFStringRef CFUUIDCreateString(CFAllocatorRef allocator, CFUUIDRef ref) {
  RVUUIDObject* uuid = (RVUUIDObject*)ref;
  if (uuid == nil) return nullptr;
  char text[37];
  uuid_unparse_upper(uuid->bytes, text);
  return (CFStringRef)[[NSString alloc] initWithCString:text encoding:NSASCIIStringEncoding];
}
