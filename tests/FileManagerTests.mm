#import <Foundation/Foundation.h>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include <Rovani/Rovani.h>

#include "support/TestSupport.h"

namespace {

void WriteFile(const std::string& path) { std::ofstream(path) << "x"; }

std::vector<std::string> SortedNames(const RVArray& names) {
  std::vector<std::string> sorted;
  for (unsigned int i = 0; i < names.Count(); ++i) sorted.push_back(Text(names.StringAtIndex(i)));
  std::sort(sorted.begin(), sorted.end());
  return sorted;
}

TEST(FileManager, QueriesOnFilesDirectoriesAndBadPaths) {
  ScratchDir scratch;
  const std::string file = scratch.File("a file ü.txt");  // blanks and non-ASCII
  WriteFile(file);
  const RVString missing(scratch.File("missing").c_str());

  bool isDirectory = true;
  EXPECT_TRUE(RVFileManager::ItemExistsAtPath(file.c_str(), isDirectory));
  EXPECT_FALSE(isDirectory);
  EXPECT_TRUE(RVFileManager::ItemExistsAtPath(scratch.Path().c_str(), isDirectory));
  EXPECT_TRUE(isDirectory);
  EXPECT_FALSE(RVFileManager::ItemExistsAtPath(missing, isDirectory));
  EXPECT_FALSE(isDirectory);
  EXPECT_TRUE(RVFileManager::IsDirectory(scratch.Path().c_str()));
  EXPECT_FALSE(RVFileManager::IsDirectory(file.c_str()));
  EXPECT_FALSE(RVFileManager::IsDirectory(missing));
  EXPECT_FALSE(RVFileManager::ItemExistsAtPath(""));
  EXPECT_FALSE(RVFileManager::ItemExistsAtPath(RVString(static_cast<const char*>(nullptr))));

  EXPECT_TRUE(RVFileManager::IsReadableItemAtPath(file.c_str()));
  EXPECT_TRUE(RVFileManager::IsWritableItemAtPath(file.c_str()));
  EXPECT_TRUE(RVFileManager::IsDeletableItemAtPath(file.c_str()));
  EXPECT_FALSE(RVFileManager::IsExecutableItemAtPath(file.c_str()));
  chmod(file.c_str(), 0755);
  EXPECT_TRUE(RVFileManager::IsExecutableItemAtPath(file.c_str()));
  EXPECT_FALSE(RVFileManager::IsReadableItemAtPath(missing));
  EXPECT_FALSE(RVFileManager::IsWritableItemAtPath(""));

  EXPECT_EQ(Text(RVFileManager::DisplayNameAtPath(file.c_str())), "a file ü.txt");
  EXPECT_TRUE(RVFileManager::TempDirectoryPath() == NSTemporaryDirectory());
}

TEST(FileManager, CreateCopyMoveAndRemove) {
  ScratchDir scratch;
  const RVString dir(scratch.File("new dir é").c_str());
  EXPECT_TRUE(RVFileManager::CreateDirectoryAtPath(dir));
  EXPECT_TRUE(RVFileManager::IsDirectory(dir));
  EXPECT_FALSE(RVFileManager::CreateDirectoryAtPath(dir));
  EXPECT_FALSE(RVFileManager::CreateDirectoryAtPath(dir.StringByAppendingPathComponent("a/b")));
  EXPECT_FALSE(RVFileManager::CreateDirectoryAtPath(""));
  WriteFile(Text(dir.StringByAppendingPathComponent("inside.txt")));

  RVDictionary attributes;
  attributes.SetObjectForKey(RVNumber(0700), RVString(NSFilePosixPermissions));
  const RVString privateDir(scratch.File("private").c_str());
  EXPECT_TRUE(RVFileManager::CreateDirectoryAtPathWithAttributes(privateDir, attributes));
  struct stat info;
  ASSERT_EQ(stat(Text(privateDir).c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0700u);

  // Whole trees are copied, moved and removed; an existing destination fails.
  const RVString copy(scratch.File("copy").c_str());
  EXPECT_TRUE(RVFileManager::CopyPathToPath(dir, copy));
  EXPECT_TRUE(RVFileManager::ItemExistsAtPath(copy.StringByAppendingPathComponent("inside.txt")));
  EXPECT_FALSE(RVFileManager::CopyPathToPath(dir, copy));
  EXPECT_FALSE(RVFileManager::CopyPathToPath(scratch.File("missing").c_str(), privateDir));
  const RVString moved(scratch.File("moved").c_str());
  EXPECT_TRUE(RVFileManager::MovePathToPath(copy, moved));
  EXPECT_FALSE(RVFileManager::ItemExistsAtPath(copy));
  EXPECT_FALSE(RVFileManager::MovePathToPath("", moved));

  EXPECT_TRUE(RVFileManager::RemoveItemAtPath(moved));
  EXPECT_FALSE(RVFileManager::ItemExistsAtPath(moved));
  // Removing what is not there counts as success.
  EXPECT_TRUE(RVFileManager::RemoveItemAtPath(moved));
  EXPECT_TRUE(RVFileManager::RemoveItemAtPath(""));
  EXPECT_TRUE(RVFileManager::IsDirectory(dir));
}

TEST(FileManager, ContentsOfOneDirectoryLevelFilteredByExtension) {
  ScratchDir scratch;
  for (const char* name : {"a.txt", "b.txt.bak", "c", "ü d.TXT"}) WriteFile(scratch.File(name));
  const RVString sub(scratch.File("sub").c_str());
  ASSERT_TRUE(RVFileManager::CreateDirectoryAtPath(sub));
  WriteFile(Text(sub.StringByAppendingPathComponent("deep.txt")));
  const RVString dir(scratch.Path().c_str());

  EXPECT_EQ(SortedNames(RVFileManager::DirectoryContentsAtPath(dir)),
            (std::vector<std::string>{"a.txt", "b.txt.bak", "c", "sub", "ü d.TXT"}));
  RVArray txt;
  txt.AddObject(RVString("txt"));
  EXPECT_EQ(SortedNames(RVFileManager::DirectoryContentsAtPathWithMatchingExtensions(dir, txt)),
            (std::vector<std::string>{"a.txt"}));
  txt.AddObject(RVString("bak"));
  EXPECT_EQ(SortedNames(RVFileManager::DirectoryContentsAtPathWithMatchingExtensions(dir, txt)),
            (std::vector<std::string>{"a.txt", "b.txt.bak"}));

  EXPECT_TRUE(RVFileManager::DirectoryContentsAtPath(scratch.File("a.txt").c_str()).IsEmpty());
  EXPECT_TRUE(RVFileManager::DirectoryContentsAtPath(scratch.File("missing").c_str()).IsEmpty());
  EXPECT_TRUE(RVFileManager::DirectoryContentsAtPathWithMatchingExtensions("", txt).IsEmpty());
}

}  // namespace
