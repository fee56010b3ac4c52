// Class types: the text that names a handle's dynamic C++ type.
#ifndef ROVANI_PLATFORM_RVCLASSTYPE_H
#define ROVANI_PLATFORM_RVCLASSTYPE_H

#import <Foundation/Foundation.h>

#include <typeinfo>

// The class type of a dynamic type: its ABI name less the first character,
// cut to the part after the last blank. Computed once per type and interned,
// so equal class types are the same (immortal) string object.
NSString* RVClassTypeText(const std::type_info& type);

#endif
