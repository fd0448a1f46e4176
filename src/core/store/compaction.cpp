#include "core/store/compaction.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <new>
#include <thread>
#include <utility>

#include "core/store/file_messages.h"
#include "core/store/leftovers.h"
#include "platform/system/clock.h"
#include "platform/system/file.h"

namespace core {
namespace {

using platform::File;
using platform::FileResult;

constexpr int kRenameTries = 100;
constexpr auto kRenamePause = std::chrono::milliseconds(10);

// Beside the file itself: a rename does not leave a file system. Where no lock says that the name is taken,
// it is one that nobody else can have.
std::string TempPath(const std::string& target, bool locksReach) {
  std::string path = platform::ResolvedPath(target) + ".temp";
  if (!locksReach) path.append("-").append(platform::RandomName());
  return path;
}

// What the user asked for, in the words of a failure.
enum class Purpose { kCompact, kSaveCopy };

// One compaction: from an open record file to the path it is to have.
class Compaction {
 public:
  // `holder` holds the target, and may be the source.
  Compaction(Purpose wanted, const File& from, File& holder, const HeaderBlock& fromHeader,
             std::uint32_t sizeOfSlot, std::string to)
      : purpose(wanted),
        source(from),
        hold(holder),
        sourceSize(from.Size()),
        header(fromHeader),
        slotSize(sizeOfSlot),
        target(std::move(to)),
        tempPath(TempPath(target, hold.LocksReach())),
        replaces(hold.IsOpen()) {}

  bool Run(const CompactionWatcher& watcher, std::string& message);

 private:
  bool CreateTemp(std::string& message);
  void TakeBack() const;
  bool KeepCutRecord(std::string& message) const;
  bool BeginKept(const char* ending, File& kept, std::string& path) const;
  bool KeepDamaged(const char* slot);
  bool WriteTemp(const CompactionWatcher& watcher);
  bool WriteBlocks();
  bool CopyLiveSlots(const CompactionWatcher& watcher);
  bool Rename(std::string& message);
  std::int64_t SlotCount() const;
  const char* WhyNotWritten() const;
  std::string Failure(const char* why) const;

