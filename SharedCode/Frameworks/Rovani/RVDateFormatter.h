// RVDateFormatter: a handle on an NSDateFormatter that turns dates into text
// and back. Every formatter the library makes uses pattern-based (10.4)
// behaviour, the current locale and the system time zone (not the default
// time zone that RVDate uses for calendar arithmetic). Copies share one
// platform formatter.
//
// RVDateFormat: the named patterns the library uses.
#ifndef ROVANI_RVDATEFORMATTER_H
#define ROVANI_RVDATEFORMATTER_H

#include <Rovani/RVDate.h>
#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

class RV_EXPORT RVDateFormatter : public RVObject {
 public:
  // Styles: 0 leaves that part out, 1 is the short style.
  RVDateFormatter(int dateStyle, int timeStyle);
  // Short date and time styles with the pattern "MM-dd-yyyy".
  RVDateFormatter();
  // Takes obj as it is, unconfigured, and logs a warning every time.
  RVDateFormatter(RVId obj);
  RVDateFormatter(const RVDateFormatter& other);
  ~RVDateFormatter() override;

  RVDateFormatter& operator=(const RVDateFormatter& other);
  RVDateFormatter& operator=(RVId obj);
  static RVString ClassType();

  // Changes the pattern for every handle that shares this formatter.
  void SetDateFormat(RVString format);
  // Empty when the text is no date. A text that fails is tried once more
  // with every "/" read as "-" (one retry at a time in the whole process).
  RVDate DateFromString(const RVString& text) const;
  // An empty string for an empty date.
  RVString StringFromDate(const RVDate& date) const;

  // Short date and time, no pattern.
  static RVDateFormatter CurrentLocaleDateFormatter();
  static RVDateFormatter DateFormatterUsingDateFormat(RVString format);
  static RVDateFormatter DateFormatterUsingDateFormatDateStyleTimeStyle(RVString format,
                                                                        int dateStyle,
                                                                        int timeStyle);
  // No time style.
  static RVDateFormatter DateFormatterUsingDateFormatDateStyle(RVString format, int dateStyle);
  // "MM-dd-yyyy", short date style, no time style.
  static RVDateFormatter DefaultFormatter();

 private:
  // Kept with the handle and copied with it; nothing reads it.
  RVString pattern_;
};

class RV_EXPORT RVDateFormat {
 public:
  static RVString ddMMyyyyDateFormat();           // "dd-MM-yyyy"
  static RVString MMddyyyyDateFormat();           // "MM-dd-yyyy"
  static RVString yyyyMMddDateFormat();           // "yyyy-MM-dd"
  static RVString HHmmssSSSDateFormat();          // "HH:mm:ss.SSS"
  static RVString HHmmssDateFormat();             // "HH:mm:ss"
  static RVString HHmmDateFormat();               // "HH:mm"
  static RVString MMddyyyyHHmmssSSSDateFormat();  // "MM-dd-yyyy HH:mm:ss.SSS"
};

#endif
