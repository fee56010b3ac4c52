#import <Foundation/Foundation.h>

#include "Platform/Preferences/RVDefaultsStore.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>
#include <string>

#include "Platform/Files/RVAtomicFile.h"
#include "Platform/Preferences/RVDefaultsJournal.h"
#include "Platform/Preferences/RVStoreFiles.h"
#include "Platform/Preferences/RVStoreMerge.h"
#include "Platform/Preferences/RVStorePaths.h"
#include "Platform/PropertyLists/RVPropertyList.h"

namespace {

// The journal is folded once it is larger than this and than the file.
constexpr off_t kFoldAtLeast = 2 << 20;

// Stands for a removal among changes.
id Removed() {
  static id marker = [[NSObject alloc] init];
  return marker;
}



// Everything this process knows of one application's files.
struct Domain {
  NSMutableDictionary* values = nil;  // the file with the journal over it; nil until read
  RVFileStamp file;
  int journal = -1;        // open, with a shared lock, while the process lives
  ino_t journalInode = 0;  // 0: no journal read
  off_t journalEnd = 0;    // read up to here
  off_t appended = 0;      // written by this process since
  bool appendFailed = false;
  off_t foldedAt = 0;      // the file holds the journal up to here
  unsigned stuck = 0;      // journal changes the file could not take
  bool damaged = false;    // the file holds no dictionary
  bool directoryReady = false;
  bool legacyActive = false;
  RVFileStamp legacyStamp;
  NSDictionary* legacy = nil;  // GNUstep's file's values while it is read
};

class Store {
 public:
  explicit Store(const RVStoreKind& kind) : kind_(kind), pending_([[NSMutableDictionary alloc] init]) {}

  void Set(NSString* application, NSString* key, id value) {
    if (key == nil) return;
    std::lock_guard<std::mutex> hold(mutex_);
    ++version_;
    // A copy, so that a caller's later change to a mutable value changes
    // nothing here; what cannot be copied is kept as it is.
    id copied = [value conformsToProtocol:@protocol(NSCopying)] ? [value copy] : [value retain];
    [copied autorelease];
    if (!kind_.currentUser) {
      [Pending(application) setObject:(copied != nil ? copied : Removed()) forKey:key];
      return;
    }
    // What is no property-list object, or what the writer refuses, is not
    // stored; for the second the log says why.
    if (copied != nil && !RVIsPropertyListObject(copied)) return;
    std::string& record = record_;
    RVFormatFault fault;
    if (!RVJournalRecord(key, copied, &record, &fault)) {
      NSLog(@"Rovani defaults: the value for %@ cannot be stored: %s", key, fault.message.c_str());
      return;
    }
    const RVStorePaths* p = CurrentUserPaths(application);
    if (p == nullptr) {
      [Pending(application) setObject:(copied != nil ? copied : Removed()) forKey:key];
      return;
    }
    Domain& d = *lastDomain_;
    if (d.values == nil) Refresh(d, *p);
    if ([[pending_ objectForKey:application] count] == 0 && !TakeoverDue(d, *p) &&
        Append(d, *p, record)) {
      Apply(d.values, key, copied);
    } else {
      [Pending(application) setObject:(copied != nil ? copied : Removed()) forKey:key];
      Flush(d, *p, application);
    }
    // The first set makes the file, so that other tools find one.
    if (!d.file.exists || Unfolded(d) > std::max(kFoldAtLeast, 2 * d.file.size)) {
      Fold(d, *p, application);
    }
  }

  id CopyValue(NSString* application, NSString* key) {
    if (key == nil) return nil;
    std::lock_guard<std::mutex> hold(mutex_);
    id change = [[pending_ objectForKey:application] objectForKey:key];
    if (change != nil) return change == Removed() ? nil : [change retain];
    RVStorePaths p;
    if (!RVStorePathsFor(kind_, application, &p)) return nil;
    Domain& d = domains_[p.file];
    Refresh(d, p);
    id value = [d.values objectForKey:key];
    if (value == nil && d.legacyActive) value = [d.legacy objectForKey:key];
    return [value retain];
  }

