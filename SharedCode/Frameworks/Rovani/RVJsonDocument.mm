#import <Foundation/Foundation.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <Rovani/RVJsonDocument.h>

#include "Platform/Json/RVJsonValue.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyListValues.h"
#include "Platform/Runtime/RVOwned.h"
#include "Platform/Text/RVUTF8.h"

// JSON to Foundation objects, exactly: jsoncpp parses, and the walk below
// refuses what it would change (an integer beyond 64 bits that jsoncpp
// made a real, text that is not UTF-8), naming its key path and place.

namespace {

// The offset of the first byte that is not white space or a comment from
// at; the end of text when there is none.
size_t SkipSpaceAndComments(const std::string& text, size_t at) {
  while (at < text.size()) {
    char c = text[at];
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
      ++at;
    } else if (text.compare(at, 2, "//") == 0) {
      size_t end = text.find('\n', at);
      at = end == std::string::npos ? text.size() : end + 1;
    } else if (text.compare(at, 2, "/*") == 0) {
      size_t end = text.find("*/", at + 2);
      if (end == std::string::npos) return at;
      at = end + 2;
    } else {
      break;
    }
  }
  return at;
}

// The offset of the first bracket nested deeper than the depth limit, or
// npos. jsoncpp's own limit is higher, and it throws without a place.
size_t TooDeep(const std::string& text) {
  unsigned depth = 0;
  bool quoted = false;
  for (size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (quoted) {
      if (c == '\\') ++i;
      else if (c == '"') quoted = false;
    } else if (c == '"') {
      quoted = true;
    } else if (c == '[' || c == '{') {
      if (++depth > kRVPropertyListMaxDepth) return i;
    } else if (c == ']' || c == '}') {
      if (depth > 0) --depth;
    } else if (c == '/' && i + 1 < text.size() && (text[i + 1] == '/' || text[i + 1] == '*')) {
      size_t end = SkipSpaceAndComments(text, i);
      if (end == i) return std::string::npos;  // an open comment: jsoncpp says where
      i = end - 1;
    }
  }
  return std::string::npos;
}

// Whether text[start, limit) is a number as JSON spells one; jsoncpp also
// takes "-" (as 0), leading zeros and "1.".
bool IsJsonNumber(const std::string& text, size_t start, size_t limit) {
  size_t i = start;
  auto digits = [&] {
    size_t first = i;
    while (i < limit && text[i] >= '0' && text[i] <= '9') ++i;
    return i > first;
  };
  if (i < limit && text[i] == '-') ++i;
  if (i < limit && text[i] == '0') ++i;
  else if (!digits()) return false;
  if (i < limit && text[i] == '.' && (++i, !digits())) return false;
  if (i < limit && (text[i] == 'e' || text[i] == 'E')) {
    ++i;
    if (i < limit && (text[i] == '+' || text[i] == '-')) ++i;
    if (!digits()) return false;
  }
  return i == limit;
}

void AppendKey(std::string* path, const char* key, size_t length) {
  if (!path->empty()) path->push_back('.');
  for (size_t i = 0; i < length; ++i) {
    if (key[i] == '.' || key[i] == '\\') path->push_back('\\');
    path->push_back(key[i]);
  }
}

class Builder {
 public:
  Builder(const std::string& text, RVFormatError* error) : text_(text), error_(error) {}

  // A new object (+1) for value, or nil after Fail.
  id Build(const void* value, std::string* path) {
    RVJsonDescription d = RVJsonDescribe(value);
    bool number = d.kind == kRVJsonInt || d.kind == kRVJsonInt64 || d.kind == kRVJsonUInt ||
                  d.kind == kRVJsonUInt64 || d.kind == kRVJsonReal;
    if (number && !IsJsonNumber(text_, d.start, d.limit))
      return Fail("not a number as JSON writes one", d.start, *path);
    switch (d.kind) {
      case kRVJsonNull:
        return [[NSNull null] retain];
      case kRVJsonInt:
      case kRVJsonInt64:
        return [[NSNumber alloc] initWithLongLong:d.integer];
      case kRVJsonUInt:
      case kRVJsonUInt64:
        return [[NSNumber alloc] initWithUnsignedLongLong:d.unsignedInteger];
      case kRVJsonReal:
        // jsoncpp reads an integer beyond 64 bits as a real.
        if (d.limit > d.start && text_.find_first_of(".eE", d.start) >= d.limit)
          return Fail("an integer beyond 64 bits", d.start, *path);
        return [[NSNumber alloc] initWithDouble:d.real];
      case kRVJsonString:
        return String(d.text, d.length, d.start, *path);
      case kRVJsonBool:
        return [[NSNumber numberWithBool:d.boolean ? YES : NO] retain];
      case kRVJsonArray:
      case kRVJsonObject:
        return Container(value, d.kind == kRVJsonObject, path);
      default:
        return Fail("a value of an unknown kind", d.start, *path);
    }
  }

