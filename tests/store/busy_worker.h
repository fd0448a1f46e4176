// One of several processes that work on one calendar at the same time, each noting down in a journal of its
// own what it is about to do and what came of it, so that afterwards it is known what the calendar must hold.
//
// A worker adds, edits and deletes records of its own, takes and gives back locks on those of others, counts
// up in records that all share, and compacts the file when it can. A record's notes follow from its subject
// and its revision, so that every byte is known.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "core/calendar/appointment.h"

namespace tests {

inline constexpr int kSharedRecords = 4;

// Of shared record `number`, 0..kSharedRecords - 1.
std::string SharedSubject(int number);

// A record as worker `subject` makes it. The revision counts its edits.
core::Appointment WorkRecord(const std::string& subject, int revision);

// Works for so many milliseconds, or until it is killed. `name` begins the subjects of its records and must
// be another one for each worker and each of its lives; `seed` decides what it does when. Returns 0, or what
// it found that cannot be: 2 a record of its own missing or with other bytes than it wrote.
struct Work {
  std::string calendar;
  std::string journal;
  std::string name;
  unsigned seed;
  int milliseconds;
  bool locksEndHere = false;  // it is to believe that no lock of its reaches another worker
};
int RunWorker(const Work& work);

// What journals say that a calendar holds.
class Expectation {
 public:
  void Read(const std::string& journal);

  // What is wrong with the calendar, a line each; empty when every record is there that must be, once, with
  // its own bytes, and none that must not.
  std::string Compare(const std::string& calendar) const;

  int Counted() const;
  int Compacted() const { return compacted; }
  int Interrupted() const { return interrupted; }

 private:
  // Of a record, the revisions it may have, kGone among them when it may be missing.
  struct Possible {
    int least;
    int most;
    bool mayBeGone;
  };
  void Take(const std::string& operation, const std::string& subject, int revision, bool certain);

  std::map<std::string, Possible> own;
  std::map<std::string, Possible> shared;
  int compacted = 0;
  int interrupted = 0;
};

}  // namespace tests
