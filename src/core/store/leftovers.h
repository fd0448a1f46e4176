// What lies beside a record file for its compaction's sake: bytes that a compaction would otherwise throw
// away are kept there, and what compactions that died have left is tidied away when nothing in it is the only
// copy of anything.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/system/file.h"

namespace core {

// Seconds after which an unfinished copy is nobody's work any more, where no lock can tell.
inline constexpr std::int64_t kLeftoverAge = 3600;

// Puts a text below what a message says already.
void AddMessage(std::string& message, const std::string& text);

// The first name path.1, path.2 ... that nothing has and `take` can give to something. Empty when it can give
// none.
std::string KeepUnderNewName(const std::string& path, const std::function<bool(const std::string&)>& take);

// A record file that is about to be written to `target`, which the caller holds.
struct LeftoverSearch {
  const platform::File& source;  // what will be at the target
  std::uint32_t slotSize;
  const std::string& target;
  std::int64_t now;  // in seconds since 1970, by the clock that dates the files there
};

// Makes way at the path of the temporary file: what a dead compaction left there is removed, or renamed if it
// may be all that somebody has, which the message then tells. False when somebody is at work on it, or when
// it cannot be had out of the way.
bool MakeWay(const LeftoverSearch& search, const std::string& tempPath, std::string& message);

// Does the same to leftovers under other names that no lock protects: to those that are old enough.
void TidyLeftovers(const LeftoverSearch& search, std::string& message);

}  // namespace core
