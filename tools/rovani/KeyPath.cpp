// Key paths: parsing them, and finding and changing the value one names in
// a tree of handles. Handles to collections copy on change, so an edit
// rebuilds the path from the changed value up to the root.
#include "KeyPath.h"

#include <climits>

namespace cli {

namespace {

// A part read as an array index: decimal digits without a leading zero,
// within the range of indexes. False for anything else.
bool ParseIndex(const std::string& part, unsigned int& index) {
  if (part.empty() || part.size() > 10 || (part[0] == '0' && part.size() > 1)) return false;
  unsigned long long value = 0;
  for (char c : part) {
    if (c < '0' || c > '9') return false;
    value = value * 10 + static_cast<unsigned long long>(c - '0');
  }
  if (value > UINT_MAX) return false;
  index = static_cast<unsigned int>(value);
  return true;
}

std::string Quoted(const std::string& key) { return "'" + key + "'"; }

std::string Items(unsigned int count) {
  return std::to_string(count) + (count == 1 ? " item" : " items");
}

// What the value at path[0, depth) is called in messages.
std::string Parent(const KeyPath& path, size_t depth) {
  return depth == 0 ? "the top level" : JoinKeyPath(path, depth);
}

std::string Article(Kind kind) {
  const char* name = KindName(kind);
  if (name == nullptr) return "a value of another kind";
  std::string word = name;
  return (word[0] == 'a' || word[0] == 'i' ? "an " : "a ") + word;
}

// Stores value under key. SetValueForKey, because SetObjectForKey would
// store zero bytes of data as a null.
void Store(RVDictionary& dictionary, const RVObject& value, const std::string& key) {
  dictionary.SetValueForKey(value, FromUtf8(key));
}

// The child of node named by path[depth]. Throws InputError when it is not
// there or node holds no children.
std::unique_ptr<RVObject> Child(const RVObject& node, const KeyPath& path, size_t depth) {
  const std::string& part = path[depth];
  Kind kind = KindOf(node);
  if (kind == Kind::Dictionary) {
    const RVDictionary& dictionary = static_cast<const RVDictionary&>(node);
    std::unique_ptr<RVObject> child(dictionary.ValueForKey(FromUtf8(part)));
    if (child == nullptr) {
      throw InputError{JoinKeyPath(path, depth + 1) + ": no key " + Quoted(part) + " in " +
                       Parent(path, depth)};
    }
    return child;
  }
  if (kind == Kind::Array) {
    const RVArray& array = static_cast<const RVArray&>(node);
    unsigned int index = 0;
    if (!ParseIndex(part, index)) {
      throw InputError{JoinKeyPath(path, depth + 1) + ": " + Parent(path, depth) +
                       " is an array, and " + Quoted(part) + " is no index"};
    }
    if (index >= array.Count()) {
      throw InputError{JoinKeyPath(path, depth + 1) + ": no item " + part + " in " +
                       Parent(path, depth) + " (" + Items(array.Count()) + ")"};
    }
    return std::unique_ptr<RVObject>(array.ObjectAtIndex(index));
  }
  throw InputError{JoinKeyPath(path, depth + 1) + ": " + Parent(path, depth) + " is " +
                   Article(kind) + ", not a dictionary or an array"};
}

// node with the edit applied at path[depth...].
std::unique_ptr<RVObject> Edited(const RVObject& node, const KeyPath& path, size_t depth,
                                 const RVObject* value) {
  if (depth + 1 < path.size()) {
    std::unique_ptr<RVObject> child = Child(node, path, depth);
    std::unique_ptr<RVObject> changed = Edited(*child, path, depth + 1, value);
    // The child was found, so node is a dictionary or an array whose key or
    // index is there: the changed child takes its place.
    if (KindOf(node) == Kind::Dictionary) {
      auto copy = std::make_unique<RVDictionary>(static_cast<const RVDictionary&>(node));
      Store(*copy, *changed, path[depth]);
      return copy;
    }
    unsigned int index = 0;
    ParseIndex(path[depth], index);
    auto copy = std::make_unique<RVArray>(static_cast<const RVArray&>(node));
    copy->SetObjectAtIndex(*changed, index);
    return copy;
  }

  const std::string& part = path[depth];
  Kind kind = KindOf(node);
  if (kind == Kind::Dictionary) {
    auto copy = std::make_unique<RVDictionary>(static_cast<const RVDictionary&>(node));
    if (value != nullptr) {
      Store(*copy, *value, part);
    } else {
      Child(node, path, depth);  // says which key is missing
      copy->RemoveObjectForKey(FromUtf8(part));
    }
    return copy;
  }
  if (kind == Kind::Array) {
    const RVArray& array = static_cast<const RVArray&>(node);
    unsigned int index = 0;
    // Appending: the index one past the last item names the new one.
    if (value != nullptr && ParseIndex(part, index) && index == array.Count()) {
      auto copy = std::make_unique<RVArray>(array);
      copy->AddObject(*value);
      return copy;
    }
    Child(node, path, depth);  // says why the index names no item
    ParseIndex(part, index);
    auto copy = std::make_unique<RVArray>(array);
    if (value != nullptr) {
      copy->SetObjectAtIndex(*value, index);
    } else {
      copy->RemoveObjectAtIndex(index);
    }
    return copy;
  }
  Child(node, path, depth);  // says that node holds no children
  return nullptr;
}

}  // namespace

KeyPath ParseKeyPath(const std::string& text) {
  KeyPath path(1);
  for (size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (c == '.') {
      path.emplace_back();
    } else if (c != '\\') {
      path.back() += c;
    } else if (i + 1 < text.size() && (text[i + 1] == '.' || text[i + 1] == '\\')) {
      path.back() += text[++i];
    } else {
      throw UsageError{"key path '" + text + "': a backslash at offset " + std::to_string(i) +
                       " escapes neither '.' nor '\\'"};
    }
  }
  return path;
}

std::string JoinKeyPath(const KeyPath& path, size_t count) {
  std::string text;
  for (size_t i = 0; i < count && i < path.size(); ++i) {
    if (i > 0) text += '.';
    for (char c : path[i]) {
      if (c == '.' || c == '\\') text += '\\';
      text += c;
    }
  }
  return text;
}

std::unique_ptr<RVObject> ValueAtPath(const RVObject& root, const KeyPath& path) {
  std::unique_ptr<RVObject> node;
  for (size_t depth = 0; depth < path.size(); ++depth) {
    node = Child(depth == 0 ? root : *node, path, depth);
  }
  return node;
}

std::unique_ptr<RVObject> EditedAtPath(const RVObject& root, const KeyPath& path,
                                       const RVObject* value) {
  return Edited(root, path, 0, value);
}

}  // namespace cli
