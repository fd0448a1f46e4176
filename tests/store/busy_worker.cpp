#include "store/busy_worker.h"

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <set>
#include <sstream>

#include "core/calendar/calendar_file.h"
#include "core/store/compaction.h"
#include "core/store/record_query.h"
#include "platform/system/clock.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

using core::Appointment;
using core::RecordFile;
using core::Result;

int RevisionOf(const Appointment& record) {
  const std::string_view notes = core::ReadText(record.notes);
  return std::atoi(std::string(notes.substr(0, notes.find(' '))).c_str());
}

bool SameWork(const Appointment& record) {
  const Appointment whole = WorkRecord(std::string(core::ReadText(record.subject)), RevisionOf(record));
  // All of the body; the header has an id and a moment of its own.
  constexpr std::size_t kHeader = sizeof(core::RecordHeader);
  return std::memcmp(reinterpret_cast<const char*>(&record) + kHeader,
                     reinterpret_cast<const char*>(&whole) + kHeader, sizeof record - kHeader) == 0;
}

// A line is begun before an operation and ended after it, each by one call, which a kill cannot take back.
class Journal {
 public:
  explicit Journal(const std::string& path)
      : descriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600)) {}
  ~Journal() { close(descriptor); }
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  void Begin(const char* operation, const std::string& subject, int revision) const {
    Put(std::string(operation) + ' ' + subject + ' ' + std::to_string(revision) + ' ');
  }
  void End(bool done) const { Put(done ? "done\n" : "refused\n"); }

 private:
  void Put(const std::string& text) const {
    if (write(descriptor, text.data(), text.size()) != static_cast<ssize_t>(text.size())) std::abort();
  }

  int descriptor;
};

class Worker {
 public:
  explicit Worker(const Work& given) : work(given), journal(given.journal), random(given.seed) {}

  int Run() {
    const std::int64_t deadline = platform::TickMs() + work.milliseconds;
    while (platform::TickMs() < deadline) {
      if (WaitForTheRest() && Chance(2)) Compact();
      const core::OpenedCalendar opened = core::OpenCalendarFile(work.calendar, "", false);
      if (opened.file == nullptr) continue;  // somebody compacts it
      if (!FindRecords(*opened.file)) return 2;
      for (int i = Pick(30); i > 0 && !RestDue(); --i) Step(*opened.file);
    }
    return 0;
  }

 private:
  int Pick(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
  bool Chance(int oneIn) { return Pick(oneIn) == 0; }

  // All workers close the file towards the end of each half second, or nobody would ever have it alone.
  static bool RestDue() { return platform::TickMs() % 500 > 420; }
  static bool WaitForTheRest() {
    if (!RestDue()) return false;
    while (RestDue()) usleep(1000);
    return true;
  }

  // Where the records are now. While a file is open they stay there.
  bool FindRecords(RecordFile& file) {
    own.clear();
    others.clear();
    shared.clear();
    std::size_t ownFound = 0;
    core::RecordQuery query;
    query.AddMatchAll();
    if (!query.Run(file)) return false;
    for (const core::RecordKey& key : query.Keys()) {
      const std::int32_t offset = key.offset;
      Appointment record;
      if (!file.ReadRecord(&record, key)) continue;  // deleted meanwhile
      const std::string subject(core::ReadText(record.subject));
      if (subject.rfind("shared", 0) == 0) {
        shared.push_back(offset);
      } else if (subject.rfind(work.name, 0) != 0) {
        others.push_back(offset);
      } else {
        if (!SameWork(record) || known.count(subject) == 0) return false;
        own.push_back(offset);
        ++ownFound;
      }
    }
    return ownFound == known.size();
  }

  void Step(RecordFile& file) {
    switch (Pick(6)) {
      case 0:
      case 1:
        return Crowded() ? Delete(file) : Add(file);
      case 2:
        return Edit(file, own, "edit");
      case 3:
        return Edit(file, shared, "count");
      case 4:
        return Delete(file);
      default:
        return Touch(file);
    }
  }

  // A list has the first 10000 records of a file: below that it has all of them, however long the work goes
  // on.
  bool Crowded() const { return own.size() >= 200 || own.size() + others.size() >= 9000; }

  void Add(RecordFile& file) {
    const std::string subject = work.name + std::to_string(++sequence);
    const Appointment record = WorkRecord(subject, 0);
    journal.Begin("add", subject, 0);
    const bool done = file.AddRecord(&record) == Result::kDone;
    if (done) known.insert(subject);
    journal.End(done);
  }

  void Edit(RecordFile& file, const std::vector<std::int32_t>& offsets, const char* operation) {
    if (offsets.empty()) return;
    const std::int32_t offset = offsets[static_cast<std::size_t>(Pick(static_cast<int>(offsets.size())))];
    if (!file.LockRecord(offset)) return;
    Appointment record;
    if (file.ReadRecord(&record, offset)) {
      const std::string subject(core::ReadText(record.subject));
      const int revision = RevisionOf(record) + 1;
      Appointment changed = WorkRecord(subject, revision);
      changed.header = record.header;
      journal.Begin(operation, subject, revision);
      journal.End(file.WriteRecord(&changed, offset) == Result::kDone);
    }
    file.UnlockRecord(offset);
  }

  void Delete(RecordFile& file) {
    if (own.empty()) return;
    const auto which = own.begin() + Pick(static_cast<int>(own.size()));
    const std::int32_t offset = *which;
    if (!file.LockRecord(offset)) return;
    Appointment record;
    if (!file.ReadRecord(&record, offset)) std::abort();
    const std::string subject(core::ReadText(record.subject));
    journal.Begin("delete", subject, RevisionOf(record));
    const bool done = file.DeleteRecord(offset) == Result::kDone;
    journal.End(done);
    file.UnlockRecord(offset);
    if (!done) return;
    known.erase(subject);
    own.erase(which);
  }

  // Another's record, which may have been deleted and its slot taken meanwhile.
  void Touch(RecordFile& file) {
    if (others.empty()) return;
    const std::int32_t offset = others[static_cast<std::size_t>(Pick(static_cast<int>(others.size())))];
    if (file.LockRecord(offset)) file.UnlockRecord(offset);
  }

  void Compact() {
    journal.Begin("compact", "-", 0);
    // A file that a killed worker left open counts as open for good where locks do not reach.
    const core::RepairOutcome outcome = core::RepairCheck(work.calendar, true);
    journal.End(outcome.clean || (outcome.counted && Chance(4) && core::CompactCounted(work.calendar).clean));
  }

  const Work& work;
  Journal journal;
  std::mt19937 random;
  std::set<std::string> known;  // subjects of the records it has
  std::vector<std::int32_t> own;
  std::vector<std::int32_t> others;
  std::vector<std::int32_t> shared;
  int sequence = 0;
};

// The moments between a read and the write that follows it are too short to be hit by chance.
std::int64_t HesitantWrite(int descriptor, const void* buffer, std::size_t size, std::int64_t offset) {
  sched_yield();
  return pwrite(descriptor, buffer, size, offset);
}

bool NoLocksReach(int) {
  return false;
}

}  // namespace

