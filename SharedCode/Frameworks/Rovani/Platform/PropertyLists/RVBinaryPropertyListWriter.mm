#include "Platform/PropertyLists/RVBinaryPropertyListWriter.h"

NSData* RVBinaryPropertyListData(id list, RVFormatFault* fault) {
  if (fault != nullptr) fault->message = "binary property lists are not written yet";
  return nil;
}
