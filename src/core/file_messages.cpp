#include "core/file_messages.h"

namespace core {
namespace {

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
    case OpenError::kInUse:
      return "Another program is using it.";
    case OpenError::kCutHeader:
      return "The file is incomplete.";
    case OpenError::kWrongSizes:
    case OpenError::kUnknownKind:
    case OpenError::kWrongSlotSize:
      return "It is not a file of this program, or it is damaged.";
    case OpenError::kFailed:
      return "Reading or writing it failed.";
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

std::string DescribeOpenError(const std::string& path, OpenError error) {
  return error == OpenError::kNone ? "" : CannotOpenText(path, ReasonText(error));
}

std::string AccessDeniedText(const std::string& path) {
  return "Program can't use " + Quoted(path) + ".\r\nAccess has been denied";
}

}  // namespace core
