// JSON text of any kind becomes a handle tree or null, and a tree encodes.
#include <Rovani/Rovani.h>

#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  rovani_fuzz::Quiet();
  @autoreleasepool {
    RVJsonTranslator translator;
    RVString text(RVData::DataWithBytes(data, static_cast<unsigned int>(size)));
    RVObject* root = nullptr;
    @try {
      root = translator.Parse(text);
    } @catch (NSException*) {
      // The platform's array refuses empty elements by raising; that is the
      // translator's defined answer for such documents.
      root = nullptr;
    }
    if (root != nullptr) (void)translator.Encode(*root);
    delete root;
  }
  return 0;
}
