// Waiting for what another process does.
#pragma once

#include <chrono>
#include <thread>

namespace tests {

// Asks again and again until the predicate holds; false when the time is over first.
template <typename Predicate>
bool WaitUntil(Predicate predicate, int timeoutMs) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  while (!predicate()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return true;
}

}  // namespace tests
