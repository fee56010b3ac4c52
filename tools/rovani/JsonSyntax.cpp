// A strict reading of JSON text before the library parses it: the
// library's reader reports only that a text failed, and its trees cannot
// hold everything JSON can, so this pass says what is wrong and where.
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <string>

#include "Cli.h"

namespace cli {

namespace {

// Deeper documents are refused rather than recursed into.
const int kMaxDepth = 512;

bool IsKeyWordChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-';
}

class Scanner {
 public:
  Scanner(const std::string& text, bool forPropertyList, bool objectOnly)
      : text_(text), forPropertyList_(forPropertyList), objectOnly_(objectOnly) {}

  void Document() {
    if (text_.compare(0, 3, "\xEF\xBB\xBF") == 0) at_ = 3;  // a byte-order mark
    SkipBlank();
    if (at_ >= text_.size()) Fail("the document is empty");
    char first = text_[at_];
    if (objectOnly_ && first != '{') {
      const char* kind = KindAt(first);
      if (kind == nullptr) Fail("not a JSON document or an XML property list");
      Fail(std::string("the top level is ") + kind + ", not an object");
    }
    Value("", 0, false);
    SkipBlank();
    if (at_ < text_.size()) Fail("unexpected text after the document");
  }

 private:
  const char* KindAt(char c) const {
    switch (c) {
      case '[': return "an array";
      case '"': return "a string";
      case 't': case 'f': return "a boolean";
      case 'n': return "null";
      default: return (c == '-' || (c >= '0' && c <= '9')) ? "a number" : nullptr;
    }
  }

  [[noreturn]] void Fail(const std::string& why) const {
    size_t line = 1, column = 1;
    for (size_t i = 0; i < at_ && i < text_.size(); ++i) {
      if (text_[i] == '\n') {
        ++line;
        column = 1;
      } else if ((static_cast<unsigned char>(text_[i]) & 0xC0) != 0x80) {
        ++column;
      }
    }
    throw InputError{"line " + std::to_string(line) + ", column " + std::to_string(column) +
                     ": " + why};
  }

  [[noreturn]] void FailAt(const std::string& path, const std::string& what,
                           const std::string& why) const {
    throw InputError{what + " at " + (path.empty() ? std::string("the top level") : path) + ": " +
                     why};
  }

  void SkipBlank() {
    while (at_ < text_.size()) {
      char c = text_[at_];
      if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
        ++at_;
      } else if (c == '/' && at_ + 1 < text_.size() && text_[at_ + 1] == '/') {
        while (at_ < text_.size() && text_[at_] != '\n') ++at_;
      } else if (c == '/' && at_ + 1 < text_.size() && text_[at_ + 1] == '*') {
        size_t end = text_.find("*/", at_ + 2);
        if (end == std::string::npos) Fail("unterminated comment");
        at_ = end + 2;
      } else {
        return;
      }
    }
  }

  void Expect(const char* word) {
    for (const char* c = word; *c != '\0'; ++c, ++at_) {
      if (at_ >= text_.size() || text_[at_] != *c) Fail(std::string("expected ") + word);
    }
  }

  // inArray: the value is an element of an array, where the library cannot
  // hold null or an empty collection.
  void Value(const std::string& path, int depth, bool inArray) {
    if (depth > kMaxDepth) Fail("nested deeper than " + std::to_string(kMaxDepth) + " levels");
    SkipBlank();
    if (at_ >= text_.size()) Fail("unexpected end of the document");
    char c = text_[at_];
    if (c == '{') {
      Object(path, depth, inArray);
    } else if (c == '[') {
      Array(path, depth, inArray);
    } else if (c == '"') {
      String(path);
    } else if (c == 't') {
      Expect("true");
    } else if (c == 'f') {
      Expect("false");
    } else if (c == 'n') {
      Expect("null");
      if (forPropertyList_) FailAt(path, "null", "a property list cannot hold null");
      if (inArray) FailAt(path, "null inside an array", "the library's arrays cannot hold it");
    } else if (c == '-' || (c >= '0' && c <= '9')) {
      Number();
    } else {
      Fail(std::string("unexpected character '") + c + "'");
    }
  }

  void Object(const std::string& path, int depth, bool inArray) {
    ++at_;
    SkipBlank();
    if (at_ < text_.size() && text_[at_] == '}') {
      ++at_;
      if (inArray) FailAt(path, "an empty object inside an array", "the library's arrays cannot hold it");
      return;
    }
    while (true) {
      SkipBlank();
      if (at_ >= text_.size() || text_[at_] != '"') Fail("expected a key in double quotes");
      std::string key = String(path);
      SkipBlank();
      if (at_ >= text_.size() || text_[at_] != ':') Fail("expected ':' after the key");
      ++at_;
      Value(MemberPath(path, key), depth + 1, false);
      SkipBlank();
      if (at_ < text_.size() && text_[at_] == ',') {
        ++at_;
        continue;
      }
      if (at_ < text_.size() && text_[at_] == '}') {
        ++at_;
        return;
      }
      Fail("expected ',' or '}'");
    }
  }

