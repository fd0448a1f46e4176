// What an export and an import cost, beside the reading and writing that they cannot do without: an export
// reads the calendar once and writes its text to the disk, an import writes its records there. Exits with 1
// when a limit is exceeded. Those of iCalendar stand beside what taking the same text apart costs its
// library.
#include <fcntl.h>
#include <libical/ical.h>

#include "core/exchange/appointment_writer.h"
#include "core/exchange/ical_file.h"
#include "core/exchange/import_file.h"
#include "measuring.h"

namespace {

using namespace measuring;

constexpr double kLimit = 2;

std::string WholeFile(const std::string& path) {
  std::string bytes;
  if (!platform::ReadWholeFile(path, std::size_t{1} << 30, bytes)) Fail("read");
  return bytes;
}

// Writes new bytes and brings them to the disk.
void WriteBare(const std::string& path, const std::string& bytes) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (write(descriptor, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()) ||
      fsync(descriptor) != 0) {
    Fail("write");
  }
  close(descriptor);
}

void Exporting(const RecordFile& file, int records) {
  core::ExchangeOptions options;
  options.most = core::kNoMost;
  const std::string target = Folder() + "/export.csv";
  const auto exporting = [&] {
    if (core::WriteAppointments(file, options, target).outcome != core::WriteOutcome::kDone) Fail("export");
  };
  exporting();
  const std::string text = WholeFile(target);
  const int descriptor = open(file.Path().c_str(), O_RDONLY | O_CLOEXEC);
  std::vector<char> buffer(kRun);
  Compare("export of " + std::to_string(records) + " / one read and one write", 11, kLimit, exporting, [&] {
    ReadBare(descriptor, buffer);
    WriteBare(Folder() + "/bare.csv", text);
  });
  close(descriptor);
}

void Importing(const RecordFile& source) {
  core::ExchangeOptions options;
  options.most = core::kNoMost;
  const std::string path = Folder() + "/import.csv";
  const core::WriteResult exported = core::WriteAppointments(source, options, path);
  std::unique_ptr<RecordFile> file;
  const auto prepare = [&] {
    file.reset();
    file = Calendar(0);
    sync();  // what was written before is not to be paid for
  };
  const auto importing = [&] {
    core::ImportReader reader;
    if (!reader.Open(path, file.get()).empty()) Fail("open");
    const core::ImportResult result =
        core::ImportFile(*file, reader, core::PositionalImportMap(core::kExchangeFields.size()));
    if (result.added != static_cast<std::int64_t>(exported.written) || !core::IsMade(result.result))
      Fail("import");
  };
  prepare();
  importing();
  const std::string slots = WholeFile(file->Path());
  Compare("import of " + std::to_string(exported.written) + " lines / one write of their slots", 11, kLimit,
          prepare, importing, [&] { WriteBare(Folder() + "/bare.cld", slots); });
}

constexpr double kIcalLimit = 1.5;

// Writing to memory, and reading to a plan.
void Ical(const RecordFile& file, int records) {
  core::ExchangeOptions options;
  options.mode = core::ExchangeMode::kIcal;
  options.most = core::kNoMost;
  std::string text;
  const auto writing = [&] {
    text.clear();
    const auto sink = [&text](std::string_view bytes) {
      text += bytes;
      return true;
    };
    if (core::WriteAppointments(file, options, sink).outcome != core::WriteOutcome::kDone) Fail("write");
  };
  const auto parsing = [&text] {
    icalcomponent* const parsed = icalparser_parse_string(text.c_str());
    if (parsed == nullptr) Fail("parse");
    icalcomponent_free(parsed);
  };
  const core::IcalReadOptions reading = core::ReadOptionsFor(file);
  const std::string of = " of " + std::to_string(records) + " events / ";
  Compare("iCalendar: writing" + of + "its library's parse", 5, kIcalLimit, writing, parsing);
  Compare(
      "iCalendar: reading" + of + "its library's parse", 5, kIcalLimit,
      [&] {
        if (core::PlanIcal(text, reading).records.empty()) Fail("read");
      },
      parsing);
}

}  // namespace

int main() {
  PrintHead();
  for (const int records : {10000, 100000}) {
    const std::unique_ptr<RecordFile> file = Calendar(records);
    Exporting(*file, records);
    if (records == 10000) Importing(*file);
    if (records == 10000) Ical(*file, records);
  }
  std::filesystem::remove_all(Folder());
  return exceeded ? 1 : 0;
}
