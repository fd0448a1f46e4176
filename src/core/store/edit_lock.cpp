#include "core/store/edit_lock.h"

#include <utility>

namespace core {
namespace {

CommandResult ResultOf(FileFault fault) {
  switch (fault) {
    case FileFault::kReader:
      return CommandResult::kReader;
    case FileFault::kNoAccess:
      return CommandResult::kNoAccess;
    case FileFault::kLocked:
      return CommandResult::kLocked;
    case FileFault::kDeleted:
      return CommandResult::kVanished;
    default:
      return CommandResult::kFailed;
  }
}

}  // namespace

CommandResult FromFile(const RecordFile& file, Result result) {
  if (result == Result::kDone) return CommandResult::kDone;
  return result == Result::kNotCounted ? CommandResult::kNotCounted : ResultOf(file.LastFault());
}

CommandResult CheckMayChange(const RecordFile& file) {
  HeaderBlock header;
  if (!file.ReadHeaderBlock(header)) return CommandResult::kFailed;
  const Access level = file.LevelIn(header);
  if (AllowsChanges(level)) return CommandResult::kDone;
  return level == Access::kReader ? CommandResult::kReader : CommandResult::kNoAccess;
}

CommandResult Flush(RecordFile& file, CommandResult result) {
  return file.Flush() ? result : WorseOf(result, CommandResult::kNotFlushed);
}

EditLock::~EditLock() {
  // The file remembers a lock that stays behind; who has to tell of it has asked before.
  static_cast<void>(Release());
}

CommandResult EditLock::Take(const RecordKey& wanted) {
  const CommandResult allowed = CheckMayChange(file);
  if (allowed != CommandResult::kDone) return allowed;
  if (!file.LockRecord(wanted)) return ResultOf(file.LastFault());
  key = wanted;
  return CommandResult::kDone;
}

CommandResult EditLock::Read(void* slot) const {
  return file.ReadRecord(slot, key) ? CommandResult::kDone : ResultOf(file.LastFault());
}

CommandResult EditLock::Write(const void* slot) {
  return FromFile(file, file.WriteRecord(slot, key));
}

CommandResult EditLock::Delete() {
  const CommandResult deleted = FromFile(file, file.DeleteRecord(key));
  // What has no id cannot be told from what somebody else may put into the slot next, and lock.
  if (IsMade(deleted) && key.id == 0) {
    key = {};
    SetRefreshEnabled(true);
  }
  return deleted;
}

CommandResult EditLock::Release() {
  if (!IsHeld() || file.UnlockRecord(std::exchange(key, {}))) return CommandResult::kDone;
  switch (file.LastFault()) {
    case FileFault::kNotLocked:  // a compaction that somebody forced has cleared it
    case FileFault::kDeleted:
    case FileFault::kReplaced:  // nobody sees it any more
    case FileFault::kGone:
      return CommandResult::kDone;
    default:
      return CommandResult::kLockLeft;
  }
}

CommandResult EditLock::Finish(CommandResult result) {
  if (Release() != CommandResult::kDone) result = WorseOf(result, CommandResult::kMadeLockLeft);
  return Flush(file, result);
}

}  // namespace core