  const Purpose purpose;
  const File& source;
  File& hold;
  const std::int64_t sourceSize;  // as it was at first: others may append while a copy is made
  const HeaderBlock& header;
  const std::uint32_t slotSize;
  const std::string target;
  const std::string tempPath;
  const bool replaces;  // there is a file to be replaced
  File temp;
  File damaged;  // slots that are neither live nor free; made with the first of them
  std::string damagedPath;
};

bool Compaction::Run(const CompactionWatcher& watcher, std::string& message) {
  if (!CreateTemp(message)) return false;
  if (watcher.begin) watcher.begin(target, static_cast<std::uint32_t>(SlotCount()));
  const bool written = WriteTemp(watcher);
  if (!written) AddMessage(message, Failure(WhyNotWritten()));
  const bool done = written && KeepCutRecord(message) && Rename(message);
  if (!done) TakeBack();
  temp.Close();
  if (done && damaged.IsOpen()) {
    AddMessage(message, "Records of " + Quoted(target) + " are damaged.\r\nThey were kept as " +
                            Quoted(damagedPath) + ".");
  }
  if (watcher.end) watcher.end();
  return done;
}

const char* Compaction::WhyNotWritten() const {
  const bool full = temp.LastWrite() == FileResult::kDiskFull || damaged.LastWrite() == FileResult::kDiskFull;
  return full ? "The disk is full." : "Reading or writing failed.";
}

std::string Compaction::Failure(const char* why) const {
  return (purpose == Purpose::kCompact ? "Can't compact " : "Can't save ") + Quoted(target) + ".\r\n" + why;
}

std::int64_t Compaction::SlotCount() const {
  return sourceSize < kFirstSlotOffset ? 0 : (sourceSize - kFirstSlotOffset) / slotSize;
}

bool Compaction::CreateTemp(std::string& message) {
  LeftoverSearch search = {source, slotSize, target, platform::UnixSeconds()};
  const bool free = !hold.LocksReach() || MakeWay(search, tempPath, message);
  if (!free || temp.CreateExclusive(tempPath) != FileResult::kDone) {
    AddMessage(message, "Program can't create " + Quoted(tempPath) + ".");
    return false;
  }
  if (!temp.TakeRightsOf(source)) {  // before anything private is in it
    AddMessage(message, Failure("Its owner or its group could not open it any more."));
    TakeBack();
    return false;
  }
  search.now = temp.ChangedSeconds();
  if (!hold.LocksReach()) TidyLeftovers(search, message);
  return true;
}

// Undoes what was begun. The new file is all there is where the old one is gone: a file system that takes two
// steps to replace an open file has then failed in the second one.
void Compaction::TakeBack() const {
  const bool mine = temp.PathState() == platform::FileAtPath::kSame;
  if (mine && (!replaces || platform::FileExists(target))) platform::RemoveFile(tempPath);
  if (damaged.IsOpen()) platform::RemoveFile(damagedPath);
}

// An addition that was cut off is a free slot still. A live one lost its end to something else, and what is
// left of it may be missed.
bool Compaction::KeepCutRecord(std::string& message) const {
  const std::int64_t end = kFirstSlotOffset + SlotCount() * slotSize;
  std::string rest(static_cast<std::size_t>(std::max<std::int64_t>(sourceSize - end, 0)), '\0');
  constexpr std::size_t kInUse = offsetof(RecordHeader, inUse);
  if (rest.size() <= kInUse || rest.size() >= slotSize) return true;
  if (source.ReadAt(rest.data(), rest.size(), end) != static_cast<std::int64_t>(rest.size())) return false;
  if (rest[kInUse] != 1) return true;
  File cut;
  std::string name;
  const bool kept = BeginKept(".cut", cut, name) &&
                    cut.WriteAt(rest.data(), rest.size(), 0) == static_cast<std::int64_t>(rest.size()) &&
                    cut.Flush();
  if (!kept && cut.IsOpen()) platform::RemoveFile(name);
  AddMessage(message, "The last record of " + Quoted(target) + " is incomplete.\r\n" +
                          (!kept ? "It can't be kept in a file beside it."
                                 : "What is left of it was kept as " + Quoted(name) + "."));
  return kept;
}

// Makes a file beside the target for bytes of the source, open to nobody who may not read that.
bool Compaction::BeginKept(const char* ending, File& kept, std::string& path) const {
  path = KeepUnderNewName(target + ending, [&kept](const std::string& to) {
    return kept.CreateExclusive(to) == FileResult::kDone;
  });
  return !path.empty() && kept.TakeRightsOf(source);
}

bool Compaction::WriteTemp(const CompactionWatcher& watcher) {
  // A size that could not be had must not pass for an empty file.
  return sourceSize >= kFirstSlotOffset && WriteBlocks() && CopyLiveSlots(watcher) && temp.Flush() &&
         (!damaged.IsOpen() || damaged.Flush());
}

// The blocks stay as they are but for what the new file has no more: openers and free slots.
bool Compaction::WriteBlocks() {
  char blocks[kFirstSlotOffset];
  if (source.ReadAt(blocks, sizeof blocks, 0) != std::int64_t{sizeof blocks}) return false;
  HeaderBlock cleaned = header;
  cleaned.openCount = 0;
  cleaned.freeSlotBalance = 0;
  std::memcpy(blocks + kHeaderBlockOffset, &cleaned, sizeof cleaned);
  return temp.WriteAt(blocks, sizeof blocks, 0) == std::int64_t{sizeof blocks};
}

bool Compaction::CopyLiveSlots(const CompactionWatcher& watcher) {
  const std::size_t bytes = kSlotsPerRead * slotSize;
  const std::unique_ptr<char[]> slots(new (std::nothrow) char[bytes]);
  if (slots == nullptr) return false;
  std::int64_t from = kFirstSlotOffset;
  std::int64_t to = kFirstSlotOffset;
  for (std::int64_t left = SlotCount(); left > 0;) {
    if (!hold.KeepHold()) return false;
    const auto count = static_cast<std::size_t>(std::min<std::int64_t>(left, kSlotsPerRead));
    const auto wanted = static_cast<std::int64_t>(count * slotSize);
    if (source.ReadAt(slots.get(), count * slotSize, from) != wanted) return false;
    char* end = slots.get();
    for (std::size_t i = 0; i < count; ++i) {
      const char* slot = slots.get() + i * slotSize;
      if (slot[offsetof(RecordHeader, inUse)] == 1) {
        std::memmove(end, slot, slotSize);
        end[offsetof(RecordHeader, editLock)] = 0;
        end += slotSize;
      } else if (slot[offsetof(RecordHeader, inUse)] != 0 && !KeepDamaged(slot)) {
        return false;
      }
      if (watcher.slotExamined) watcher.slotExamined();
    }
    const std::int64_t live = end - slots.get();
    if (live > 0 && temp.WriteAt(slots.get(), static_cast<std::size_t>(live), to) != live) return false;
    from += wanted;
    to += live;
    left -= static_cast<std::int64_t>(count);
  }
  return true;
}

// A slot that is neither live nor free was written by no program that knows the format. There may be a record
// behind the one wrong byte.
bool Compaction::KeepDamaged(const char* slot) {
  if (!damaged.IsOpen() && !BeginKept(".damaged", damaged, damagedPath)) return false;
  return damaged.WriteAt(slot, slotSize, damaged.Size()) == std::int64_t{slotSize};
}

// Tried again because a file server may refuse for a moment. What somebody else has put at the path meanwhile
// stays there.
bool Compaction::Rename(std::string& message) {
  if (hold.PathState() == platform::FileAtPath::kReplaced) {
    AddMessage(message, DescribeFault(target, FileFault::kReplaced));
    return false;
  }
  hold.LetGoForRename();
  for (int tries = 0; tries < kRenameTries; ++tries) {
    if (!hold.KeepHold() || temp.PathState() != platform::FileAtPath::kSame) break;
    if (replaces ? platform::RenameFile(tempPath, target)
                 : platform::RenameNewFile(tempPath, platform::ResolvedPath(target))) {
      return true;
    }
    std::this_thread::sleep_for(kRenamePause);
  }
  AddMessage(message,
             "Compact: MoveFile: error.\r\n" + Quoted(tempPath) + "\r\nto\r\n" + Quoted(target) + "\r\n");
  return false;
}

RepairOutcome NotHadAlone(const std::string& path, FileResult opened) {
  const bool noFile = opened == FileResult::kNoRegularFile || opened == FileResult::kIsFolder;
  return {false, noFile ? DescribeOpenError(path, FromFileResult(opened)) : AccessDeniedText(path),
          opened == FileResult::kInUse, false};
}

// Where no lock can tell whether somebody has the file open, which this process holds.
bool CountsAsOpen(const File& file) {
  HeaderBlock header;
  std::uint32_t slotSize = 0;
  return !file.LocksReach() && CheckRecordFile(file, header, slotSize) == OpenError::kNone &&
         header.openCount != 0;
}

RepairOutcome CountedAsOpen(const std::string& path) {
  RepairOutcome outcome = NotHadAlone(path, FileResult::kInUse);
  outcome.counted = true;
  outcome.message = "Program can't use " + Quoted(path) + ".\r\nIt may be open on another machine.";
  return outcome;
}

RepairOutcome Repair(const std::string& path, bool force, bool evenIfCounted,
                     const CompactionWatcher& watcher) {
  // Without force the caller opens the file next, and opening it says what is wrong.
  const auto refused = [force](RepairOutcome why) {
    if (!force) why.message.clear();
    return why;
  };
  File file;
  const FileResult opened = file.OpenExclusive(path);
  if (opened != FileResult::kDone) return refused(NotHadAlone(path, opened));
  HeaderBlock header;
  std::uint32_t slotSize = 0;
  const OpenError error = CheckRecordFile(file, header, slotSize);
  if (error != OpenError::kNone) return refused({false, DescribeOpenError(path, error), false, false});
  if (!force && header.openCount == 0) return {true, "", false, false};
  if (!evenIfCounted && CountsAsOpen(file)) return refused(CountedAsOpen(path));
  RepairOutcome outcome;
  outcome.clean =
      Compaction(Purpose::kCompact, file, file, header, slotSize, path).Run(watcher, outcome.message);
  return outcome;
}

}  // namespace

RepairOutcome RepairCheck(const std::string& path, bool force, const CompactionWatcher& watcher) {
  return Repair(path, force, false, watcher);
}

RepairOutcome CompactCounted(const std::string& path, const CompactionWatcher& watcher) {
  return Repair(path, true, true, watcher);
}

RepairOutcome SaveCopy(RecordFile& source, const std::string& target, const CompactionWatcher& watcher) {
  const auto failed = [&source](OpenError why) {
    return RepairOutcome{false, DescribeOpenError(source.Path(), why), false, false};
  };
  if (!source.Flush()) return failed(OpenError::kFailed);
  // Opened anew, so that no cache hides what others have written; but what has lost its name can be read only
  // through what is open.
  File anew;
  const bool named = source.Opened().PathState() == platform::FileAtPath::kSame;
  if (named && (source.IsOnlyRead() ? anew.OpenReadOnly(source.Path()) : anew.OpenShared(source.Path())) !=
                   FileResult::kDone) {
    return failed(OpenError::kFailed);
  }
  const File& from = named ? anew : source.Opened();
  HeaderBlock header;
  std::uint32_t slotSize = 0;
  const OpenError checked = CheckRecordFile(from, header, slotSize);
  if (checked != OpenError::kNone) return failed(checked);
  // Held until the copy has the name, so that nobody opens what is about to go.
  File old;
  const FileResult held = old.HoldPath(target);
  if (held != FileResult::kDone && held != FileResult::kMissing) return NotHadAlone(target, held);
  if (old.IsOpen() && CountsAsOpen(old)) return CountedAsOpen(target);
  RepairOutcome outcome;
  outcome.clean =
      Compaction(Purpose::kSaveCopy, from, old, header, slotSize, target).Run(watcher, outcome.message);
  return outcome;
}

}  // namespace core
