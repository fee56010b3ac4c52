#import <Foundation/Foundation.h>

#include <cstring>
#include <string>
#include <vector>

#include "Platform/PropertyLists/RVOpenStepPropertyList.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/Runtime/RVOwned.h"
#include "Platform/Text/RVUTF8.h"

namespace {

// GNUstep's parser is trusted only with text that this checker has walked
// completely: the same grammar, every string closed, every container closed
// within the depth limit, no more objects than the limit, valid UTF-8 inside
// quotes. Text that fails here never reaches it (its failure paths leak, and
// its format sniffing would hand some bytes to GNUstep's private
// serialisation format).
class OpenStepChecker {
 public:
  OpenStepChecker(const unsigned char* bytes, size_t length) : p_(bytes), n_(length) {}

  // The whole text is one property-list value.
  bool IsPropertyList() {
    Reset();
    Gap gap = Space();
    if (gap == kEnd) return Fail("expected a value");
    if (gap == kBad || !Item(0)) return false;
    gap = Space();
    return gap == kEnd || (gap == kMore && Fail("text after the end of the property list"));
  }

  // The whole text is a strings table: entries of key = value; or key;
  // where keys and values are strings.
  bool IsStringsTable() {
    Reset();
    for (;;) {
      Gap gap = Space();
      if (gap == kEnd) return true;
      if (gap == kBad || !String() || !More()) return false;
      if (p_[pos_] == '=') {
        ++pos_;
        if (!More() || !String() || !More()) return false;
      }
      if (p_[pos_] != ';') return Fail("expected ';'");
      ++pos_;
    }
  }

  size_t FailedAt() const { return failAt_; }
  const char* Why() const { return why_; }

 private:
  enum Gap { kMore, kEnd, kBad };

  void Reset() {
    pos_ = 0;
    objects_ = 0;
    why_ = nullptr;
    failAt_ = 0;
  }

  bool Fail(const char* why, size_t at = SIZE_MAX) {
    if (why_ == nullptr) {
      why_ = why;
      failAt_ = at == SIZE_MAX ? pos_ : at;
    }
    return false;
  }

  static bool IsWhite(unsigned char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\b';
  }

  static bool IsUnquoted(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           (c != 0 && strchr("!#$%&*+-./:?@|~_^", c) != nullptr);
  }

  static bool IsHex(unsigned char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
  }

  // White space and comments; kMore when a character follows.
  Gap Space() {
    while (pos_ < n_) {
      unsigned char c = p_[pos_];
      if (IsWhite(c)) {
        ++pos_;
      } else if (c == '/' && pos_ + 1 < n_ && p_[pos_ + 1] == '/') {
        const void* end = memchr(p_ + pos_, '\n', n_ - pos_);
        if (end == nullptr) return Fail("a comment that ends the text without a line end"), kBad;
        pos_ = static_cast<const unsigned char*>(end) - p_ + 1;
      } else if (c == '/' && pos_ + 1 < n_ && p_[pos_ + 1] == '*') {
        size_t i = pos_ + 2;
        while (i + 1 < n_ && !(p_[i] == '*' && p_[i + 1] == '/')) ++i;
        if (i + 1 >= n_) return Fail("a comment that is never closed"), kBad;
        pos_ = i + 2;
      } else {
        return kMore;
      }
    }
    return kEnd;
  }

  // Space, then a character: the text must go on.
  bool More() {
    Gap gap = Space();
    return gap == kMore || (gap == kEnd && Fail("unexpected end of text"));
  }

  bool Counted(size_t start) {
    return ++objects_ <= kRVPropertyListMaxObjects ||
           Fail("more objects than a property list may hold", start);
  }

  bool Quoted() {
    size_t start = pos_;
    size_t i = pos_ + 1;
    uint32_t code;
    while (i < n_) {
      unsigned char c = p_[i];
      if (c == '"') {
        pos_ = i + 1;
        return Counted(start);
      }
      if (c == '\\' && ++i >= n_) break;
      if (!RVDecodeUTF8(p_, n_, &i, &code)) return Fail("a byte that is not UTF-8", i);
    }
    return Fail("a string that is never closed", start);
  }

