#include "core/compaction.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <new>
#include <thread>
#include <utility>

#include "core/file_messages.h"
#include "platform/system/file.h"

namespace core {
namespace {

using platform::File;
using platform::FileResult;

constexpr int kMostNames = 1000;
constexpr int kRenameTries = 100;
constexpr auto kRenamePause = std::chrono::milliseconds(10);

void AddMessage(std::string& message, const std::string& text) {
  if (!message.empty()) message += "\r\n\r\n";
  message += text;
}

// The first name path.1, path.2 ... that `take` can give to something. Empty when it can give none.
std::string KeepUnderNewName(const std::string& path, const std::function<bool(const std::string&)>& take) {
  for (int number = 1; number < kMostNames; ++number) {
    std::string name = path + "." + std::to_string(number);
    if (platform::FileExists(name)) continue;
    if (take(name)) return name;
    if (!platform::FileExists(name)) break;  // it is not the name that is the matter
  }
  return "";
}

// One compaction: from an open record file to the path it is to have.
class Compaction {
 public:
  Compaction(const File& from, const HeaderBlock& fromHeader, std::uint32_t sizeOfSlot, std::string to)
      : source(from),
        sourceSize(from.Size()),
        header(fromHeader),
        slotSize(sizeOfSlot),
        target(std::move(to)),
        // Beside the file itself: a rename does not leave a file system.
        tempPath(platform::ResolvedPath(target) + ".temp") {}

  bool Run(const CompactionWatcher& watcher, std::string& message);

 private:
  bool PutLeftoverAside(std::string& message) const;
  bool KeepCutRecord(std::string& message) const;
  bool WriteTemp(const CompactionWatcher& watcher);
  bool WriteBlocks();
  bool CopyLiveSlots(const CompactionWatcher& watcher);
  bool Rename(std::string& message) const;
  std::int64_t SlotCount() const;

  const File& source;
  const std::int64_t sourceSize;  // as it was at first: others may append while a copy is made
  const HeaderBlock& header;
  const std::uint32_t slotSize;
  const std::string target;
  const std::string tempPath;
  File temp;
};

bool Compaction::Run(const CompactionWatcher& watcher, std::string& message) {
  if (!PutLeftoverAside(message) || temp.CreateExclusive(tempPath) != FileResult::kDone) {
    AddMessage(message, "Program can't create " + Quoted(tempPath) + ".");
    return false;
  }
  temp.TakeRightsOf(source);  // before anything private is in it
  if (watcher.begin) watcher.begin(target, static_cast<std::uint32_t>(SlotCount()));
  const bool written = WriteTemp(watcher);
  if (!written) AddMessage(message, "Can't compact " + Quoted(target) + ".\r\nReading or writing failed.");
  const bool done = written && KeepCutRecord(message) && Rename(message);
  temp.Close();
  if (!done) platform::RemoveFile(tempPath);
  if (watcher.end) watcher.end();
  return done;
}

std::int64_t Compaction::SlotCount() const {
  return sourceSize < kFirstSlotOffset ? 0 : (sourceSize - kFirstSlotOffset) / slotSize;
}

// What is at the temporary path is from a copy that died while it compacted, and may be all that somebody
// has. Unless it is being written: two copies may save under one new name at once. It is held until it has
// its other name, so that neither takes away what the other one has begun meanwhile.
bool Compaction::PutLeftoverAside(std::string& message) const {
  if (!platform::FileExists(tempPath)) return true;
  File leftover;
  if (leftover.OpenExclusive(tempPath) == FileResult::kInUse) return false;
  const std::string name = KeepUnderNewName(
      tempPath, [this](const std::string& to) { return platform::RenameNewFile(tempPath, to); });
  if (name.empty()) return false;
  AddMessage(message, "An unfinished copy of " + Quoted(target) + " was found.\r\nIt was kept as " +
                          Quoted(name) + ".");
  return true;
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
  const std::string name = KeepUnderNewName(target + ".cut", [&rest](const std::string& to) {
    return platform::WriteNewFile(to, rest.data(), rest.size());
  });
  AddMessage(message, "The last record of " + Quoted(target) + " is incomplete.\r\n" +
                          (name.empty() ? "It can't be kept in a file beside it."
                                        : "What is left of it was kept as " + Quoted(name) + "."));
  return !name.empty();
}

bool Compaction::WriteTemp(const CompactionWatcher& watcher) {
  // A size that could not be had must not pass for an empty file.
  return sourceSize >= kFirstSlotOffset && WriteBlocks() && CopyLiveSlots(watcher) && temp.Flush();
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

// Tried again because a file server may refuse for a moment.
bool Compaction::Rename(std::string& message) const {
  for (int tries = 0; tries < kRenameTries; ++tries) {
    if (platform::RenameFile(tempPath, target)) return true;
    std::this_thread::sleep_for(kRenamePause);
  }
  AddMessage(message,
             "Compact: MoveFile: error.\r\n" + Quoted(tempPath) + "\r\nto\r\n" + Quoted(target) + "\r\n");
  return false;
}

RepairOutcome NotHadAlone(const std::string& path, FileResult opened) {
  return {false, AccessDeniedText(path), opened == FileResult::kInUse};
}

// Where nothing else can tell whether somebody has the file open, which this process opened exclusively.
bool CountsAsOpen(const File& file) {
  HeaderBlock header;
  std::uint32_t slotSize = 0;
  return !file.LocksWork() && CheckRecordFile(file, header, slotSize) == OpenError::kNone &&
         header.openCount != 0;
}

FileResult OpenAlone(File& file, const std::string& path) {
  const FileResult opened = file.OpenExclusive(path);
  return opened == FileResult::kDone && CountsAsOpen(file) ? FileResult::kInUse : opened;
}

}  // namespace

RepairOutcome RepairCheck(const std::string& path, bool force, const CompactionWatcher& watcher) {
  // Who is about to open the file learns from that what is the matter with it.
  const auto refused = [force](RepairOutcome why) {
    if (!force) why.message.clear();
    return why;
  };
  File file;
  const FileResult opened = OpenAlone(file, path);
  if (opened != FileResult::kDone) return refused(NotHadAlone(path, opened));
  HeaderBlock header;
  std::uint32_t slotSize = 0;
  const OpenError error = CheckRecordFile(file, header, slotSize);
  if (error != OpenError::kNone) return refused({false, DescribeOpenError(path, error), false});
  if (!force && header.openCount == 0) return {true, "", false};
  RepairOutcome outcome;
  outcome.clean = Compaction(file, header, slotSize, path).Run(watcher, outcome.message);
  return outcome;
}

RepairOutcome SaveCopy(RecordFile& source, const std::string& target, const CompactionWatcher& watcher) {
  File from;
  HeaderBlock header;
  std::uint32_t slotSize = 0;
  if (!source.Flush() || from.OpenShared(source.Path()) != FileResult::kDone ||
      CheckRecordFile(from, header, slotSize) != OpenError::kNone) {
    return {false, DescribeOpenError(source.Path(), OpenError::kFailed), false};
  }
  // Held until the copy has the name, so that nobody opens what is about to go.
  File old;
  if (platform::FileExists(target)) {
    const FileResult opened = OpenAlone(old, target);
    if (opened != FileResult::kDone) return NotHadAlone(target, opened);
  }
  RepairOutcome outcome;
  outcome.clean = Compaction(from, header, slotSize, target).Run(watcher, outcome.message);
  return outcome;
}

}  // namespace core
