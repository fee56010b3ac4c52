// Preferences in the Core Foundation manner, on top of GNUstep. Private:
// hidden symbols, never installed.
//
// Two stores, each one XML property list per application,
// <dir>/<application id>.plist, read and written only by the library's own
// reader and writer, so that every value comes back as it was stored:
// - the current user's, for any host: <dir> is Rovani/ inside GNUstep's
//   user defaults directory (GNUSTEP_USER_DEFAULTS_DIR of its
//   configuration, else ~/GNUstep/Defaults), files 0600, directories 0700.
//   GNUstep only reads and rewrites the *.plist files directly in its
//   directory, so it never touches these. Values that GNUstep itself kept
//   for the application in <its dir>/<application id>.plist are read (by
//   the library's reader) until the store has a file of its own; the first
//   write takes them over and moves GNUstep's file to
//   <dir>/<application id>.plist.imported.
// - every user's, for this host: <dir> is $ROVANI_ALL_USERS_DEFAULTS_DIR
//   when set and not empty, and /var/lib/rovani/defaults otherwise; files
//   0644, directories 0755. Linux has no machine-wide store of its own.
// Both are written the same way (CFPreferencesSynchronize below) and keep
// the last version read of each file, read again when the file changed.
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

// Sets (or with a null value removes) key for the current user, any host,
// and writes the store at once. A value that is not a property-list object,
// or that the writer refuses, is ignored; a change that cannot be written
// (the directory cannot be made or written) stays pending, seen by this
// process, and is written with the next one.
void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef applicationID);

// Sets (or with a null value removes) key. For any user and the current
// host the change stays pending in this process until
// CFPreferencesSynchronize; reads in this process see it at once. For the
// current user and any host it is CFPreferencesSetAppValue.
void CFPreferencesSetValue(CFStringRef key, CFPropertyListRef value, CFStringRef applicationID,
                           CFStringRef userName, CFStringRef hostName);

// Writes the store's pending changes for the application (either store:
// any user and the current host, or the current user and any host). Takes
// an exclusive lock on the store's directory, re-reads the application's
// file, merges the pending changes key by key, writes the result to an
// unnamed file in the same directory, flushes it and puts it in place of
// the old file, then unlocks (see RVAtomicFile.h). A crash leaves the old
// file or the new one, never a torn one, and processes that synchronise
// different keys lose none. File and directory modes are the store's
// (above), whatever the umask.
// Answers false, leaving the file untouched and the changes pending, when
// the directory cannot be made or written or a pending value is not a
// property-list object or is refused by the writer. With nothing pending
// it answers true and writes nothing.
Boolean CFPreferencesSynchronize(CFStringRef applicationID, CFStringRef userName,
                                 CFStringRef hostName);

// The value for key as the application sees it (+1, or null): the
// standard user defaults first (the process's arguments, then the current
// user's value for the application, then the rest of GNUstep's search
// list), then every user's value for this host, pending changes included.
// The current user's values reach the standard defaults as a volatile
// domain, "Rovani/<application id>", placed right after the arguments and
// published again whenever the store's file or changes differ from what
// it holds.
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
