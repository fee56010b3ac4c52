#import <Foundation/Foundation.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "Platform/PropertyLists/RVBinaryPropertyList.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/Runtime/RVOwned.h"

// Layout: the eight bytes "bplist00", the objects, a table of object offsets,
// and a 32-byte trailer: six unused bytes, the width of an offset, the width
// of an object reference, then three big-endian 64-bit numbers: the object
// count, the index of the root object and the offset of the offset table.
// Every number read from the data is checked before it is used: offsets
// point into the object area, references name existing objects, and a
// container's references or a string's characters lie inside the object
// area before the table.

namespace {

constexpr size_t kHeaderLength = 8;
constexpr size_t kTrailerLength = 32;

enum State : unsigned char { kUnseen, kBuilding, kBuilt };

class BinaryReader {
 public:
  BinaryReader(const unsigned char* bytes, size_t length) : bytes_(bytes), length_(length) {}

  // The root object, retained, or nil.
  id ReadRoot() {
    if (!ReadTrailer()) return nil;
    built_.resize(objectCount_);
    state_.assign(objectCount_, kUnseen);
    id root = Object(root_, 0);
    return [root retain];
  }

  // Why the read failed and at which byte.
  void Report(RVFormatFault* fault) const {
    fault->message = why_ != nullptr ? why_ : "not a binary property list";
    fault->byteOffset = static_cast<long long>(failAt_);
  }

 private:
  static uint64_t BigEndian(const unsigned char* p, unsigned width) {
    uint64_t value = 0;
    for (unsigned i = 0; i < width; ++i) value = (value << 8) | p[i];
    return value;
  }

  // Keeps the first fault and answers false (nil where an object is due).
  bool Fail(const char* why, size_t at) {
    if (why_ == nullptr) {
      why_ = why;
      failAt_ = at;
    }
    return false;
  }

  bool ReadTrailer() {
    if (length_ < kHeaderLength + 2 + kTrailerLength)
      return Fail("too short for a binary property list", length_);
    if (memcmp(bytes_, "bplist00", kHeaderLength) != 0) return Fail("no bplist00 header", 0);
    size_t at = length_ - kTrailerLength;
    const unsigned char* trailer = bytes_ + at;
    offsetWidth_ = trailer[6];
    refWidth_ = trailer[7];
    objectCount_ = BigEndian(trailer + 8, 8);
    root_ = BigEndian(trailer + 16, 8);
    tableOffset_ = BigEndian(trailer + 24, 8);
    if (offsetWidth_ < 1 || offsetWidth_ > 8 || refWidth_ < 1 || refWidth_ > 8)
      return Fail("an offset or reference width other than 1 to 8 bytes", at + 6);
    if (objectCount_ < 1 || objectCount_ > kRVPropertyListMaxObjects)
      return Fail("an object count of none or more than a property list may hold", at + 8);
    if (root_ >= objectCount_) return Fail("a root object that does not exist", at + 16);
    // At least one object byte before the table, and the whole table
    // between it and the trailer.
    size_t tableEnd = length_ - kTrailerLength;
    if (tableOffset_ <= kHeaderLength || tableOffset_ > tableEnd)
      return Fail("an offset table outside the data", at + 24);
    if (objectCount_ > (tableEnd - tableOffset_) / offsetWidth_)
      return Fail("an offset table that does not fit before the trailer", at + 24);
    // A reference must be able to name every object.
    if (refWidth_ < 8 && objectCount_ > (uint64_t(1) << (8 * refWidth_)))
      return Fail("references too narrow for the object count", at + 7);
    return true;
  }

  // Where object index starts; false when the table points outside the
  // object area.
  bool OffsetOf(uint64_t index, size_t* offset) {
    size_t at = static_cast<size_t>(tableOffset_ + index * offsetWidth_);
    uint64_t value = BigEndian(bytes_ + at, offsetWidth_);
    if (value < kHeaderLength || value >= tableOffset_)
      return Fail("an object offset outside the object area", at);
    *offset = static_cast<size_t>(value);
    return true;
  }

  // True when n more bytes from position lie in the object area.
  bool Fits(size_t position, uint64_t n) const {
    return position <= tableOffset_ && n <= tableOffset_ - position;
  }

