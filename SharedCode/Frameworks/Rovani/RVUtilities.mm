#import <Foundation/Foundation.h>

#include <cstdarg>

#include <Rovani/RVUtilities.h>

void RVLog(RVString format, ...) {
  va_list args;
  va_start(args, format);
  NSLogv(format.Ref(), args);
  va_end(args);
}

// Logs in every build, exactly as RVLog does.
void DebugLog(RVString format, ...) {
  va_list args;
  va_start(args, format);
  NSLogv(format.Ref(), args);
  va_end(args);
}
