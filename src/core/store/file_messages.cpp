#include "core/store/file_messages.h"

#include "resources/strings.h"
#include "resources/text_ids.h"

namespace core {
namespace {

constexpr const char* kHeldText = "Another program is holding it. Try again in a moment.";
constexpr const char* kDiskFullText = "The disk is full.";

const char* ReasonText(OpenError error) {
  switch (error) {
    case OpenError::kNone:
      return "";
    case OpenError::kMissing:
      return "The file does not exist.";
    case OpenError::kDenied:
      return "Access has been denied.";
    case OpenError::kIsFolder:
      return "It is a folder.";
    case OpenError::kNoRegularFile:
      return "It is not a regular file.";
    case OpenError::kInUse:
      return "Another program is using it.";
    case OpenError::kCutHeader:
      return "The file is incomplete.";
    case OpenError::kWrongSizes:
    case OpenError::kUnknownKind:
    case OpenError::kWrongSlotSize:
      return "It is not a file of this program, or it is damaged.";
    case OpenError::kBusy:
      return kHeldText;
    case OpenError::kReadFailed:
      return "Reading it failed.";
    case OpenError::kWriteFailed:
      return "Writing to it failed.";
    case OpenError::kDiskFull:
      return kDiskFullText;
    case OpenError::kFailed:
      return "The system reported an error.";
  }
  return "";
}

}  // namespace

std::string Quoted(const std::string& path) {
  return "\"" + path + "\"";
}

std::string CannotOpenText(const std::string& path, const std::string& reason) {
  return "Can't open " + Quoted(path) + ".\r\n" + reason;
}

std::string DescribeFileResult(platform::FileResult why) {
  switch (why) {
    case platform::FileResult::kDiskFull:
      return kDiskFullText;
    case platform::FileResult::kDenied:
      return ReasonText(OpenError::kDenied);
    case platform::FileResult::kMissing:
      return "The folder does not exist.";
    case platform::FileResult::kIsFolder:
      return ReasonText(OpenError::kIsFolder);
    case platform::FileResult::kNoRegularFile:
      return ReasonText(OpenError::kNoRegularFile);
    case platform::FileResult::kInUse:
      return ReasonText(OpenError::kInUse);
    default:
      return "";
  }
}

std::string CannotWriteText(const std::string& path, platform::FileResult why) {
  return "Can't write to " + Quoted(path) + ".\r\n" + DescribeFileResult(why);
}

std::string CannotCreateText(platform::FileResult why) {
  const std::string reason = DescribeFileResult(why);
  return resources::FindText(text::kCannotCreateFile) + (reason.empty() ? "" : "\r\n" + reason);
}

std::string DescribeOpenError(const std::string& path, OpenError error) {
  return error == OpenError::kNone ? "" : CannotOpenText(path, ReasonText(error));
}

std::string OpenAsReaderText(const std::string& path) {
  return "You may read " + Quoted(path) + " but not write it, so it is open as for a Reader.";
}

std::string DescribeFault(const std::string& path, FileFault fault) {
  std::string cannotWrite = "Can't write to " + Quoted(path) + ".";
  switch (fault) {
    case FileFault::kNone:
    case FileFault::kNotLocked:
      return "";
    case FileFault::kClosed:
      return Quoted(path) + " is not open.";
    case FileFault::kNoAccess:
      return "The password of " + Quoted(path) +
             " has been changed.\r\nOpen the file again with the new one.";
    case FileFault::kReader:
      return resources::FindText(text::kNoPermission);
    case FileFault::kLocked:
      return resources::FindText(text::kBeingEdited);
    case FileFault::kDeleted:
      return "Record is deleted by other user.";
    case FileFault::kNoPlace:
      return cannotWrite + "\r\nThere is no room in it for another record. Compact it and try again.";
    case FileFault::kDiskFull:
      return cannotWrite + "\r\n" + kDiskFullText;
    case FileFault::kBusy:
      return cannotWrite + "\r\n" + kHeldText;
    case FileFault::kReplaced:
      return Quoted(path) + " has been replaced by another file.";
    case FileFault::kGone:
      return Quoted(path) + " has been moved or deleted.";
    case FileFault::kChanged:
      return Quoted(path) + " has just been changed by others. Try again.";
    case FileFault::kReadFailed:
      return "Can't read " + Quoted(path) + ".";
    case FileFault::kWriteFailed:
      return cannotWrite;
  }
  return "";
}

std::string DescribeResult(const RecordFile& file, CommandResult result) {
  const std::string& path = file.Path();
  const std::string cannotWrite = "Can't write to " + Quoted(path) + ".\r\n";
  switch (result) {
    case CommandResult::kDone:
    case CommandResult::kConfidential:
    case CommandResult::kCancelledEvent:
    case CommandResult::kInternetEvent:
      return "";
    case CommandResult::kNotCounted:
      return cannotWrite + "The change is made, but other users may not see it before the next one.";
    case CommandResult::kMadeLockLeft:
      return cannotWrite +
             "The change is made, but the entry stays locked until everybody has closed the file.";
    case CommandResult::kLockLeft:
      return cannotWrite +
             "Nothing was changed, but the entry stays locked until everybody has closed the file.";
    case CommandResult::kNotFlushed:
      return "The disk did not confirm what was written to " + Quoted(path) +
             ".\r\nThe change is made, but may be lost if the computer fails.";
    case CommandResult::kReader:
      return DescribeFault(path, FileFault::kReader);
    case CommandResult::kNoAccess:
      return DescribeFault(path, FileFault::kNoAccess);
    case CommandResult::kLocked:
      return DescribeFault(path, FileFault::kLocked);
    case CommandResult::kVanished:
      return DescribeFault(path, FileFault::kDeleted);
    case CommandResult::kRepeats:
      return resources::FindText(text::kRepeatNotDragged);
    case CommandResult::kFailed: {
      const std::string reason = DescribeFault(path, file.LastFault());
      return reason.empty() ? "Can't read or write " + Quoted(path) + "." : reason;
    }
  }
  return "";
}

std::string AccessDeniedText(const std::string& path) {
  return "Program can't use " + Quoted(path) + ".\r\nAccess has been denied";
}

}  // namespace core
