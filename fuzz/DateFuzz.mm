// Text read as a date with a pattern: the first line is the pattern, the
// rest the text.
#include <Rovani/Rovani.h>

#include "FuzzSupport.h"

// ICU loads its time-zone names on their first use, once for the process;
// under the sanitizers that first load takes seconds. It is done here, before
// any input is timed.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  rovani_fuzz::Quiet();
  @autoreleasepool {
    for (const char* pattern : {"v", "vvvv", "z", "zzzz", "VVVV", "O"}) {
      RVDateFormatter formatter = RVDateFormatter::DateFormatterUsingDateFormat(pattern);
      (void)formatter.DateFromString("/12-25-d=");
      (void)formatter.StringFromDate(RVDate::Now());
    }
  }
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  rovani_fuzz::Quiet();
  if (size > 256) return 0;  // dates are short; longer input only slows ICU
  @autoreleasepool {
    std::string input = rovani_fuzz::Bytes(data, size);
    size_t newline = input.find('\n');
    std::string pattern = newline == std::string::npos ? "MM-dd-yyyy" : input.substr(0, newline);
    std::string text = newline == std::string::npos ? input : input.substr(newline + 1);
    RVDateFormatter formatter =
        RVDateFormatter::DateFormatterUsingDateFormat(RVString(pattern.c_str()));
    RVDate date = formatter.DateFromString(RVString(text.c_str()));
    (void)formatter.StringFromDate(date).Length();
    (void)RVDate::DateFromString(RVString(text.c_str())).DaysSinceReferenceDate();
  }
  return 0;
}