  NSDictionary* Values(NSString* application, unsigned long* version) {
    std::lock_guard<std::mutex> hold(mutex_);
    NSMutableDictionary* values = [NSMutableDictionary dictionary];
    RVStorePaths p;
    if (RVStorePathsFor(kind_, application, &p)) {
      Domain& d = domains_[p.file];
      Refresh(d, p);
      if (d.legacyActive) [values addEntriesFromDictionary:d.legacy];
      [values addEntriesFromDictionary:d.values];
    }
    NSDictionary* pending = [pending_ objectForKey:application];
    for (id key in pending) Apply(values, key, [pending objectForKey:key]);
    if (version != nullptr) *version = version_;
    return values;
  }

  bool ChangedSince(NSString* application, unsigned long version) {
    std::lock_guard<std::mutex> hold(mutex_);
    RVStorePaths p;
    if (RVStorePathsFor(kind_, application, &p)) Refresh(domains_[p.file], p);
    return version != version_;
  }

  bool Synchronize(NSString* application) {
    std::lock_guard<std::mutex> hold(mutex_);
    NSMutableDictionary* pending = [pending_ objectForKey:application];
    RVStorePaths p;
    if (!RVStorePathsFor(kind_, application, &p)) return [pending count] == 0;
    Domain& d = domains_[p.file];
    Refresh(d, p);
    if (kind_.currentUser) {
      Flush(d, p, application);
      bool due = Unfolded(d) > 0 || [pending count] > 0 || TakeoverDue(d, p);
      if (due && !Fold(d, p, application)) return false;
      return [pending count] == 0 && d.stuck == 0;
    }
    if ([pending count] == 0) return true;
    return Fold(d, p, application) && [pending count] == 0;
  }

 private:
  NSMutableDictionary* Pending(NSString* application) {
    NSMutableDictionary* changes = [pending_ objectForKey:application];
    if (changes == nil) {
      changes = [NSMutableDictionary dictionary];
      [pending_ setObject:changes forKey:application];
    }
    return changes;
  }

  static void Apply(NSMutableDictionary* values, NSString* key, id change) {
    if (change == nil || change == Removed()) {
      [values removeObjectForKey:key];
    } else {
      [values setObject:change forKey:key];
    }
  }

  // The current user's paths for application, and its domain in
  // lastDomain_; the last application's are kept (the current user's
  // directory never changes). Null when the application has no file.
  const RVStorePaths* CurrentUserPaths(NSString* application) {
    if (lastDomain_ != nullptr &&
        (application == lastApplication_ || [application isEqualToString:lastApplication_])) {
      return &lastPaths_;
    }
    lastDomain_ = nullptr;
    if (!RVStorePathsFor(kind_, application, &lastPaths_)) return nullptr;
    [lastApplication_ release];
    lastApplication_ = [application copy];
    lastDomain_ = &domains_[lastPaths_.file];
    return &lastPaths_;
  }


  // GNUstep's file is read and the store has no file yet: the next write
  // takes it over.
  static bool TakeoverDue(const Domain& d, const RVStorePaths& p) {
    return d.legacyActive && d.legacy != nil && !d.file.exists;
  }

  static off_t Unfolded(const Domain& d) { return d.journalEnd + d.appended - d.foldedAt; }

  void CloseJournal(Domain& d) {
    if (d.journal >= 0) close(d.journal);
    d.journal = -1;
  }

