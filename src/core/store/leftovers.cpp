#include "core/store/leftovers.h"

#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <string_view>
#include <unordered_map>

#include "core/store/file_messages.h"
#include "core/store/record_format.h"

namespace core {
namespace {

using platform::File;
using platform::FileResult;

constexpr int kMostNames = 1000;

// Calls `visit` with each live record of a file and its offset, until it returns false. False also when the
// file cannot be read to its end.
bool ForEachLive(const File& file, std::uint32_t slotSize,
                 const std::function<bool(const char* slot, std::int64_t offset)>& visit) {
  const std::size_t bytes = kSlotsPerRead * slotSize;
  const std::unique_ptr<char[]> slots(new (std::nothrow) char[bytes]);
  if (slots == nullptr) return false;
  for (std::int64_t offset = kFirstSlotOffset;;) {
    const std::int64_t read = file.ReadAt(slots.get(), bytes, offset);
    if (read < 0) return false;
    const std::int64_t count = read / slotSize;
    for (std::int64_t i = 0; i < count; ++i) {
      const char* slot = slots.get() + i * slotSize;
      if (slot[offsetof(RecordHeader, inUse)] == 1 && !visit(slot, offset + i * slotSize)) return false;
    }
    offset += count * slotSize;
    if (count < static_cast<std::int64_t>(kSlotsPerRead)) return file.Size() >= 0;
  }
}

// What a record is found by: its id, and where its kind has none a number made of its bytes.
std::uint64_t IdOf(const char* slot, std::uint32_t slotSize) {
  std::uint64_t id = 0;
  std::memcpy(&id, slot + offsetof(RecordHeader, recordId), sizeof id);
  if (id != 0) return id;
  constexpr std::size_t kBody = offsetof(RecordHeader, recordId);  // behind the edit lock
  return std::hash<std::string_view>()({slot + kBody, slotSize - kBody});
}

// The same record with the same contents. An edit lock is no content.
bool SameContents(const char* slot, const char* other, std::uint32_t slotSize) {
  constexpr std::size_t kLock = offsetof(RecordHeader, editLock);
  return std::memcmp(slot, other, kLock) == 0 &&
         std::memcmp(slot + kLock + 1, other + kLock + 1, slotSize - kLock - 1) == 0;
}

// The records of the file that is compacted, found by their ids.
class Originals {
 public:
  explicit Originals(const LeftoverSearch& given) : search(given) {
    known = ForEachLive(search.source, search.slotSize, [this](const char* slot, std::int64_t offset) {
      offsets.emplace(IdOf(slot, search.slotSize), offset);
      return true;
    });
  }

  // Whether nothing in a leftover is the only copy of anything. A fresh one must have all its records in the
  // file, byte for byte; for an old one it will do that the file has the records, which were changed since.
  bool MakeSpare(const File& leftover) const {
    const std::int64_t size = leftover.Size();
    if (!known || size < 0) return false;
    if (size == 0) return true;
    FileHeader mine;
    FileHeader its;
    if (search.source.ReadAt(&mine, sizeof mine, 0) != std::int64_t{sizeof mine} ||
        leftover.ReadAt(&its, sizeof its, 0) != std::int64_t{sizeof its} ||
        std::memcmp(&mine, &its, sizeof mine) != 0) {
      return false;
    }
    const bool old = search.now - leftover.ChangedSeconds() > kLeftoverAge;
    char original[kLargestSlotSize];
    return ForEachLive(leftover, search.slotSize, [&](const char* slot, std::int64_t) {
      const auto found = offsets.find(IdOf(slot, search.slotSize));
      if (found == offsets.end()) return false;
      return old || (search.source.ReadAt(original, search.slotSize, found->second) == search.slotSize &&
                     SameContents(slot, original, search.slotSize));
    });
  }

 private:
  const LeftoverSearch& search;
  std::unordered_map<std::uint64_t, std::int64_t> offsets;
  bool known = false;
};

// The file is open in `leftover`: what another copy may have put at its name meanwhile is left alone.
bool TidyAway(const LeftoverSearch& search, const Originals& originals, const File& leftover,
              const std::string& path, std::string& message) {
  const bool spare = leftover.IsOpen() && originals.MakeSpare(leftover);
  if (leftover.IsOpen() && leftover.PathState() != platform::FileAtPath::kSame) return false;
  if (spare) return platform::RemoveFile(path);
  const std::string base = platform::ResolvedPath(search.target) + ".temp";
  const std::string name =
      KeepUnderNewName(base, [&](const std::string& to) { return platform::RenameNewFile(path, to); });
  if (name.empty()) return false;
  AddMessage(message, "An unfinished copy of " + Quoted(search.target) + " was found.\r\nIt was kept as " +
                          Quoted(name) + ".");
  return true;
}

}  // namespace

void AddMessage(std::string& message, const std::string& text) {
  if (!message.empty()) message += "\r\n\r\n";
  message += text;
}

std::string KeepUnderNewName(const std::string& path, const std::function<bool(const std::string&)>& take) {
  for (int number = 1; number < kMostNames; ++number) {
    std::string name = path + "." + std::to_string(number);
    if (platform::FileExists(name)) continue;
    if (take(name)) return name;
    if (!platform::FileExists(name)) break;  // it is not the name that is the matter
  }
  return "";
}

bool MakeWay(const LeftoverSearch& search, const std::string& tempPath, std::string& message) {
  if (!platform::FileExists(tempPath)) return true;
  // Two copies may save under one new name at once. It is held until it has its other name, so that neither
  // takes away what the other one has begun meanwhile.
  File leftover;
  if (leftover.OpenExclusive(tempPath) == FileResult::kInUse) return false;
  return TidyAway(search, Originals(search), leftover, tempPath, message);
}

void TidyLeftovers(const LeftoverSearch& search, std::string& message) {
  const std::string target = platform::ResolvedPath(search.target);
  const std::size_t split = target.rfind('/') + 1;
  const std::string folder = target.substr(0, split);
  const std::string prefix = target.substr(split) + ".temp-";
  std::unique_ptr<Originals> originals;
  for (const std::string& name : platform::ListFolder(folder.empty() ? "." : folder)) {
    File leftover;
    if (!name.starts_with(prefix) || leftover.OpenReadOnly(folder + name) != FileResult::kDone ||
        search.now - leftover.ChangedSeconds() <= kLeftoverAge) {
      continue;
    }
    if (originals == nullptr) originals = std::make_unique<Originals>(search);
    TidyAway(search, *originals, leftover, folder + name, message);
  }
}

}  // namespace core
