// What an operation on a data file came to. The numbers are the ones the whole system uses.
#pragma once

#include <cstdint>

namespace core {

enum class Result : std::int32_t {
  kFailed = 0,
  kDone = 1,
  // Done, but the change counter could not be moved: other users see the change with the next one.
  kNotCounted = 2,
  kRefused = 104,  // the user's access level does not allow it; nothing was changed
};

}  // namespace core