  // The journal, opened for appending (made when create is set and it is
  // missing) and held with a shared lock for as long as the process lives:
  // it is emptied only by a process that holds it alone. False when there
  // is none to use.
  bool OpenJournal(Domain& d, const RVStorePaths& p, bool create) {
    if (d.journal >= 0) return true;
    if (create && !d.directoryReady) {
      d.directoryReady = RVMakeStoreDirectory(p.dir, kind_.directoryMode, kind_.currentUser);
      if (!d.directoryReady) return false;
    }
    unguarded_ = RVNoFileSizeLimit();
    for (int attempt = 0; attempt < 4; ++attempt) {
      bool notRegular = false;
      int flags = O_RDWR | O_APPEND | (create ? O_CREAT : 0);
      d.journal = RVOpenRegularFile(p.journal, flags, kind_.fileMode, &notRegular);
      if (d.journal >= 0) {
        RVLockFile(d.journal, LOCK_SH);
        struct stat info;
        if (fstat(d.journal, &info) == 0 && info.st_nlink > 0) {
          // A journal made since the files were read starts empty.
          if (d.journalInode == 0 && d.journalEnd == 0 && info.st_size == 0) {
            d.journalInode = info.st_ino;
          }
          return true;
        }
        CloseJournal(d);
        continue;
      }
      if (create && errno == ENOENT && RVMakeStoreDirectory(p.dir, kind_.directoryMode, true)) {
        continue;
      }
      if (!notRegular || !create || !RVKeepDamagedAside(p.journal, "is not a regular file")) break;
    }
    return false;
  }


  // Appends one record with one write.
  bool Append(Domain& d, const RVStorePaths& p, const std::string& record) {
    if (!OpenJournal(d, p, true)) return false;
    int error = RVWriteWholly(d.journal, record.data(), record.size(), !unguarded_);
    if (error != 0) {
      d.appendFailed = true;
      NSLog(@"Rovani defaults: cannot write to %s (%s); the change stays pending",
            p.journal.c_str(), strerror(error));
      return false;
    }
    d.appended += static_cast<off_t>(record.size());
    return true;
  }

  // Appends the application's pending changes; folds instead while
  // GNUstep's file waits to be taken over.
  bool Flush(Domain& d, const RVStorePaths& p, NSString* application) {
    NSMutableDictionary* pending = [pending_ objectForKey:application];
    if ([pending count] == 0) return true;
    if (TakeoverDue(d, p)) return Fold(d, p, application);
    for (NSString* key in [pending allKeys]) {
      id change = [pending objectForKey:key];
      id value = change == Removed() ? nil : change;
      std::string record;
      if (!RVJournalRecord(key, value, &record) || !Append(d, p, record)) return false;
      Apply(d.values, key, value);
      [pending removeObjectForKey:key];
    }
    return true;
  }

  // Brings d up to what the files hold now: a read of unchanged files costs
  // a stat or two; a grown journal is read from where reading stopped.
  void Refresh(Domain& d, const RVStorePaths& p) {
    RVFileStamp file = RVFileStamp::At(p.file);
    bool fresh = d.values != nil && file == d.file;
    if (fresh && kind_.currentUser && d.journal >= 0) {
      // Unchanged but for this process's own appends, already applied.
      struct stat info;
      fresh = !d.appendFailed && fstat(d.journal, &info) == 0 && info.st_nlink > 0 &&
              info.st_ino == d.journalInode && info.st_size == d.journalEnd + d.appended;
      if (fresh) {
        d.journalEnd = info.st_size;
        d.appended = 0;
      }
    } else if (fresh && kind_.currentUser) {
      fresh = !RVFileStamp::At(p.journal).IsRegular();
    }
    if (!fresh) Reload(d, p);
    if (kind_.currentUser) RefreshLegacy(d, p);
  }

  void Reload(Domain& d, const RVStorePaths& p) {
    ++version_;
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    struct stat info;
    if (d.journal >= 0 && (fstat(d.journal, &info) != 0 || info.st_nlink == 0)) CloseJournal(d);
    bool haveJournal = kind_.currentUser && OpenJournal(d, p, false) && fstat(d.journal, &info) == 0;
    ino_t inode = haveJournal ? info.st_ino : 0;
    RVFileStamp file = RVFileStamp::At(p.file);
    if (d.values == nil || file != d.file || inode != d.journalInode) {
      const char* damaged = nullptr;
      NSDictionary* values = RVReadStoreFile(p.file, &d.file, &damaged);
      d.damaged = damaged != nullptr;
      [d.values release];
      d.values = values != nil ? [values mutableCopy] : [[NSMutableDictionary alloc] init];
      d.journalInode = inode;
      d.journalEnd = 0;
      d.foldedAt = 0;
    }
    d.appended = 0;
    d.appendFailed = false;
    if (haveJournal) {
      std::string bytes;
      if (info.st_size > d.journalEnd) {
        bytes.resize(static_cast<size_t>(info.st_size - d.journalEnd));
        ssize_t got = pread(d.journal, &bytes[0], bytes.size(), d.journalEnd);
        bytes.resize(got > 0 ? static_cast<size_t>(got) : 0);
      }
      d.journalEnd += static_cast<off_t>(RVJournalReplay(bytes.data(), bytes.size(), d.values));
    }
    [pool drain];
  }

