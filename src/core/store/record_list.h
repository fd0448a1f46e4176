// What all lists of records have in common that stay on the screen: the keys of their records, in order, and
// how they follow a file that others change.
//
// Nothing keeps records in memory: whoever shows a list reads each record when it is drawn. Between two
// refreshes it may hold records that others have deleted; their keys are those of the moment at which they
// were listed, so that nobody takes another record for them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "core/store/record_file.h"
#include "core/store/record_key.h"

namespace core {

class RecordList {
 public:
  static constexpr std::size_t kMostRecords = 10000;
  static constexpr std::uint64_t kNoStamp = ~std::uint64_t{0};

  virtual const std::vector<RecordKey>& Keys() const = 0;
  std::size_t Count() const { return Keys().size(); }
  // None beyond the end.
  RecordKey KeyAt(std::size_t index) const { return index < Count() ? Keys()[index] : RecordKey{}; }

  // False when something could not be read while the list was made: records may be missing from it, or be out
  // of order.
  bool IsWhole() const { return whole; }

  // The change counter the list stands for; kNoStamp when it was never made or is not whole.
  std::uint64_t Stamp() const { return stamp; }

  // Makes the list anew when the file's change counter differs from the stamp. `beforeRebuild`, if any, is
  // called first; after a true result the caller fills its display anew and tells whom it likes. False when
  // nothing changed, the counter cannot be read, the list was never made or making it failed. A list that is
  // not whole is made again when the counter moves, and else at the next call, then after 2, 4 and more
  // calls, 64 at most.
  bool RefreshIfChanged(const RecordFile& file, const std::function<void()>& beforeRebuild = nullptr);

 protected:
  RecordList() = default;
  RecordList(const RecordList&) = default;
  RecordList& operator=(const RecordList&) = default;
  ~RecordList() = default;

  // Whether Rebuild knows what to list.
  virtual bool CanRebuild() const = 0;
  // Makes the list as it was made the last time. False when that failed altogether.
  virtual bool Rebuild(const RecordFile& file) = 0;

  std::uint64_t stamp = kNoStamp;
  std::uint64_t counterAtRun = kNoStamp;  // from before the list was made
  bool whole = true;

 private:
  // How many calls a list that is not whole waits between two tries, and how many are left.
  int pause = 0;
  int callsLeft = 0;
};

}  // namespace core
