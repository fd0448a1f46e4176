#include "exchange/ical_import.h"

#include <utility>

#include "core/exchange/ical_file.h"
#include "core/exchange/ical_update.h"
#include "core/store/file_messages.h"
#include "exchange/ical_plan_dialog.h"

namespace {

std::string Joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text.append(text.empty() ? "" : "\r\n").append(line);
  return text;
}

}  // namespace

Imported ImportIcal(core::RecordFile& file, ZarfWnd* owner, const std::string& path) {
  std::string text;
  const std::string problem = core::ReadIcalFile(path, file, text);
  if (!problem.empty()) return {problem};
  core::IcalPlan plan = UnderProgress(owner, path, [&](const core::ExchangeProgress& progress) {
    return core::PlanIcal(text, core::ReadOptionsFor(file), progress);
  });
  if (plan.cancelled) return {};
  if (!plan.refusal.empty()) return {plan.refusal};
  core::IcalUpdate update;
  const core::CommandResult compared = core::CompareWithCalendar(file, std::move(plan), update);
  if (compared != core::CommandResult::kDone) {
    return {core::DescribeResult(file, compared), false, compared};
  }
  if (!IcalPlanDialog(update).Run(owner)) return {};
  const core::IcalUpdateResult result = UnderProgress(
      owner, path,
      [&](const core::ExchangeProgress& progress) { return core::ApplyUpdate(file, update, progress); });
  std::string message = Joined(core::DescribeUpdate(update, result));
  if (result.result != core::CommandResult::kDone) {
    message = core::DescribeResult(file, result.result) + "\r\n" + message;
  }
  return {message, result.added + result.changed + result.deleted != 0, result.result};
}
