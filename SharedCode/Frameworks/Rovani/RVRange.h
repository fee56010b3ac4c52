// RVRange: a span of positions (location, then length; both unsigned 32-bit).
// Not a handle: no object, no virtual functions, copied bitwise.
#ifndef ROVANI_RVRANGE_H
#define ROVANI_RVRANGE_H

#include <Rovani/RVDefines.h>

class RV_EXPORT RVRange {
 public:
  RVRange() : location_(0), length_(0) {}
  RVRange(unsigned int location, unsigned int length) : location_(location), length_(length) {}
  RVRange(const RVRange& other) = default;
  RVRange(const _NSRange& range);

  void InitWithLocationAndLength(unsigned int location, unsigned int length);
  void InitWithRange(const RVRange& range);
  void InitWithNSRange(const _NSRange& range);
  RVRange& operator=(const RVRange& other) = default;
  RVRange& operator=(const _NSRange& range);
  static RVRange RangeWithLocationAndLength(unsigned int location, unsigned int length);

  // Both fields copied; the platform's fields are wider, so a location of
  // "not found" arrives here cut to 32 bits.
  operator _NSRange() const;

  unsigned int Location() const { return location_; }
  unsigned int Length() const { return length_; }
  // location + length, wrapping at 32 bits.
  unsigned int EndOfRange() const { return location_ + length_; }
  // True exactly when the length is 0, whatever the location.
  bool IsEmpty() const { return length_ == 0; }
  void Empty();
  bool IsLocationInRange(unsigned int position) const;

  bool operator==(const RVRange& other) const;
  bool operator==(const _NSRange& other) const;
  bool IsEqualToRange(const RVRange& other) const;
  bool IsEqualToRange(const _NSRange& other) const;

  // Location: the smaller location. Length: the distance between the two
  // locations plus the larger length, so (0,10) with (5,2) gives (0,15).
  RVRange UnionRange(const RVRange& other) const;
  RVRange UnionRange(const _NSRange& other) const;
  // (0,0) when the ranges do not overlap.
  RVRange IntersectionRange(const RVRange& other) const;
  RVRange IntersectionRange(const _NSRange& other) const;
  // Location: the end of other. Length: this length minus the end of the
  // intersection (wrapping). The remainder only when both start at 0.
  RVRange DifferenceRange(const RVRange& other) const;

 private:
  uint32_t location_;
  uint32_t length_;
};

#endif
