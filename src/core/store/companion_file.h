// The record files that the program keeps by itself beside calendars and settings: the address book and the
// participants of a calendar's events. They are made when they are first needed.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "core/store/record_file.h"

namespace core {

// A file that was opened, or why it was not.
struct CompanionFile {
  std::unique_ptr<RecordFile> file;    // null when there is none
  std::string message;                 // for the user, when not empty; it names the file
  OpenError error = OpenError::kNone;  // why there is none; kNone also when it is of another kind
};

// Opens a file of this kind; one that a program left open when it died is first brought in order.
[[nodiscard]] CompanionFile OpenCompanion(const std::string& path, const RecordKind& kind,
                                          std::string_view password = {});

// The same, but where nothing is at the path a new file is made, whole or not at all. Of several copies that
// find it missing at the same instant, one makes it and all open that one. A new one has the rights of the
// file at `beside`, if one is named, so that whoever shares that one shares both.
[[nodiscard]] CompanionFile OpenOrMakeCompanion(const std::string& path, const RecordKind& kind,
                                                std::string_view password = {},
                                                const std::string& beside = {});

// Opens it for reading only, and changes nothing.
[[nodiscard]] CompanionFile ReadCompanion(const std::string& path, const RecordKind& kind,
                                          std::string_view password = {});

}  // namespace core
