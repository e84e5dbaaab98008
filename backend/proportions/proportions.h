// The module's door: the entry that carries out one command, and the attach notification.
//
// Both are C symbols, and the only ones that the module exports.
#pragma once

#include <array>
#include <cstddef>

#define PROPORTIONS_EXPORT __attribute__((visibility("default")))

// Carries out the current command: parses it, writes the notes, reads the data twice and writes the
// tables. Everything it reports goes through the host. What a host call throws passes through;
// the analysis objects and the case iterator of that run are then left behind.
extern "C" PROPORTIONS_EXPORT void PROPORTI();

// Records the module handle and the host's common areas when `reason` is the attach; answers every
// other notification with nothing but success. Returns 1.
extern "C" PROPORTIONS_EXPORT int PROPORTI_attach(void* module, unsigned reason, void* reserved);

// What the attach recorded. Nothing in the procedure reads it: it is the load-time contract of
// hosts with every procedure module.
struct PRPAttachRecord {
  static constexpr std::size_t NAreas = 22;

  void* fpModule = nullptr;
  // In the order in which they were fetched.
  std::array<void*, NAreas> fvpAreas{};
};
const PRPAttachRecord& PRPAttached();
