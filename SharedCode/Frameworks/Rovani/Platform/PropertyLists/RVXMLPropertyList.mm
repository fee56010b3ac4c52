#import <Foundation/Foundation.h>

#include <charconv>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyListValues.h"
#include "Platform/Runtime/RVOwned.h"
#include "Platform/Text/RVUTF8.h"

// A small, non-recursive reader of the XML property-list vocabulary: open
// containers live on an explicit stack bounded by the depth limit, and every
// position is checked against the end of the input before it is read. The
// first fault found is kept with its offset, for the caller's line and
// column.

namespace {

bool IsSpace(unsigned char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool IsNameChar(unsigned char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         c == '_' || c == '-' || c == '.' || c == ':' || c >= 0x80;
}

bool IsBlank(const std::string& text) {
  for (char c : text)
    if (!IsSpace(static_cast<unsigned char>(c))) return false;
  return true;
}

bool IsXMLChar(uint32_t c) {
  return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) ||
         (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

class XMLReader {
 public:
  XMLReader(const unsigned char* bytes, size_t length) : p_(bytes), n_(length) {}

  // The root value, retained, or nil.
  id ReadRoot() {
    size_t bad = RVFirstInvalidUTF8(p_, n_);
    if (bad != std::string::npos) return Fail("a byte that is not UTF-8", bad), nil;
    if (n_ >= 3 && memcmp(p_, "\xEF\xBB\xBF", 3) == 0) pos_ = 3;
    SkipSpace();
    if (StartsWith("<?xml") && pos_ + 5 < n_ && IsSpace(p_[pos_ + 5])) {
      if (!ReadDeclaration()) return nil;
    }
    if (!SkipMisc(true)) return nil;
    if (StartsWith("<plist") && pos_ + 6 < n_ && !IsNameChar(p_[pos_ + 6])) {
      size_t start = pos_;
      pos_ += 6;
      bool empty;
      if (!SkipAttributes(&empty)) return nil;
      if (empty) return Fail("an empty <plist/> holds no value", start), nil;
      inPlist_ = true;
    }
    if (!ReadContent() || !SkipMisc(false)) return nil;
    if (pos_ != n_) return Fail("text after the end of the property list"), nil;
    return root_.Release();
  }

  // Why the read failed and where: 1-based line and column.
  void Report(RVFormatFault* fault) const {
    fault->message = why_ != nullptr ? why_ : "not a property list";
    RVLineAndColumn(p_, failAt_ < n_ ? failAt_ : n_, &fault->line, &fault->column);
  }

 private:
  // An open container. It holds a reference to each of its values and keys
  // until it is closed or the read stops, whichever comes first.
  struct Frame {
    Frame(bool isDictionary, size_t at) : dictionary(isDictionary), start(at) {}
    Frame(Frame&&) = default;
    ~Frame() {
      for (id item : items) [item release];
      for (id key : keys) [key release];
    }

    bool dictionary;
    std::vector<id> items;  // values, retained
    std::vector<id> keys;   // keys of a dictionary, retained
    RVOwned<> pendingKey;   // a key waiting for its value
    size_t start;           // where its start tag begins
  };

  // Keeps the first fault (at the current position unless told) and
  // answers false.
  bool Fail(const char* why, size_t at = SIZE_MAX) {
    if (why_ == nullptr) {
      why_ = why;
      failAt_ = at == SIZE_MAX ? pos_ : at;
    }
    return false;
  }

  bool StartsWith(const char* text) const {
    size_t length = strlen(text);
    return n_ - pos_ >= length && memcmp(p_ + pos_, text, length) == 0;
  }

  void SkipSpace() {
    while (pos_ < n_ && IsSpace(p_[pos_])) ++pos_;
  }

  // Moves past the next occurrence of terminator; a fault naming what was
  // left open (at its start) when there is none.
  bool SkipPast(const char* terminator, const char* unclosed, size_t start) {
    size_t length = strlen(terminator);
    while (n_ - pos_ >= length) {
      if (memcmp(p_ + pos_, terminator, length) == 0) {
        pos_ += length;
        return true;
      }
      ++pos_;
    }
    return Fail(unclosed, start);
  }

  // Comments and processing instructions at the current position; false
  // (with no fault) when there is neither.
  bool SkipCommentOrInstruction(bool* ok) {
    size_t start = pos_;
    if (StartsWith("<!--")) {
      pos_ += 4;
      *ok = SkipPast("-->", "a comment that is never closed", start);
      return true;
    }
    if (StartsWith("<?")) {
      pos_ += 2;
      *ok = SkipPast("?>", "a processing instruction that is never closed", start);
      return true;
    }
    return false;
  }

  bool ReadName(std::string* name) {
    size_t start = pos_;
    while (pos_ < n_ && IsNameChar(p_[pos_])) ++pos_;
    if (pos_ == start) return Fail("expected an element name");
    name->assign(reinterpret_cast<const char*>(p_ + start), pos_ - start);
    return true;
  }

  // ">" ending an end tag after optional white space.
  bool CloseTag() {
    SkipSpace();
    if (pos_ >= n_ || p_[pos_] != '>') return Fail("expected '>' to end the tag");
    ++pos_;
    return true;
  }

  // Attributes up to the end of a start tag; empty is set for "/>".
  bool SkipAttributes(bool* empty, std::string* encoding = nullptr, bool declaration = false) {
    for (;;) {
      SkipSpace();
      if (pos_ >= n_) return Fail("a tag that is never closed");
      if (declaration) {
        if (StartsWith("?>")) {
          pos_ += 2;
          return true;
        }
      } else if (p_[pos_] == '>') {
        ++pos_;
        *empty = false;
        return true;
      } else if (StartsWith("/>")) {
        pos_ += 2;
        *empty = true;
        return true;
      }
      std::string name;
      if (!ReadName(&name)) return Fail("expected an attribute or the end of the tag");
      SkipSpace();
      if (pos_ >= n_ || p_[pos_] != '=') return Fail("expected '=' after the attribute name");
      ++pos_;
      SkipSpace();
      if (pos_ >= n_ || (p_[pos_] != '"' && p_[pos_] != '\''))
        return Fail("expected a quoted attribute value");
      unsigned char quote = p_[pos_++];
      size_t start = pos_;
      while (pos_ < n_ && p_[pos_] != quote && p_[pos_] != '<') ++pos_;
      if (pos_ >= n_ || p_[pos_] != quote)
        return Fail("an attribute value that is never closed", start - 1);
      if (encoding != nullptr && name == "encoding")
        encoding->assign(reinterpret_cast<const char*>(p_ + start), pos_ - start);
      ++pos_;
    }
  }

  // <?xml ... ?>: the text is UTF-8 (or its ASCII subset); text declared
  // UTF-16 has been converted to UTF-8 before it gets here.
  bool ReadDeclaration() {
    size_t start = pos_;
    pos_ += 5;
    bool empty;
    std::string encoding = "UTF-8";
    if (!SkipAttributes(&empty, &encoding, true)) return false;
    for (char& c : encoding) c = static_cast<char>(toupper(static_cast<unsigned char>(c)));
    static const char* const kKnown[] = {"UTF-8", "UTF8", "US-ASCII", "ASCII",
                                         "UTF-16", "UTF-16LE", "UTF-16BE"};
    for (const char* known : kKnown)
      if (encoding == known) return true;
    return Fail("an encoding other than UTF-8 or UTF-16", start);
  }

  // White space, comments, processing instructions and (before the root) a
  // document type declaration.
  bool SkipMisc(bool beforeRoot) {
    for (;;) {
      SkipSpace();
      bool ok;
      if (SkipCommentOrInstruction(&ok)) {
        if (!ok) return false;
      } else if (beforeRoot && StartsWith("<!DOCTYPE")) {
        if (!SkipDoctype()) return false;
      } else {
        return true;
      }
    }
  }

  bool SkipDoctype() {
    size_t start = pos_;
    pos_ += 9;
    unsigned char quote = 0;
    bool subset = false;
    for (; pos_ < n_; ++pos_) {
      unsigned char c = p_[pos_];
      if (quote != 0) {
        if (c == quote) quote = 0;
      } else if (c == '"' || c == '\'') {
        quote = c;
      } else if (c == '[') {
        subset = true;
      } else if (c == ']') {
        subset = false;
      } else if (c == '>' && !subset) {
        ++pos_;
        return true;
      }
    }
    return Fail("a document type declaration that is never closed", start);
  }

  // A character or entity reference after '&'.
  bool ReadReference(std::string* out) {
    size_t start = pos_ - 1;
    size_t end = pos_;
    while (end < n_ && end - pos_ < 12 && p_[end] != ';') ++end;
    if (end >= n_ || p_[end] != ';') return Fail("an '&' that begins no reference", start);
    std::string name(reinterpret_cast<const char*>(p_ + pos_), end - pos_);
    pos_ = end + 1;
    if (name == "amp") out->push_back('&');
    else if (name == "lt") out->push_back('<');
    else if (name == "gt") out->push_back('>');
    else if (name == "quot") out->push_back('"');
    else if (name == "apos") out->push_back('\'');
    else if (name.size() > 1 && name[0] == '#') {
      bool hex = name[1] == 'x';
      const char* first = name.data() + (hex ? 2 : 1);
      const char* last = name.data() + name.size();
      uint32_t code = 0;
      auto [stop, error] = std::from_chars(first, last, code, hex ? 16 : 10);
      if (first == last || error != std::errc() || stop != last || !IsXMLChar(code))
        return Fail("a character reference to no XML character", start);
      RVAppendUTF8(out, code);
    } else {
      return Fail("an unknown entity reference", start);
    }
    return true;
  }

  // Appends a run of raw text, with line ends made "\n" as XML requires.
  void AppendRaw(std::string* out, size_t start, size_t end) {
    for (size_t i = start; i < end; ++i) {
      unsigned char c = p_[i];
      if (c == '\r') {
        out->push_back('\n');
        if (i + 1 < end && p_[i + 1] == '\n') ++i;
      } else {
        out->push_back(static_cast<char>(c));
      }
    }
  }

  // The text of a leaf element up to its end tag </name>.
  bool ReadText(const std::string& name, std::string* text, size_t opened) {
    for (;;) {
      size_t start = pos_;
      while (pos_ < n_ && p_[pos_] != '<' && p_[pos_] != '&') ++pos_;
      AppendRaw(text, start, pos_);
      if (pos_ >= n_) return Fail("a value element that is never closed", opened);
      bool ok;
      start = pos_;
      if (p_[pos_] == '&') {
        ++pos_;
        if (!ReadReference(text)) return false;
      } else if (StartsWith("<![CDATA[")) {
        pos_ += 9;
        size_t begin = pos_;
        if (!SkipPast("]]>", "a CDATA section that is never closed", start)) return false;
        AppendRaw(text, begin, pos_ - 3);
      } else if (SkipCommentOrInstruction(&ok)) {
        if (!ok) return false;
      } else if (StartsWith("</")) {
        pos_ += 2;
        std::string closing;
        if (!ReadName(&closing)) return false;
        if (closing != name) return Fail("an end tag that does not match its start tag", start);
        return CloseTag();
      } else {
        return Fail("an element inside a value that holds only text");
      }
    }
  }

  // Takes over one reference to made; nil is a leaf whose text is not of
  // its kind, at start.
  bool Add(id made, const char* invalid, size_t start) {
    RVOwned<> value = RVAdopt(made);
    if (!value) return Fail(invalid, start);
    if (++objects_ > kRVPropertyListMaxObjects)
      return Fail("more objects than a property list may hold", start);
    if (stack_.empty()) {
      if (root_) return Fail("a second value after the root", start);
      root_ = std::move(value);
      return true;
    }
    Frame& top = stack_.back();
    if (top.dictionary) {
      if (!top.pendingKey) return Fail("expected <key>", start);
      top.keys.push_back(top.pendingKey.Release());
    }
    top.items.push_back(value.Release());
    return true;
  }

  // Takes over one reference to made, a key.
  bool AddKey(id made, size_t start) {
    RVOwned<> key = RVAdopt(made);
    if (!key) return Fail("a key that is not text", start);
    if (stack_.empty() || !stack_.back().dictionary || stack_.back().pendingKey) {
      return Fail(stack_.empty() || !stack_.back().dictionary ? "a <key> outside a dictionary"
                                                               : "expected a value after <key>",
                  start);
    }
    stack_.back().pendingKey = std::move(key);
    return true;
  }

  bool CloseContainer(const std::string& name, size_t start) {
    if (stack_.empty()) return Fail("an end tag with no open element", start);
    Frame& top = stack_.back();
    if (name != (top.dictionary ? "dict" : "array"))
      return Fail("an end tag that does not match its start tag", start);
    if (top.pendingKey) return Fail("expected a value after <key>", start);
    id made;
    if (top.dictionary) {
      made = [[NSDictionary alloc] initWithObjects:top.items.data()
                                           forKeys:top.keys.data()
                                             count:top.items.size()];
    } else {
      made = [[NSArray alloc] initWithObjects:top.items.data() count:top.items.size()];
    }
    stack_.pop_back();  // releases what the container now holds
    return Add(made, "", start);
  }

  // Elements up to the end of the root value (and of <plist> around it).
  bool ReadContent() {
    for (;;) {
      SkipSpace();
      if (pos_ >= n_) {
        if (stack_.empty() && !root_) return Fail("expected a value");
        if (stack_.empty()) return Fail("<plist> is never closed");
        return Fail(stack_.back().dictionary ? "<dict> is never closed" : "<array> is never closed",
                    stack_.back().start);
      }
      if (p_[pos_] != '<') return Fail("text outside a value");
      size_t start = pos_;
      bool ok;
      if (SkipCommentOrInstruction(&ok)) {
        if (!ok) return false;
        continue;
      }
      if (StartsWith("</")) {
        pos_ += 2;
        std::string name;
        if (!ReadName(&name) || !CloseTag()) return false;
        if (name == "plist") {
          if (!inPlist_ || !stack_.empty())
            return Fail("an end tag that does not match its start tag", start);
          if (!root_) return Fail("<plist> holds no value", start);
          return true;
        }
        if (!CloseContainer(name, start)) return false;
        if (stack_.empty() && !inPlist_) return true;
        continue;
      }
      ++pos_;
      std::string name;
      if (!ReadName(&name)) return false;
      bool empty;
      if (!SkipAttributes(&empty)) return false;
      if (stack_.empty() && root_) return Fail("a second value after the root", start);
      if (name == "dict" || name == "array") {
        if (empty) {
          id made = name == "dict" ? [[NSDictionary alloc] init] : [[NSArray alloc] init];
          if (!Add(made, "", start)) return false;
        } else {
          static_assert(kRVPropertyListMaxDepth == 256, "the message names the limit");
          if (stack_.size() >= kRVPropertyListMaxDepth)
            return Fail("containers nested deeper than 256 levels", start);
          stack_.emplace_back(name == "dict", start);
          continue;
        }
      } else if (!ReadLeaf(name, empty, start)) {
        return false;
      }
      if (stack_.empty() && !inPlist_) return true;
    }
  }

  bool ReadLeaf(const std::string& name, bool empty, size_t start) {
    std::string text;
    if (!empty && !ReadText(name, &text, start)) return false;
    if (name == "key") return AddKey(RVNewStringFromUTF8(text), start);
    if (name == "string") return Add(RVNewStringFromUTF8(text), "a string that is not text", start);
    if (name == "true" || name == "false") {
      if (!IsBlank(text)) return Fail("a boolean element that holds text", start);
      return Add([[NSNumber numberWithBool:name == "true"] retain], "", start);
    }
    if (name == "integer")
      return Add(RVXMLMakeInteger(text), "not an integer of at most 64 bits", start);
    if (name == "real") return Add(RVXMLMakeReal(text), "not a real number", start);
    if (name == "date") return Add(RVXMLMakeDate(text), "not a date (YYYY-MM-DDTHH:MM:SSZ)", start);
    if (name == "data") return Add(RVXMLMakeData(text), "not Base64 data", start);
    return Fail("an element that is no property-list value", start);
  }

  const unsigned char* p_;
  size_t n_;
  size_t pos_ = 0;
  bool inPlist_ = false;
  size_t objects_ = 0;
  RVOwned<> root_;
  std::vector<Frame> stack_;
  const char* why_ = nullptr;
  size_t failAt_ = 0;
};

}  // namespace

id RVXMLPropertyListRead(const unsigned char* bytes, size_t length, RVFormatFault* fault) {
  return RVReadPropertyListWith<XMLReader>(bytes, length, fault);
}
