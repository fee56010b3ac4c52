// Bytes that read as a property list write as a binary list that reads
// back as the same list, to the bit (dates too), or both writers refuse it:
// the binary writer takes exactly what the XML writer takes. Nothing may crash; a difference stops the run.
#import <Foundation/Foundation.h>

#include <cstdlib>
#include <string>

#include "FuzzSupport.h"
#include "PropertyListSame.h"
#include "Platform/PropertyLists/RVBinaryPropertyList.h"
#include "Platform/PropertyLists/RVBinaryPropertyListWriter.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyListWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  rovani_fuzz::Quiet();
  @autoreleasepool {
    id first = RVPropertyListFromBytes(data, size);
    if (first == nil) return 0;
    RVFormatFault binaryFault, xmlFault;
    NSData* binary = RVBinaryPropertyListData(first, &binaryFault);
    std::string text;
    bool xml = RVXMLPropertyListWrite(first, &text, &xmlFault);
    // Where a list breaks several rules, each writer names the first it
    // meets, and they visit a dictionary's entries in different orders.
    if ((binary != nil) != xml) {
      fprintf(stderr, "the writers disagree: binary %s (%s at \"%s\"), XML %s (%s at \"%s\")\n",
              binary != nil ? "wrote" : "refused", binaryFault.message.c_str(),
              binaryFault.keyPath.c_str(), xml ? "wrote" : "refused", xmlFault.message.c_str(),
              xmlFault.keyPath.c_str());
      abort();
    }
    if (binary == nil) return 0;
    id second = RVBinaryPropertyListRead(static_cast<const unsigned char*>([binary bytes]), [binary length]);
    if (second == nil || !rovani_fuzz::Same(first, second, false)) {
      fprintf(stderr, "written list reads back %s\n", second == nil ? "unreadable" : "different");
      abort();
    }
  }
  return 0;
}
