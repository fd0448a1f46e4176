// What the user works on, without a window: the open calendar, the day and the category that are shown, what
// was cut or copied, and what was deleted last.
// Views, the commands on appointments and those on files borrow the session and do not know each other:
// whoever changes something of it changes it for all, and every listener is told.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/calendar/appointment.h"
#include "core/calendar/record_holder.h"
#include "core/date_time.h"
#include "core/store/compaction.h"
#include "core/store/file_watch.h"
#include "core/store/record_file.h"

namespace core {

enum class SessionChange {
  kFile,     // another file is open, or none is; what was read from the old one is no longer shown
  kDate,     // a day was chosen, perhaps the same one again
  kFilter,   // another category was chosen
  kRecords,  // this program added, changed or deleted records; those of others are the file watch's news
  kBin,      // the last deleted appointment is another one, or none
  kRights,   // the file's passwords were changed: this user may see more, or less
  kTrouble,  // the open file is no longer the one at its path, the password opens it no more, or it was
             // opened as a Reader's and may be written by now; LookAfterFile is to be called when nothing
             // else is going on, and is asked for again until it was
};

class SessionListener {
 public:
  virtual void OnSessionChange(SessionChange change) = 0;

 protected:
  ~SessionListener() = default;
};

class CalendarSession final : private FileWatcher {
 public:
  static constexpr std::size_t kFilterSize = sizeof(RecordHeader::category);

  CalendarSession();
  ~CalendarSession();  // closes the file, telling nobody
  CalendarSession(const CalendarSession&) = delete;
  CalendarSession& operator=(const CalendarSession&) = delete;

  // A listener stays the caller's and must be removed before it ends. It may change the session while it is
  // told, but not add or remove listeners.
  void AddListener(SessionListener& listener) { listeners.push_back(&listener); }
  void RemoveListener(SessionListener& listener) { std::erase(listeners, &listener); }
  // Who follows a compaction that opening a file makes necessary.
  void SetCompactionWatcher(CompactionWatcher watcher) { compactionWatcher = std::move(watcher); }

  // The open calendar; null when there is none. Good until the next change of the file.
  RecordFile* File() const { return file.get(); }
  // Opens a calendar in place of the open one, as OpenCalendarFile does; when that fails the open one stays.
  // `message` (UTF-8), if not empty, is for the user: it names the file and what is wrong, or what is to be
  // known about it all the same.
  [[nodiscard]] bool Open(const std::string& path, const std::string& password, bool withExamples,
                          std::string& message);
  // Takes an open file, or null for none. The old one is closed when every listener has let go of it. With
  // the first file the day becomes today.
  void Take(std::unique_ptr<RecordFile> newFile);

  // Looks whether the path still names the open file, and the password still opens it. A calendar that took
  // its place is opened in place of it with the same password; one that was open as a Reader's and may be
  // written by now is opened anew. Answers what the user is to know and was not told yet; empty for nothing.
  // Nothing may hold on to the file, an edit lock for example.
  [[nodiscard]] std::string LookAfterFile();

  const Date& CurrentDate() const { return date; }
  void SetDate(const Date& newDate);

  // The category shown, at most kFilterSize bytes; empty for all.
  const std::string& Filter() const { return filter; }
  // Nothing happens when it is the one there is.
  void SetFilter(std::string_view category);

  // To be told by whoever has changed records of the file.
  void RecordsChanged() { Tell(SessionChange::kRecords); }

  // One appointment each; they outlive the file it came from. The clipboard's tag is the command that filled
  // it.
  const RecordHolder& Clipboard() const { return clipboard; }
  const RecordHolder& Bin() const { return bin; }
  void PutOnClipboard(const Appointment& record, unsigned command);
  void PutInBin(const Appointment& record);
  void EmptyBin();

 private:
  const RecordFile* WatchedFile() const override { return file.get(); }
  void OnLook(const FileLook& look) override;
  bool LostAccess();
  std::string OpenForWriting();
  std::string OpenReplacement();
  void Tell(SessionChange change);

  std::vector<SessionListener*> listeners;  // borrowed
  CompactionWatcher compactionWatcher;
  std::unique_ptr<RecordFile> file;
  bool hadFile = false;
  Date date = kFirstDate;
  std::string filter;
  RecordHolder clipboard;
  RecordHolder bin;

  Access level = Access::kNone;  // when it was last asked for
  platform::FileAtPath pathState = platform::FileAtPath::kSame;
  std::string told;  // of a trouble that lasts
  RetryPause pause;  // before it is looked after again
};

}  // namespace core
