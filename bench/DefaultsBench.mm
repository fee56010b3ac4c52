// The cost of a set in each defaults store, and how it grows with the
// store: a current user's set (written to its journal at once, durable)
// against an all-users set (pending in the process until synchronised), and
// 10,000 current-user sets into one store against 1,000.
//
// The program never touches the real stores: before anything else it
// starts itself again with GNUstep's user defaults and the all-users store
// in a scratch directory of its own (GNUstep reads its configuration once,
// at start-up), removed when it ends.
#import <Foundation/Foundation.h>

#include <benchmark/benchmark.h>

#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include <Rovani/Rovani.h>

#include "BenchRatios.h"

namespace {

std::string& ScratchDirectory() {
  static std::string dir;
  return dir;
}

void RemoveScratch() {
  if (ScratchDirectory().empty()) return;
  std::string command = "rm -rf '" + ScratchDirectory() + "'";
  if (std::system(command.c_str()) != 0) std::fprintf(stderr, "left %s\n", command.c_str());
}

__attribute__((constructor)) void UseScratchStores(int argc, char** argv, char**) {
  (void)argc;
  const char* given = getenv("ROVANI_BENCH_DEFAULTS_DIR");
  if (given != nullptr) {
    ScratchDirectory() = given;
    atexit(RemoveScratch);
    return;
  }
  char pattern[] = "/tmp/rovani-bench-defaults-XXXXXX";
  if (mkdtemp(pattern) == nullptr) return;
  std::string dir = pattern;
  std::string config = dir + "/GNUstep.conf";
  if (FILE* out = std::fopen(config.c_str(), "w")) {
    std::fprintf(out, "GNUSTEP_USER_DEFAULTS_DIR=%s/user\n", dir.c_str());
    std::fclose(out);
  }
  setenv("ROVANI_BENCH_DEFAULTS_DIR", dir.c_str(), 1);
  setenv("GNUSTEP_CONFIG_FILE", config.c_str(), 1);
  setenv("ROVANI_ALL_USERS_DEFAULTS_DIR", (dir + "/all").c_str(), 1);
  execv("/proc/self/exe", argv);
}

// A store no run has used: each run starts empty and grows by one key a set.
RVString FreshApplication(const char* kind) {
  static int runs = 0;
  return RVString(("org.rovani.bench." + std::string(kind) + std::to_string(++runs)).c_str());
}

void SetKeys(benchmark::State& state, bool allUsers) {
  RVUserDefaults defaults(FreshApplication(allUsers ? "all" : "user"), allUsers);
  RVString value("a value of some length, as settings have");
  int i = 0;
  for (auto _ : state) {
    RVAutoreleasePool pool;
    defaults.SetObjectForKey(value, RVString(("key" + std::to_string(i++)).c_str()));
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_DefaultsAllUsersSet(benchmark::State& state) { SetKeys(state, true); }
void BM_DefaultsCurrentUserSet(benchmark::State& state) { SetKeys(state, false); }

BENCHMARK(BM_DefaultsAllUsersSet)->Arg(10000)->Iterations(10000)->Repetitions(9);
BENCHMARK(BM_DefaultsCurrentUserSet)->Arg(1000)->Iterations(1000)->Repetitions(9);
BENCHMARK(BM_DefaultsCurrentUserSet)->Arg(10000)->Iterations(10000)->Repetitions(9);

ROVANI_BENCH_RATIO("current-user set / all-users set (10,000 keys)",
                   "BM_DefaultsCurrentUserSet/10000/iterations:10000/repeats:9",
                   "BM_DefaultsAllUsersSet/10000/iterations:10000/repeats:9", 4.0);
ROVANI_BENCH_RATIO("current-user set at 10,000 keys / at 1,000",
                   "BM_DefaultsCurrentUserSet/10000/iterations:10000/repeats:9",
                   "BM_DefaultsCurrentUserSet/1000/iterations:1000/repeats:9", 2.0);

}  // namespace
