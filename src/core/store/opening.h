// What is looked at before a file is taken for a record file.
#pragma once

#include <cstdint>

#include "core/store/file_fault.h"
#include "core/store/record_format.h"
#include "platform/system/file.h"

namespace core {

// Why a file was not opened.
enum class OpenError {
  kNone,
  kMissing,
  kDenied,  // it may not be read and written
  kIsFolder,
  kNoRegularFile,  // it is a pipe, a socket or a device
  kInUse,          // another process holds it for itself
  kCutHeader,      // it ends before its first slot could begin
  kWrongSizes,     // its header or category block is not of the known size
  kUnknownKind,    // it is no kind of file the program knows
  kWrongSlotSize,  // its slots are not of its kind's size
  kBusy,           // another process kept its guard for longer than anybody waits
  kReadFailed,
  kWriteFailed,  // it could not be counted in the file that it is open
  kDiskFull,     // likewise
  kFailed,       // the system says no more
};

[[nodiscard]] OpenError FromFileResult(platform::FileResult result);
[[nodiscard]] OpenError FromFault(FileFault fault);

// Whether an open file is a record file that may be worked on; then answers its header block and the bytes of
// its slots. The sizes in it are compared with those of its kind before anything is read or allocated by
// them.
[[nodiscard]] OpenError CheckRecordFile(const platform::File& file, HeaderBlock& header,
                                        std::uint32_t& slotSize);

}  // namespace core
