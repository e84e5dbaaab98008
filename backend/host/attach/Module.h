// What a procedure module exports: an entry and an attach notification, as C symbols.
//
// A host loads the module file with its own symbols visible to it, looks both names up (they
// stand in the module's description file), calls the attach once, and then the entry once for
// each command. Calls come from one thread at a time.
#pragma once

namespace host {

// Reasons of the attach notification; a module answers every one with success.
inline constexpr unsigned AttachReason = 1;

// Carries out one command. Reports through the host; what a host call throws passes through.
using EntryFunction = void (*)();
// Told that the module was loaded (AttachReason) or of anything else; 1 is success.
using AttachFunction = int (*)(void* module, unsigned reason, void* reserved);

}  // namespace host
