// Bytes that read as a property list write as XML and read back as the
// same list (dates to the second, the format's precision), or the write
// refuses the list whole. Either read may fail; nothing may crash, and a
// written list that reads back different stops the run.
#import <Foundation/Foundation.h>

#include <cstdlib>
#include <string>

#include "FuzzSupport.h"
#include "PropertyListSame.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyListWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  rovani_fuzz::Quiet();
  @autoreleasepool {
    id first = RVPropertyListFromBytes(data, size);
    std::string text;
    if (first == nil || !RVXMLPropertyListWrite(first, &text)) return 0;
    id second = RVPropertyListFromBytes(text.data(), text.size());
    if (second == nil || !rovani_fuzz::Same(first, second, true)) {
      fprintf(stderr, "written list reads back different:\n%s\n", text.c_str());
      abort();
    }
  }
  return 0;
}
