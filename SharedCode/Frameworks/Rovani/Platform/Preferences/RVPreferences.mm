#import <Foundation/Foundation.h>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "Platform/Files/RVAtomicFile.h"
#include "Platform/Preferences/RVPreferences.h"
#include "Platform/PropertyLists/RVPropertyList.h"

const CFStringRef kCFPreferencesAnyUser = (CFStringRef) @"kCFPreferencesAnyUser";
const CFStringRef kCFPreferencesCurrentUser = (CFStringRef) @"kCFPreferencesCurrentUser";
const CFStringRef kCFPreferencesAnyHost = (CFStringRef) @"kCFPreferencesAnyHost";
const CFStringRef kCFPreferencesCurrentHost = (CFStringRef) @"kCFPreferencesCurrentHost";

namespace {

const char kDefaultAllUsersDirectory[] = "/var/lib/rovani/defaults";
const char kCurrentUserSubdirectory[] = "Rovani";

NSString* ProcessName() { return [[NSProcessInfo processInfo] processName]; }

// An empty application ID is the process's own application domain.
NSString* ResolvedApplicationID(CFStringRef applicationID) {
  NSString* given = (NSString*)applicationID;
  return [given length] > 0 ? given : ProcessName();
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

// GNUstep's checks answer yes for anything (NSNull and the library's
// BoolNumber included) and its writer then stores their descriptions, so
// the walk is our own. Deep nesting is refused rather than recursed into.
bool IsPropertyListObject(id value, int depth = 0) {
  if (value == nil || depth > 256) return false;
  if ([value isKindOfClass:[NSString class]] || [value isKindOfClass:[NSData class]] ||
      [value isKindOfClass:[NSDate class]] || [value isKindOfClass:[NSNumber class]]) {
    return true;
  }
  if ([value isKindOfClass:[NSArray class]]) {
    for (id element in (NSArray*)value) {
      if (!IsPropertyListObject(element, depth + 1)) return false;
    }
    return true;
  }
  if ([value isKindOfClass:[NSDictionary class]]) {
    for (id key in (NSDictionary*)value) {
      if (![key isKindOfClass:[NSString class]]) return false;
      if (!IsPropertyListObject([(NSDictionary*)value objectForKey:key], depth + 1)) return false;
    }
    return true;
  }
  return false;
}

// The application ID names a file in the store's directory, so it must not
// reach outside it.
bool IsUsableFileName(const std::string& name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

std::string AllUsersDirectory() {
  const char* configured = getenv("ROVANI_ALL_USERS_DEFAULTS_DIR");
  return configured != nullptr && configured[0] != '\0' ? configured : kDefaultAllUsersDirectory;
}

// GNUstep's user defaults directory (GNUSTEP_USER_DEFAULTS_DIR of its
// configuration, else ~/GNUstep/Defaults); empty when there is none.
// GNUstep reads its configuration once, at start-up, so this is asked once.
const std::string& GNUstepUserDefaultsDirectory() {
  static const std::string* directory = [] {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSString* root = GSDefaultsRootForUser(NSUserName());
    const char* path = [root length] > 0 ? [root fileSystemRepresentation] : nullptr;
    std::string* found = new std::string(path != nullptr ? path : "");
    [pool drain];
    return found;
  }();
  return *directory;
}

// The current user's files live in a directory of their own inside
// GNUstep's: GNUstep reads and rewrites only the *.plist files directly in
// its directory, so it never touches these.
std::string CurrentUserDirectory() {
  const std::string& root = GNUstepUserDefaultsDirectory();
  return root.empty() ? root : root + "/" + kCurrentUserSubdirectory;
}

// Makes dir and any missing parents, each new one with mode whatever the
// umask.
bool MakeDirectories(const std::string& dir, mode_t mode) {
  std::string::size_type next = 1;
  while (true) {
    next = dir.find('/', next);
    std::string prefix = dir.substr(0, next);
    if (!prefix.empty()) {
      if (mkdir(prefix.c_str(), mode) == 0) {
        chmod(prefix.c_str(), mode);
      } else {
        struct stat info;
        if (stat(prefix.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) return false;
      }
    }
    if (next == std::string::npos) return true;
    ++next;
  }
}

// The dictionary an open file holds; nil for anything else (empty,
// truncated, not a property list, not a dictionary). Autoreleased. Read by
// the library's guarded property-list entry, like every other list.
NSDictionary* DictionaryFromFile(int fd) {
  id parsed = RVPropertyListFromOpenFile(fd);
  return [parsed isKindOfClass:[NSDictionary class]] ? parsed : nil;
}

// What identifies one version of a file: a rename gives a new inode.
struct FileStamp {
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = -1;
  struct timespec modified = {0, 0};

  static FileStamp Of(const struct stat& info) {
    FileStamp stamp;
    stamp.device = info.st_dev;
    stamp.inode = info.st_ino;
    stamp.size = info.st_size;
    stamp.modified = info.st_mtim;
    return stamp;
  }
  bool operator==(const FileStamp& other) const {
    return device == other.device && inode == other.inode && size == other.size &&
           modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec;
  }
};

// What tells one store from the other: where its files are, who may read
// them, and whether GNUstep's own file for an application is where an
// application's values were kept before this store had them.
struct StoreKind {
  std::string (*directory)();  // empty when there is none
  mode_t fileMode;
  mode_t directoryMode;
  bool importsGNUstepFile;
};

// The current user's values: private to the user, imported once from the
// file GNUstep kept for the application.
const StoreKind kCurrentUserKind = {CurrentUserDirectory, 0600, 0700, true};
// Every user's values for this host: everyone reads, the owner writes.
const StoreKind kAllUsersKind = {AllUsersDirectory, 0644, 0755, false};

// One store of settings files, <directory>/<application id>.plist, each
// read and written whole by the library's own reader and writer. Changes
// are pending per application until Synchronize, which merges them key by
// key into the file as it is then, under the directory's lock. The last
// version read of each file is kept, so that repeated reads cost a stat.
class DefaultsStore {
 public:
  // Never destroyed: nothing here may message Foundation during exit.
  static DefaultsStore& CurrentUser() {
    static DefaultsStore* store = new DefaultsStore(kCurrentUserKind);
    return *store;
  }
  static DefaultsStore& AllUsers() {
    static DefaultsStore* store = new DefaultsStore(kAllUsersKind);
    return *store;
  }

  void Set(NSString* application, NSString* key, id value) {
    if (key == nil) return;
    std::lock_guard<std::mutex> hold(mutex_);
    NSMutableDictionary* changes = [pending_ objectForKey:application];
    if (changes == nil) {
      changes = [[NSMutableDictionary alloc] init];
      [pending_ setObject:changes forKey:application];
      [changes release];
    }
    // A copy, so that a caller's later change to a mutable value changes
    // nothing here; what cannot be copied is kept as it is (and refused
    // when written).
    id copied = [value conformsToProtocol:@protocol(NSCopying)] ? [value copy] : [value retain];
    [changes setObject:(copied != nil ? copied : RemovedMarker()) forKey:key];
    [copied release];
    ++changeCount_;
  }

  id CopyValue(NSString* application, NSString* key) {
    if (key == nil) return nil;
    std::lock_guard<std::mutex> hold(mutex_);
    id change = [[pending_ objectForKey:application] objectForKey:key];
    if (change != nil) return change == RemovedMarker() ? nil : [change retain];
    return [[StoredValues(application) objectForKey:key] retain];
  }

  // Every key the application's file holds, with the pending changes
  // applied. Autoreleased.
  NSDictionary* Values(NSString* application) {
    std::lock_guard<std::mutex> hold(mutex_);
    NSMutableDictionary* values = [NSMutableDictionary dictionary];
    [values addEntriesFromDictionary:StoredValues(application)];
    ApplyChanges([pending_ objectForKey:application], values);
    return values;
  }

  // Values(application), to be published to target. *changed tells
  // whether it may differ from what the last call for the application
  // answered; when it is false, that same dictionary comes back.
  // Autoreleased.
  NSDictionary* Snapshot(NSString* application, const void* target, bool* changed) {
    std::lock_guard<std::mutex> hold(mutex_);
    NSDictionary* stored = StoredValues(application);
    std::string name = [application UTF8String];
    Published& last = published_[name];
    *changed = last.values == nil || last.target != target || last.stored != stored ||
               last.changeCount != changeCount_;
    if (*changed) {
      last.target = target;
      NSMutableDictionary* values = [[NSMutableDictionary alloc] initWithDictionary:stored];
      ApplyChanges([pending_ objectForKey:application], values);
      [stored retain];
      [last.stored release];
      last.stored = stored;
      [last.values release];
      last.values = [values copy];
      [values release];
      last.changeCount = changeCount_;
    }
    return [[last.values retain] autorelease];
  }

  bool Synchronize(NSString* application) {
    std::lock_guard<std::mutex> hold(mutex_);
    NSDictionary* changes = [pending_ objectForKey:application];
    if ([changes count] == 0) return true;
    for (id key in changes) {
      id value = [changes objectForKey:key];
      if (value != RemovedMarker() && !IsPropertyListObject(value)) return false;
    }
    std::string name = [application UTF8String];
    std::string dir = kind_.directory();
    if (dir.empty() || !IsUsableFileName(name) || !MakeDirectories(dir, kind_.directoryMode)) {
      return false;
    }

    int dirFD = open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dirFD < 0) return false;
    // Writers of every application in the directory take turns on the
    // directory itself; readers need no lock, since a file is only ever
    // replaced whole.
    while (flock(dirFD, LOCK_EX) != 0) {
      if (errno != EINTR) {
        close(dirFD);
        return false;
      }
    }
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    bool written = WriteMerged(dir, dirFD, name, changes);
    [pool drain];
    flock(dirFD, LOCK_UN);
    close(dirFD);
    if (written) {
      [pending_ removeObjectForKey:application];
      ++changeCount_;
    }
    return written;
  }

 private:
  struct CachedFile {
    FileStamp stamp;
    NSDictionary* values = nil;  // retained; nil when the file holds none
  };
  struct Published {
    NSDictionary* stored = nil;  // retained: what the file held
    NSDictionary* values = nil;  // retained: with the pending changes
    unsigned long changeCount = 0;
    const void* target = nullptr;
  };

  explicit DefaultsStore(const StoreKind& kind)
      : kind_(kind), pending_([[NSMutableDictionary alloc] init]) {}

  // Stands for a pending removal.
  static id RemovedMarker() {
    static id marker = [[NSObject alloc] init];
    return marker;
  }

  // Sets each changed key of values, or removes it where the change is a
  // removal.
  static void ApplyChanges(NSDictionary* changes, NSMutableDictionary* values) {
    for (id key in changes) {
      id change = [changes objectForKey:key];
      if (change == RemovedMarker()) {
        [values removeObjectForKey:key];
      } else {
        [values setObject:change forKey:key];
      }
    }
  }

  static std::string FilePath(const std::string& dir, const std::string& name) {
    return dir + "/" + name + ".plist";
  }

  static std::string TemporaryPrefix(const std::string& name) { return "." + name + ".plist."; }

  // GNUstep's own file for the application, which held the current user's
  // values before this store did; empty for a store that imports none.
  std::string GNUstepFilePath(const std::string& name) const {
    if (!kind_.importsGNUstepFile) return "";
    const std::string& root = GNUstepUserDefaultsDirectory();
    return root.empty() ? root : FilePath(root, name);
  }

  // The values the application's file holds now (nil for none). Until the
  // store has a file for the application, a file GNUstep kept for it is
  // read instead, by the library's reader: nothing an earlier version
  // stored there is lost.
  NSDictionary* StoredValues(NSString* application) {
    std::string name = [application UTF8String];
    std::string dir = kind_.directory();
    if (dir.empty() || !IsUsableFileName(name)) return nil;
    bool missing = false;
    NSDictionary* values = CurrentValues(FilePath(dir, name), &missing);
    std::string imported = GNUstepFilePath(name);
    if (missing && !imported.empty()) values = CurrentValues(imported, &missing);
    return values;
  }

  void Remember(const std::string& path, const FileStamp& stamp, NSDictionary* values) {
    CachedFile& cached = cache_[path];
    [values retain];
    [cached.values release];
    cached.values = values;
    cached.stamp = stamp;
  }

  void Forget(const std::string& path) {
    auto found = cache_.find(path);
    if (found == cache_.end()) return;
    [found->second.values release];
    cache_.erase(found);
  }

  // The values the file holds now: read again only when it has changed,
  // so that a read of an unchanged file costs one stat. *missing tells a
  // file that does not exist from one that holds nothing.
  NSDictionary* CurrentValues(const std::string& path, bool* missing) {
    struct stat info;
    *missing = false;
    if (stat(path.c_str(), &info) == 0) {
      auto found = cache_.find(path);
      if (found != cache_.end() && found->second.stamp == FileStamp::Of(info)) {
        return found->second.values;
      }
    }
    int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0 || fstat(fd, &info) != 0) {
      *missing = fd < 0 && errno == ENOENT;
      if (fd >= 0) close(fd);
      Forget(path);
      return nil;
    }
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    Remember(path, FileStamp::Of(info), DictionaryFromFile(fd));
    [pool drain];
    close(fd);
    return cache_[path].values;
  }

  // Writers of earlier versions, killed mid-write, left named temporary
  // files behind; under the lock no writer is at work, so any there now are
  // orphans. (Today's writes leave at most a side name, which the next
  // write of the file clears.)
  static void RemoveOrphans(const std::string& dir, const std::string& name) {
    DIR* listing = opendir(dir.c_str());
    if (listing == nullptr) return;
    std::string prefix = TemporaryPrefix(name);
    std::vector<std::string> orphans;
    while (struct dirent* entry = readdir(listing)) {
      std::string entryName = entry->d_name;
      if (entryName.size() == prefix.size() + 6 && entryName.compare(0, prefix.size(), prefix) == 0) {
        orphans.push_back(dir + "/" + entryName);
      }
    }
    closedir(listing);
    for (const std::string& orphan : orphans) unlink(orphan.c_str());
  }

  // GNUstep's file for the application, once its values are in the
  // store's own file, moves beside that file as <name>.plist.imported: kept,
  // but out of GNUstep's sight, so that a key removed from the store does
  // not show through from it. This process's GNUstep forgets its copy too.
  void RetireGNUstepFile(const std::string& dir, const std::string& name) {
    std::string imported = GNUstepFilePath(name);
    if (imported.empty() || access(imported.c_str(), F_OK) != 0) return;
    if (rename(imported.c_str(), (FilePath(dir, name) + ".imported").c_str()) != 0) return;
    Forget(imported);
    @try {
      NSString* domain = [NSString stringWithUTF8String:name.c_str()];
      NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
      if ([defaults persistentDomainForName:domain] != nil) {
        [defaults removePersistentDomainForName:domain];
      }
    } @catch (NSException*) {
      // Its file is gone already; what GNUstep keeps in memory only
      // matters to this process.
    }
  }

  // Under the directory lock: the file as it is now (or, before there is
  // one, GNUstep's file for the application), with changes merged over it,
  // replaces the file whole.
  bool WriteMerged(const std::string& dir, int dirFD, const std::string& name,
                   NSDictionary* changes) {
    RemoveOrphans(dir, name);
    std::string path = FilePath(dir, name);
    std::string imported = GNUstepFilePath(name);
    // The file as this process last read or wrote it, unless it has
    // changed since: values this process set stay the objects it set.
    bool missing = false;
    NSDictionary* current = CurrentValues(path, &missing);
    bool importing = missing && !imported.empty();
    if (importing) current = CurrentValues(imported, &missing);
    NSMutableDictionary* merged = [NSMutableDictionary dictionaryWithDictionary:current];
    ApplyChanges(changes, merged);
    NSData* xml = RVPropertyListXMLData(merged);
    if (xml == nil) return false;

    // Written whole or not at all; the directory lock is already ours.
    if (!RVWriteFileAtomicallyInLockedDirectory(dirFD, name + ".plist", [xml bytes], [xml length],
                                                static_cast<int>(kind_.fileMode))) {
      return false;
    }
    if (importing) RetireGNUstepFile(dir, name);

    // What reads back in this process is each value as it was set.
    struct stat info;
    if (stat(path.c_str(), &info) == 0) {
      Remember(path, FileStamp::Of(info), [[merged copy] autorelease]);
    } else {
      Forget(path);
    }
    return true;
  }

  const StoreKind kind_;
  std::mutex mutex_;
  NSMutableDictionary* pending_;  // application ID to its changes (key to value or marker)
  unsigned long changeCount_ = 0;  // grows with every change to pending_
  std::map<std::string, CachedFile> cache_;
  std::map<std::string, Published> published_;
};

// The name of the volatile domain through which the standard defaults see
// the current user's values for application. A slash keeps it from ever
// naming one of GNUstep's persistent domains, which are file names.
NSString* VolatileDomainName(NSString* application) {
  return [@"Rovani/" stringByAppendingString:application];
}

// The standard defaults, with the current user's values for application as
// the store holds them now in a volatile domain searched right after the
// process's arguments, before GNUstep's persistent domains. The domain is
// published again whenever the store's file or pending changes differ
// from what was published last.
NSUserDefaults* StandardDefaultsFor(NSString* application) {
  // One publisher at a time, so that an older snapshot never replaces a
  // newer one. Never destroyed, like the stores.
  static std::mutex* publishing = new std::mutex();
  std::lock_guard<std::mutex> hold(*publishing);
  NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
  NSString* domain = VolatileDomainName(application);
  bool changed = false;
  NSDictionary* values = DefaultsStore::CurrentUser().Snapshot(application, defaults, &changed);
  @try {
    if (changed) {
      [defaults removeVolatileDomainForName:domain];
      [defaults setVolatileDomain:values forName:domain];
    }
    NSArray* searchList = [defaults searchList];
    if (![searchList containsObject:domain]) {
      NSMutableArray* list = [NSMutableArray arrayWithArray:searchList];
      NSUInteger arguments = [list indexOfObject:NSArgumentDomain];
      [list insertObject:domain atIndex:(arguments == NSNotFound ? 0 : arguments + 1)];
      [defaults setSearchList:list];
    }
  } @catch (NSException*) {
    // GNUstep refuses a domain name already taken: reads then go on
    // through its own domains only.
  }
  return defaults;
}

// Sets or removes key in the current user's store for application and
// writes it at once: the current user's changes never wait for a
// Synchronize. A value the file cannot hold is not stored at all; a change
// that cannot be written now stays pending and is written with the next.
void SetCurrentUserValue(NSString* application, NSString* key, id value) {
  if (key == nil || (value != nil && !IsPropertyListObject(value))) return;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  if (value == nil || RVPropertyListXMLData([NSDictionary dictionaryWithObject:value forKey:key]) != nil) {
    DefaultsStore& store = DefaultsStore::CurrentUser();
    store.Set(application, key, value);
    store.Synchronize(application);
  }
  [pool drain];
}

}  // namespace

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef applicationID) {
  SetCurrentUserValue(ResolvedApplicationID(applicationID), (NSString*)key, (id)value);
}

