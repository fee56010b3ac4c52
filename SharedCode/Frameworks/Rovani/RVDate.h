/// \file
/// RVDate, a point in time, with the interval constants.
#ifndef ROVANI_RVDATE_H
#define ROVANI_RVDATE_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

/// One minute in seconds (60).
RV_EXPORT extern double OneMinuteTimeInterval;
/// One hour in seconds (3600).
RV_EXPORT extern double OneHourTimeInterval;
/// One day in seconds (86400); day counts divide by it.
RV_EXPORT extern double OneDayTimeInterval;

/// A handle on an NSDate, a point in time counted in seconds from the
/// reference date (the first instant of 1 January 2001, GMT). Calendar work
/// is done on the Gregorian calendar in the default time zone; text goes
/// through RVDateFormatter.
///
/// An empty date is measured as the distant past. A held date never
/// changes: the Set and Add members replace it with a new one.
///
/// \note GNUstep takes the default time zone from `GNUSTEP_TZ`, not `TZ`.
class RV_EXPORT RVDate : public RVObject {
 public:
  /// An empty date.
  RVDate();
  /// Shares the other's date.
  RVDate(const RVDate& other);
  /// Holds the object, retained; a Core Foundation reference is the same
  /// object.
  ///@{
  RVDate(NSDate* date);
  RVDate(CFDateRef date);
  ///@}
  /// Releases the date.
  ~RVDate() override;

  /// Shares the other's date.
  RVDate& operator=(const RVDate& other);
  /// Holds the object, retained. An RVId is taken as it is, without a class
  /// test; a Core Foundation reference is the same object.
  ///@{
  RVDate& operator=(RVId obj);
  RVDate& operator=(NSDate* date);
  RVDate& operator=(CFDateRef date);
  ///@}
  /// The held NSDate, not retained; nil for an empty date.
  operator NSDate*() const;
  /// The held date, not retained; null for an empty date.
  operator CFDateRef() const;

  /// The current instant.
  static RVDate Now();
  /// Midnight at the start of the current day in the default time zone.
  static RVDate Today();
  /// Note the order: month, day, year. Impossible fields (month 13,
  /// 30 February, hour 24, a negative minute) give an empty date.
  /// \param month the month, 1 to 12.
  /// \param day the day of the month, from 1.
  /// \param year the year.
  /// \return midnight of that day in the default time zone, or an empty
  ///   date.
  static RVDate DateFromMonthDayYear(int month, int day, int year);
  /// A calendar date and time in the default time zone; note the order
  /// month, day, year. Impossible fields give an empty date.
  /// \param month the month, 1 to 12.
  /// \param day the day of the month, from 1.
  /// \param year the year.
  /// \param hour the hour, 0 to 23.
  /// \param minute the minute, 0 to 59.
  /// \param second the seconds, with a fraction.
  /// \return the date, or an empty date.
  static RVDate DateFromMonthDayYearHourMinuteSecond(int month, int day, int year, int hour,
                                                     int minute, double second);
  /// A date at an interval from the reference date, from now or from
  /// 1 January 1970 (GMT).
  /// An interval that is not a number gives an empty date.
  /// \param seconds the interval; negative for earlier dates.
  /// \return the date, or an empty date.
  ///@{
  static RVDate DateWithTimeIntervalSinceReferenceDate(double seconds);
  static RVDate DateWithTimeIntervalSinceNow(double seconds);
  static RVDate DateWithTimeIntervalSince1970(double seconds);
  ///@}
  /// Read with RVDateFormatter::DefaultFormatter() ("MM-dd-yyyy"); empty
  /// when the text is no date.
  /// \param text the text read; "/" for "-" is accepted too
  ///   (see RVDateFormatter::DateFromString()).
  /// \return the date, or an empty date.
  static RVDate DateFromString(const RVString& text);
  /// Read with a formatter for \p format (short styles); empty when the text
  /// is no date.
  /// \param text the text read.
  /// \param format the pattern, such as "yyyy-MM-dd" (see RVDateFormat).
  /// \return the date, or an empty date.
  static RVDate DateFromStringUsingFormat(const RVString& text, const RVString& format);
  /// The class type, "RVDate".
  static RVString ClassType();