  void Array(const std::string& path, int depth, bool inArray) {
    ++at_;
    SkipBlank();
    if (at_ < text_.size() && text_[at_] == ']') {
      ++at_;
      if (inArray) FailAt(path, "an empty array inside an array", "the library's arrays cannot hold it");
      return;
    }
    for (size_t index = 0;; ++index) {
      Value(path + "[" + std::to_string(index) + "]", depth + 1, true);
      SkipBlank();
      if (at_ < text_.size() && text_[at_] == ',') {
        ++at_;
        continue;
      }
      if (at_ < text_.size() && text_[at_] == ']') {
        ++at_;
        return;
      }
      Fail("expected ',' or ']'");
    }
  }

  void Number() {
    size_t start = at_;
    if (text_[at_] == '-') ++at_;
    if (at_ >= text_.size() || !isdigit(static_cast<unsigned char>(text_[at_]))) Fail("malformed number");
    if (text_[at_] == '0') {
      ++at_;
    } else {
      while (at_ < text_.size() && isdigit(static_cast<unsigned char>(text_[at_]))) ++at_;
    }
    if (at_ < text_.size() && text_[at_] == '.') {
      ++at_;
      if (at_ >= text_.size() || !isdigit(static_cast<unsigned char>(text_[at_]))) Fail("malformed number");
      while (at_ < text_.size() && isdigit(static_cast<unsigned char>(text_[at_]))) ++at_;
    }
    if (at_ < text_.size() && (text_[at_] == 'e' || text_[at_] == 'E')) {
      ++at_;
      if (at_ < text_.size() && (text_[at_] == '+' || text_[at_] == '-')) ++at_;
      if (at_ >= text_.size() || !isdigit(static_cast<unsigned char>(text_[at_]))) Fail("malformed number");
      while (at_ < text_.size() && isdigit(static_cast<unsigned char>(text_[at_]))) ++at_;
    }
    // The library's reader refuses what a double cannot hold.
    if (std::isinf(std::strtod(text_.substr(start, at_ - start).c_str(), nullptr))) {
      at_ = start;
      Fail("number out of range");
    }
  }

  static int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
  }

  // The string's text, roughly (escapes other than \" and \\ kept as
  // written: enough to name a key). where: the path of the value, or of the
  // object whose key this is.
  std::string String(const std::string& where) {
    size_t start = at_;
    ++at_;
    std::string text;
    while (true) {
      if (at_ >= text_.size()) {
        at_ = start;
        Fail("unterminated string");
      }
      unsigned char c = static_cast<unsigned char>(text_[at_]);
      if (c == '"') {
        ++at_;
        return text;
      }
      if (c < 0x20) Fail("control character in a string");
      if (c == '\\') {
        if (at_ + 1 >= text_.size()) Fail("unterminated string");
        char e = text_[at_ + 1];
        if (e == 'u') {
          int code = 0;
          for (size_t i = 0; i < 4; ++i) {
            int digit = at_ + 2 + i < text_.size() ? HexValue(text_[at_ + 2 + i]) : -1;
            if (digit < 0) Fail("malformed \\u escape");
            code = code * 16 + digit;
          }
          if (code == 0) {
            FailAt(where, "a NUL character (\\u0000)", "the library's strings end there");
          }
          text.append(text_, at_, 6);
          at_ += 6;
          continue;
        }
        if (std::string("\"\\/bfnrt").find(e) == std::string::npos) Fail("unknown escape");
        text += (e == '"' || e == '\\') ? e : '\\';
        if (e != '"' && e != '\\') text += e;
        at_ += 2;
        continue;
      }
      size_t length = c < 0x80 ? 1 : (c >> 5) == 0x6 ? 2 : (c >> 4) == 0xE ? 3 : (c >> 3) == 0x1E ? 4 : 0;
      if (length == 0 || at_ + length > text_.size()) Fail("text that is not UTF-8");
      for (size_t i = 1; i < length; ++i) {
        if ((static_cast<unsigned char>(text_[at_ + i]) & 0xC0) != 0x80) Fail("text that is not UTF-8");
      }
      text.append(text_, at_, length);
      at_ += length;
    }
  }

  const std::string& text_;
  bool forPropertyList_;
  bool objectOnly_;
  size_t at_ = 0;
};

}  // namespace

size_t FirstNonUtf8(const std::string& bytes) {
  for (size_t at = 0; at < bytes.size();) {
    unsigned char c = static_cast<unsigned char>(bytes[at]);
    size_t length = c < 0x80 ? 1 : (c >> 5) == 0x6 ? 2 : (c >> 4) == 0xE ? 3 : (c >> 3) == 0x1E ? 4 : 0;
    if (length == 0 || at + length > bytes.size()) return at;
    for (size_t i = 1; i < length; ++i) {
      if ((static_cast<unsigned char>(bytes[at + i]) & 0xC0) != 0x80) return at;
    }
    at += length;
  }
  return std::string::npos;
}

std::string MemberPath(const std::string& path, const std::string& key) {
  bool plain = !key.empty();
  for (char c : key) plain = plain && IsKeyWordChar(c);
  if (plain) return path.empty() ? key : path + "." + key;
  std::string quoted = "[\"";
  for (char c : key) quoted += (c == '"' || c == '\\') ? std::string("\\") + c : std::string(1, c);
  return path + quoted + "\"]";
}

void CheckJson(const std::string& text, bool forPropertyList, bool objectOnly) {
  Scanner(text, forPropertyList, objectOnly).Document();
}

}  // namespace cli
