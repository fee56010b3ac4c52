#import <Foundation/Foundation.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "Platform/PropertyLists/RVBinaryPropertyListWriter.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVPropertyListRules.h"

// Layout written: "bplist00"; every scalar object (strings, numbers,
// dates, data, booleans) in the order first met, each equal one once; then
// every container (its marker and count, then its references, a
// dictionary's keys before its values); the table of object offsets; the
// 32-byte trailer. The root is object 0.
//
// One pass over the tree encodes each scalar straight into the scalar area
// and looks its bytes up in a hash table of those already written (equal
// bytes are an equal value: 1 and 1.0 differ, as they should), and records
// each container's children by index. Only then is the object count known,
// hence the width of a reference; the containers and the offset table are
// written after, each offset and reference in the fewest bytes.

namespace {

constexpr uint32_t kContainer = 0x80000000u;  // marks a place as a container's index
constexpr size_t kTrailerLength = 32;

// Bytes growing at the end, as a malloc'd block.
class Bytes {
 public:
  ~Bytes() { free(data_); }
  unsigned char* Reserve(size_t more) {
    if (capacity_ - size_ >= more) return data_ + size_;
    if (more > kRVPropertyListMaxBytes || size_ + more > kRVPropertyListMaxBytes + 64) return nullptr;
    size_t capacity = std::max({capacity_ * 2, size_ + more, size_t{1} << 16});
    auto* grown = static_cast<unsigned char*>(realloc(data_, capacity));
    if (grown == nullptr) return nullptr;
    data_ = grown;
    capacity_ = capacity;
    return data_ + size_;
  }
  void Commit(unsigned char* end) { size_ = static_cast<size_t>(end - data_); }
  void Truncate(size_t size) { size_ = size; }
  size_t Size() const { return size_; }
  const unsigned char* Data() const { return data_; }

 private:
  unsigned char* data_ = nullptr;
  size_t size_ = 0;
  size_t capacity_ = 0;
};

inline unsigned char* BigEndian(unsigned char* p, uint64_t value, unsigned width) {
  for (unsigned i = width; i-- > 0;) {
    p[i] = static_cast<unsigned char>(value);
    value >>= 8;
  }
  return p + width;
}

// The fewest of 1, 2, 4 or 8 bytes that hold value (unsigned).
inline unsigned Width(uint64_t value) {
  return value < 0x100 ? 1 : value < 0x10000 ? 2 : value <= 0xFFFFFFFFu ? 4 : 8;
}
inline unsigned char WidthCode(unsigned width) { return width == 1 ? 0 : width == 2 ? 1 : width == 4 ? 2 : 3; }

// An integer object of a non-negative value below 2^63.
inline unsigned char* Integer(unsigned char* p, uint64_t value) {
  unsigned width = Width(value);
  *p++ = static_cast<unsigned char>(0x10 | WidthCode(width));
  return BigEndian(p, value, width);
}

// A marker with a count: in its low nibble below 15, else an integer after.
inline unsigned char* Counted(unsigned char* p, unsigned char marker, uint64_t count) {
  if (count < 15) {
    *p++ = static_cast<unsigned char>(marker | count);
    return p;
  }
  *p++ = static_cast<unsigned char>(marker | 0x0F);
  return Integer(p, count);
}

inline size_t CountedLength(uint64_t count) { return count < 15 ? 1 : 2 + Width(count); }

inline uint64_t Hash(const unsigned char* p, size_t n) {
  uint64_t h = 0x9E3779B97F4A7C15ull ^ n;
  for (; n >= 8; p += 8, n -= 8) {
    uint64_t v;
    memcpy(&v, p, 8);
    h = (h ^ v) * 0xFF51AFD7ED558CCDull;
    h ^= h >> 32;
  }
  uint64_t v = 0;
  memcpy(&v, p, n);
  h = (h ^ v) * 0xC4CEB9FE1A85EC53ull;
  return h ^ (h >> 29);
}

class Writer {
 public:
  bool Write(id root) {
    if (root == nil) return refusal_.Refuse("no list (nil)");
    uint32_t index;
    return Value(root, 0, &index) && Assemble();
  }

  RVPropertyListRefusal& Refusal() { return refusal_; }
  unsigned char* Release(size_t* size) {
    *size = outSize_;
    unsigned char* out = out_;
    out_ = nullptr;
    return out;
  }
  ~Writer() { free(out_); }

