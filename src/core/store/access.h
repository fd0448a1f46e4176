// What a password allows in a record file.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/store/record_format.h"

namespace core {

enum class Access : std::int32_t {
  kNone = -1,        // nothing: the password is none of the file's, perhaps no longer
  kOwner = 102,      // everything
  kAssistant = 103,  // adds and changes records, but neither sees nor changes confidential ones
  kReader = 104,     // sees records that are not confidential
};

// What a password allows in a file with this header block: the first of the three passwords that equals it
// decides.
[[nodiscard]] Access LevelOf(std::string_view password, const HeaderBlock& header);

inline bool AllowsChanges(Access level) {
  return level == Access::kOwner || level == Access::kAssistant;
}

}  // namespace core
