#import <Foundation/Foundation.h>

#include "Platform/Preferences/RVStoreFiles.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

RVFileStamp RVFileStamp::Of(const struct stat& info) {
  RVFileStamp stamp;
  stamp.exists = true;
  stamp.device = info.st_dev;
  stamp.inode = info.st_ino;
  stamp.size = info.st_size;
  stamp.mode = info.st_mode;
  stamp.modified = info.st_mtim;
  return stamp;
}

RVFileStamp RVFileStamp::At(const std::string& path) {
  struct stat info;
  return lstat(path.c_str(), &info) == 0 ? Of(info) : RVFileStamp();
}

bool RVFileStamp::operator==(const RVFileStamp& other) const {
  return exists == other.exists && device == other.device && inode == other.inode &&
         size == other.size && mode == other.mode && modified.tv_sec == other.modified.tv_sec &&
         modified.tv_nsec == other.modified.tv_nsec;
}

int RVOpenRegularFile(const std::string& path, int flags, mode_t mode, bool* notRegular) {
  *notRegular = false;
  int fd = open(path.c_str(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, mode);
  if (fd < 0) {
    // A link in the file's place (O_NOFOLLOW), a directory opened for
    // writing: something other than a file.
    *notRegular = errno == ELOOP || errno == EISDIR || errno == ENXIO;
    return -1;
  }
  struct stat info;
  if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
    *notRegular = true;
    close(fd);
    return -1;
  }
  return fd;
}

namespace {

bool UsableDirectory(const std::string& dir, mode_t mode, bool privateStore) {
  int fd = open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (fd < 0) {
    NSLog(@"Rovani defaults: %s is not a directory the store can use (%s)", dir.c_str(),
          strerror(errno));
    return false;
  }
  struct stat info;
  bool usable = fstat(fd, &info) == 0;
  if (usable && privateStore && (info.st_mode & 022) != 0) {
    // Others could replace the user's settings: tighten a directory the
    // user owns, leave anyone else's alone and unused.
    usable = info.st_uid == geteuid() && fchmod(fd, mode) == 0;
    if (!usable) {
      NSLog(@"Rovani defaults: %s may be written by others and is not the user's; not used",
            dir.c_str());
    }
  }
  close(fd);
  return usable;
}

}  // namespace

bool RVMakeStoreDirectory(const std::string& dir, mode_t mode, bool privateStore) {
  if (dir.empty()) return false;
  std::string::size_type next = 1;
  while (true) {
    next = dir.find('/', next);
    std::string prefix = dir.substr(0, next);
    if (!prefix.empty() && mkdir(prefix.c_str(), mode) == 0) {
      chmod(prefix.c_str(), mode);
    } else if (!prefix.empty() && errno != EEXIST) {
      NSLog(@"Rovani defaults: cannot make %s (%s)", prefix.c_str(), strerror(errno));
      return false;
    }
    if (next == std::string::npos) break;
    ++next;
  }
  return UsableDirectory(dir, mode, privateStore);
}

bool RVKeepDamagedAside(const std::string& path, const char* why) {
  char stamp[32];
  time_t now = time(nullptr);
  struct tm utc;
  gmtime_r(&now, &utc);
  strftime(stamp, sizeof stamp, "%Y%m%dT%H%M%SZ", &utc);
  std::string aside = path + ".damaged-" + stamp;
  for (int attempt = 2; attempt < 100; ++attempt) {
    if (renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, aside.c_str(), RENAME_NOREPLACE) == 0) {
      NSLog(@"Rovani defaults: %s %s; kept as %s", path.c_str(), why, aside.c_str());
      return true;
    }
    if (errno != EEXIST) break;
    aside = path + ".damaged-" + stamp + "-" + std::to_string(attempt);
  }
  NSLog(@"Rovani defaults: %s %s and cannot be moved aside (%s); left as it is", path.c_str(), why,
        strerror(errno));
  return false;
}

bool RVReadWholeFile(int fd, size_t limit, std::string* bytes) {
  struct stat info;
  if (fstat(fd, &info) != 0 || static_cast<size_t>(info.st_size) > limit) return false;
  bytes->resize(static_cast<size_t>(info.st_size));
  size_t have = 0;
  while (true) {
    if (have == bytes->size()) bytes->resize(have + 4096);
    ssize_t got = pread(fd, &(*bytes)[have], bytes->size() - have, static_cast<off_t>(have));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    if (got == 0) break;
    have += static_cast<size_t>(got);
    if (have > limit) return false;
  }
  bytes->resize(have);
  return true;
}

namespace {

// A cursor over XML text that knows just enough to find where elements
// begin and end: comments, processing instructions, declarations and
// CDATA are stepped over whole.
class Scanner {
 public:
  explicit Scanner(const std::string& text) : text_(text) {}