 private:
  struct Container {
    uint32_t refs;   // its first reference in refs_
    uint32_t count;  // entries (a dictionary has twice as many references)
    unsigned char marker;
    uint64_t offset = 0;
  };
  struct Slot {
    uint32_t hash = 0, offset = 0, length = 0, index = UINT32_MAX;
  };

  // A new object's index, or false past the limit.
  bool NewObject(uint32_t place, uint32_t* index) {
    if (places_.size() >= kRVPropertyListMaxObjects) return refusal_.TooMany();
    *index = static_cast<uint32_t>(places_.size());
    places_.push_back(place);
    return true;
  }

  // The scalar whose bytes run from start to the end of the scalar area:
  // an earlier equal one's index (dropping these bytes), or a new object.
  bool Intern(size_t start, uint32_t* index) {
    const unsigned char* bytes = scalars_.Data() + start;
    size_t length = scalars_.Size() - start;
    uint64_t hash = Hash(bytes, length);
    if (used_ * 2 >= slots_.size()) Grow();
    size_t mask = slots_.size() - 1;
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
      Slot& slot = slots_[i];
      if (slot.index == UINT32_MAX) {
        if (!NewObject(static_cast<uint32_t>(start), index)) return false;
        slot = Slot{static_cast<uint32_t>(hash), static_cast<uint32_t>(start),
                    static_cast<uint32_t>(length), *index};
        ++used_;
        return true;
      }
      if (slot.hash == static_cast<uint32_t>(hash) && slot.length == length &&
          memcmp(scalars_.Data() + slot.offset, bytes, length) == 0) {
        scalars_.Truncate(start);
        *index = slot.index;
        return true;
      }
    }
  }

  void Grow() {
    std::vector<Slot> old(std::max<size_t>(slots_.size() * 2, 1024));
    old.swap(slots_);
    size_t mask = slots_.size() - 1;
    for (const Slot& slot : old) {
      if (slot.index == UINT32_MAX) continue;
      size_t i = slot.hash & mask;
      while (slots_[i].index != UINT32_MAX) i = (i + 1) & mask;
      slots_[i] = slot;
    }
  }

  // Text as ASCII or UTF-16BE, refused where a property list cannot hold
  // a character.
  bool String(id string, const RVPlistClassInfo& info, bool key, uint32_t* index) {
    units_.clear();
    size_t n = RVPropertyListUnits(string, info, &units_);
    const unichar* u = units_.data();
    unichar any = 0;
    bool control = false;
    for (size_t i = 0; i < n; ++i) {
      any |= u[i];
      control |= u[i] < 0x20 && !RVPropertyListAllowedControl(u[i]);
    }
    bool ascii = any < 0x80;
    if (control || (!ascii && RVPropertyListForbiddenUnit(u, n) < n))
      return refusal_.Character(key, u, n);
    size_t start = scalars_.Size();
    unsigned char* p = scalars_.Reserve(11 + (ascii ? n : 2 * n));
    if (p == nullptr) return refusal_.TooLarge();
    if (ascii) {
      p = Counted(p, 0x50, n);
      for (size_t i = 0; i < n; ++i) *p++ = static_cast<unsigned char>(u[i]);
    } else {
      p = Counted(p, 0x60, n);
      for (size_t i = 0; i < n; ++i) {
        *p++ = static_cast<unsigned char>(u[i] >> 8);
        *p++ = static_cast<unsigned char>(u[i]);
      }
    }
    scalars_.Commit(p);
    return Intern(start, index);
  }

  bool Number(id number, const RVPlistClassInfo& info, uint32_t* index) {
    RVPlistNumber value = RVPropertyListNumber(number, info);
    size_t start = scalars_.Size();
    unsigned char* p = scalars_.Reserve(17);
    if (p == nullptr) return refusal_.TooLarge();
    switch (value.type) {
      case RVPlistNumber::Real: {
        uint64_t bits;
        memcpy(&bits, &value.real, sizeof bits);
        *p++ = 0x23;
        p = BigEndian(p, bits, 8);
        break;
      }
      case RVPlistNumber::Signed:
        if (value.signedValue < 0) {
          *p++ = 0x13;
          p = BigEndian(p, static_cast<uint64_t>(value.signedValue), 8);
        } else {
          p = Integer(p, static_cast<uint64_t>(value.signedValue));
        }
        break;
      case RVPlistNumber::Unsigned:
        if (value.unsignedValue <= INT64_MAX) {
          p = Integer(p, value.unsignedValue);
        } else {
          // Sixteen bytes, two's complement: a positive value above 2^63-1.
          *p++ = 0x14;
          p = BigEndian(BigEndian(p, 0, 8), value.unsignedValue, 8);
        }
        break;
      default:
        return refusal_.Number(number);
    }
    scalars_.Commit(p);
    return Intern(start, index);
  }