  // The count of a string, data or container object whose marker's low
  // nibble is nibble; 15 means an integer object follows with the count.
  // position moves past the marker and any count object.
  bool Count(size_t* position, unsigned nibble, uint64_t* count) {
    size_t at = *position;
    ++*position;
    if (nibble != 0xF) {
      *count = nibble;
      return true;
    }
    if (!Fits(*position, 1)) return Fail("a count past the object area", at);
    unsigned char marker = bytes_[*position];
    if ((marker & 0xF0) != 0x10 || (marker & 0x0F) > 3)
      return Fail("a count that is not an integer of 1 to 8 bytes", *position);
    unsigned width = 1u << (marker & 0x0F);
    if (!Fits(*position + 1, width)) return Fail("a count past the object area", at);
    *count = BigEndian(bytes_ + *position + 1, width);
    *position += 1 + width;
    return true;
  }

  // References of count objects at position, each an index below the object
  // count. A dictionary has two per entry, so twice the object limit.
  bool References(size_t position, uint64_t count, std::vector<uint64_t>* refs) {
    if (count > kRVPropertyListMaxObjects * 2 || count > tableOffset_ / refWidth_ ||
        !Fits(position, count * refWidth_))
      return Fail("a container whose references run past the object area", position);
    refs->resize(static_cast<size_t>(count));
    for (uint64_t i = 0; i < count; ++i) {
      uint64_t ref = BigEndian(bytes_ + position + i * refWidth_, refWidth_);
      if (ref >= objectCount_)
        return Fail("a reference to an object that does not exist", position + i * refWidth_);
      (*refs)[static_cast<size_t>(i)] = ref;
    }
    return true;
  }

  // The object at index, owned by the reader (borrowed by the caller), or
  // nil when it or anything it holds is malformed.
  id Object(uint64_t index, unsigned depth) {
    if (state_[index] == kBuilt) return built_[index].Get();
    // An object being built that is asked for again contains itself.
    size_t position;
    if (!OffsetOf(index, &position)) return nil;
    if (state_[index] == kBuilding) return Fail("an object that contains itself", position), nil;
    state_[index] = kBuilding;
    id made = Make(position, depth);
    if (made == nil) return nil;
    built_[index] = RVAdopt(made);
    state_[index] = kBuilt;
    return made;
  }

  // A new object (retained) from the object bytes at position.
  id Past(size_t position) { return Fail("an object that runs past the object area", position), nil; }

  id Make(size_t position, unsigned depth) {
    const size_t start = position;
    unsigned char marker = bytes_[position];
    unsigned high = marker >> 4, low = marker & 0x0F;
    switch (high) {
      case 0x0:
        if (marker == 0x08) return [[NSNumber numberWithBool:NO] retain];
        if (marker == 0x09) return [[NSNumber numberWithBool:YES] retain];
        // Null and fill bytes have no value in a property list.
        return Fail("a null or fill object, which a property list cannot hold", position), nil;
      case 0x1:
        return MakeInteger(position, low);
      case 0x2: {
        if (low != 2 && low != 3) return Fail("a real of other than 4 or 8 bytes", position), nil;
        unsigned width = 1u << low;
        if (!Fits(position + 1, width)) return Past(position);
        uint64_t bits = BigEndian(bytes_ + position + 1, width);
        if (width == 4) {
          uint32_t narrow = static_cast<uint32_t>(bits);
          float value;
          memcpy(&value, &narrow, sizeof value);
          return [[NSNumber alloc] initWithFloat:value];
        }
        double value;
        memcpy(&value, &bits, sizeof value);
        return [[NSNumber alloc] initWithDouble:value];
      }
      case 0x3: {
        if (marker != 0x33) return Fail("a date of other than 8 bytes", position), nil;
        if (!Fits(position + 1, 8)) return Past(position);
        uint64_t bits = BigEndian(bytes_ + position + 1, 8);
        double seconds;
        memcpy(&seconds, &bits, sizeof seconds);
        // GNUstep raises for a NaN date after allocating it, and the
        // allocation is lost: such a date is unreadable here instead.
        if (std::isnan(seconds)) return Fail("a date that is not a number", position), nil;
        return [[NSDate alloc] initWithTimeIntervalSinceReferenceDate:seconds];
      }
      case 0x4: {
        uint64_t count;
        if (!Count(&position, low, &count)) return nil;
        if (!Fits(position, count)) return Past(start);
        return [[NSData alloc] initWithBytes:bytes_ + position length:count];
      }
      case 0x5: {
        uint64_t count;
        if (!Count(&position, low, &count)) return nil;
        if (!Fits(position, count)) return Past(start);
        for (uint64_t i = 0; i < count; ++i)
          if (bytes_[position + i] >= 0x80)
            return Fail("an ASCII string with a byte above 127", position + i), nil;
        return [[NSString alloc] initWithBytes:bytes_ + position
                                        length:count
                                      encoding:NSASCIIStringEncoding];
      }
      case 0x6: {
        uint64_t count;
        if (!Count(&position, low, &count)) return nil;
        if (count > tableOffset_ / 2 || !Fits(position, count * 2)) return Past(start);
        if (count == 0) return [[NSString alloc] init];
        // GNUstep answers nil for text with an unpaired surrogate.
        id text = [[NSString alloc] initWithBytes:bytes_ + position
                                           length:count * 2
                                         encoding:NSUTF16BigEndianStringEncoding];
        if (text == nil) Fail("a UTF-16 string with an unpaired surrogate", start);
        return text;
      }
      case 0xA:
      case 0xD:
        // The root is at depth 0: at most kRVPropertyListMaxDepth levels of
        // containers, as every reader and writer counts them.
        static_assert(kRVPropertyListMaxDepth == 256, "the message names the limit");
        if (depth >= kRVPropertyListMaxDepth)
          return Fail("containers nested deeper than 256 levels", position), nil;
        return high == 0xA ? MakeArray(position, low, depth) : MakeDictionary(position, low, depth);
      default:
        // UIDs, sets and unassigned markers.
        return Fail("an object of a kind a property list cannot hold", position), nil;
    }
  }

