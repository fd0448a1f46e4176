// The commands that carry appointments out as text and in again: export, report and import.
#include <algorithm>
#include <memory>
#include <utility>

#include "cli/calendar_access.h"
#include "cli/commands.h"
#include "cli/table.h"
#include "cli/values.h"
#include "core/exchange/appointment_writer.h"
#include "core/exchange/ical_file.h"
#include "core/exchange/ical_update.h"
#include "core/exchange/ical_writer.h"
#include "core/exchange/import_file.h"
#include "core/store/edit_lock.h"
#include "core/store/file_messages.h"
#include "platform/system/standard_streams.h"

namespace cli {
namespace {

// "yes" or "no", or whichever two words an option takes; the value stays where it is not given.
Outcome ParseChoice(const Arguments& arguments, const char* option, const char* yes, const char* no,
                    bool& value) {
  if (!arguments.Has(option)) return {};
  const std::string& given = arguments.Value(option);
  value = given == yes;
  if (value || given == no) return {};
  return Fail(kUsage, std::string("--") + option + " takes " + yes + " or " + no);
}

Outcome ParseRange(const Arguments& arguments, core::ExchangeOptions& options) {
  if (!arguments.Has("from") && !arguments.Has("to")) return {};
  if (!arguments.Has("from") || !arguments.Has("to")) return Fail(kUsage, "--from and --to go together");
  options.range = core::ExchangeRange::kDates;
  Outcome parsed = ParseDate("from", arguments.Value("from"), options.dates.from);
  if (parsed.IsDone()) parsed = ParseDate("to", arguments.Value("to"), options.dates.to);
  if (!parsed.IsDone() || core::DayIndex(options.dates.from) <= core::DayIndex(options.dates.to)) {
    return parsed;
  }
  return Fail(kUsage, "--from lies after --to");
}

// As --format says, else as the other file's name ends.
Outcome ParseForm(const Arguments& arguments, bool& ical) {
  ical = core::IsIcalName(arguments.other);
  return ParseChoice(arguments, "format", "ics", "csv", ical);
}

Outcome ParseExchangeOptions(const Arguments& arguments, core::ExchangeOptions& options) {
  bool ical = false;
  Outcome parsed = ParseForm(arguments, ical);
  if (ical && options.mode == core::ExchangeMode::kExport) options.mode = core::ExchangeMode::kIcal;
  if (parsed.IsDone()) parsed = ParseRange(arguments, options);
  if (parsed.IsDone() && arguments.Has("subject")) {
    options.subject.emplace();
    parsed =
        ParseText("subject", arguments.Value("subject"), core::kMostExchangeSubject, true, *options.subject);
  }
  if (!parsed.IsDone() || !arguments.Has("id")) return parsed;
  if (options.range == core::ExchangeRange::kDates || options.subject) {
    return Fail(kUsage, "--id goes with none of --from, --to and --subject");
  }
  options.range = core::ExchangeRange::kRecord;
  return ParseId(arguments.Value("id"), options.id);
}

// A record that is not there is to leave the file that was to be written alone.
Outcome CheckId(const Arguments& arguments, const core::RecordFile& file,
                const core::ExchangeOptions& options) {
  if (options.range != core::ExchangeRange::kRecord) return {};
  const core::WriteResult found =
      core::WriteAppointments(file, options, [](std::string_view /*bytes*/) { return true; });
  if (found.outcome == core::WriteOutcome::kDone && found.written == 0) {
    return FailOn(arguments.file, kRefused, "There is no record " + FormatId(options.id) + ".");
  }
  return {};
}

Outcome Write(const Arguments& arguments, core::ExchangeOptions& options, Output& output) {
  options.most = core::kNoMost;
  Outcome outcome = ParseExchangeOptions(arguments, options);
  std::unique_ptr<core::RecordFile> file;
  if (outcome.IsDone()) outcome = OpenCalendarToRead(arguments, file);
  if (outcome.IsDone()) outcome = CheckId(arguments, *file, options);
  if (!outcome.IsDone()) return outcome;
  core::WriteResult result;
  const bool toOutput = arguments.other.empty() || arguments.other == "-";
  if (toOutput) {
    result = core::WriteAppointments(*file, options, [&output](std::string_view bytes) {
      output.Write(bytes);
      return !output.Failed();
    });
  } else {
    result = core::WriteAppointments(*file, options, arguments.other);
  }
  if (result.outcome == core::WriteOutcome::kDone) {
    if (result.dayless == 0) return {};
    return {kDone, FailOn(arguments.file, kDone, core::DescribeDayless(result)).message};
  }
  const bool target = result.outcome == core::WriteOutcome::kTargetFailed;
  if (target && toOutput) return {};  // whoever flushes the output tells
  return FailOn(target ? arguments.other : arguments.file, kFile, result.message);
}

// ---- Import ----

// Of the standard input; more is to come as a file.
constexpr std::size_t kMostInput = core::kMostIcalBytes;

Outcome ParseImportFormat(const Arguments& arguments, core::ImportFormat& format) {
  bool comma = format.separator == ',';
  bool quote = format.quote != '\0';
  Outcome parsed = ParseChoice(arguments, "header", "yes", "no", format.header);
  if (parsed.IsDone()) parsed = ParseChoice(arguments, "separator", "comma", "tab", comma);
  if (parsed.IsDone()) parsed = ParseChoice(arguments, "quote", "yes", "no", quote);
  format.separator = comma ? ',' : '\t';
  format.quote = quote ? '"' : '\0';
  return parsed;
}

Outcome ParseMap(std::string_view names, core::ImportMap& map) {
  for (std::size_t at = 0; at <= names.size();) {
    const std::size_t end = std::min(names.find(',', at), names.size());
    const std::string_view name = names.substr(at, end - at);
    map.push_back(name == "-" ? core::kIgnoredColumn : core::FindExchangeField(name));
    if (name != "-" && map.back() == core::kIgnoredColumn) {
      return Fail(kUsage, "--map: there is no field \"" + OneLine(name) + "\"");
    }
    at = end + 1;
  }
  return {};
}

Outcome ReadInput(std::string& text) {
  if (platform::ReadStandardInput(kMostInput, text)) return {};
  return Fail(kFile, "The input cannot be read, or is longer than 64 MB.");
}

Outcome OpenInput(const std::string& path, const core::RecordFile& calendar, core::ImportReader& reader) {
  std::string message;
  if (path == "-") {
    std::string text;
    Outcome read = ReadInput(text);
    if (!read.IsDone()) return read;
    message = reader.Take(std::move(text));
  } else {
    message = reader.Open(path, &calendar);
  }
  return message.empty() ? Outcome{} : FailOn(path, kFile, message);
}

// The map that is given, or the one that the file suggests.
Outcome FindMap(const Arguments& arguments, core::ImportReader& reader, core::ImportMap& map) {
  if (map.empty()) {
    std::vector<core::ImportText> first;
    if (reader.ReadLine(first) == core::ImportLine::kFailed) {
      return FailOn(arguments.other, kFile, "Reading it failed.");
    }
    map = reader.Format().header ? core::DefaultImportMap(first) : core::PositionalImportMap(first.size());
  }
  if (core::MapsAnything(map)) return {};
  return FailOn(arguments.other, kUsage, "No column has the name of a field; --map tells what they are.");
}

// The calendar that is imported into, and a notice of its opening. With --dry-run it is not written to, but
// asked for the same rights.
Outcome OpenForImport(const Arguments& arguments, std::unique_ptr<core::RecordFile>& file) {
  if (!arguments.Has("dry-run")) return OpenCalendarToChange(arguments, file);
  return OpenCalendarToRead(arguments, file);
}

Outcome ImportLines(const Arguments& arguments, Output& output) {
  const bool dryRun = arguments.Has("dry-run");
  core::ImportFormat format;
  core::ImportMap map;
  for (const char* option : {"zone", "verbose"}) {
    if (arguments.Has(option)) return Fail(kUsage, std::string("--") + option + " is for iCalendar only");
  }
  Outcome outcome = ParseImportFormat(arguments, format);
  if (outcome.IsDone() && arguments.Has("map")) outcome = ParseMap(arguments.Value("map"), map);
  std::unique_ptr<core::RecordFile> file;
  if (outcome.IsDone()) outcome = OpenForImport(arguments, file);
  const std::string notice = outcome.message;
  core::ImportReader reader;
  if (outcome.IsDone()) outcome = OpenInput(arguments.other, *file, reader);
  if (!outcome.IsDone()) return outcome;
  format = reader.Format();
  static_cast<void>(ParseImportFormat(arguments, format));  // found good before
  reader.SetFormat(format);
  outcome = FindMap(arguments, reader, map);
  if (!outcome.IsDone()) return outcome;
  const core::ImportResult result = core::ImportFile(*file, reader, map, {}, dryRun);
  const std::string counts = core::DescribeImportCounts(result, dryRun);
  output.Write(counts + "\n");
  outcome = DescribeChange(*file, result.result);
  if (outcome.IsDone() && result.end == core::ImportEnd::kReadFailed) {
    outcome = FailOn(arguments.other, kFile, "It could not be read to its end.");
  }
  if (outcome.IsDone()) outcome.message = notice;
  outcome.made = counts;
  return outcome;
}

// ---- Import of iCalendar ----

Outcome CheckIcalOptions(const Arguments& arguments) {
  for (const char* option : {"header", "separator", "quote", "map"}) {
    if (arguments.Has(option)) {
      return Fail(kUsage, std::string("--") + option + " is for lines of fields, not for iCalendar");
    }
  }
  if (!arguments.Has("zone") || core::IsKnownZone(arguments.Value("zone"))) return {};
  return Fail(kUsage, "--zone: there is no time zone \"" + OneLine(arguments.Value("zone")) + "\"");
}

// What the file comes to for the calendar.
Outcome Plan(const Arguments& arguments, const core::RecordFile& calendar, core::IcalUpdate& update) {
  std::string text;
  if (arguments.other == "-") {
    Outcome read = ReadInput(text);
    if (!read.IsDone()) return read;
  } else if (const std::string wrong = core::ReadIcalFile(arguments.other, calendar, text); !wrong.empty()) {
    return FailOn(arguments.other, kFile, wrong);
  }
  core::IcalPlan plan = core::PlanIcal(text, core::ReadOptionsFor(calendar, arguments.Value("zone")));
  if (!plan.refusal.empty()) return FailOn(arguments.other, kFile, plan.refusal);
  return DescribeChange(calendar, core::CompareWithCalendar(calendar, std::move(plan), update));
}

void PrintList(const core::IcalUpdate& update, Output& output) {
  Table table(output, Format::kText, {{"date", 10}, {"subject", 30}, {"what"}});
  for (const core::IcalLine& line : core::ListUpdate(update)) {
    table.Row({DateCell(line.date), Cell::Text(line.subject), Cell::Text(line.what)});
  }
  table.End();
}

Outcome ImportIcal(const Arguments& arguments, Output& output) {
  const bool dryRun = arguments.Has("dry-run");
  Outcome outcome = CheckIcalOptions(arguments);
  std::unique_ptr<core::RecordFile> file;
  if (outcome.IsDone()) outcome = OpenForImport(arguments, file);
  const std::string notice = outcome.message;
  if (outcome.IsDone()) outcome = DescribeChange(*file, core::CheckMayChange(*file));
  core::IcalUpdate update;
  if (outcome.IsDone()) outcome = Plan(arguments, *file, update);
  if (!outcome.IsDone()) return outcome;
  core::IcalUpdateResult result;
  if (!dryRun) result = core::ApplyUpdate(*file, update);
  // Of an update that broke off the list would tell of what was not done.
  if (arguments.Has("verbose") && core::IsMade(result.result)) PrintList(update, output);
  std::string counts;
  for (const std::string& line :
       dryRun ? core::DescribeUpdate(update) : core::DescribeUpdate(update, result)) {
    counts.append(counts.empty() ? "" : " ").append(line);
    output.Write(line + "\n");
  }
  outcome = DescribeChange(*file, result.result);
  if (outcome.IsDone()) outcome.message = notice;
  if (!dryRun) outcome.made = counts;
  return outcome;
}

}  // namespace

Outcome ImportCommand(const Arguments& arguments, Output& output) {
  bool ical = false;
  Outcome outcome = ParseForm(arguments, ical);
  if (!outcome.IsDone()) return outcome;
  return ical ? ImportIcal(arguments, output) : ImportLines(arguments, output);
}

Outcome ExportCommand(const Arguments& arguments, Output& output) {
  core::ExchangeOptions options;
  return Write(arguments, options, output);
}

Outcome ReportCommand(const Arguments& arguments, Output& output) {
  core::ExchangeOptions options;
  options.mode = core::ExchangeMode::kReport;
  return Write(arguments, options, output);
}

}  // namespace cli