std::string SharedSubject(int number) {
  return "shared" + std::to_string(number);
}

Appointment WorkRecord(const std::string& subject, int revision) {
  Entry entry = Entry(subject).On(1 + revision % 28, 3, 2004).Category("Calls");
  std::string notes = std::to_string(revision) + ' ' + subject + ' ';
  while (notes.size() < 1000)
    notes += static_cast<char>('a' + (revision + static_cast<int>(notes.size())) % 26);
  core::WriteText(entry.appointment.notes, notes);
  return entry.appointment;
}

int RunWorker(const Work& work) {
  platform::SystemFileCalls().write = HesitantWrite;  // of this process, which does nothing else
  if (work.locksEndHere) platform::SystemFileCalls().locksReach = NoLocksReach;
  return Worker(work).Run();
}

void Expectation::Read(const std::string& path) {
  std::ifstream journal(path);
  for (std::string line; std::getline(journal, line);) {
    std::istringstream words(line);
    std::string operation;
    std::string subject;
    std::string outcome;
    int revision = 0;
    words >> operation >> subject >> revision >> outcome;
    if (outcome.empty()) ++interrupted;
    if (outcome != "refused") Take(operation, subject, revision, outcome == "done");
  }
}

void Expectation::Take(const std::string& operation, const std::string& subject, int revision, bool certain) {
  const int one = certain ? 1 : 0;
  if (operation == "add") {
    own[subject] = {0, 0, !certain};
  } else if (operation == "delete") {
    if (certain) own.erase(subject);
    if (!certain) own[subject].mayBeGone = true;
  } else if (operation == "edit") {
    own[subject].most = revision;
    if (certain) own[subject].least = revision;
  } else if (operation == "count") {
    shared[subject].least += one;  // of all workers, in whatever order
    ++shared[subject].most;
  } else {
    compacted += one;
  }
}

int Expectation::Counted() const {
  int counted = 0;
  for (const auto& [subject, possible] : shared) counted += possible.least;
  return counted;
}

std::string Expectation::Compare(const std::string& calendar) const {
  std::map<std::string, int> found;
  std::ostringstream wrong;
  RecordFile file(calendar, "");
  ForEachRecord(file, [&](const void* slot) {
    Appointment record;
    std::memcpy(&record, slot, sizeof record);
    const std::string subject(core::ReadText(record.subject));
    if (!found.emplace(subject, RevisionOf(record)).second) wrong << subject << " is there twice\n";
    if (!SameWork(record)) wrong << subject << " has other bytes\n";
    return true;
  });
  for (const auto* records : {&own, &shared}) {
    for (const auto& [subject, possible] : *records) {
      const auto record = found.find(subject);
      if (record == found.end()) {
        if (!possible.mayBeGone) wrong << subject << " is missing\n";
        continue;
      }
      const int revision = record->second;
      if (revision < possible.least || revision > possible.most) {
        wrong << subject << " has revision " << revision << ", not " << possible.least << ".."
              << possible.most << '\n';
      }
      found.erase(record);
    }
  }
  for (const auto& [subject, revision] : found) {
    if (subject.rfind("shared", 0) != 0) wrong << subject << " was deleted\n";
  }
  return wrong.str();
}

}  // namespace tests
