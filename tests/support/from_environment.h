// Numbers by which who runs a test makes it longer.
#pragma once

#include <cstdlib>

namespace tests {

inline int FromEnvironment(const char* name, int otherwise) {
  const char* value = std::getenv(name);
  return value == nullptr ? otherwise : std::atoi(value);
}

}  // namespace tests
