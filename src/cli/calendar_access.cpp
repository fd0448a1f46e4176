#include "cli/calendar_access.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "cli/values.h"
#include "core/calendar/calendar_file.h"
#include "core/store/file_messages.h"
#include "core/store/record_scan.h"
#include "platform/system/file.h"

namespace cli {
namespace {

constexpr std::size_t kMostPasswordFile = 4096;

ExitCode CodeOfChange(const core::RecordFile& file, core::CommandResult result) {
  switch (result) {
    case core::CommandResult::kDone:
      return kDone;
    case core::CommandResult::kLocked:
      return kLocked;
    case core::CommandResult::kReader:
    case core::CommandResult::kNoAccess:
    case core::CommandResult::kVanished:
    case core::CommandResult::kConfidential:
    case core::CommandResult::kCancelledEvent:
    case core::CommandResult::kInternetEvent:
    case core::CommandResult::kRepeats:
      return kRefused;
    case core::CommandResult::kFailed:
      return file.LastFault() == core::FileFault::kBusy ? kLocked : kFile;
    default:
      return kFile;
  }
}

std::string MessageOf(const core::RecordFile& file, core::CommandResult result) {
  switch (result) {
    case core::CommandResult::kConfidential:
      return "The record is the owner's alone.";
    case core::CommandResult::kCancelledEvent:
      return "The record is an internet event that was cancelled.";
    case core::CommandResult::kRepeats:
      return "The appointment repeats: change its date with edit.";
    default:
      return core::DescribeResult(file, result);
  }
}

Outcome OpenFailure(const core::RecordFile& file) {
  return FailOn(file.Path(), CodeOf(file.LastOpenError()),
                core::DescribeOpenError(file.Path(), file.LastOpenError()));
}

}  // namespace

Outcome DescribeChange(const core::RecordFile& file, core::CommandResult result) {
  if (result == core::CommandResult::kDone) return {};
  return FailOn(file.Path(), CodeOfChange(file, result), MessageOf(file, result));
}

Outcome FindPassword(const Arguments& arguments, std::string& password) {
  if (arguments.Has("password") && arguments.Has("password-file")) {
    return Fail(kUsage, "--password and --password-file do not go together");
  }
  std::string text;
  if (arguments.Has("password-file")) {
    const std::string& path = arguments.Value("password-file");
    if (!platform::ReadWholeFile(path, kMostPasswordFile, text)) {
      return FailOn(path, kFile, "The password cannot be read.");
    }
    text.resize(std::min(text.size(), text.find_first_of("\r\n")));
  } else if (arguments.Has("password")) {
    text = arguments.Value("password");
  } else if (const char* variable = std::getenv("TEMPOLINE_PASSWORD"); variable != nullptr) {
    text = variable;
  }
  return ParseText("password", text, kMostPasswordFile, true, password);
}

ExitCode CodeOf(core::OpenError error) {
  return error == core::OpenError::kInUse || error == core::OpenError::kBusy ? kLocked : kFile;
}

Outcome FailOn(const std::string& path, ExitCode code, std::string_view message) {
  // The sentences of core begin on a line of their own and name the file in quotes, mostly.
  std::string line;
  for (const char c : message) {
    const bool ends = c == '\r' || c == '\n';
    if (!ends || (!line.empty() && !line.ends_with(' '))) line += ends ? ' ' : c;
  }
  while (line.ends_with(' ')) line.pop_back();
  const bool named = line.find(core::Quoted(path)) != std::string::npos;
  return Fail(code, OneLine(named ? line : path + ": " + line));
}

Outcome OpenToRead(const Arguments& arguments, std::unique_ptr<core::RecordFile>& file) {
  std::string password;
  Outcome found = FindPassword(arguments, password);
  if (!found.IsDone()) return found;
  file = std::make_unique<core::RecordFile>(arguments.file, password, core::OpenMode::kReadOnly);
  if (file->OpenFailed()) return OpenFailure(*file);
  core::HeaderBlock header;
  if (!file->ReadHeaderBlock(header)) {
    return FailOn(arguments.file, kFile, core::DescribeFault(arguments.file, file->LastFault()));
  }
  if (core::LevelOf(password, header) != core::Access::kNone) return {};
  return FailOn(arguments.file, kRefused,
                password.empty() ? "It asks for a password." : "The password is none of the file's.");
}

Outcome OpenCalendarToRead(const Arguments& arguments, std::unique_ptr<core::RecordFile>& file) {
  Outcome opened = OpenToRead(arguments, file);
  if (!opened.IsDone() || file->SlotSize() == core::kCalendarKind.slotSize) return opened;
  return FailOn(arguments.file, kFile, "It is not a calendar.");
}

Outcome OpenCalendarToChange(const Arguments& arguments, std::unique_ptr<core::RecordFile>& file) {
  Outcome readable = OpenCalendarToRead(arguments, file);
  if (!readable.IsDone()) return readable;
  if (file->AccessLevel() == core::Access::kReader) {
    return FailOn(arguments.file, kRefused, "The password allows reading only.");
  }
  const std::string password = file->Password();
  file.reset();  // nobody may have the file open while it is brought in order
  core::OpenedCalendar opened = core::OpenExistingCalendar(arguments.file, password);
  if (opened.file != nullptr) {
    file = std::move(opened.file);
    return {kDone, opened.message.empty() ? "" : FailOn(arguments.file, kDone, opened.message).message};
  }
  return FailOn(arguments.file, CodeOf(opened.error), opened.message);
}

bool MaySee(const core::RecordHeader& record, core::Access level) {
  return record.inUse == 1 && (record.confidential != 1 || level == core::Access::kOwner);
}

Outcome FindRecord(const Arguments& arguments, const core::RecordFile& file, core::RecordKey& key) {
  std::int32_t chosen = 0;
  if (arguments.Has("offset")) {
    Outcome parsed = ParseOffset("offset", arguments.Value("offset"), chosen);
    if (!parsed.IsDone()) return parsed;
  }
  std::vector<std::int32_t> found;
  const core::ScanResult scanned = core::ScanRecords(file, [&](const char* slot, std::int32_t at) {
    const auto& header = *reinterpret_cast<const core::RecordHeader*>(slot);
    if (header.recordId == key.id && (chosen == 0 || chosen == at)) found.push_back(at);
  });
  const std::string name = FormatId(key.id);
  if (found.size() == 1) {
    key.offset = found.front();
    return {};
  }
  if (found.empty()) {
    if (scanned != core::ScanResult::kAll)
      return FailOn(arguments.file, kFile, "Parts of it cannot be read.");
    return FailOn(arguments.file, kRefused,
                  "There is no record " + name + (chosen == 0 ? "." : " at " + std::to_string(chosen) + "."));
  }
  std::string offsets;
  for (const std::int32_t at : found) offsets.append(" ").append(std::to_string(at));
  return FailOn(arguments.file, kRefused,
                "Several records are " + name + "; --offset chooses one of" + offsets + ".");
}

}  // namespace cli
