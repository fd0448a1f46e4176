#include "core/calendar/calendar_session.h"

#include <utility>

#include "core/calendar/calendar_file.h"
#include "core/store/file_messages.h"

namespace core {
namespace {

using platform::FileAtPath;

bool IsLost(FileAtPath state) {
  return state == FileAtPath::kReplaced || state == FileAtPath::kGone;
}

// Why the calendar at a path cannot be opened with a password; empty when it can. To look writes nothing.
std::string WhyNotOpened(const std::string& path, const std::string& password) {
  const RecordFile probe(path, password, OpenMode::kReadOnly);
  if (probe.OpenFailed()) return DescribeOpenError(path, probe.LastOpenError());
  if (probe.SlotSize() != kCalendarKind.slotSize) return CannotOpenText(path, "It is not a calendar.");
  if (probe.AccessLevel() == Access::kNone) return CannotOpenText(path, "It has another password.");
  return "";
}

}  // namespace

CalendarSession::CalendarSession() {
  FileWatch::OfProcess().Add(*this);
}

CalendarSession::~CalendarSession() {
  FileWatch::OfProcess().Remove(*this);
  if (file != nullptr) file->Close();
}

bool CalendarSession::Open(const std::string& path, const std::string& password, bool withExamples,
                           std::string& message) {
  OpenedCalendar opened = OpenCalendarFile(path, password, withExamples, compactionWatcher);
  message = std::move(opened.message);
  if (opened.file == nullptr) return false;
  Take(std::move(opened.file));
  return true;
}

void CalendarSession::Take(std::unique_ptr<RecordFile> newFile) {
  const std::unique_ptr<RecordFile> old = std::exchange(file, std::move(newFile));
  if (file != nullptr) {
    level = file->AccessLevel();
    if (!std::exchange(hadFile, true)) date = Today();
  }
  pathState = FileAtPath::kSame;
  told.clear();
  pause.Reset();
  Tell(SessionChange::kFile);
  if (old != nullptr) old->Close();
}

void CalendarSession::SetDate(const Date& newDate) {
  date = newDate;
  Tell(SessionChange::kDate);
}

void CalendarSession::SetFilter(std::string_view category) {
  const std::string_view kept = category.substr(0, kFilterSize);
  if (kept == filter) return;
  filter = kept;
  Tell(SessionChange::kFilter);
}

void CalendarSession::Tell(SessionChange change) {
  for (SessionListener* listener : listeners) listener->OnSessionChange(change);
}

void CalendarSession::PutOnClipboard(const Appointment& record, unsigned command) {
  clipboard.Put(&record, sizeof record, command);
}

void CalendarSession::PutInBin(const Appointment& record) {
  bin.Put(&record, sizeof record, 0);
  Tell(SessionChange::kBin);
}

void CalendarSession::EmptyBin() {
  bin.Empty();
  Tell(SessionChange::kBin);
}

// ---- What happens to the open file ----

void CalendarSession::OnLook(const FileLook& look) {
  const FileAtPath before = std::exchange(pathState, look.atPath);
  const bool lost = LostAccess();
  if (!lost && !IsLost(pathState)) {
    told.clear();
    if (!file->IsOnlyRead()) {
      pause.Reset();
    } else if (pause.IsOver() && file->MayBeWritten()) {
      Tell(SessionChange::kTrouble);
    }
    return;
  }
  // Who replaces a file may take it away first: what holds at two looks is no mere step on the way.
  if (pause.IsOver() && (lost || before == pathState)) Tell(SessionChange::kTrouble);
}

// Whether the password allows nothing any more. A change of any other kind is told as well.
bool CalendarSession::LostAccess() {
  HeaderBlock header;
  if (file->ReadHeaderBlock(header)) {
    const Access now = file->LevelIn(header);
    if (std::exchange(level, now) != now) Tell(SessionChange::kRights);
  }
  return level == Access::kNone;
}

std::string CalendarSession::LookAfterFile() {
  if (file == nullptr) return "";
  std::string news;
  switch (file->PathState()) {
    case FileAtPath::kReplaced:
      news = OpenReplacement();
      break;
    case FileAtPath::kGone:
      news = DescribeFault(file->Path(), FileFault::kGone) +
             "\r\nNothing can be saved until it is back. What is shown can be saved under another name.";
      break;
    default:
      if (LostAccess()) {
        news = DescribeFault(file->Path(), FileFault::kNoAccess);
      } else if (file->IsOnlyRead() && file->MayBeWritten()) {
        return OpenForWriting();
      }
      break;
  }
  if (!IsLost(file->PathState()) && level != Access::kNone) {
    told.clear();
    pause.Reset();
    return news;
  }
  pause.Lengthen();
  return std::exchange(told, news) == news ? "" : news;
}

// A file server may say that writing is allowed and refuse it all the same: then the file that is open stays.
std::string CalendarSession::OpenForWriting() {
  OpenedCalendar opened = OpenExistingCalendar(file->Path(), file->Password(), compactionWatcher);
  if (opened.file == nullptr) {
    pause.Lengthen();
    return "";
  }
  Take(std::move(opened.file));
  return opened.message;
}

std::string CalendarSession::OpenReplacement() {
  const std::string path = file->Path();
  const std::string password = file->Password();
  const std::string replaced = DescribeFault(path, FileFault::kReplaced) + "\r\n";
  const std::string opened = Quoted(path) + " has been replaced by another file, which is open now.";
  const std::string reason = WhyNotOpened(path, password);
  if (!reason.empty()) return replaced + reason;
  std::string message;
  if (!Open(path, password, false, message)) return replaced + message;
  return message.empty() ? opened : opened + "\r\n" + message;
}

}  // namespace core
