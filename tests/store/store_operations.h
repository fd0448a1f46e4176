// Everything that the store does to a file, one operation each, to be interrupted anywhere. Each begins with
// the same calendar: the records "a" (locked by somebody who is gone), "b" and "d", and between them a free
// slot that held "c".
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace tests {

// The two calendars of a test.
struct StoreFiles {
  StoreFiles();
  std::string Path() const { return folder.Join("calendar.cld"); }
  std::string OtherPath() const { return folder.Join("other.cld"); }

  TemporaryFolder folder;
};

// The subjects of a file's live records, sorted.
using Records = std::vector<std::string>;

struct StoreOperation {
  const char* name;
  std::function<bool(const StoreFiles&)> run;  // whether it says that it was done
  std::vector<Records> states;                 // what calendar.cld may hold meanwhile, the first to the last
  std::vector<Records> otherStates;            // what other.cld may
};

// For the messages of failed tests.
inline void PrintTo(const StoreOperation& operation, std::ostream* stream) {
  *stream << operation.name;
}

const std::vector<StoreOperation>& StoreOperations();

// One with other bytes than it was given is listed as damaged. {"(none)"} when nothing is at the path,
// {"(unreadable)"} when it cannot be opened.
Records RecordsAt(const std::string& path);

// What is wrong with a file that the repair check answered for; empty when nothing is: locks left, free slots
// that do not agree with the balance, an open count.
std::string Disorder(const std::string& path);

}  // namespace tests
