#import <Foundation/Foundation.h>

#include "Platform/Preferences/RVPreferences.h"

#include "Platform/Preferences/RVDefaultsStore.h"
#include "Platform/Preferences/RVStandardDefaults.h"

const CFStringRef kCFPreferencesAnyUser = (CFStringRef) @"kCFPreferencesAnyUser";
const CFStringRef kCFPreferencesCurrentUser = (CFStringRef) @"kCFPreferencesCurrentUser";
const CFStringRef kCFPreferencesAnyHost = (CFStringRef) @"kCFPreferencesAnyHost";
const CFStringRef kCFPreferencesCurrentHost = (CFStringRef) @"kCFPreferencesCurrentHost";

namespace {

// An empty application ID is the process's own application domain.
NSString* ResolvedApplicationID(CFStringRef applicationID) {
  NSString* given = (NSString*)applicationID;
  return [given length] > 0 ? given : [[NSProcessInfo processInfo] processName];
}

bool Names(CFStringRef name, CFStringRef constant) {
  return name == constant || [(NSString*)name isEqual:(NSString*)constant];
}

bool IsAllUsers(CFStringRef userName, CFStringRef hostName) {
  return Names(userName, kCFPreferencesAnyUser) && Names(hostName, kCFPreferencesCurrentHost);
}

bool IsCurrentUser(CFStringRef userName, CFStringRef hostName) {
  return Names(userName, kCFPreferencesCurrentUser) && Names(hostName, kCFPreferencesAnyHost);
}

}  // namespace

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef applicationID) {
  RVStoreSet(RVStore::kCurrentUser, ResolvedApplicationID(applicationID), (NSString*)key, (id)value);
}

void CFPreferencesSetValue(CFStringRef key, CFPropertyListRef value, CFStringRef applicationID,
                           CFStringRef userName, CFStringRef hostName) {
  if (IsAllUsers(userName, hostName)) {
    RVStoreSet(RVStore::kAllUsers, ResolvedApplicationID(applicationID), (NSString*)key, (id)value);
  } else if (IsCurrentUser(userName, hostName)) {
    CFPreferencesSetAppValue(key, value, applicationID);
  }
}

Boolean CFPreferencesSynchronize(CFStringRef applicationID, CFStringRef userName,
                                 CFStringRef hostName) {
  NSString* application = ResolvedApplicationID(applicationID);
  if (IsAllUsers(userName, hostName)) {
    // The answer is every user's store's alone. The current user's changes
    // reached its journal as they were made; folding the journal into the
    // file here changes no value, and lets other tools read the file whole.
    bool allUsers = RVStoreSynchronize(RVStore::kAllUsers, application);
    RVStoreSynchronize(RVStore::kCurrentUser, application);
    return allUsers;
  }
  if (IsCurrentUser(userName, hostName)) {
    return RVStoreSynchronize(RVStore::kCurrentUser, application);
  }
  return 0;
}

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID) {
  if (key == nullptr) return nullptr;
  NSString* application = ResolvedApplicationID(applicationID);
  id value = RVCopyStandardDefaultsValue(application, (NSString*)key);
  if (value != nil) return (CFPropertyListRef)value;
  return (CFPropertyListRef)RVStoreCopyValue(RVStore::kAllUsers, application, (NSString*)key);
}

CFDictionaryRef RVPreferencesCopyDomain(CFStringRef applicationID) {
  NSString* application = ResolvedApplicationID(applicationID);
  NSMutableDictionary* domain = [[NSMutableDictionary alloc] init];
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  [domain addEntriesFromDictionary:RVStoreValues(RVStore::kAllUsers, application, nullptr)];
  [domain addEntriesFromDictionary:RVStoreValues(RVStore::kCurrentUser, application, nullptr)];
  [pool drain];
  NSDictionary* result = [domain copy];
  [domain release];
  return (CFDictionaryRef)result;
}
