/// \file
/// RVDateFormatter, dates to text and back, and RVDateFormat, the named
/// patterns the library uses.
#ifndef ROVANI_RVDATEFORMATTER_H
#define ROVANI_RVDATEFORMATTER_H

#include <Rovani/RVDate.h>
#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

/// A handle on an NSDateFormatter that turns dates into text and back.
///
/// Every formatter the library makes uses pattern-based (10.4) behaviour,
/// the current locale and the system time zone (not the default time zone
/// that RVDate uses for calendar arithmetic). Copies share one platform
/// formatter. Patterns use the platform's letters: dd day, MM month, yyyy
/// year, HH hours, mm minutes, ss seconds, SSS milliseconds.
/// \note A formatter must not be used by two threads at once.
class RV_EXPORT RVDateFormatter : public RVObject {
 public:
  /// A new formatter with the given styles and no pattern.
  /// \param dateStyle 0 leaves the date out, 1 is the short style.
  /// \param timeStyle 0 leaves the time out, 1 is the short style.
  RVDateFormatter(int dateStyle, int timeStyle);
  /// A new formatter: short date and time styles with the pattern
  /// "MM-dd-yyyy".
  RVDateFormatter();
  /// Takes obj as it is, unconfigured, and logs a warning every time.
  /// \param obj a date formatter object, or nil.
  RVDateFormatter(RVId obj);
  /// Shares the other's platform formatter.
  RVDateFormatter(const RVDateFormatter& other);
  /// Releases the formatter.
  ~RVDateFormatter() override;

  /// Shares the other's platform formatter.
  RVDateFormatter& operator=(const RVDateFormatter& other);
  /// Holds \p obj as it is, retained, unconfigured.
  /// \param obj a date formatter object, or nil.
  RVDateFormatter& operator=(RVId obj);
  /// The class type of date formatters.
  /// \note By design the class type is "5RVDateFormatter" (see
  ///   RVObject::ClassType()).
  /// The pattern "5RVDateFormatter".
  /// \return "5RVDateFormatter".
  static RVString ClassType();

  /// Changes the pattern for every handle that shares this formatter.
  /// \param format the pattern, such as "dd-MM-yyyy".
  void SetDateFormat(RVString format);
  /// Empty when the text is no date. A text that fails is tried once more
  /// with every "/" read as "-" (one retry at a time in the whole process).
  /// \note The retry flag is shared by the whole process without a lock:
  ///   while one thread is retrying, a failing text on another thread is
  ///   not retried.
  /// \return the date, or an empty date; nothing is logged.
  RVDate DateFromString(const RVString& text) const;
  /// The date as text in this formatter's pattern or styles.
  /// \return the text; an empty string for an empty date.
  RVString StringFromDate(const RVDate& date) const;

  /// Short date and time, no pattern.
  static RVDateFormatter CurrentLocaleDateFormatter();
  /// Short date and time styles with \p format as the pattern.
  static RVDateFormatter DateFormatterUsingDateFormat(RVString format);
  /// The given styles with \p format as the pattern.
  /// \param format the pattern.
  /// \param dateStyle 0 for none, 1 for short.
  /// \param timeStyle 0 for none, 1 for short.
  static RVDateFormatter DateFormatterUsingDateFormatDateStyleTimeStyle(RVString format,
                                                                        int dateStyle,
                                                                        int timeStyle);
  /// The given date style and no time style, with \p format as the pattern.
  /// \param format the pattern.
  /// \param dateStyle 0 for none, 1 for short.
  static RVDateFormatter DateFormatterUsingDateFormatDateStyle(RVString format, int dateStyle);
  /// "MM-dd-yyyy", short date style, no time style.
  /// \return a new formatter; RVDate::DateFromString() reads with it.
  static RVDateFormatter DefaultFormatter();

 private:
  // Kept with the handle and copied with it; nothing reads it.
  RVString pattern_;
};

/// The named patterns the library uses; static members only.
class RV_EXPORT RVDateFormat {
 public:
  /// The pattern "dd-MM-yyyy".
  /// \return "dd-MM-yyyy".
  static RVString ddMMyyyyDateFormat();           // "dd-MM-yyyy"
  /// The pattern "MM-dd-yyyy".
  /// \return "MM-dd-yyyy".
  static RVString MMddyyyyDateFormat();           // "MM-dd-yyyy"
  /// The pattern "yyyy-MM-dd".
  /// \return "yyyy-MM-dd".
  static RVString yyyyMMddDateFormat();           // "yyyy-MM-dd"
  /// The pattern "HH:mm:ss.SSS".
  /// \return "HH:mm:ss.SSS".
  static RVString HHmmssSSSDateFormat();          // "HH:mm:ss.SSS"
  /// The pattern "HH:mm:ss".
  /// \return "HH:mm:ss".
  static RVString HHmmssDateFormat();             // "HH:mm:ss"
  /// The pattern "HH:mm".
  /// \return "HH:mm".
  static RVString HHmmDateFormat();               // "HH:mm"
  /// The pattern "MM-dd-yyyy HH:mm:ss.SSS".
  /// \return "MM-dd-yyyy HH:mm:ss.SSS".
  static RVString MMddyyyyHHmmssSSSDateFormat();  // "MM-dd-yyyy HH:mm:ss.SSS"
};

#endif
