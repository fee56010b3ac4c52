#import <Foundation/Foundation.h>

#include "Platform/Preferences/RVStoreMerge.h"

#include <fcntl.h>
#include <unistd.h>

#include <vector>

#include "Platform/Preferences/RVDefaultsJournal.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyListWriter.h"

namespace {

// Each class named in code is looked up by name at every use with this
// runtime: the walk below runs on every set, so it asks once.
struct Classes {
  Class string = [NSString class], data = [NSData class], date = [NSDate class],
        number = [NSNumber class], array = [NSArray class], dictionary = [NSDictionary class];
};

bool IsPropertyListObject(id value, unsigned depth) {
  static const Classes* classes = new Classes();
  if (value == nil || depth > kRVPropertyListMaxDepth) return false;
  if ([value isKindOfClass:classes->string] || [value isKindOfClass:classes->data] ||
      [value isKindOfClass:classes->date] || [value isKindOfClass:classes->number]) {
    return true;
  }
  if ([value isKindOfClass:classes->array]) {
    for (id element in (NSArray*)value) {
      if (!IsPropertyListObject(element, depth + 1)) return false;
    }
    return true;
  }
  if ([value isKindOfClass:classes->dictionary]) {
    for (id key in (NSDictionary*)value) {
      if (![key isKindOfClass:classes->string]) return false;
      if (!IsPropertyListObject([(NSDictionary*)value objectForKey:key], depth + 1)) return false;
    }
    return true;
  }
  return false;
}

// The size of key's entry as the writer writes it alone; 0 when it
// refuses it.
NSUInteger EntrySize(NSString* key, id value) {
  NSUInteger size = 0;
  @autoreleasepool {
    size = [RVXMLPropertyListData([NSDictionary dictionaryWithObject:value forKey:key]) length];
  }
  return size;
}

// A key of values whose entry the writer refuses even alone; nil for none.
NSString* RefusedKey(NSDictionary* values) {
  for (NSString* key in values) {
    if (EntrySize(key, [values objectForKey:key]) == 0) return key;
  }
  return nil;
}

// The changed key with the largest value still in merged.
NSString* LargestChange(const RVStoreMerge& merge) {
  NSString* largest = nil;
  NSUInteger largestSize = 0;
  for (NSString* key in merge.changes) {
    id change = [merge.changes objectForKey:key];
    if (change == merge.removed || [merge.dropped containsObject:key]) continue;
    NSUInteger size = EntrySize(key, change);
    if (size > largestSize) {
      largest = key;
      largestSize = size;
    }
  }
  return largest;
}

// What key held before the changes.
id Unchanged(const RVStoreMerge& merge, NSString* key) {
  id stored = [merge.stored objectForKey:key];
  return stored != nil || merge.legacyRefused ? stored : [merge.legacy objectForKey:key];
}

void Drop(RVStoreMerge* merge, NSString* key, const char* why) {
  [merge->dropped addObject:key];
  id before = Unchanged(*merge, key);
  if (before != nil) {
    [merge->merged setObject:before forKey:key];
  } else {
    [merge->merged removeObjectForKey:key];
  }
  NSLog(@"Rovani defaults: the change to %@ %s; it stays pending", key, why);
}

}  // namespace

bool RVIsPropertyListObject(id value) { return IsPropertyListObject(value, 0); }

NSDictionary* RVReadStoreFile(const std::string& path, RVFileStamp* stamp, const char** damaged,
                              std::string* text) {
  *damaged = nullptr;
  *stamp = RVFileStamp::At(path);
  if (!stamp->exists) return nil;
  bool notRegular = false;
  int fd = RVOpenRegularFile(path, O_RDONLY, 0, &notRegular);
  if (fd < 0) {
    if (notRegular) *damaged = "is not a regular file";
    return nil;
  }
  struct stat info;
  if (fstat(fd, &info) == 0) *stamp = RVFileStamp::Of(info);
  std::string bytes;
  id parsed = nil;
  if (RVReadWholeFile(fd, kRVPropertyListMaxBytes, &bytes)) {
    parsed = RVPropertyListFromBytes(bytes.data(), bytes.size());
  }
  close(fd);
  if (![parsed isKindOfClass:[NSDictionary class]]) {
    if (stamp->size > 0) *damaged = "cannot be read as a dictionary";
    return nil;
  }
  if (text != nullptr) text->swap(bytes);
  return parsed;
}

