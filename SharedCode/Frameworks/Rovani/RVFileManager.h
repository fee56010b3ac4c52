/// \file
/// RVFileManager, file-system queries and operations on paths.
#ifndef ROVANI_RVFILEMANAGER_H
#define ROVANI_RVFILEMANAGER_H

#include <Rovani/RVArray.h>
#include <Rovani/RVDefines.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVString.h>

/// File-system queries and operations on paths, through the
/// platform's shared file manager. Static members only, no state. Paths are
/// used as given: no tilde expansion, no normalisation. No member says why it
/// failed: failure is a false or an empty result.
class RV_EXPORT RVFileManager {
 public:
  /// No instances.
  RVFileManager() = delete;

  /// Whether something exists at \p path.
  /// \return whether a file, directory or other item is there.
  static bool ItemExistsAtPath(const RVString& path);
  /// Whether something exists at \p path, and whether it is a directory.
  /// isDirectory is set in every case: false unless the path is a directory.
  /// \param path the path tested.
  /// \param isDirectory set to whether the item is a directory.
  /// \return whether an item is there.
  static bool ItemExistsAtPath(const RVString& path, bool& isDirectory);
  /// Whether \p path is a directory.
  /// False for a missing path as for a plain file.
  /// \return whether a directory is there.
  static bool IsDirectory(const RVString& path);
  /// Whether the calling process may read, write, execute or delete the item.
  /// \return the answer; false for a missing path.
  ///@{
  static bool IsReadableItemAtPath(const RVString& path);
  static bool IsWritableItemAtPath(const RVString& path);
  static bool IsExecutableItemAtPath(const RVString& path);
  static bool IsDeletableItemAtPath(const RVString& path);
  ///@}

  /// Removes a file or a whole directory tree. Removing what is not there
  /// counts as success.
  /// \return whether it succeeded; true when nothing was there.
  static bool RemoveItemAtPath(const RVString& path);
  /// Copies or moves a file or a directory tree; fails when the destination
  /// exists.
  /// \param source the item copied or moved.
  /// \param destination the new path, which must not exist.
  ///@{
  static bool CopyPathToPath(RVString source, RVString destination);
  static bool MovePathToPath(RVString source, RVString destination);
  ///@}
  /// Makes one directory with the given attributes.
  /// One level only: fails when the parent is missing or the path exists.
  /// \param path the directory made.
  /// \param attributes the platform's file attributes (such as its
  ///   permissions key), or an empty dictionary.
  /// \return whether it was made.
  static bool CreateDirectoryAtPathWithAttributes(const RVString& path,
                                                  const RVDictionary& attributes);
  /// Makes one directory with the platform's default attributes; one level
  /// only.
  /// \return whether it was made.
  static bool CreateDirectoryAtPath(const RVString& path);

  /// The name to show for the item, as the platform gives it.
  /// \return its display name (usually the last path component).
  static RVString DisplayNameAtPath(RVString path);
  /// The per-user temporary directory.
  /// \note GNUstep's is `/tmp/GNUstepSecure<uid>`; `TMPDIR` is not
  ///   consulted.
  /// \return its path.
  static RVString TempDirectoryPath();
  /// Entry names (not paths) of one directory, not of its subdirectories,
  /// whose extension is one of extensions (given without the dot); every
  /// entry when extensions is empty. Empty for a missing path or a file.
  /// \param path the directory listed.
  /// \param extensions the extensions kept, strings without the dot.
  /// \return the names.
  static RVArray DirectoryContentsAtPathWithMatchingExtensions(const RVString& path,
                                                               const RVArray& extensions);
  /// Entry names (not paths) of one directory, not of its subdirectories.
  /// \return the names; empty for a missing path or a file.
  static RVArray DirectoryContentsAtPath(const RVString& path);
};

#endif