  // GNUstep's file is read until the store has a file of its own, and
  // after that only when it could not be taken over (marked beside it).
  void RefreshLegacy(Domain& d, const RVStorePaths& p) {
    bool active = !p.legacy.empty() &&
                  (!d.file.exists || RVFileStamp::At(p.notTakenOver).exists);
    RVFileStamp stamp = active ? RVFileStamp::At(p.legacy) : RVFileStamp();
    if (active == d.legacyActive && stamp == d.legacyStamp) return;
    ++version_;
    d.legacyActive = active;
    d.legacyStamp = stamp;
    [d.legacy release];
    d.legacy = nil;
    if (!active || !stamp.exists) return;
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    d.legacy = [RVReadGNUstepDefaultsFile(p.legacy) retain];
    [pool drain];
  }

  bool Fold(Domain& d, const RVStorePaths& p, NSString* application);

  const RVStoreKind kind_;
  bool unguarded_ = false;  // the process had no file-size limit when last asked
  std::string record_;      // the record being set, its memory kept from set to set
  std::mutex mutex_;
  NSMutableDictionary* pending_;  // application ID to its changes (key to value or Removed())
  unsigned long version_ = 1;
  std::map<std::string, Domain> domains_;  // by file path
  NSString* lastApplication_ = nil;
  RVStorePaths lastPaths_;
  Domain* lastDomain_ = nullptr;
};

}  // namespace

