// What a host must keep visible so that a module can bind to it.
//
// A module is compiled against these headers alone and leaves every class and function declared
// in them undefined. Whoever loads the module - a program or a library - defines them all and
// exports them under their own names, built by the same compiler ABI.
#pragma once

// Marks a class or a function that the host defines and the module calls.
#define HOST_API __attribute__((visibility("default")))