NSDictionary* RVReadGNUstepDefaultsFile(const std::string& path) {
  RVFileStamp stamp;
  const char* damaged = nullptr;
  NSDictionary* values = RVReadStoreFile(path, &stamp, &damaged);
  if (values != nil || damaged == nullptr || !stamp.IsRegular()) return values;
  @try {
    NSData* data = [NSData dataWithContentsOfFile:[NSString stringWithUTF8String:path.c_str()]];
    id list = [NSPropertyListSerialization propertyListWithData:data
                                                        options:NSPropertyListImmutable
                                                         format:nullptr
                                                          error:nullptr];
    if ([list isKindOfClass:[NSDictionary class]]) values = list;
  } @catch (NSException*) {
    values = nil;
  }
  return values;
}

NSData* RVMergeStore(RVStoreMerge* merge) {
  merge->merged = [NSMutableDictionary dictionary];
  merge->dropped = [NSMutableSet set];
  merge->verbatim = [NSMutableSet set];
  merge->legacyRefused = false;
  if (merge->legacy != nil) [merge->merged addEntriesFromDictionary:merge->legacy];
  if (merge->stored != nil) [merge->merged addEntriesFromDictionary:merge->stored];
  for (NSString* key in merge->changes) {
    id change = [merge->changes objectForKey:key];
    if (change == merge->removed) {
      [merge->merged removeObjectForKey:key];
    } else if (RVIsPropertyListObject(change)) {
      [merge->merged setObject:change forKey:key];
    } else {
      Drop(merge, key, "is no property-list object");
    }
  }
  std::vector<std::string> entries;
  for (NSUInteger round = 0; round <= [merge->merged count] + [merge->changes count]; ++round) {
    NSData* xml = nil;
    @autoreleasepool {
      xml = [RVXMLPropertyListData(merge->merged) retain];
    }
    if (xml != nil) {
      [xml autorelease];
      return entries.empty() ? xml : RVInsertEntries(xml, entries);
    }
    NSString* key = RefusedKey(merge->merged);
    id change = key != nil ? [merge->changes objectForKey:key] : nil;
    if (key == nil) {
      // Every entry can be written alone, but not all together: the file
      // would be too large. The largest change waits.
      key = LargestChange(*merge);
      if (key == nil) return nil;
      Drop(merge, key, "makes its store too large to be written");
    } else if (change != nil && change != merge->removed && ![merge->dropped containsObject:key]) {
      Drop(merge, key, "cannot be written");
    } else if ([merge->stored objectForKey:key] != nil) {
      // Read from the file but not writable again: kept as it was written.
      std::string entry;
      if (merge->storedText.empty() && !merge->storedPath.empty()) {
        bool notRegular = false;
        int fd = RVOpenRegularFile(merge->storedPath, O_RDONLY, 0, &notRegular);
        if (fd >= 0) RVReadWholeFile(fd, kRVPropertyListMaxBytes, &merge->storedText);
        if (fd >= 0) close(fd);
      }
      if (!RVTopLevelEntryText(merge->storedText, key, &entry)) return nil;
      entries.push_back(entry);
      [merge->verbatim addObject:key];
      [merge->merged removeObjectForKey:key];
    } else if ([merge->legacy objectForKey:key] != nil && !merge->legacyRefused) {
      merge->legacyRefused = true;
      for (NSString* legacyKey in merge->legacy) {
        if ([merge->stored objectForKey:legacyKey] == nil &&
            [merge->changes objectForKey:legacyKey] == nil) {
          [merge->merged removeObjectForKey:legacyKey];
        }
      }
      NSLog(@"Rovani defaults: %s holds values the library cannot write (%@); it stays where "
            @"it is and is still read",
            merge->legacyPath.c_str(), key);
    } else {
      return nil;
    }
  }
  return nil;
}

unsigned RVStoreLeftovers(const RVStoreMerge& merge, NSDictionary* changes,
                          NSMutableDictionary* pending, std::string* records) {
  unsigned stuck = 0;
  for (NSString* key in changes) {
    if (![merge.dropped containsObject:key]) {
      [pending removeObjectForKey:key];
    } else if ([pending objectForKey:key] == nil) {
      id change = [changes objectForKey:key];
      std::string record;
      if (RVJournalRecord(key, change == merge.removed ? nil : change, &record)) {
        records->append(record);
        ++stuck;
      }
    }
  }
  return stuck;
}
