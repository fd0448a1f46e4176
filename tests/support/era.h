// Which era of the calendar a test is in.
#pragma once

#include "core/date_time.h"

namespace tests {

// Moves the process to an era for its own lifetime.
class Era {
 public:
  explicit Era(int lastYear) : before(core::LastYear()) { core::SetLastYear(lastYear); }
  ~Era() { core::SetLastYear(before); }
  Era(const Era&) = delete;
  Era& operator=(const Era&) = delete;

 private:
  const int before;
};

}  // namespace tests
