// What the benchmarks of the data store share: two operations timed beside each other, and calendars to time
// them on.
#pragma once

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core/calendar/appointment.h"
#include "core/calendar/categories.h"

namespace measuring {

using core::Appointment;
using core::RecordFile;

inline constexpr std::size_t kSlot = sizeof(Appointment);
inline constexpr std::size_t kRun = core::kSlotsPerRead * kSlot;

// Whether a limit was exceeded.
inline bool exceeded = false;

[[noreturn]] inline void Fail(const char* what) {
  std::fprintf(stderr, "%s failed\n", what);
  std::exit(2);
}

inline void PrintHead() {
  std::printf("%-60s %15s %15s %8s %8s\n", "name", "measured", "reference", "ratio", "limit");
}

template <typename Run>
double Microseconds(const Run& run) {
  const auto start = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

inline double Median(std::vector<double>& times) {
  std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2), times.end());
  return times[times.size() / 2];
}

inline void Print(const std::string& name, double measured, double reference, double limit) {
  const double ratio = measured / reference;
  exceeded = exceeded || ratio > limit;
  std::printf("%-60s %12.2f us %12.2f us %8.3f %8.2f%s\n", name.c_str(), measured, reference, ratio, limit,
              ratio > limit ? "  exceeded" : "");
}

// Runs both in turn and prints their medians. Which one comes first alternates. `prepare` is called before
// each run of the measured one and does not count.
template <typename Prepare, typename Measured, typename Reference>
void Compare(const std::string& name, int rounds, double limit, const Prepare& prepare,
             const Measured& measured, const Reference& reference) {
  std::vector<double> ours;
  std::vector<double> theirs;
  const auto measure = [&] {
    prepare();
    ours.push_back(Microseconds(measured));
  };
  prepare();
  measured();
  reference();
  for (int i = 0; i < rounds; ++i) {
    if (i % 2 == 0) measure();
    theirs.push_back(Microseconds(reference));
    if (i % 2 != 0) measure();
  }
  Print(name, Median(ours), Median(theirs), limit);
}

template <typename Measured, typename Reference>
void Compare(const std::string& name, int rounds, double limit, const Measured& measured,
             const Reference& reference) {
  Compare(
      name, rounds, limit, [] {}, measured, reference);
}

// How often something that goes over a whole file is timed.
inline int Rounds(int records) {
  return records > 50000 ? 21 : 201;
}

// Where the files lie: beside the program.
inline std::string Folder() {
  static const std::string folder = [] {
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    std::string made = (program.parent_path() / "benchmark-files").string();
    std::filesystem::remove_all(made);
    std::filesystem::create_directories(made);
    return made;
  }();
  return folder;
}

// A record of some day; every fifth repeats, by each kind of rule in turn, and every tenth has an alarm.
inline Appointment SomeRecord(int number, std::minstd_rand& random, const core::HeaderBlock& header) {
  Appointment record{};
  core::InitRecordHeader(record.header, kSlot, header);
  core::Date date{};
  core::DateFromIndex(static_cast<int>(random() % 7300), date);
  record.date = date;
  core::TimeOfDay start{};
  core::TimeFromSlot(static_cast<int>(random() % 288), start);
  record.startTime = start;
  record.allDay = random() % 8 == 0 ? 1 : 0;
  core::WriteText(record.subject, "Appointment " + std::to_string(number));
  core::WriteText(record.notes, std::string(random() % 1000, 'n'));
  record.alarmOn = number % 10 == 0 ? 1 : 0;
  record.alarmDate = record.date;
  record.alarmTime = record.startTime;
  if (number % 5 != 0) return record;
  const auto every = static_cast<std::uint32_t>(1 + random() % 5);
  switch (number / 5 % 4) {
    case 0:
      record.repeat = {core::kRepeatDaily, core::kNoEndDate, every, 0};
      break;
    case 1:
      record.repeat = {core::kRepeatWeekly, core::kNoEndDate, every,
                       static_cast<std::uint32_t>(1 + random() % 127)};
      break;
    case 2:
      record.repeat = {core::kRepeatMonthly, core::kNoEndDate, every, static_cast<std::uint32_t>(date.day)};
      break;
    default:
      record.repeat = {core::kRepeatYearly, core::kNoEndDate, every,
                       static_cast<std::uint32_t>(date.month << 16 | date.day)};
  }
  return record;
}

// A calendar of so many of them.
inline std::unique_ptr<RecordFile> Calendar(int records) {
  core::HeaderBlock header;
  core::InitHeaderBlock(header, "Calendar", "Organizer", 1);
  auto file = std::make_unique<RecordFile>(Folder() + '/' + std::to_string(records) + ".cld", "");
  if (!file->Create(header, core::DefaultCategories(), kSlot)) Fail("create");
  std::minstd_rand random(20040314);
  std::FILE* out = std::fopen(file->Path().c_str(), "ab");
  if (out == nullptr) Fail("open");
  for (int i = 0; i < records; ++i) {
    const Appointment record = SomeRecord(i, random, header);
    if (std::fwrite(&record, kSlot, 1, out) != 1) Fail("write");
  }
  if (std::fclose(out) != 0) Fail("close");
  return file;
}

// Reads every slot in the runs of slots that a scan uses.
inline void ReadBare(int descriptor, std::vector<char>& buffer) {
  off_t offset = core::kFirstSlotOffset;
  while (pread(descriptor, buffer.data(), kRun, offset) == static_cast<ssize_t>(kRun)) offset += kRun;
  benchmark::DoNotOptimize(buffer.data());
}

}  // namespace measuring
