// The commands that carry appointments out as text and in again: export, report and import.
#include <algorithm>
#include <memory>
#include <utility>

#include "cli/calendar_access.h"
#include "cli/commands.h"
#include "cli/values.h"
#include "core/exchange/appointment_writer.h"
#include "core/exchange/import_file.h"
#include "core/store/file_messages.h"
#include "platform/system/standard_streams.h"

namespace cli {
namespace {

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

Outcome ParseExchangeOptions(const Arguments& arguments, core::ExchangeOptions& options) {
  if (arguments.Has("format") && arguments.Value("format") != "csv") {
    return Fail(kUsage, "--format takes csv only here");
  }
  Outcome parsed = ParseRange(arguments, options);
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
  if (result.outcome == core::WriteOutcome::kDone) return {};
  const bool target = result.outcome == core::WriteOutcome::kTargetFailed;
  if (target && toOutput) return {};  // whoever flushes the output tells
  return FailOn(target ? arguments.other : arguments.file, kFile, result.message);
}

// ---- Import ----

// More is to come as a file.
constexpr std::size_t kMostInput = std::size_t{64} << 20;

// "yes" or "no", or whichever two words an option takes; the value stays where it is not given.
Outcome ParseChoice(const Arguments& arguments, const char* option, const char* yes, const char* no,
                    bool& value) {
  if (!arguments.Has(option)) return {};
  const std::string& given = arguments.Value(option);
  value = given == yes;
  if (value || given == no) return {};
  return Fail(kUsage, std::string("--") + option + " takes " + yes + " or " + no);
}

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

Outcome OpenInput(const std::string& path, const core::RecordFile& calendar, core::ImportReader& reader) {
  std::string message;
  if (path == "-") {
    std::string text;
    if (!platform::ReadStandardInput(kMostInput, text)) {
      return Fail(kFile, "The input cannot be read, or is longer than 64 MB.");
    }
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

}  // namespace

Outcome ImportCommand(const Arguments& arguments, Output& output) {
  const bool dryRun = arguments.Has("dry-run");
  core::ImportFormat format;
  core::ImportMap map;
  Outcome outcome = ParseImportFormat(arguments, format);
  if (outcome.IsDone() && arguments.Has("map")) outcome = ParseMap(arguments.Value("map"), map);
  std::unique_ptr<core::RecordFile> file;
  if (outcome.IsDone()) {
    outcome = dryRun ? OpenCalendarToRead(arguments, file) : OpenCalendarToChange(arguments, file);
  }
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
