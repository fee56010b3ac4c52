#import <Foundation/Foundation.h>

#include <Rovani/RVFileManager.h>

// Every member asks the shared manager afresh. The copy, move and remove
// calls get no handler, so the platform neither asks nor reports on the way.
namespace {

NSFileManager* Manager() { return [NSFileManager defaultManager]; }

}  // namespace

bool RVFileManager::ItemExistsAtPath(const RVString& path) {
  return [Manager() fileExistsAtPath:path.Ref()];
}

bool RVFileManager::ItemExistsAtPath(const RVString& path, bool& isDirectory) {
  isDirectory = false;
  BOOL directory = NO;
  BOOL exists = [Manager() fileExistsAtPath:path.Ref() isDirectory:&directory];
  isDirectory = directory;
  return exists;
}

bool RVFileManager::IsDirectory(const RVString& path) {
  bool isDirectory = false;
  ItemExistsAtPath(path, isDirectory);
  return isDirectory;
}

bool RVFileManager::IsReadableItemAtPath(const RVString& path) {
  return [Manager() isReadableFileAtPath:path.Ref()];
}

bool RVFileManager::IsWritableItemAtPath(const RVString& path) {
  return [Manager() isWritableFileAtPath:path.Ref()];
}

bool RVFileManager::IsExecutableItemAtPath(const RVString& path) {
  return [Manager() isExecutableFileAtPath:path.Ref()];
}

bool RVFileManager::IsDeletableItemAtPath(const RVString& path) {
  return [Manager() isDeletableFileAtPath:path.Ref()];
}

bool RVFileManager::RemoveItemAtPath(const RVString& path) {
  if (!ItemExistsAtPath(path)) return true;
  return [Manager() removeFileAtPath:path.Ref() handler:nil];
}

bool RVFileManager::CopyPathToPath(RVString source, RVString destination) {
  return [Manager() copyPath:source.Ref() toPath:destination.Ref() handler:nil];
}

bool RVFileManager::MovePathToPath(RVString source, RVString destination) {
  return [Manager() movePath:source.Ref() toPath:destination.Ref() handler:nil];
}

bool RVFileManager::CreateDirectoryAtPathWithAttributes(const RVString& path,
                                                        const RVDictionary& attributes) {
  return [Manager() createDirectoryAtPath:path.Ref() attributes:attributes.Ref()];
}

bool RVFileManager::CreateDirectoryAtPath(const RVString& path) {
  return CreateDirectoryAtPathWithAttributes(path, RVDictionary());
}

RVString RVFileManager::DisplayNameAtPath(RVString path) {
  return RVString(static_cast<RVId>([Manager() displayNameAtPath:path.Ref()]));
}

RVString RVFileManager::TempDirectoryPath() {
  return RVString(static_cast<RVId>(NSTemporaryDirectory()));
}

RVArray RVFileManager::DirectoryContentsAtPathWithMatchingExtensions(const RVString& path,
                                                                     const RVArray& extensions) {
  RVArray contents;
  bool isDirectory = false;
  ItemExistsAtPath(path, isDirectory);
  if (!isDirectory) return contents;
  contents = static_cast<NSArray*>([Manager() directoryContentsAtPath:path.Ref()]);
  if (extensions.IsEmpty()) return contents;
  contents = static_cast<NSArray*>([contents.Ref() pathsMatchingExtensions:extensions.Ref()]);
  return contents;
}

RVArray RVFileManager::DirectoryContentsAtPath(const RVString& path) {
  return DirectoryContentsAtPathWithMatchingExtensions(path, RVArray());
}