namespace {

// Under the directory's lock (and the journal's, exclusively): the file as
// it is now, GNUstep's file while it waits to be taken over, the journal
// and the pending changes, merged key by key, replace the file whole; the
// journal then starts again with only what the file could not take.
bool Store::Fold(Domain& d, const RVStorePaths& p, NSString* application) {
  if (!RVMakeStoreDirectory(p.dir, kind_.directoryMode, kind_.currentUser)) return false;
  RVDirectoryLock directory(p.dir);
  if (directory.fd() < 0) return false;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  // The journal can be emptied only by a process that holds it alone:
  // else the file takes in what it holds and it stays as it is.
  bool haveJournal = kind_.currentUser && OpenJournal(d, p, false);
  bool alone = haveJournal && flock(d.journal, LOCK_EX | LOCK_NB) == 0;
  if (haveJournal && !alone) RVLockFile(d.journal, LOCK_SH);
  unguarded_ = RVNoFileSizeLimit();

  RVStoreMerge merge;
  RVFileStamp stamp;
  const char* damaged = nullptr;
  // The all-users file as last read, when it has not changed since; the
  // current user's as it is alone, without its journal.
  if (!kind_.currentUser && d.values != nil && !d.damaged && RVFileStamp::At(p.file) == d.file &&
      d.file.IsRegular()) {
    merge.stored = d.values;
    merge.storedPath = p.file;
  } else {
    merge.stored = RVReadStoreFile(p.file, &stamp, &damaged, &merge.storedText);
  }
  NSMutableDictionary* changes = [NSMutableDictionary dictionary];
  off_t journalRead = 0;
  NSData* xml = nil;
  NSMutableDictionary* pending = [pending_ objectForKey:application];
  RefreshLegacy(d, p);
  bool takingOver = TakeoverDue(d, p);
  struct stat info;
  if (haveJournal && !takingOver && !d.appendFailed && d.values != nil && fstat(d.journal, &info) == 0 &&
      info.st_size == d.journalEnd + d.appended && d.file == RVFileStamp::At(p.file)) {
    // What this process holds is the files as they are: written as it is,
    // each value the object that was set.
    merge.merged = [[d.values mutableCopy] autorelease];
    for (id key in pending) Apply(merge.merged, key, [pending objectForKey:key]);
    xml = RVPropertyListXMLData(merge.merged);
    journalRead = info.st_size;
    if (xml != nil) [changes addEntriesFromDictionary:pending];
  }
  if (xml == nil && haveJournal) {
    std::string bytes;
    if (RVReadWholeFile(d.journal, SIZE_MAX, &bytes)) {
      journalRead = static_cast<off_t>(RVJournalReplay(bytes.data(), bytes.size(), changes, Removed()));
    }
  }
  if (xml == nil) {
    [changes addEntriesFromDictionary:pending];
    merge.changes = changes;
    merge.removed = Removed();
    if (takingOver) merge.legacy = d.legacy;
    merge.legacyPath = p.legacy;
    xml = RVMergeStore(&merge);
  }
  bool written = xml != nil && (damaged == nullptr || RVKeepDamagedAside(p.file, damaged)) &&
                 RVWriteFileAtomicallyInLockedDirectory(directory.fd(), p.name + ".plist",
                                                        [xml bytes], [xml length],
                                                        static_cast<int>(kind_.fileMode));
  if (written) {
    if (takingOver && !merge.legacyRefused) {
      unlink(p.notTakenOver.c_str());
      RVRetireGNUstepFile(p, kind_.fileMode);
    } else if (takingOver) {
      RVWriteFileAtomicallyInLockedDirectory(directory.fd(), p.name + ".plist.gnustep-kept", "", 0,
                                             static_cast<int>(kind_.fileMode));
    }
    // The changes the file took are done with: pending ones leave, and the
    // journal starts again with the others.
    std::string leftover;
    unsigned stuck = RVStoreLeftovers(merge, changes, pending, &leftover);
    off_t journalEnd = journalRead;
    if (alone && ftruncate(d.journal, 0) == 0) {
      journalEnd = RVWriteWholly(d.journal, leftover.data(), leftover.size(), !unguarded_) == 0
                       ? static_cast<off_t>(leftover.size())
                       : 0;
    }
    d.stuck = stuck;
    // What reads back in this process is each value as it was set.
    for (NSString* key in merge.dropped) Apply(merge.merged, key, [changes objectForKey:key]);
    NSMutableDictionary* before = d.values;
    d.values = [merge.merged retain];
    for (NSString* key in merge.verbatim) {
      [d.values setObject:[merge.stored objectForKey:key] forKey:key];
    }
    [before release];
    d.file = RVFileStamp::At(p.file);
    d.journalInode = d.journal >= 0 && fstat(d.journal, &info) == 0 ? info.st_ino : 0;
    d.journalEnd = journalEnd;
    d.foldedAt = journalEnd;
    d.appended = 0;
    d.appendFailed = false;
    RefreshLegacy(d, p);
    ++version_;
  }
  if (alone) RVLockFile(d.journal, LOCK_SH);
  [pool drain];
  return written;
}


Store& StoreFor(RVStore store) {
  // Never destroyed: nothing here may message Foundation during exit.
  static Store* currentUser = new Store(RVCurrentUserStoreKind());
  static Store* allUsers = new Store(RVAllUsersStoreKind());
  return store == RVStore::kCurrentUser ? *currentUser : *allUsers;
}

}  // namespace

void RVStoreSet(RVStore store, NSString* application, NSString* key, id value) {
  // Looked up once: a class named in code is looked up by name at each use.
  static Class pools = [NSAutoreleasePool class];
  NSAutoreleasePool* pool = [[pools alloc] init];
  StoreFor(store).Set(application, key, value);
  [pool drain];
}

id RVStoreCopyValue(RVStore store, NSString* application, NSString* key) {
  return StoreFor(store).CopyValue(application, key);
}

NSDictionary* RVStoreValues(RVStore store, NSString* application, unsigned long* version) {
  return StoreFor(store).Values(application, version);
}

bool RVStoreChangedSince(RVStore store, NSString* application, unsigned long version) {
  return StoreFor(store).ChangedSince(application, version);
}

bool RVStoreSynchronize(RVStore store, NSString* application) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  bool done = StoreFor(store).Synchronize(application);
  [pool drain];
  return done;
}
