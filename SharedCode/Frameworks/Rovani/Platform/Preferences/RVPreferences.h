// Preferences in the Core Foundation manner, on top of GNUstep. Private:
// hidden symbols, never installed.
//
// Two stores, each one XML property list per application, read and
// written only by the library's own reader and writer, so that every value
// comes back as it was stored (RVDefaultsStore.h): the current user's, for
// any host, whose sets are durable at once through a journal beside the
// file; and every user's, for this host, whose changes wait in the process
// for a synchronise. Reads of the running program's own application go
// through GNUstep's standard defaults; another application's store is read
// directly and never published (RVStandardDefaults.h).
//
// An empty (or null) application ID stands for the running process's own
// GNUstep application domain, its process name, in both stores.
#ifndef ROVANI_PLATFORM_RVPREFERENCES_H
#define ROVANI_PLATFORM_RVPREFERENCES_H

#include <Rovani/RVDefines.h>

#include "Platform/CoreFoundation/RVCoreFoundation.h"

typedef CFTypeRef CFPropertyListRef;
typedef unsigned char Boolean;

// User and host names. Only the pairs (current user, any host) and (any
// user, current host) name a store; other pairs are ignored.
extern const CFStringRef kCFPreferencesAnyUser;
extern const CFStringRef kCFPreferencesCurrentUser;
extern const CFStringRef kCFPreferencesAnyHost;
extern const CFStringRef kCFPreferencesCurrentHost;

// Sets (or with a null value removes) key for the current user, any host:
// written to the store's journal before it returns. A value that is not a
// property-list object, or that the writer refuses, is ignored; a change
// that cannot be written (the directory cannot be made or written, a full
// disk) stays pending, seen by this process, and is tried again with the
// next change or synchronise.
void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef applicationID);

// Sets (or with a null value removes) key. For any user and the current
// host the change stays pending in this process until
// CFPreferencesSynchronize; reads in this process see it at once. For the
// current user and any host it is CFPreferencesSetAppValue.
void CFPreferencesSetValue(CFStringRef key, CFPropertyListRef value, CFStringRef applicationID,
                           CFStringRef userName, CFStringRef hostName);

// Writes the store's pending changes for the application (either store:
// any user and the current host, or the current user and any host) and
// folds the current user's journal into its file: under an exclusive lock
// on the store's directory, the file as it is now is merged key by key with
// the changes and replaced whole (RVAtomicFile.h). A crash leaves the old
// file or the new one, never a torn one, and processes that synchronise
// different keys lose none. File and directory modes are the store's,
// whatever the umask. Synchronising every user's store also folds the
// current user's journal and retries its changes that could not be written,
// but answers for every user's store alone.
// Answers false, the file untouched and the changes pending, when the
// directory cannot be made or written or the disk is full; false too while
// a change the file cannot take stays pending (named in a log line): the
// other changes are written. With nothing pending it answers true.
Boolean CFPreferencesSynchronize(CFStringRef applicationID, CFStringRef userName,
                                 CFStringRef hostName);

// The value for key as the application sees it (+1, or null): the
// standard user defaults first (the process's arguments, then the current
// user's value for the application, then GNUstep's global and registration
// domains), then every user's value for this host, pending changes
// included. Only the application's own store is ever consulted.
// A file that is missing, empty or not a property-list dictionary holds no
// values.
CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID);

// Every key of the application's domain with its value (+1, never null):
// every user's values for this host, pending changes included, with the
// current user's values for the application over them. Unlike
// CFPreferencesCopyAppValue it holds only the domain itself: no process
// arguments and none of the rest of GNUstep's search list.
CFDictionaryRef RVPreferencesCopyDomain(CFStringRef applicationID);

#endif