  bool Unquoted() {
    size_t start = pos_;
    while (pos_ < n_ && IsUnquoted(p_[pos_])) ++pos_;
    return pos_ > start ? Counted(start) : Fail("expected a value");
  }

  bool String() { return p_[pos_] == '"' ? Quoted() : Unquoted(); }

  // <*Ivalue>, <*BY>, <*BN>, <*Rvalue>, <*DYYYY-MM-DD HH:MM:SS +ZZZZ>:
  // short, and of a shape GNUstep reads (it copies the value to the stack).
  bool Typed() {
    size_t at = pos_;
    size_t start = pos_ + 2;
    size_t end = start;
    while (end < n_ && p_[end] != '>' && end - start <= 40) ++end;
    if (end >= n_ || p_[end] != '>' || end - start < 2) return Fail("a malformed <*...> value");
    unsigned char type = p_[start];
    std::string value(reinterpret_cast<const char*>(p_ + start + 1), end - start - 1);
    if (value.size() > 1 && value.front() == '"') {
      value.erase(0, 1);
      if (value.back() == '"') value.pop_back();
    }
    pos_ = end + 1;
    auto all = [&](const char* allowed) {
      for (char c : value)
        if (strchr(allowed, c) == nullptr) return false;
      return !value.empty();
    };
    bool good = false;
    switch (type) {
      case 'I':
        good = all("+-0123456789");
        break;
      case 'R':
        good = all("+-.eE0123456789");
        break;
      case 'B':
        good = value == "Y" || value == "N";
        break;
      case 'D': {
        static const char kShape[] = "dddd-dd-dd dd:dd:dd +dddd";
        if (value.size() != sizeof kShape - 1) break;
        good = true;
        for (size_t i = 0; i < value.size(); ++i) {
          char want = kShape[i], got = value[i];
          if (want == 'd' ? !(got >= '0' && got <= '9')
                          : want == '+' ? (got != '+' && got != '-') : got != want)
            good = false;
        }
        if (!good) break;
        auto two = [&](size_t from) { return (value[from] - '0') * 10 + (value[from + 1] - '0'); };
        int month = two(5), day = two(8), hour = two(11), minute = two(14), second = two(17);
        good = month >= 1 && month <= 12 && day >= 1 && day <= 31 && hour <= 23 && minute <= 59 &&
               second <= 59;
        break;
      }
      default:
        break;
    }
    return good ? Counted(at) : Fail("a malformed <*...> value", at);
  }

  // <hex digits in pairs, white space between pairs>
  bool Data() {
    size_t start = pos_++;
    for (;;) {
      Gap gap = Space();
      if (gap == kBad) return false;
      if (gap == kEnd) return Fail("data that is never closed", start);
      if (p_[pos_] == '>') {
        ++pos_;
        return Counted(start);
      }
      if (pos_ + 1 >= n_ || !IsHex(p_[pos_]) || !IsHex(p_[pos_ + 1]))
        return Fail("expected a pair of hexadecimal digits");
      pos_ += 2;
    }
  }

  bool Item(unsigned depth) {
    unsigned char c = p_[pos_];
    if (c == '{' || c == '(') {
      static_assert(kRVPropertyListMaxDepth == 256, "the message names the limit");
      if (depth >= kRVPropertyListMaxDepth) return Fail("containers nested deeper than 256 levels");
      if (!Counted(pos_)) return false;
      bool dictionary = c == '{';
      unsigned char close = dictionary ? '}' : ')';
      unsigned char separator = dictionary ? ';' : ',';
      ++pos_;
      for (;;) {
        if (!More()) return false;
        if (p_[pos_] == close) {
          ++pos_;
          return true;
        }
        if (dictionary) {
          // Keys are strings; GNUstep would take any value.
          if (!String() || !More()) return false;
          if (p_[pos_] != '=') return Fail("expected '=' after the key");
          ++pos_;
          if (!More()) return false;
        }
        if (!Item(depth + 1) || !More()) return false;
        if (p_[pos_] == separator) {
          ++pos_;
        } else if (p_[pos_] != close) {
          return Fail(dictionary ? "expected ';' or '}'" : "expected ',' or ')'");
        }
      }
    }
    if (c == '<') {
      if (pos_ + 1 < n_ && p_[pos_ + 1] == '*') return Typed();
      return Data();
    }
    return String();
  }

