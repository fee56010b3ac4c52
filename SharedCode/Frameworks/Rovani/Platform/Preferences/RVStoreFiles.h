// The file-system side of the defaults stores: opening only regular files,
// directories with the store's modes, damaged files kept aside, and entries
// of a property list's text kept verbatim. Private: never installed.
#ifndef ROVANI_PLATFORM_RVSTOREFILES_H
#define ROVANI_PLATFORM_RVSTOREFILES_H

#import <Foundation/Foundation.h>

#include <sys/stat.h>
#include <sys/types.h>

#include <string>
#include <vector>

// What identifies one version of a file: a rename gives a new inode.
struct RVFileStamp {
  bool exists = false;
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = -1;
  mode_t mode = 0;
  struct timespec modified = {0, 0};

  static RVFileStamp Of(const struct stat& info);
  // The stamp of whatever is at path (a link itself, not its target).
  static RVFileStamp At(const std::string& path);
  bool IsRegular() const { return exists && S_ISREG(mode); }
  bool operator==(const RVFileStamp& other) const;
  bool operator!=(const RVFileStamp& other) const { return !(*this == other); }
};

// Opens path with flags (O_RDONLY or O_RDWR...), never following a link and
// never blocking on a FIFO or device (O_NOFOLLOW|O_NONBLOCK), and answers
// the descriptor only when it is a regular file; -1 otherwise, with
// *notRegular telling something other than a missing or forbidden file.
int RVOpenRegularFile(const std::string& path, int flags, mode_t mode, bool* notRegular);

// Makes dir (and missing parents) with mode whatever the umask. A private
// store's own directory (the last component) that others may write is
// tightened to mode when the user owns it and refused otherwise; a link in
// its place is refused. False, with one log line for a refusal, when dir
// cannot be used.
bool RVMakeStoreDirectory(const std::string& dir, mode_t mode, bool privateStore);

// Renames whatever is at path aside, to <path>.damaged-<UTC time>, and logs
// one line naming both and why. False (and a log line) when it cannot be
// moved: then nothing may be written in its place.
bool RVKeepDamagedAside(const std::string& path, const char* why);

// The whole file at fd (from offset 0), at most limit bytes; false on a
// read error or a larger file.
bool RVReadWholeFile(int fd, size_t limit, std::string* bytes);

// The text of key's entry in the top-level dictionary of the XML property
// list xml, from its <key> element to the end of its value; false when
// there is none. What a writer cannot write is kept this way.
bool RVTopLevelEntryText(const std::string& xml, NSString* key, std::string* entry);

// xml (a dictionary written by the library's writer) with entries put in
// before its closing </dict>. Autoreleased.
NSData* RVInsertEntries(NSData* xml, const std::vector<std::string>& entries);

#endif
