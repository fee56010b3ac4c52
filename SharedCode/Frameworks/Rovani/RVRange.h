/// \file
/// RVRange, a span of positions in a string, an array or a data buffer.
#ifndef ROVANI_RVRANGE_H
#define ROVANI_RVRANGE_H

#include <Rovani/RVDefines.h>

/// A span of positions (location, then length; both unsigned 32-bit).
/// Not a handle: no object, no virtual functions, copied bitwise.
///
/// No invariant ties the two fields: a range whose end overflows is stored
/// as given, and all arithmetic is unsigned 32-bit. It converts to and from
/// the platform's range (_NSRange) field by field.
class RV_EXPORT RVRange {
 public:
  /// The range (0, 0).
  RVRange() : location_(0), length_(0) {}
  /// The range (\p location, \p length).
  /// \param location the first position.
  /// \param length the number of positions.
  RVRange(unsigned int location, unsigned int length) : location_(location), length_(length) {}
  /// A copy of \p other.
  RVRange(const RVRange& other) = default;
  /// The platform's range, both fields cut to 32 bits.
  /// \param range the platform's range.
  RVRange(const _NSRange& range);

  /// Overwrites both fields.
  /// \param location the first position.
  /// \param length the number of positions.
  void InitWithLocationAndLength(unsigned int location, unsigned int length);
  /// Overwrites both fields with the other's.
  void InitWithRange(const RVRange& range);
  /// Overwrites both fields with the platform range's, cut to 32 bits.
  /// \param range the platform's range.
  void InitWithNSRange(const _NSRange& range);
  /// Copies both fields.
  RVRange& operator=(const RVRange& other) = default;
  /// Copies both fields of the platform's range, cut to 32 bits.
  /// \param range the platform's range.
  RVRange& operator=(const _NSRange& range);
  /// The range (\p location, \p length).
  /// \param location the first position.
  /// \param length the number of positions.
  /// \return the new range.
  static RVRange RangeWithLocationAndLength(unsigned int location, unsigned int length);

  /// Both fields copied; the platform's fields are wider, so a location of
  /// "not found" arrives here cut to 32 bits.
  /// \return the platform's range with the same location and length.
  operator _NSRange() const;

  /// The first position.
  /// \return the location.
  unsigned int Location() const { return location_; }
  /// The number of positions.
  /// \return the length.
  unsigned int Length() const { return length_; }
  /// The first position after the range.
  /// \return location + length, wrapping at 32 bits.
  unsigned int EndOfRange() const { return location_ + length_; }
  /// Whether the range covers no position.
  /// \return true exactly when the length is 0, whatever the location.
  bool IsEmpty() const { return length_ == 0; }
  /// Sets both fields to 0.
  void Empty();
  /// Whether \p position lies inside the range.
  /// \return true when `location <= position < location + length`; always
  ///   false for an empty range.
  bool IsLocationInRange(unsigned int position) const;

  /// Field-by-field equality.
  /// \return whether both locations and both lengths are equal.
  ///@{
  bool operator==(const RVRange& other) const;
  bool operator==(const _NSRange& other) const;
  bool IsEqualToRange(const RVRange& other) const;
  bool IsEqualToRange(const _NSRange& other) const;
  ///@}

  /// Location: the smaller location. Length: the distance between the two
  /// locations plus the larger length, so (0,10) with (5,2) gives (0,15).
  /// \warning Not the smallest range covering both: the rule is kept as it
  ///   stands by design, and callers rely on it.
  /// \return the combined range.
  ///@{
  RVRange UnionRange(const RVRange& other) const;
  RVRange UnionRange(const _NSRange& other) const;
  ///@}
  /// The positions both ranges cover: (0,0) when the ranges do not overlap
  /// (touching ranges such as (0,5) and (5,5) included).
  /// \return the common range, or (0,0).
  ///@{
  RVRange IntersectionRange(const RVRange& other) const;
  RVRange IntersectionRange(const _NSRange& other) const;
  ///@}
  /// Location: the end of other. Length: this length minus the end of the
  /// intersection (wrapping). The remainder only when both start at 0.
  /// \warning By design the two formulas hold for every placement: (0,10)
  ///   less (0,4) gives (4,6), but (2,10) less (2,4) gives (6,4), and the
  ///   length wraps when the intersection ends beyond this length.
  /// \return the difference by the rule above.
  RVRange DifferenceRange(const RVRange& other) const;

 private:
  uint32_t location_;
  uint32_t length_;
};

#endif
