// Looks through a whole record file for what is wrong with it, slot by slot, and changes nothing: no count,
// no lock byte, nothing. Meant for whoever wants to know before a file is trusted or mended. Files that
// RecordFile refuses are looked at as far as their form goes.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/store/record_file.h"

namespace core {

// One thing that is wrong.
struct Finding {
  std::int64_t
      offset;  // where it lies, in bytes from the start of the file; of a record, where its slot begins
  std::string where;  // "file header", "header block", "category block", "slot" or "end of file"
  std::string what;   // in words, without the texts of records and without passwords
};

// Called with each finding; false ends the check.
using FindingReport = std::function<bool(const Finding& finding)>;

// Checks the file at `path`; a sound file has no findings. kNone when it was looked at, else why it could not
// be opened for reading. Edit locks and an open count count as left behind only while nobody has the file
// open. Memory is taken for 16 bytes a record, whatever sizes the file claims.
[[nodiscard]] OpenError CheckFile(const std::string& path, const FindingReport& report);

}  // namespace core