  // Moves to the next element tag (open, close or empty) and answers its
  // name ("dict", "/dict"); *at is where its '<' is, *empty whether it
  // closes itself. Empty at the end.
  std::string NextTag(size_t* at, bool* empty) {
    while (true) {
      size_t open = text_.find('<', pos_);
      if (open == std::string::npos) return "";
      if (Skip(open, "<!--", "-->") || Skip(open, "<![CDATA[", "]]>") || Skip(open, "<?", "?>") ||
          Skip(open, "<!", ">")) {
        continue;
      }
      size_t close = text_.find('>', open);
      if (close == std::string::npos) return "";
      size_t nameEnd = text_.find_first_of(" \t\r\n/>", open + 2);
      *at = open;
      *empty = text_[close - 1] == '/';
      pos_ = close + 1;
      return text_.substr(open + 1, nameEnd - open - 1);
    }
  }
  size_t Position() const { return pos_; }

 private:
  bool Skip(size_t open, const char* start, const char* end) {
    if (text_.compare(open, strlen(start), start) != 0) return false;
    size_t found = text_.find(end, open + strlen(start));
    pos_ = found == std::string::npos ? text_.size() : found + strlen(end);
    return true;
  }

  const std::string& text_;
  size_t pos_ = 0;
};

// The text of an element's content with XML's entities replaced.
std::string Unescaped(const std::string& raw) {
  std::string out;
  for (size_t i = 0; i < raw.size(); ++i) {
    if (raw.compare(i, 9, "<![CDATA[") == 0) {
      size_t end = raw.find("]]>", i + 9);
      if (end == std::string::npos) end = raw.size();
      out += raw.substr(i + 9, end - i - 9);
      i = end + 2;
      continue;
    }
    if (raw[i] != '&') {
      out += raw[i];
      continue;
    }
    size_t semi = raw.find(';', i);
    if (semi == std::string::npos) return out + raw.substr(i);
    std::string name = raw.substr(i + 1, semi - i - 1);
    i = semi;
    if (name == "amp") out += '&';
    else if (name == "lt") out += '<';
    else if (name == "gt") out += '>';
    else if (name == "quot") out += '"';
    else if (name == "apos") out += '\'';
    else if (!name.empty() && name[0] == '#') {
      unsigned long code = name.size() > 1 && (name[1] == 'x' || name[1] == 'X')
                               ? strtoul(name.c_str() + 2, nullptr, 16)
                               : strtoul(name.c_str() + 1, nullptr, 10);
      NSString* character = [[[NSString alloc] initWithBytes:&code
                                                      length:4
                                                    encoding:NSUTF32LittleEndianStringEncoding]
          autorelease];
      const char* utf8 = [character UTF8String];
      if (utf8 != nullptr) out += utf8;
    }
  }
  return out;
}

}  // namespace

bool RVTopLevelEntryText(const std::string& xml, NSString* key, std::string* entry) {
  Scanner scan(xml);
  size_t at = 0;
  bool empty = false;
  // Into the root dictionary.
  std::string tag;
  do {
    tag = scan.NextTag(&at, &empty);
  } while (!tag.empty() && tag != "dict");
  if (tag.empty() || empty) return false;
  int depth = 1;
  size_t keyStart = std::string::npos;
  bool matched = false;
  while (!(tag = scan.NextTag(&at, &empty)).empty()) {
    if (depth == 1 && tag == "key" && !empty) {
      size_t contentStart = scan.Position();
      size_t close = xml.find("</key>", contentStart);
      if (close == std::string::npos) return false;
      std::string text = Unescaped(xml.substr(contentStart, close - contentStart));
      NSString* found = [[[NSString alloc] initWithBytes:text.data()
                                                  length:text.size()
                                                encoding:NSUTF8StringEncoding] autorelease];
      matched = [found isEqualToString:key];
      keyStart = at;
      while (!(tag = scan.NextTag(&at, &empty)).empty() && tag != "/key") {
      }
      continue;
    }
    if ((tag == "dict" || tag == "array") && !empty) {
      ++depth;
    } else if (tag == "/dict" || tag == "/array") {
      if (--depth == 0) return false;
    }
    // A value of the root dictionary ends when its own element closes.
    bool valueEnds = depth == 1 && (tag[0] == '/' || empty);
    if (valueEnds && matched) {
      *entry = xml.substr(keyStart, scan.Position() - keyStart);
      return true;
    }
  }
  return false;
}

NSData* RVInsertEntries(NSData* xml, const std::vector<std::string>& entries) {
  std::string text(static_cast<const char*>([xml bytes]), [xml length]);
  size_t close = text.rfind("</dict>");
  if (close == std::string::npos) {
    // An empty root dictionary is written "<dict/>".
    close = text.rfind("<dict/>");
    if (close == std::string::npos) return nil;
    text.replace(close, 7, "<dict>\n</dict>");
    close += 7;
  }
  std::string inserted;
  for (const std::string& entry : entries) inserted += "\t" + entry + "\n";
  text.insert(close, inserted);
  return [NSData dataWithBytes:text.data() length:text.size()];
}
