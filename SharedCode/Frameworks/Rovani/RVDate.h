// RVDate: a handle on an NSDate, a point in time counted in seconds from the
// reference date (the first instant of 1 January 2001, GMT). Calendar work
// is done on the Gregorian calendar in the default time zone; text goes
// through RVDateFormatter.
//
// An empty date is measured as the distant past.
#ifndef ROVANI_RVDATE_H
#define ROVANI_RVDATE_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

// Seconds.
RV_EXPORT extern double OneMinuteTimeInterval;
RV_EXPORT extern double OneHourTimeInterval;
RV_EXPORT extern double OneDayTimeInterval;

class RV_EXPORT RVDate : public RVObject {
 public:
  RVDate();
  RVDate(const RVDate& other);
  RVDate(NSDate* date);
  RVDate(CFDateRef date);
  ~RVDate() override;

  RVDate& operator=(const RVDate& other);
  RVDate& operator=(RVId obj);
  RVDate& operator=(NSDate* date);
  RVDate& operator=(CFDateRef date);
  operator NSDate*() const;
  operator CFDateRef() const;

  static RVDate Now();
  // Midnight at the start of the current day in the default time zone.
  static RVDate Today();
  // Note the order: month, day, year. Impossible fields (month 13,
  // 30 February, hour 24, a negative minute) give an empty date.
  static RVDate DateFromMonthDayYear(int month, int day, int year);
  static RVDate DateFromMonthDayYearHourMinuteSecond(int month, int day, int year, int hour,
                                                     int minute, double second);
  // An interval that is not a number gives an empty date.
  static RVDate DateWithTimeIntervalSinceReferenceDate(double seconds);
  static RVDate DateWithTimeIntervalSinceNow(double seconds);
  static RVDate DateWithTimeIntervalSince1970(double seconds);
  // Read with RVDateFormatter::DefaultFormatter() ("MM-dd-yyyy"); empty
  // when the text is no date.
  static RVDate DateFromString(const RVString& text);
  static RVDate DateFromStringUsingFormat(const RVString& text, const RVString& format);
  static RVString ClassType();

  // Shared dates, made on first use.
  static RVDate& ReferenceDate();
  static RVDate& DistantPast();
  static RVDate& DistantFuture();

  // Each replaces the held date with a new one. Month, day, hour and minute
  // are taken as 8-bit values; impossible fields empty the date.
  void SetFromMonthDayYearHourMinuteSecond(int month, int day, int year, int hour, int minute,
                                           double second);
  void SetFromMonthDayYear(int month, int day, int year);
  // Calendar days in the default time zone: the wall-clock time is kept
  // across a daylight-saving change.
  void AddDays(int days);
  // Exactly that many seconds. An interval that is not a number empties
  // the date.
  void AddTimeInterval(double seconds);

  double TimeIntervalSinceRefereceDate() const;
  // Negative for dates in the past.
  double TimeIntervalSinceNow() const;
  // For an empty date: the distant past's interval since the reference
  // date, whatever other is. An empty other is passed on to the platform,
  // which raises an NSException for it.
  double TimeIntervalSinceDate(RVDate other) const;
  // Whole days, truncated toward zero.
  int DaysSinceReferenceDate() const;
  double DaysSinceNow() const;

  // Ordered by TimeIntervalSinceRefereceDate(), compared exactly: an empty
  // date equals the distant past.
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

  // Short date and time in the current locale and the system time zone;
  // an empty string for an empty date.
  RVString Description() const override;
};

#endif
