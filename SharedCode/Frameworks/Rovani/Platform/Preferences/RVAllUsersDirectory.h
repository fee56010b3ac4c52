// Where every user's defaults live: $ROVANI_ALL_USERS_DEFAULTS_DIR when it
// is set and not empty, /var/lib/rovani/defaults otherwise. Header-only
// plain C++, so that the rovani program finds the store's files exactly
// where the library keeps them.
#ifndef ROVANI_PLATFORM_RVALLUSERSDIRECTORY_H
#define ROVANI_PLATFORM_RVALLUSERSDIRECTORY_H

#include <cstdlib>
#include <string>

inline std::string RVAllUsersDefaultsDirectory() {
  const char* configured = std::getenv("ROVANI_ALL_USERS_DEFAULTS_DIR");
  return configured != nullptr && configured[0] != '\0' ? configured : "/var/lib/rovani/defaults";
}

#endif
