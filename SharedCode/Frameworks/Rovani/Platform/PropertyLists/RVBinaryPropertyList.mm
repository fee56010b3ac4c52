#import <Foundation/Foundation.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "Platform/PropertyLists/RVBinaryPropertyList.h"
#include "Platform/PropertyLists/RVPropertyList.h"

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

  ~BinaryReader() {
    for (id object : built_) [object release];
  }

  // The root object, retained, or nil.
  id ReadRoot() {
    if (!ReadTrailer()) return nil;
    built_.assign(objectCount_, nil);
    state_.assign(objectCount_, kUnseen);
    id root = Object(root_, 0);
    return [root retain];
  }

 private:
  static uint64_t BigEndian(const unsigned char* p, unsigned width) {
    uint64_t value = 0;
    for (unsigned i = 0; i < width; ++i) value = (value << 8) | p[i];
    return value;
  }

  bool ReadTrailer() {
    if (length_ < kHeaderLength + 2 + kTrailerLength) return false;
    if (memcmp(bytes_, "bplist00", kHeaderLength) != 0) return false;
    const unsigned char* trailer = bytes_ + length_ - kTrailerLength;
    offsetWidth_ = trailer[6];
    refWidth_ = trailer[7];
    objectCount_ = BigEndian(trailer + 8, 8);
    root_ = BigEndian(trailer + 16, 8);
    tableOffset_ = BigEndian(trailer + 24, 8);
    if (offsetWidth_ < 1 || offsetWidth_ > 8 || refWidth_ < 1 || refWidth_ > 8) return false;
    if (objectCount_ < 1 || objectCount_ > kRVPropertyListMaxObjects) return false;
    if (root_ >= objectCount_) return false;
    // At least one object byte before the table, and the whole table
    // between it and the trailer.
    size_t tableEnd = length_ - kTrailerLength;
    if (tableOffset_ <= kHeaderLength || tableOffset_ > tableEnd) return false;
    if (objectCount_ > (tableEnd - tableOffset_) / offsetWidth_) return false;
    // A reference must be able to name every object.
    if (refWidth_ < 8 && objectCount_ > (uint64_t(1) << (8 * refWidth_))) return false;
    return true;
  }

  // Where object index starts; false when the table points outside the
  // object area.
  bool OffsetOf(uint64_t index, size_t* offset) const {
    uint64_t value = BigEndian(bytes_ + tableOffset_ + index * offsetWidth_, offsetWidth_);
    if (value < kHeaderLength || value >= tableOffset_) return false;
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
  bool Count(size_t* position, unsigned nibble, uint64_t* count) const {
    ++*position;
    if (nibble != 0xF) {
      *count = nibble;
      return true;
    }
    if (!Fits(*position, 1)) return false;
    unsigned char marker = bytes_[*position];
    if ((marker & 0xF0) != 0x10 || (marker & 0x0F) > 3) return false;
    unsigned width = 1u << (marker & 0x0F);
    if (!Fits(*position + 1, width)) return false;
    *count = BigEndian(bytes_ + *position + 1, width);
    *position += 1 + width;
    return true;
  }

  // References of count objects at position, each an index below the object
  // count. A dictionary has two per entry, so twice the object limit.
  bool References(size_t position, uint64_t count, std::vector<uint64_t>* refs) const {
    if (count > kRVPropertyListMaxObjects * 2 || count > tableOffset_ / refWidth_ ||
        !Fits(position, count * refWidth_))
      return false;
    refs->resize(static_cast<size_t>(count));
    for (uint64_t i = 0; i < count; ++i) {
      uint64_t ref = BigEndian(bytes_ + position + i * refWidth_, refWidth_);
      if (ref >= objectCount_) return false;
      (*refs)[static_cast<size_t>(i)] = ref;
    }
    return true;
  }

  // The object at index, owned by the reader (borrowed by the caller), or
  // nil when it or anything it holds is malformed.
  id Object(uint64_t index, unsigned depth) {
    if (state_[index] == kBuilt) return built_[index];
    // An object being built that is asked for again contains itself.
    if (state_[index] == kBuilding) return nil;
    if (depth > kRVPropertyListMaxDepth) return nil;
    size_t position;
    if (!OffsetOf(index, &position)) return nil;
    state_[index] = kBuilding;
    id made = Make(position, depth);
    if (made == nil) return nil;
    built_[index] = made;
    state_[index] = kBuilt;
    return made;
  }

  // A new object (retained) from the object bytes at position.
  id Make(size_t position, unsigned depth) {
    unsigned char marker = bytes_[position];
    unsigned high = marker >> 4, low = marker & 0x0F;
    switch (high) {
      case 0x0:
        if (marker == 0x08) return [[NSNumber numberWithBool:NO] retain];
        if (marker == 0x09) return [[NSNumber numberWithBool:YES] retain];
        return nil;  // null and fill bytes have no value in a property list
      case 0x1:
        return MakeInteger(position, low);
      case 0x2: {
        if (low != 2 && low != 3) return nil;
        unsigned width = 1u << low;
        if (!Fits(position + 1, width)) return nil;
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
        if (marker != 0x33 || !Fits(position + 1, 8)) return nil;
        uint64_t bits = BigEndian(bytes_ + position + 1, 8);
        double seconds;
        memcpy(&seconds, &bits, sizeof seconds);
        // GNUstep raises for a NaN date after allocating it, and the
        // allocation is lost: such a date is unreadable here instead.
        if (std::isnan(seconds)) return nil;
        return [[NSDate alloc] initWithTimeIntervalSinceReferenceDate:seconds];
      }
      case 0x4: {
        uint64_t count;
        if (!Count(&position, low, &count) || !Fits(position, count)) return nil;
        return [[NSData alloc] initWithBytes:bytes_ + position length:count];
      }
      case 0x5: {
        uint64_t count;
        if (!Count(&position, low, &count) || !Fits(position, count)) return nil;
        for (uint64_t i = 0; i < count; ++i)
          if (bytes_[position + i] >= 0x80) return nil;
        return [[NSString alloc] initWithBytes:bytes_ + position
                                        length:count
                                      encoding:NSASCIIStringEncoding];
      }
      case 0x6: {
        uint64_t count;
        if (!Count(&position, low, &count) || count > tableOffset_ / 2 ||
            !Fits(position, count * 2))
          return nil;
        if (count == 0) return [[NSString alloc] init];
        // GNUstep answers nil for text with an unpaired surrogate.
        return [[NSString alloc] initWithBytes:bytes_ + position
                                        length:count * 2
                                      encoding:NSUTF16BigEndianStringEncoding];
      }
      case 0xA:
        return MakeArray(position, low, depth);
      case 0xD:
        return MakeDictionary(position, low, depth);
      default:
        return nil;  // UIDs, sets and unassigned markers
    }
  }

  id MakeInteger(size_t position, unsigned low) {
    if (low > 4) return nil;
    unsigned width = 1u << low;
    if (!Fits(position + 1, width)) return nil;
    const unsigned char* p = bytes_ + position + 1;
    if (width < 8) return [[NSNumber alloc] initWithLongLong:(long long)BigEndian(p, width)];
    if (width == 8) return [[NSNumber alloc] initWithLongLong:(long long)BigEndian(p, 8)];
    // Sixteen bytes, two's complement: only values that fit 64 bits (signed
    // or unsigned) are numbers here.
    uint64_t high = BigEndian(p, 8), value = BigEndian(p + 8, 8);
    if (high == 0) return [[NSNumber alloc] initWithUnsignedLongLong:value];
    if (high == UINT64_MAX && (value >> 63) != 0)
      return [[NSNumber alloc] initWithLongLong:(long long)value];
    return nil;
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
    if (!Count(&position, low, &count) || count > UINT64_MAX / 2 ||
        !References(position, count * 2, &refs))
      return nil;
    size_t n = static_cast<size_t>(count);
    std::vector<id> keys(n), values(n);
    for (size_t i = 0; i < n; ++i) {
      keys[i] = Object(refs[i], depth + 1);
      if (![keys[i] isKindOfClass:[NSString class]]) return nil;
      values[i] = Object(refs[n + i], depth + 1);
      if (values[i] == nil) return nil;
    }
    return [[NSDictionary alloc] initWithObjects:values.data() forKeys:keys.data() count:n];
  }

  const unsigned char* bytes_;
  size_t length_;
  unsigned offsetWidth_ = 0, refWidth_ = 0;
  uint64_t objectCount_ = 0, root_ = 0, tableOffset_ = 0;
  std::vector<id> built_;
  std::vector<unsigned char> state_;
};

}  // namespace

id RVBinaryPropertyListRead(const unsigned char* bytes, size_t length) {
  return RVReadPropertyListWith<BinaryReader>(bytes, length);
}
