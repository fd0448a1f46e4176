#include "core/store/opening.h"

namespace core {

OpenError FromFileResult(platform::FileResult result) {
  switch (result) {
    case platform::FileResult::kDone:
      return OpenError::kNone;
    case platform::FileResult::kMissing:
      return OpenError::kMissing;
    case platform::FileResult::kDenied:
      return OpenError::kDenied;
    case platform::FileResult::kIsFolder:
      return OpenError::kIsFolder;
    case platform::FileResult::kInUse:
      return OpenError::kInUse;
    case platform::FileResult::kNoRegularFile:
      return OpenError::kNoRegularFile;
    case platform::FileResult::kDiskFull:
      return OpenError::kDiskFull;
    case platform::FileResult::kExists:
    case platform::FileResult::kFailed:
      return OpenError::kFailed;
  }
  return OpenError::kFailed;
}

OpenError FromFault(FileFault fault) {
  switch (fault) {
    case FileFault::kNone:
      return OpenError::kNone;
    case FileFault::kBusy:
      return OpenError::kBusy;
    case FileFault::kGone:
      return OpenError::kMissing;
    case FileFault::kReplaced:
      return OpenError::kInUse;
    case FileFault::kReadFailed:
      return OpenError::kReadFailed;
    case FileFault::kWriteFailed:
      return OpenError::kWriteFailed;
    case FileFault::kDiskFull:
      return OpenError::kDiskFull;
    default:
      return OpenError::kFailed;
  }
}

OpenError CheckRecordFile(const platform::File& file, HeaderBlock& header, std::uint32_t& slotSize) {
  const std::int64_t size = file.Size();
  if (size < 0) return OpenError::kReadFailed;
  if (size < std::int64_t{sizeof(FileHeader)}) return OpenError::kCutHeader;
  FileHeader sizes;
  if (file.ReadAt(&sizes, sizeof sizes, 0) != std::int64_t{sizeof sizes}) return OpenError::kReadFailed;
  if (sizes.headerBlockSize != sizeof(HeaderBlock) || sizes.categoryBlockSize != sizeof(CategoryBlock)) {
    return OpenError::kWrongSizes;
  }
  if (size < kFirstSlotOffset) return OpenError::kCutHeader;
  if (file.ReadAt(&header, sizeof header, kHeaderBlockOffset) != std::int64_t{sizeof header}) {
    return OpenError::kReadFailed;
  }
  const RecordKind* kind = FindKind(header);
  if (kind == nullptr) return OpenError::kUnknownKind;
  if (kind->slotSize != sizes.slotSize) return OpenError::kWrongSlotSize;
  slotSize = sizes.slotSize;
  return OpenError::kNone;
}

}  // namespace core
