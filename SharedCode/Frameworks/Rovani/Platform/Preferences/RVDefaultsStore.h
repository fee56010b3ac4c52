// The defaults stores' files: one XML property list per application,
// <dir>/<application id>.plist, read and written only by the library's
// own reader and writer. Private: never installed.
//
// - The current user's (RVStore::kCurrentUser): <dir> is Rovani/ inside
//   GNUstep's user defaults directory; files 0600, directories 0700. Each
//   set is appended at once to the journal beside the file,
//   <application id>.plist.journal (RVDefaultsJournal.h), with one write:
//   it outlives the process from then on, and every process reads the file
//   with the journal over it. The journal is folded into the file when it
//   has grown past the file's size (and 1 MB) and at every synchronise.
//   Values GNUstep kept in its own <application id>.plist are read until
//   the store has a file of its own: its first write takes them over and
//   the file moves to <dir>/<application id>.plist.imported (or, where it
//   cannot move, is copied there when it can be and is no longer read).
//   GNUstep's file holding what the library cannot write stays where it is
//   and is still read, under the store's file, while
//   <dir>/<application id>.plist.gnustep-kept says so.
// - Every user's for this host (RVStore::kAllUsers): <dir> is
//   $ROVANI_ALL_USERS_DEFAULTS_DIR when set and not empty, else
//   /var/lib/rovani/defaults; files 0644, directories 0755. Changes stay
//   pending in the process until synchronised.
//
// Writing merges under an exclusive lock: the file as it is now, the
// journal, the changes, key by key; the result replaces the file whole
// (RVAtomicFile.h). A change the file cannot take (a value too large for
// what is stored already) stays pending, in the journal or in the process,
// and is named in one log line; the others are written. A value read from
// the file that the writer cannot write again is kept as its original text.
// What is found at a store's path and is no dictionary (a file cut short,
// not a property list, a FIFO, a directory, a link) is moved aside as
// <path>.damaged-<UTC time> before anything is written there.
#ifndef ROVANI_PLATFORM_RVDEFAULTSSTORE_H
#define ROVANI_PLATFORM_RVDEFAULTSSTORE_H

#import <Foundation/Foundation.h>

enum class RVStore { kCurrentUser, kAllUsers };

// Sets key to value (nil: removes it). A value that is not a property-list
// object the writer accepts is not stored. A current user's change that
// cannot be written now stays pending in the process, seen by it, and is
// tried again with the next change or synchronise.
void RVStoreSet(RVStore store, NSString* application, NSString* key, id value);

// The value for key (+1), pending changes included; nil for none.
id RVStoreCopyValue(RVStore store, NSString* application, NSString* key);

// Every key with its value, pending changes included (autoreleased); and in
// *version a number that changes whenever the answer may.
NSDictionary* RVStoreValues(RVStore store, NSString* application, unsigned long* version);

// The answer of RVStoreValues would differ from the one with version.
bool RVStoreChangedSince(RVStore store, NSString* application, unsigned long version);

// Writes the pending changes (and folds the journal). True when nothing
// stays pending; false, the files as they were, when the directory cannot
// be made or written, the disk is full, or a change cannot be written.
bool RVStoreSynchronize(RVStore store, NSString* application);

#endif
