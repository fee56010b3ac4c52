// The bridge between the current user's store and GNUstep's standard user
// defaults. Private: never installed.
//
// Only the running program's own application (its main bundle's
// identifier, else its process name) is published to the standard
// defaults, which every part of the process shares: its current user's
// values, as the store holds them now, are a volatile domain,
// "Rovani/<application id>", searched right after the process's
// arguments. GNUstep's persistent domain for the process name is taken out
// of the search when it is that application: the store has read (and
// takes over) its file, and a key removed from the store must not show
// through from it. Another application's values are never published: they
// are read from its store directly.
#ifndef ROVANI_PLATFORM_RVSTANDARDDEFAULTS_H
#define ROVANI_PLATFORM_RVSTANDARDDEFAULTS_H

#import <Foundation/Foundation.h>

// Whether application is the running program's own.
bool RVIsOwnApplication(NSString* application);

// The value for key (+1, or nil) as the standard defaults resolve it for
// the running program: its arguments, its current user's values, then the
// rest of GNUstep's search list (the global and registration domains).
// For another application its own current user's values stand in the
// second place, read without publishing anything.
id RVCopyStandardDefaultsValue(NSString* application, NSString* key);

#endif