void CFPreferencesSetValue(CFStringRef key, CFPropertyListRef value, CFStringRef applicationID,
                           CFStringRef userName, CFStringRef hostName) {
  if (IsAllUsers(userName, hostName)) {
    DefaultsStore::AllUsers().Set(ResolvedApplicationID(applicationID), (NSString*)key, (id)value);
  } else if (IsCurrentUser(userName, hostName)) {
    SetCurrentUserValue(ResolvedApplicationID(applicationID), (NSString*)key, (id)value);
  }
}

Boolean CFPreferencesSynchronize(CFStringRef applicationID, CFStringRef userName,
                                 CFStringRef hostName) {
  if (IsAllUsers(userName, hostName)) {
    return DefaultsStore::AllUsers().Synchronize(ResolvedApplicationID(applicationID));
  }
  if (IsCurrentUser(userName, hostName)) {
    return DefaultsStore::CurrentUser().Synchronize(ResolvedApplicationID(applicationID));
  }
  return 0;
}

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID) {
  if (key == nullptr) return nullptr;
  NSString* application = ResolvedApplicationID(applicationID);
  id value = nil;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  value = [[StandardDefaultsFor(application) objectForKey:(NSString*)key] retain];
  [pool drain];
  if (value != nil) return (CFPropertyListRef)value;
  return (CFPropertyListRef)DefaultsStore::AllUsers().CopyValue(application, (NSString*)key);
}

CFDictionaryRef RVPreferencesCopyDomain(CFStringRef applicationID) {
  NSString* application = ResolvedApplicationID(applicationID);
  NSMutableDictionary* domain = [[NSMutableDictionary alloc] init];
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  [domain addEntriesFromDictionary:DefaultsStore::AllUsers().Values(application)];
  [domain addEntriesFromDictionary:DefaultsStore::CurrentUser().Values(application)];
  [pool drain];
  NSDictionary* result = [domain copy];
  [domain release];
  return (CFDictionaryRef)result;
}