  id Fail(const char* why, size_t at, const std::string& path) {
    if (error_ != nullptr) {
      error_->message = why;
      RVLineAndColumn(reinterpret_cast<const unsigned char*>(text_.data()), at, &error_->line,
                      &error_->column);
      error_->keyPath = path;
    }
    return nil;
  }

 private:
  id String(const char* text, size_t length, size_t at, const std::string& path) {
    size_t bad = RVFirstInvalidUTF8(text, length);
    if (bad != std::string::npos) return Fail("text that is not UTF-8", at, path);
    return RVNewStringFromUTF8(std::string(text, length));
  }

  id Container(const void* value, bool object, std::string* path) {
    std::vector<RVJsonChild> children;
    RVJsonChildren(value, &children);
    std::vector<RVOwned<>> keys, members;
    size_t length = path->size();
    bool failed = false;
    for (size_t i = 0; i < children.size() && !failed; ++i) {
      const RVJsonChild& child = children[i];
      if (object) {
        AppendKey(path, child.name, child.nameLength);
        RVOwned<> key = RVAdopt(
            String(child.name, child.nameLength, RVJsonDescribe(child.value).start, *path));
        if (!key) {
          failed = true;
          break;
        }
        keys.push_back(std::move(key));
      } else {
        if (!path->empty()) path->push_back('.');
        *path += std::to_string(i);
      }
      RVOwned<> member = RVAdopt(Build(child.value, path));
      if (!member) failed = true;
      else members.push_back(std::move(member));
      path->resize(length);
    }
    if (failed) return nil;
    std::vector<id> values = Objects(members);
    if (object) {
      return [[NSDictionary alloc] initWithObjects:values.data()
                                           forKeys:Objects(keys).data()
                                             count:values.size()];
    }
    return [[NSArray alloc] initWithObjects:values.data() count:values.size()];
  }

  // The objects that owners hold, as the initialisers take them.
  static std::vector<id> Objects(const std::vector<RVOwned<>>& owners) {
    std::vector<id> objects;
    objects.reserve(owners.size());
    for (const RVOwned<>& owner : owners) objects.push_back(owner.Get());
    return objects;
  }

  const std::string& text_;
  RVFormatError* error_;
};

}  // namespace

std::unique_ptr<RVObject> RVJsonDocument::Parse(const std::string& text, RVFormatError* error) {
  RVFormatError scratch;
  RVFormatError* out = error != nullptr ? error : &scratch;
  out->Clear();
  out->format = RVDocumentFormat::kJson;
  Builder builder(text, out);
  size_t deep = TooDeep(text);
  if (deep != std::string::npos) {
    static_assert(kRVPropertyListMaxDepth == 256, "the message names the limit");
    builder.Fail("containers nested deeper than 256 levels", deep, "");
    return nullptr;
  }
  std::string reason;
  size_t at = 0;
  void* root = RVJsonParseWithReason(text.data(), text.data() + text.size(), &reason, &at);
  if (root == nullptr) {
    builder.Fail(reason.c_str(), at, "");
    return nullptr;
  }
  std::unique_ptr<RVObject> handle;
  @autoreleasepool {
    size_t after = SkipSpaceAndComments(text, RVJsonDescribe(root).limit);
    RVOwned<> made;
    if (after < text.size()) {
      builder.Fail("text after the end of the value", after, "");
    } else {
      std::string path;
      made = RVAdopt(builder.Build(root, &path));
    }
    if (made) handle.reset(RVObject::Create(made.Get()));
  }
  RVJsonDelete(root);
  return handle;
}
