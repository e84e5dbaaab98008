// What every wait for a server minds: the user's interrupt, and a server that keeps silent.
#pragma once

#include <chrono>

#include "embedded/data/EngineMessages.h"
#include "embedded/data/SqlServer.h"

namespace embedded::engines {

// Throws Error(Cancelled) when the user interrupted.
inline void mindCancelled(const data::ServerOptions& options) {
  if (options.cancelled != nullptr && options.cancelled->load(std::memory_order_relaxed))
    throw Error(ErrorKind::Cancelled, "Interrupted");
}

// Throws Error(Data) when nothing was heard since `heard` for longer than is borne.
inline void mindSilence(const data::ServerOptions& options,
                        std::chrono::steady_clock::time_point heard) {
  const std::chrono::duration<double> silence = std::chrono::steady_clock::now() - heard;
  if (options.timeout <= 0 || silence.count() <= options.timeout) return;
  std::string seconds = std::to_string(options.timeout);
  seconds.resize(seconds.find_last_not_of('0') + 1);
  if (seconds.ends_with('.')) seconds.pop_back();
  data::fail(data::messages::serverSilent, {options.source, seconds});
}

}  // namespace embedded::engines