  bool Scalar(unsigned char marker, const void* payload, size_t length, uint32_t* index) {
    size_t start = scalars_.Size();
    unsigned char* p = scalars_.Reserve(11 + length);
    if (p == nullptr) return refusal_.TooLarge();
    p = marker == 0x40 ? Counted(p, marker, length) : (*p = marker, p + 1);
    if (length > 0) memcpy(p, payload, length);
    scalars_.Commit(p + length);
    return Intern(start, index);
  }

  bool Date(id date, const RVPlistClassInfo& info, uint32_t* index) {
    double seconds = reinterpret_cast<double (*)(id, SEL)>(info.first)(
        date, @selector(timeIntervalSinceReferenceDate));
    if (!RVPropertyListDateInRange(seconds)) return refusal_.Date();
    uint64_t bits;
    memcpy(&bits, &seconds, sizeof bits);
    unsigned char payload[8];
    BigEndian(payload, bits, 8);
    return Scalar(0x33, payload, 8, index);
  }

  bool Data(id data, const RVPlistClassInfo& info, uint32_t* index) {
    const void* bytes = reinterpret_cast<const void* (*)(id, SEL)>(info.first)(data, @selector(bytes));
    size_t n = reinterpret_cast<NSUInteger (*)(id, SEL)>(info.second)(data, @selector(length));
    if (n > kRVPropertyListMaxBytes) return refusal_.TooLarge();
    return Scalar(0x40, bytes, n, index);
  }

  // A container's object and its slice of references, filled as its
  // children are written (they add slices of their own after it).
  bool Open(unsigned char marker, size_t count, size_t references, uint32_t* index, size_t* refs) {
    if (count > kRVPropertyListMaxObjects) return refusal_.TooMany();
    if (!NewObject(kContainer | static_cast<uint32_t>(containers_.size()), index)) return false;
    *refs = refs_.size();
    containers_.push_back(Container{static_cast<uint32_t>(*refs), static_cast<uint32_t>(count), marker});
    refs_.resize(*refs + references);
    return true;
  }

  bool Dictionary(id dictionary, const RVPlistClassInfo& info, unsigned level, uint32_t* index) {
    NSUInteger n = reinterpret_cast<NSUInteger (*)(id, SEL)>(info.first)(dictionary, @selector(count));
    size_t refs;
    if (!Open(0xD0, n, 2 * n, index, &refs)) return false;
    if (n == 0) return true;
    size_t base = scratch_.size();
    scratch_.resize(base + 2 * n);
    reinterpret_cast<void (*)(id, SEL, id*, id*)>(info.second)(
        dictionary, @selector(getObjects:andKeys:), scratch_.data() + base, scratch_.data() + base + n);
    for (size_t i = 0; i < n; ++i) {
      id key = scratch_[base + n + i];
      const RVPlistClassInfo& keyInfo = classes_.Of(key);
      if (keyInfo.kind != RVPlistKind::String) return refusal_.NonStringKey();
      uint32_t child;
      if (!String(key, keyInfo, true, &child)) return refusal_.InKey(key);
      refs_[refs + i] = child;
      if (!Value(scratch_[base + i], level + 1, &child)) return refusal_.InKey(key);
      refs_[refs + n + i] = child;
    }
    scratch_.resize(base);
    return true;
  }

  bool Array(id array, const RVPlistClassInfo& info, unsigned level, uint32_t* index) {
    NSUInteger n = reinterpret_cast<NSUInteger (*)(id, SEL)>(info.first)(array, @selector(count));
    size_t refs;
    if (!Open(0xA0, n, n, index, &refs)) return false;
    if (n == 0) return true;
    size_t base = scratch_.size();
    scratch_.resize(base + n);
    reinterpret_cast<void (*)(id, SEL, id*)>(info.second)(array, @selector(getObjects:), scratch_.data() + base);
    for (size_t i = 0; i < n; ++i) {
      uint32_t child;
      if (!Value(scratch_[base + i], level + 1, &child)) return refusal_.InIndex(i);
      refs_[refs + i] = child;
    }
    scratch_.resize(base);
    return true;
  }

