#import <Foundation/Foundation.h>

#include <Rovani/RVRange.h>

// The platform's fields are wider than ours; both are copied (and cut to
// 32 bits on the way in).
RVRange::RVRange(const _NSRange& range)
    : location_(static_cast<uint32_t>(range.location)),
      length_(static_cast<uint32_t>(range.length)) {}

void RVRange::InitWithLocationAndLength(unsigned int location, unsigned int length) {
  location_ = location;
  length_ = length;
}

void RVRange::InitWithRange(const RVRange& range) { *this = range; }

void RVRange::InitWithNSRange(const _NSRange& range) { *this = RVRange(range); }

RVRange& RVRange::operator=(const _NSRange& range) {
  InitWithNSRange(range);
  return *this;
}

RVRange RVRange::RangeWithLocationAndLength(unsigned int location, unsigned int length) {
  return RVRange(location, length);
}

RVRange::operator _NSRange() const {
  _NSRange range;
  range.location = location_;
  range.length = length_;
  return range;
}

void RVRange::Empty() {
  location_ = 0;
  length_ = 0;
}

bool RVRange::IsLocationInRange(unsigned int position) const {
  if (location_ > position) return false;
  return position < static_cast<uint32_t>(location_ + length_);
}

bool RVRange::operator==(const RVRange& other) const { return IsEqualToRange(other); }

bool RVRange::operator==(const _NSRange& other) const { return IsEqualToRange(other); }

bool RVRange::IsEqualToRange(const RVRange& other) const {
  return location_ == other.location_ && length_ == other.length_;
}

bool RVRange::IsEqualToRange(const _NSRange& other) const {
  return IsEqualToRange(RVRange(other));
}

RVRange RVRange::UnionRange(const RVRange& other) const {
  uint32_t low = location_ < other.location_ ? location_ : other.location_;
  uint32_t high = location_ < other.location_ ? other.location_ : location_;
  uint32_t longer = length_ > other.length_ ? length_ : other.length_;
  return RVRange(low, (high - low) + longer);
}

RVRange RVRange::UnionRange(const _NSRange& other) const { return UnionRange(RVRange(other)); }

RVRange RVRange::IntersectionRange(const RVRange& other) const {
  uint32_t start = location_ > other.location_ ? location_ : other.location_;
  uint32_t myEnd = EndOfRange();
  uint32_t otherEnd = other.EndOfRange();
  uint32_t end = myEnd < otherEnd ? myEnd : otherEnd;
  if (start >= end) return RVRange(0, 0);
  return RVRange(start, end - start);
}

RVRange RVRange::IntersectionRange(const _NSRange& other) const {
  return IntersectionRange(RVRange(other));
}

RVRange RVRange::DifferenceRange(const RVRange& other) const {
  RVRange overlap = IntersectionRange(other);
  return RVRange(other.EndOfRange(), length_ - overlap.EndOfRange());
}
