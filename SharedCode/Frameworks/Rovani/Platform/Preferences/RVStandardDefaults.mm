#import <Foundation/Foundation.h>

#include "Platform/Preferences/RVStandardDefaults.h"

#include <mutex>

#include "Platform/Preferences/RVDefaultsStore.h"

namespace {

NSString* ProcessName() { return [[NSProcessInfo processInfo] processName]; }

NSString* OwnApplication() {
  static NSString* own = [] {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSString* identifier = [[NSBundle mainBundle] bundleIdentifier];
    NSString* found = [([identifier length] > 0 ? identifier : ProcessName()) copy];
    [pool drain];
    return found;
  }();
  return own;
}

// A slash keeps the name from ever naming one of GNUstep's persistent
// domains, which are file names.
NSString* VolatileDomainName(NSString* application) {
  return [@"Rovani/" stringByAppendingString:application];
}

// The standard defaults, with the own application's current user values
// published as they are now.
NSUserDefaults* PublishedDefaults(NSString* application) {
  // One publisher at a time, so that an older snapshot never replaces a
  // newer one. Never destroyed.
  static std::mutex* publishing = new std::mutex();
  static unsigned long published = 0;
  static NSUserDefaults* target = nil;
  std::lock_guard<std::mutex> hold(*publishing);
  NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
  NSString* domain = VolatileDomainName(application);
  @try {
    if (defaults != target || published == 0 ||
        RVStoreChangedSince(RVStore::kCurrentUser, application, published)) {
      NSDictionary* values = RVStoreValues(RVStore::kCurrentUser, application, &published);
      [defaults removeVolatileDomainForName:domain];
      [defaults setVolatileDomain:values forName:domain];
      target = defaults;
    }
    NSArray* searchList = [defaults searchList];
    NSString* gnustepDomain = ProcessName();
    bool shown = [application isEqualToString:gnustepDomain] &&
                 [searchList containsObject:gnustepDomain];
    if (![searchList containsObject:domain] || shown) {
      NSMutableArray* list = [NSMutableArray arrayWithArray:searchList];
      if ([application isEqualToString:gnustepDomain]) [list removeObject:gnustepDomain];
      if (![list containsObject:domain]) {
        NSUInteger arguments = [list indexOfObject:NSArgumentDomain];
        [list insertObject:domain atIndex:(arguments == NSNotFound ? 0 : arguments + 1)];
      }
      [defaults setSearchList:list];
    }
  } @catch (NSException*) {
    // GNUstep refuses a domain name already taken: reads then go on
    // through its own domains only.
  }
  return defaults;
}

}  // namespace

bool RVIsOwnApplication(NSString* application) {
  return [application isEqualToString:OwnApplication()];
}

id RVCopyStandardDefaultsValue(NSString* application, NSString* key) {
  id value = nil;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  if (RVIsOwnApplication(application)) {
    value = [[PublishedDefaults(application) objectForKey:key] retain];
  } else {
    NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
    value = [[[defaults volatileDomainForName:NSArgumentDomain] objectForKey:key] retain];
    if (value == nil) value = RVStoreCopyValue(RVStore::kCurrentUser, application, key);
    if (value == nil) {
      value = [[[defaults persistentDomainForName:NSGlobalDomain] objectForKey:key] retain];
    }
    if (value == nil) {
      value = [[[defaults volatileDomainForName:NSRegistrationDomain] objectForKey:key] retain];
    }
  }
  [pool drain];
  return value;
}
