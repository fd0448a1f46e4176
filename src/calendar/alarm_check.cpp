#include "calendar/alarm_check.h"

#include <algorithm>

#include "calendar/dialogs/alarm_dialog.h"
#include "core/store/file_messages.h"
#include "core/store/file_watch.h"
#include "framework/notices.h"
#include "platform/desktop/menu.h"

using core::CommandResult;

namespace {

constexpr int kMostSkipped = 4;  // eight minutes

constexpr const char* kRingsAgain = "The alarm stays as it was and will ring again.";

// What another copy or the user's rights keep from ringing, with a file that answers.
bool IsPassedOver(CommandResult result) {
  return result == CommandResult::kLocked || result == CommandResult::kVanished;
}

}  // namespace

void AlarmCheck::Run() {
  if (session.File() == nullptr || !core::RefreshEnabled() || GetCapture() != nullptr || IsMenuOpen()) return;
  if (checksToSkip > 0) {
    --checksToSkip;
    return;
  }
  const CommandScope scope(gate, CommandKind::kOfProgram);
  if (!scope.Entered()) return;
  const bool onlyRead = session.File()->IsOnlyRead();
  const CommandResult allowed = onlyRead ? CommandResult::kDone : core::CheckMayChange(*session.File());
  const core::AlarmMoment now = core::AlarmNow();
  core::AlarmList alarms;
  bool answers = allowed != CommandResult::kFailed;
  if (allowed == CommandResult::kDone) answers = core::ListAlarms(*session.File(), now, alarms);
  if (onlyRead) {
    RingUnwritten(alarms, now);
    alarms.due.clear();
  }
  for (const core::RecordKey& key : alarms.due) {
    const CommandResult result = RingIfDue(key, now);
    answers = result == CommandResult::kDone || IsPassedOver(result);
    if (!IsPassedOver(result)) break;
  }
  if (answers) {
    nextSkip = 1;
  } else {
    checksToSkip = nextSkip;
    nextSkip = std::min(nextSkip * 2, kMostSkipped);
  }
}

// By the time it is locked the record may be gone, or another one: what it holds then counts.
CommandResult AlarmCheck::RingIfDue(const core::RecordKey& key, const core::AlarmMoment& now) {
  core::EditLock lock(*session.File());
  core::Appointment record;
  CommandResult result = lock.Take(key);
  if (result == CommandResult::kDone) result = lock.Read(&record);
  if (result != CommandResult::kDone) return result;
  const bool shown = record.header.confidential == 0 || session.File()->AccessLevel() == core::Access::kOwner;
  if (!shown || !core::IsDue(record, now)) return CommandResult::kVanished;
  Ring(record, [&](bool disable) { return Store(lock, disable); });
  return CommandResult::kDone;
}

void AlarmCheck::RingUnwritten(const core::AlarmList& alarms, const core::AlarmMoment& now) {
  for (const core::RecordKey& key : alarms.due) {
    core::Appointment record;
    if (!session.File()->ReadRecord(&record, key) || !rung.IsDue(record, now)) continue;
    Ring(record, [&](bool disable) {
      rung.Note(record, disable);
      return std::string();
    });
    return;
  }
}

void AlarmCheck::Ring(const core::Appointment& record,
                      const std::function<std::string(bool disable)>& store) {
  BringToFront(frame.Handle());
  AlarmDialog dialog(record);
  if (!dialog.Run(&frame)) return;  // it rings again when the program is started next
  const std::string news = store(dialog.WantsNoMore());
  // Shown as a change of another copy's would be: what the user has selected stays selected.
  core::FileWatch::OfProcess().Look();
  for (const std::string& told : {news, dialog.ToneFault()}) {
    if (!told.empty()) ShowInfo(&frame, told);
  }
  if (dialog.WantsStart()) StartTarget(&frame, record);
}

// Writes what the record holds after its alarm, as it is by now. The lock is given back before anything is
// told: who reads a message keeps the record from nobody.
std::string AlarmCheck::Store(core::EditLock& lock, bool disable) {
  core::Appointment record;
  CommandResult result = lock.Read(&record);
  if (result == CommandResult::kDone) {
    core::AfterAlarm(record, disable);
    result = lock.Write(&record);
    if (IsMade(result)) return core::DescribeResult(lock.File(), lock.Finish(result));
  }
  std::string news = core::DescribeResult(lock.File(), result);
  // One that cannot be given back the file remembers.
  static_cast<void>(lock.Release());
  if (result == CommandResult::kVanished) return "";  // and its alarm with it
  // A file that was replaced gives way to the one at its path; nothing may hold on to the old one then.
  const std::string looked = result == CommandResult::kFailed ? session.LookAfterFile() : "";
  if (!looked.empty()) news = looked;
  return news + "\r\n" + kRingsAgain;
}
