/// \file
/// Umbrella header: every public header of the library.
/// `#include <Rovani/Rovani.h>` is all a caller needs; each header also
/// stands alone.
#ifndef ROVANI_ROVANI_H
#define ROVANI_ROVANI_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVRange.h>
#include <Rovani/RVString.h>
#include <Rovani/RVStringCategories.h>
#include <Rovani/RVUtilities.h>
#include <Rovani/RVData.h>
#include <Rovani/RVBool.h>
#include <Rovani/RVNumber.h>
#include <Rovani/RVValue.h>
#include <Rovani/RVDate.h>
#include <Rovani/RVDateFormatter.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVArray.h>
#include <Rovani/RVEnumerator.h>
#include <Rovani/RVError.h>
#include <Rovani/RVURL.h>
#include <Rovani/RVBundle.h>
#include <Rovani/RVFileManager.h>
#include <Rovani/RVInternalRef.h>
#include <Rovani/RVAutoreleasePool.h>
#include <Rovani/RVUserDefaults.h>
#include <Rovani/RVJsonTranslator.h>
#include <Rovani/RVFormatError.h>
#include <Rovani/RVPropertyList.h>
#include <Rovani/RVJsonDocument.h>
#include <Rovani/Base64Encoding.h>

#endif
