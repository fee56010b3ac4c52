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

#include "Platform/RVAtomicFile.h"
#include "Platform/RVPreferences.h"
#include "Platform/RVPropertyList.h"

const CFStringRef kCFPreferencesAnyUser = (CFStringRef) @"kCFPreferencesAnyUser";
const CFStringRef kCFPreferencesCurrentUser = (CFStringRef) @"kCFPreferencesCurrentUser";
const CFStringRef kCFPreferencesAnyHost = (CFStringRef) @"kCFPreferencesAnyHost";
const CFStringRef kCFPreferencesCurrentHost = (CFStringRef) @"kCFPreferencesCurrentHost";

namespace {

const char kDefaultAllUsersDirectory[] = "/var/lib/rovani/defaults";

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

// Makes dir and any missing parents, each new one 0755 whatever the umask.
bool MakeDirectories(const std::string& dir) {
  std::string::size_type next = 1;
  while (true) {
    next = dir.find('/', next);
    std::string prefix = dir.substr(0, next);
    if (!prefix.empty()) {
      if (mkdir(prefix.c_str(), 0755) == 0) {
        chmod(prefix.c_str(), 0755);
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

// Every user's values for this host: pending changes per application, and
// the last version read of each file, so that repeated reads cost a stat.
class AllUsersStore {
 public:
  // Never destroyed: nothing here may message Foundation during exit.
  static AllUsersStore& Shared() {
    static AllUsersStore* store = new AllUsersStore();
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
    [changes setObject:(value != nil ? value : RemovedMarker()) forKey:key];
  }

  id CopyValue(NSString* application, NSString* key) {
    if (key == nil) return nil;
    std::lock_guard<std::mutex> hold(mutex_);
    id change = [[pending_ objectForKey:application] objectForKey:key];
    if (change != nil) return change == RemovedMarker() ? nil : [change retain];
    std::string name = [application UTF8String];
    if (!IsUsableFileName(name)) return nil;
    return [[CurrentValues(FilePath(AllUsersDirectory(), name)) objectForKey:key] retain];
  }

  // Every key the application's file holds, with the pending changes
  // applied. Autoreleased.
  NSDictionary* Values(NSString* application) {
    std::lock_guard<std::mutex> hold(mutex_);
    NSMutableDictionary* values = [NSMutableDictionary dictionary];
    std::string name = [application UTF8String];
    if (IsUsableFileName(name)) {
      [values addEntriesFromDictionary:CurrentValues(FilePath(AllUsersDirectory(), name))];
    }
    ApplyChanges([pending_ objectForKey:application], values);
    return values;
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
    std::string dir = AllUsersDirectory();
    if (!IsUsableFileName(name) || !MakeDirectories(dir)) return false;

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
    if (written) [pending_ removeObjectForKey:application];
    return written;
  }

 private:
  struct CachedFile {
    FileStamp stamp;
    NSDictionary* values = nil;  // retained; nil when the file holds none
  };

  AllUsersStore() : pending_([[NSMutableDictionary alloc] init]) {}

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

  // The values the file holds now: read again only when it has changed.
  NSDictionary* CurrentValues(const std::string& path) {
    int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
      Forget(path);
      return nil;
    }
    struct stat info;
    NSDictionary* values = nil;
    if (fstat(fd, &info) == 0) {
      FileStamp stamp = FileStamp::Of(info);
      auto found = cache_.find(path);
      if (found != cache_.end() && found->second.stamp == stamp) {
        values = found->second.values;
      } else {
        NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
        Remember(path, stamp, DictionaryFromFile(fd));
        [pool drain];
        values = cache_[path].values;
      }
    }
    close(fd);
    return values;
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

  // Under the directory lock: the file as it is now, with changes merged
  // over it, replaces the file whole.
  bool WriteMerged(const std::string& dir, int dirFD, const std::string& name,
                   NSDictionary* changes) {
    RemoveOrphans(dir, name);
    std::string path = FilePath(dir, name);
    NSDictionary* current = nil;
    int readFD = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (readFD >= 0) {
      current = DictionaryFromFile(readFD);
      close(readFD);
    }
    NSMutableDictionary* merged = [NSMutableDictionary dictionaryWithDictionary:current];
    ApplyChanges(changes, merged);
    NSData* xml = RVPropertyListXMLData(merged);
    if (xml == nil) return false;

    // Written whole or not at all; the directory lock is already ours.
    if (!RVWriteFileAtomicallyInLockedDirectory(dirFD, name + ".plist", [xml bytes], [xml length],
                                                0644)) {
      return false;
    }

    struct stat info;
    if (stat(path.c_str(), &info) == 0) {
      Remember(path, FileStamp::Of(info), [[merged copy] autorelease]);
    } else {
      Forget(path);
    }
    return true;
  }

  std::mutex mutex_;
  NSMutableDictionary* pending_;  // application ID to its changes (key to value or marker)
  std::map<std::string, CachedFile> cache_;
};

// The standard defaults with the application's domain in their search
// list. GNUstep's application domain is the process name; a domain named
// after a bundle identifier is seen only once added as a suite.
NSUserDefaults* StandardDefaultsFor(NSString* application) {
  NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
  if (![application isEqual:ProcessName()] && ![[defaults searchList] containsObject:application]) {
    [defaults addSuiteNamed:application];
  }
  return defaults;
}

// Sets or removes key in the current user's domain for application and
// writes the domain to disk: nothing else would, since no run loop of ours
// ever fires GNUstep's own periodic synchronisation.
void SetCurrentUserValue(NSString* application, NSString* key, id value) {
  if (key == nil || (value != nil && !IsPropertyListObject(value))) return;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  @try {
    NSUserDefaults* defaults = StandardDefaultsFor(application);
    if ([application isEqual:ProcessName()]) {
      if (value != nil) {
        [defaults setObject:value forKey:key];
      } else {
        [defaults removeObjectForKey:key];
      }
    } else {
      NSMutableDictionary* domain =
          [NSMutableDictionary dictionaryWithDictionary:[defaults persistentDomainForName:application]];
      if (value != nil) {
        [domain setObject:value forKey:key];
      } else {
        [domain removeObjectForKey:key];
      }
      [defaults setPersistentDomain:domain forName:application];
    }
    [defaults synchronize];
  } @catch (NSException*) {
    // The setters report nothing; a value GNUstep refuses is simply not set.
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
    AllUsersStore::Shared().Set(ResolvedApplicationID(applicationID), (NSString*)key, (id)value);
  } else if (IsCurrentUser(userName, hostName)) {
    SetCurrentUserValue(ResolvedApplicationID(applicationID), (NSString*)key, (id)value);
  }
}

Boolean CFPreferencesSynchronize(CFStringRef applicationID, CFStringRef userName,
                                 CFStringRef hostName) {
  if (IsAllUsers(userName, hostName)) {
    return AllUsersStore::Shared().Synchronize(ResolvedApplicationID(applicationID));
  }
  if (IsCurrentUser(userName, hostName)) {
    NSUserDefaults* defaults = StandardDefaultsFor(ResolvedApplicationID(applicationID));
    return [defaults synchronize] ? 1 : 0;
  }
  return 0;
}

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID) {
  if (key == nullptr) return nullptr;
  NSString* application = ResolvedApplicationID(applicationID);
  id value = [StandardDefaultsFor(application) objectForKey:(NSString*)key];
  if (value != nil) return (CFPropertyListRef)[value retain];
  return (CFPropertyListRef)AllUsersStore::Shared().CopyValue(application, (NSString*)key);
}

CFDictionaryRef RVPreferencesCopyDomain(CFStringRef applicationID) {
  NSString* application = ResolvedApplicationID(applicationID);
  NSMutableDictionary* domain = [[NSMutableDictionary alloc] init];
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  @try {
    [domain addEntriesFromDictionary:AllUsersStore::Shared().Values(application)];
    [domain addEntriesFromDictionary:
                [[NSUserDefaults standardUserDefaults] persistentDomainForName:application]];
  } @catch (NSException*) {
    // A domain GNUstep cannot read holds nothing for the current user.
  }
  [pool drain];
  NSDictionary* result = [domain copy];
  [domain release];
  return (CFDictionaryRef)result;
}
