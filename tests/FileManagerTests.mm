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

void WriteFile(const RVString& path) { std::ofstream(Text(path)) << "x"; }

std::vector<std::string> SortedNames(const RVArray& names) {
  std::vector<std::string> sorted;
  for (unsigned int i = 0; i < names.Count(); ++i) sorted.push_back(Text(names.StringAtIndex(i)));
  std::sort(sorted.begin(), sorted.end());
  return sorted;
}

// Paths with blanks and non-ASCII characters throughout.
TEST(FileManager, QueriesAndBadPaths) {
  ScratchDir scratch;
  const RVString dir(scratch.Path().c_str()), file(scratch.File("a file ü.txt").c_str());
  const RVString missing(scratch.File("missing").c_str());
  WriteFile(file);

  bool isDirectory = false;
  EXPECT_TRUE(RVFileManager::ItemExistsAtPath(dir, isDirectory) && isDirectory);
  EXPECT_FALSE(RVFileManager::ItemExistsAtPath(missing, isDirectory) || isDirectory);
  EXPECT_TRUE(RVFileManager::ItemExistsAtPath(file) && RVFileManager::IsDirectory(dir));
  EXPECT_FALSE(RVFileManager::IsDirectory(file) || RVFileManager::IsDirectory(missing));
  EXPECT_FALSE(RVFileManager::ItemExistsAtPath("") || RVFileManager::IsReadableItemAtPath(missing));
  EXPECT_TRUE(RVFileManager::IsReadableItemAtPath(file) && !RVFileManager::IsExecutableItemAtPath(file));
  EXPECT_EQ(Text(RVFileManager::DisplayNameAtPath(file)), "a file ü.txt");
}

TEST(FileManager, CreateCopyMoveAndRemove) {
  ScratchDir scratch;
  const RVString dir(scratch.File("new dir é").c_str()), copy(scratch.File("copy").c_str());
  EXPECT_TRUE(RVFileManager::CreateDirectoryAtPath(dir));
  EXPECT_FALSE(RVFileManager::CreateDirectoryAtPath(dir));
  EXPECT_FALSE(RVFileManager::CreateDirectoryAtPath(dir.StringByAppendingPathComponent("a/b")));
  WriteFile(dir.StringByAppendingPathComponent("inside.txt"));

  RVDictionary attributes;
  attributes.SetObjectForKey(RVNumber(0700), RVString(NSFilePosixPermissions));
  RVString privateDir(scratch.File("private").c_str());
  EXPECT_TRUE(RVFileManager::CreateDirectoryAtPathWithAttributes(privateDir, attributes));
  struct stat info;
  EXPECT_TRUE(stat(Text(privateDir).c_str(), &info) == 0 && (info.st_mode & 0777) == 0700);

  // Whole trees; an existing destination or a missing source fails.
  EXPECT_TRUE(RVFileManager::CopyPathToPath(dir, copy));
  EXPECT_TRUE(RVFileManager::ItemExistsAtPath(copy.StringByAppendingPathComponent("inside.txt")));
  EXPECT_FALSE(RVFileManager::CopyPathToPath(dir, copy));
  EXPECT_FALSE(RVFileManager::MovePathToPath(scratch.File("missing").c_str(), privateDir));
  EXPECT_TRUE(RVFileManager::MovePathToPath(copy, privateDir.StringByAppendingPathComponent("in")));
  EXPECT_FALSE(RVFileManager::ItemExistsAtPath(copy));

  EXPECT_TRUE(RVFileManager::RemoveItemAtPath(privateDir));
  // Removing what is not there counts as success.
  EXPECT_TRUE(RVFileManager::RemoveItemAtPath(privateDir) && RVFileManager::RemoveItemAtPath(""));
}

TEST(FileManager, ContentsOfOneDirectoryLevelFilteredByExtension) {
  ScratchDir scratch;
  const RVString dir(scratch.Path().c_str()), sub(scratch.File("sub").c_str());
  for (const char* name : {"a.txt", "b.txt.bak", "c", "ü d.TXT"})
    WriteFile(dir.StringByAppendingPathComponent(name));
  ASSERT_TRUE(RVFileManager::CreateDirectoryAtPath(sub));
  WriteFile(sub.StringByAppendingPathComponent("deep.txt"));

  EXPECT_EQ(SortedNames(RVFileManager::DirectoryContentsAtPath(dir)),
            (std::vector<std::string>{"a.txt", "b.txt.bak", "c", "sub", "ü d.TXT"}));
  RVArray extensions;
  extensions.AddObject(RVString("txt"));
  RVArray matching = RVFileManager::DirectoryContentsAtPathWithMatchingExtensions(dir, extensions);
  EXPECT_TRUE(matching.Count() == 1 && matching.StringAtIndex(0) == "a.txt");

  EXPECT_TRUE(
      RVFileManager::DirectoryContentsAtPath(dir.StringByAppendingPathComponent("c")).IsEmpty());
  EXPECT_TRUE(RVFileManager::DirectoryContentsAtPath(scratch.File("missing").c_str()).IsEmpty());
  EXPECT_TRUE(
      RVFileManager::DirectoryContentsAtPathWithMatchingExtensions("", extensions).IsEmpty());
}

}  // namespace