  const unsigned char* p_;
  size_t n_;
  size_t pos_ = 0;
  size_t objects_ = 0;
  const char* why_ = nullptr;
  size_t failAt_ = 0;
};

// A copy of a property list whose containers and leaves are all immutable
// (GNUstep's text parser answers mutable strings and data).
id ImmutableCopy(id object, unsigned depth) {
  if (depth > kRVPropertyListMaxDepth) return nil;
  if ([object isKindOfClass:[NSString class]] || [object isKindOfClass:[NSData class]])
    return [[object copy] autorelease];
  if ([object isKindOfClass:[NSArray class]]) {
    NSUInteger count = [object count];
    std::vector<id> items(count);
    for (NSUInteger i = 0; i < count; ++i) {
      items[i] = ImmutableCopy([object objectAtIndex:i], depth + 1);
      if (items[i] == nil) return nil;
    }
    return [NSArray arrayWithObjects:items.data() count:count];
  }
  if ([object isKindOfClass:[NSDictionary class]]) {
    NSArray* keys = [object allKeys];
    NSUInteger count = [keys count];
    std::vector<id> copiedKeys(count), values(count);
    for (NSUInteger i = 0; i < count; ++i) {
      id key = [keys objectAtIndex:i];
      copiedKeys[i] = ImmutableCopy(key, depth + 1);
      values[i] = ImmutableCopy([object objectForKey:key], depth + 1);
      if (copiedKeys[i] == nil || values[i] == nil) return nil;
    }
    return [NSDictionary dictionaryWithObjects:values.data() forKeys:copiedKeys.data() count:count];
  }
  return object;  // numbers and dates
}

}  // namespace

id RVOpenStepPropertyListRead(const unsigned char* bytes, size_t length, RVFormatFault* fault) {
  OpenStepChecker checker(bytes, length);
  bool propertyList = checker.IsPropertyList();
  if (!propertyList) {
    // The fault shown is the property list's, unless the text reads
    // further as a strings table.
    const char* why = checker.Why();
    size_t at = checker.FailedAt();
    if (!checker.IsStringsTable()) {
      if (fault != nullptr) {
        fault->Clear();
        bool table = checker.FailedAt() > at;
        fault->message = table ? checker.Why() : why;
        RVLineAndColumn(bytes, table ? checker.FailedAt() : at, &fault->line, &fault->column);
      }
      return nil;
    }
  }
  // The copy outlives the pool its parts were made in.
  RVOwned<> result;
  @autoreleasepool {
    @try {
      id parsed;
      if (propertyList) {
        NSData* data = [NSData dataWithBytesNoCopy:const_cast<unsigned char*>(bytes)
                                            length:length
                                      freeWhenDone:NO];
        NSPropertyListFormat format;
        NSString* error = nil;
        parsed = [NSPropertyListSerialization propertyListFromData:data
                                                  mutabilityOption:NSPropertyListImmutable
                                                            format:&format
                                                  errorDescription:&error];
      } else {
        NSString* text = [[[NSString alloc] initWithBytes:bytes
                                                   length:length
                                                 encoding:NSUTF8StringEncoding] autorelease];
        parsed = [text propertyListFromStringsFileFormat];
      }
      result = RVOwned<>::Retain(ImmutableCopy(parsed, 0));
    } @catch (NSException*) {
      result.Reset();
    }
  }
  if (!result && fault != nullptr) {
    fault->Clear();
    fault->message = "the platform's parser refused the text";
    fault->line = fault->column = 1;
  }
  return result.Autorelease();
}
