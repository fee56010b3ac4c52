// Logging. Both functions hand the format and the arguments to the
// platform's NSLogv (Foundation placeholders: "%@" for an object, "%d", "%s"
// and the rest of the printf family). Neither is ever silenced.
#ifndef ROVANI_RVUTILITIES_H
#define ROVANI_RVUTILITIES_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVString.h>

RV_EXPORT void RVLog(RVString format, ...);
RV_EXPORT void DebugLog(RVString format, ...);

#endif