  // Shared dates, made on first use.
  /// The reference date, 1 January 2001 0:00 GMT; shared, made on first use.
  /// \return the same date on every call.
  static RVDate& ReferenceDate();
  /// The platform's distant past, the measure of an empty date; shared,
  /// made on first use.
  /// \return the same date on every call.
  static RVDate& DistantPast();
  /// The platform's distant future; shared, made on first use.
  /// \return the same date on every call.
  static RVDate& DistantFuture();

  /// Replaces the held date with a calendar date and time in the default
  /// time zone. Month, day, hour and minute are taken as 8-bit values;
  /// impossible fields empty the date.
  /// \param month the month, 1 to 12.
  /// \param day the day of the month, from 1.
  /// \param year the year.
  /// \param hour the hour, 0 to 23.
  /// \param minute the minute, 0 to 59.
  /// \param second the seconds, with a fraction.
  void SetFromMonthDayYearHourMinuteSecond(int month, int day, int year, int hour, int minute,
                                           double second);
  /// Replaces the held date with midnight of a calendar day in the default
  /// time zone; impossible fields empty the date.
  /// \param month the month, 1 to 12 (taken as an 8-bit value).
  /// \param day the day of the month (taken as an 8-bit value).
  /// \param year the year.
  void SetFromMonthDayYear(int month, int day, int year);
  /// Calendar days in the default time zone: the wall-clock time is kept
  /// across a daylight-saving change.
  /// \warning Not for an empty date (nil is passed to the platform).
  /// \param days the days added; negative to go back.
  void AddDays(int days);
  /// Exactly that many seconds. An interval that is not a number empties
  /// the date.
  /// \warning Not for an empty date (nil is passed to the platform).
  /// \param seconds the seconds added; negative to go back.
  void AddTimeInterval(double seconds);

  /// Seconds since the reference date (the misspelt name is part of the
  /// interface).
  /// \return the interval; for an empty date, the distant past's.
  double TimeIntervalSinceRefereceDate() const;
  /// Seconds from now to the date.
  /// \return the interval, negative for dates in the past; an empty date is
  ///   measured as the distant past.
  double TimeIntervalSinceNow() const;
  /// Seconds from \p other to this date.
  /// \warning For an empty date: the distant past's interval since the
  ///   reference date, whatever other is (kept by design). An empty other is
  ///   passed on to the platform, which raises an NSException for it.
  /// \param other the date measured from; not empty.
  /// \return the interval, positive when this date is later.
  double TimeIntervalSinceDate(RVDate other) const;
  /// Whole days since the reference date.
  /// \return the days, truncated toward zero (1.9 days gives 1, -1.9 gives -1).
  int DaysSinceReferenceDate() const;
  /// Days from now to the date, with a fraction.
  /// \return the days, negative for dates in the past (36 hours ago is -1.5).
  double DaysSinceNow() const;

  /// Ordered by TimeIntervalSinceRefereceDate(), compared exactly: an empty
  /// date equals the distant past. A NaN interval makes `<`, `>` and `==` false.
  /// \param other the date compared with (wrapped in a handle first).
  /// \return the comparison's result.
  ///@{
  bool operator<(const RVDate& other) const;
  bool operator<(NSDate* other) const;
  bool operator<(CFDateRef other) const;
  bool operator>(const RVDate& other) const;
  bool operator>(NSDate* other) const;
  bool operator>(CFDateRef other) const;
  bool operator==(const RVDate& other) const;
  bool operator==(NSDate* other) const;
  bool operator==(CFDateRef other) const;
  bool operator<=(const RVDate& other) const;
  bool operator<=(NSDate* other) const;
  bool operator<=(CFDateRef other) const;
  bool operator>=(const RVDate& other) const;
  bool operator>=(NSDate* other) const;
  bool operator>=(CFDateRef other) const;
  bool operator!=(const RVDate& other) const;
  bool operator!=(NSDate* other) const;
  bool operator!=(CFDateRef other) const;
  ///@}

  /// Short date and time in the current locale and the system time zone
  /// (RVDateFormatter::CurrentLocaleDateFormatter()).
  /// \return the text; an empty string for an empty date.
  RVString Description() const override;
};

#endif