  bool Value(id object, unsigned level, uint32_t* index) {
    if (++values_ > kRVPropertyListMaxObjects) return refusal_.TooMany();
    const RVPlistClassInfo& info = classes_.Of(object);
    switch (info.kind) {
      case RVPlistKind::String:
        return String(object, info, false, index);
      case RVPlistKind::Boolean: {
        bool truth = reinterpret_cast<BOOL (*)(id, SEL)>(info.first)(object, @selector(boolValue));
        return Scalar(truth ? 0x09 : 0x08, nullptr, 0, index);
      }
      case RVPlistKind::Number:
      case RVPlistKind::Decimal:
        return Number(object, info, index);
      case RVPlistKind::Date:
        return Date(object, info, index);
      case RVPlistKind::Data:
        return Data(object, info, index);
      case RVPlistKind::Dictionary:
        if (level >= kRVPropertyListMaxDepth) return refusal_.TooDeep();
        return Dictionary(object, info, level, index);
      case RVPlistKind::Array:
        if (level >= kRVPropertyListMaxDepth) return refusal_.TooDeep();
        return Array(object, info, level, index);
      case RVPlistKind::Null:
        return refusal_.Null();
      case RVPlistKind::Other:
        break;
    }
    return refusal_.OtherClass(object);
  }

  // Lays out the containers after the scalars, then writes the whole list.
  bool Assemble() {
    uint64_t objects = places_.size();
    unsigned refWidth = objects <= 0x100 ? 1 : objects <= 0x10000 ? 2 : 4;
    uint64_t at = 8 + scalars_.Size(), last = 8;
    for (Container& c : containers_) {
      c.offset = last = at;
      uint64_t references = c.marker == 0xD0 ? 2 * uint64_t{c.count} : c.count;
      at += CountedLength(c.count) + references * refWidth;
    }
    if (!containers_.empty()) last = containers_.back().offset;
    else if (!places_.empty()) last = 8 + *std::max_element(places_.begin(), places_.end());
    uint64_t table = at;
    unsigned offsetWidth = Width(last);
    uint64_t total = table + objects * offsetWidth + kTrailerLength;
    if (total > kRVPropertyListMaxBytes) return refusal_.TooLarge();
    out_ = static_cast<unsigned char*>(malloc(total));
    if (out_ == nullptr) return refusal_.TooLarge();
    outSize_ = total;
    unsigned char* p = out_;
    memcpy(p, "bplist00", 8);
    if (scalars_.Size() > 0) memcpy(p + 8, scalars_.Data(), scalars_.Size());
    p += 8 + scalars_.Size();
    for (const Container& c : containers_) {
      p = Counted(p, c.marker, c.count);
      const uint32_t* ref = refs_.data() + c.refs;
      const uint32_t* end = ref + (c.marker == 0xD0 ? 2 * size_t{c.count} : c.count);
      if (refWidth == 1) {
        for (; ref < end; ++ref) *p++ = static_cast<unsigned char>(*ref);
      } else {
        for (; ref < end; ++ref) p = BigEndian(p, *ref, refWidth);
      }
    }
    for (uint32_t place : places_) {
      uint64_t offset = place & kContainer ? containers_[place & ~kContainer].offset : 8 + uint64_t{place};
      p = BigEndian(p, offset, offsetWidth);
    }
    memset(p, 0, 6);
    p[6] = static_cast<unsigned char>(offsetWidth);
    p[7] = static_cast<unsigned char>(refWidth);
    p = BigEndian(BigEndian(BigEndian(p + 8, objects, 8), 0, 8), table, 8);
    return true;
  }

  RVPropertyListClasses classes_;
  RVPropertyListRefusal refusal_;
  Bytes scalars_;                     // the scalar objects' bytes
  std::vector<uint32_t> places_;      // per object: its offset in scalars_, or kContainer | index
  std::vector<Container> containers_;
  std::vector<uint32_t> refs_;        // containers' references, by object index
  std::vector<Slot> slots_;           // the scalars written, by their bytes' hash
  size_t used_ = 0;
  std::vector<unichar> units_;        // the string being written
  std::vector<id> scratch_;           // containers' items being written
  size_t values_ = 0;
  unsigned char* out_ = nullptr;
  size_t outSize_ = 0;
};

}  // namespace

NSData* RVBinaryPropertyListData(id list, RVFormatFault* fault) {
  Writer writer;
  bool written = false;
  @autoreleasepool {
    @try {
      written = writer.Write(list);
    } @catch (NSException* exception) {
      written = writer.Refusal().Raised(exception);
    }
    if (!written) writer.Refusal().Fill(fault);
  }
  if (!written) return nil;
  size_t size;
  unsigned char* bytes = writer.Release(&size);
  return [[[NSData alloc] initWithBytesNoCopy:bytes length:size freeWhenDone:YES] autorelease];
}
