// RVFileManager: file-system queries and operations on paths, through the
// platform's shared file manager. Static members only, no state. Paths are
// used as given: no tilde expansion, no normalisation. No member says why it
// failed: failure is a false or an empty result.
#ifndef ROVANI_RVFILEMANAGER_H
#define ROVANI_RVFILEMANAGER_H

#include <Rovani/RVArray.h>
#include <Rovani/RVDefines.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVString.h>

class RV_EXPORT RVFileManager {
 public:
  RVFileManager() = delete;

  static bool ItemExistsAtPath(const RVString& path);
  // isDirectory is set in every case: false unless the path is a directory.
  static bool ItemExistsAtPath(const RVString& path, bool& isDirectory);
  // False for a missing path as for a plain file.
  static bool IsDirectory(const RVString& path);
  // For the calling process.
  static bool IsReadableItemAtPath(const RVString& path);
  static bool IsWritableItemAtPath(const RVString& path);
  static bool IsExecutableItemAtPath(const RVString& path);
  static bool IsDeletableItemAtPath(const RVString& path);

  // Removes a file or a whole directory tree. Removing what is not there
  // counts as success.
  static bool RemoveItemAtPath(const RVString& path);
  // A file or a directory tree; fails when the destination exists.
  static bool CopyPathToPath(RVString source, RVString destination);
  static bool MovePathToPath(RVString source, RVString destination);
  // One level only: fails when the parent is missing or the path exists.
  static bool CreateDirectoryAtPathWithAttributes(const RVString& path,
                                                  const RVDictionary& attributes);
  // With the platform's default attributes.
  static bool CreateDirectoryAtPath(const RVString& path);

  static RVString DisplayNameAtPath(RVString path);
  // The per-user temporary directory.
  static RVString TempDirectoryPath();
  // Entry names (not paths) of one directory, not of its subdirectories,
  // whose extension is one of extensions (given without the dot); every
  // entry when extensions is empty. Empty for a missing path or a file.
  static RVArray DirectoryContentsAtPathWithMatchingExtensions(const RVString& path,
                                                               const RVArray& extensions);
  static RVArray DirectoryContentsAtPath(const RVString& path);
};

#endif
