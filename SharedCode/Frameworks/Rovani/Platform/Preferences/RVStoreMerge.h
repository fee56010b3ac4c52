// Reading a defaults store's files and merging changes into them so that
// whatever can be written is. Private: never installed.
#ifndef ROVANI_PLATFORM_RVSTOREMERGE_H
#define ROVANI_PLATFORM_RVSTOREMERGE_H

#import <Foundation/Foundation.h>

#include <string>

#include "Platform/Preferences/RVStoreFiles.h"

// Whether value is a property-list object (the library's BoolNumber and
// NSNull are not; nesting deeper than the readers' bound is not).
bool RVIsPropertyListObject(id value);

// The dictionary in the regular file at path (autoreleased; nil for none)
// and its stamp; *damaged says why what is there is no dictionary (null
// when it is one, or missing, or empty). *text gets the file's bytes when
// given.
NSDictionary* RVReadStoreFile(const std::string& path, RVFileStamp* stamp, const char** damaged,
                              std::string* text = nullptr);

// GNUstep's own defaults file at path: read with the library's reader, and
// where that refuses it (beyond the library's bounds), with GNUstep's, which
// is what kept it. Autoreleased; nil for none.
NSDictionary* RVReadGNUstepDefaultsFile(const std::string& path);

struct RVStoreMerge {
  // What is merged: GNUstep's file being taken over, under the store's
  // file, under the changes (key to value, or to removed for a removal).
  NSDictionary* legacy = nil;
  std::string legacyPath;
  NSDictionary* stored = nil;
  std::string storedText;  // the file's text, or empty to read it from
  std::string storedPath;  // here when it is needed
  NSDictionary* changes = nil;
  id removed = nil;

  // What came of it (autoreleased): the values written; the changed keys
  // left out because the file could not take them (each named in a log
  // line); the stored keys kept as their original text; and whether
  // GNUstep's file could not be taken over (then none of its keys is in
  // merged, and a log line says so).
  NSMutableDictionary* merged = nil;
  NSMutableSet* dropped = nil;
  NSMutableSet* verbatim = nil;
  bool legacyRefused = false;
};

// The XML of the merge (autoreleased), or nil when even without every
// change the file could not be written.
NSData* RVMergeStore(RVStoreMerge* merge);

// After the merge was written: the changes it took leave pending; the
// journal records of those it left out go to *records (answering how
// many), for the journal to keep.
unsigned RVStoreLeftovers(const RVStoreMerge& merge, NSDictionary* changes,
                          NSMutableDictionary* pending, std::string* records);

#endif
