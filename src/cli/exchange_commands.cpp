// The commands that carry appointments out as text: export and report.
#include <memory>

#include "cli/calendar_access.h"
#include "cli/commands.h"
#include "cli/values.h"
#include "core/exchange/appointment_writer.h"

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

}  // namespace

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