  id MakeInteger(size_t position, unsigned low) {
    if (low > 4) return Fail("an integer wider than 16 bytes", position), nil;
    unsigned width = 1u << low;
    if (!Fits(position + 1, width)) return Past(position);
    const unsigned char* p = bytes_ + position + 1;
    if (width < 8) return [[NSNumber alloc] initWithLongLong:(long long)BigEndian(p, width)];
    if (width == 8) return [[NSNumber alloc] initWithLongLong:(long long)BigEndian(p, 8)];
    // Sixteen bytes, two's complement: only values that fit 64 bits (signed
    // or unsigned) are numbers here.
    uint64_t high = BigEndian(p, 8), value = BigEndian(p + 8, 8);
    if (high == 0) return [[NSNumber alloc] initWithUnsignedLongLong:value];
    if (high == UINT64_MAX && (value >> 63) != 0)
      return [[NSNumber alloc] initWithLongLong:(long long)value];
    return Fail("an integer beyond 64 bits", position), nil;
  }

  id MakeArray(size_t position, unsigned low, unsigned depth) {
    uint64_t count;
    std::vector<uint64_t> refs;
    if (!Count(&position, low, &count) || !References(position, count, &refs)) return nil;
    std::vector<id> items(refs.size());
    for (size_t i = 0; i < refs.size(); ++i) {
      items[i] = Object(refs[i], depth + 1);
      if (items[i] == nil) return nil;
    }
    return [[NSArray alloc] initWithObjects:items.data() count:items.size()];
  }

  id MakeDictionary(size_t position, unsigned low, unsigned depth) {
    uint64_t count;
    std::vector<uint64_t> refs;
    // Keys, then values: twice count references.
    if (!Count(&position, low, &count)) return nil;
    if (count > UINT64_MAX / 2) return Past(position);
    if (!References(position, count * 2, &refs)) return nil;
    size_t n = static_cast<size_t>(count);
    std::vector<id> keys(n), values(n);
    for (size_t i = 0; i < n; ++i) {
      keys[i] = Object(refs[i], depth + 1);
      if (keys[i] == nil) return nil;
      if (![keys[i] isKindOfClass:[NSString class]]) {
        size_t at;
        OffsetOf(refs[i], &at);
        return Fail("a dictionary key that is not a string", at), nil;
      }
      values[i] = Object(refs[n + i], depth + 1);
      if (values[i] == nil) return nil;
    }
    return [[NSDictionary alloc] initWithObjects:values.data() forKeys:keys.data() count:n];
  }

  const unsigned char* bytes_;
  size_t length_;
  unsigned offsetWidth_ = 0, refWidth_ = 0;
  uint64_t objectCount_ = 0, root_ = 0, tableOffset_ = 0;
  std::vector<RVOwned<>> built_;  // each object once, as its index is first read
  std::vector<unsigned char> state_;
  const char* why_ = nullptr;
  size_t failAt_ = 0;
};

}  // namespace

id RVBinaryPropertyListRead(const unsigned char* bytes, size_t length, RVFormatFault* fault) {
  return RVReadPropertyListWith<BinaryReader>(bytes, length, fault);
}
