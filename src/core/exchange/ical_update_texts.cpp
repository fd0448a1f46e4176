// What users read of an update.
#include <map>

#include "core/exchange/ical_update.h"
#include "platform/system/code_page.h"

namespace core {
namespace {

std::string Appointments(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " appointment" : " appointments");
}

std::string IsOrAre(std::size_t count) {
  return Appointments(count) + (count == 1 ? " is " : " are ");
}

const char* WordOf(IcalFate fate) {
  switch (fate) {
    case IcalFate::kAdd:
      return "new";
    case IcalFate::kChange:
      return "changed";
    case IcalFate::kDelete:
      return "deleted: the file no longer has it";
    case IcalFate::kThere:
      return "already there";
    case IcalFate::kOlder:
      return "stays: the calendar has a later state of it";
    case IcalFate::kRemoved:
      return "left out: it was deleted here";
    case IcalFate::kEvent:
      return "stays: it is an internet event";
    case IcalFate::kOwners:
      return "left out: confidential";
    case IcalFate::kLocked:
      return "stays: somebody edits it or has just changed it";
  }
  return "";
}

// What stays as it is, or is left out, and why.
void TellTheRest(const IcalUpdate& update, std::vector<std::string>& lines) {
  const auto tell = [&](IcalFate fate, const char* what) {
    const std::size_t count = update.Count(fate);
    if (count != 0) lines.push_back(IsOrAre(count) + what);
  };
  tell(IcalFate::kThere, "already there.");
  tell(IcalFate::kOlder, "left alone: the calendar has a later state.");
  tell(IcalFate::kRemoved, "left out: deleted here before.");
  tell(IcalFate::kEvent, "left alone as part of internet events.");
  tell(IcalFate::kOwners, "left out: confidential, which is for the Owner level only.");
  tell(IcalFate::kLocked, "left alone: being edited, or just changed by others.");
  std::map<IcalReason, std::size_t> counts;
  for (const IcalRemark& remark : update.plan.remarks) ++counts[remark.reason];
  for (const auto& [reason, count] : counts) {
    lines.push_back((IsLeftOut(reason) ? "Left out: " : "") + DescribeIcalReason(reason, count) + ".");
  }
}

std::string Done(std::size_t count, const char* verb, const char* doing) {
  const char* const was = count == 1 ? " was " : " were ";
  return Appointments(count) + (doing != nullptr ? doing : was) + verb + ".";
}

std::vector<std::string> Describe(const IcalUpdate& update, std::size_t added, std::size_t changed,
                                  std::size_t deleted, const char* doing) {
  std::vector<std::string> lines;
  if (update.steps.empty()) {
    lines.emplace_back("There is nothing to import.");
  } else {
    lines.push_back(Done(added, "added", doing));
  }
  if (changed != 0) lines.push_back(Done(changed, "changed", doing));
  if (deleted != 0) lines.push_back(Done(deleted, "deleted, which the file no longer has", doing));
  TellTheRest(update, lines);
  return lines;
}

}  // namespace

std::vector<std::string> DescribeUpdate(const IcalUpdate& update) {
  return Describe(update, update.Count(IcalFate::kAdd), update.Count(IcalFate::kChange),
                  update.Count(IcalFate::kDelete), " would be ");
}

std::vector<std::string> DescribeUpdate(const IcalUpdate& update, const IcalUpdateResult& result) {
  std::vector<std::string> lines = Describe(update, result.added, result.changed, result.deleted, nullptr);
  if (result.cancelled) lines.insert(lines.begin(), "The import was cancelled.");
  return lines;
}

std::vector<IcalLine> ListUpdate(const IcalUpdate& update) {
  std::vector<IcalLine> lines;
  for (const IcalRemark& remark : update.plan.remarks) {
    const std::string detail = remark.detail.empty() ? "" : " (" + remark.detail + ")";
    lines.push_back({DescribeIcalReason(remark.reason, 1) + detail, remark.date,
                     platform::Utf8FromCodePage(remark.subject)});
  }
  for (std::size_t i = 0; i < update.steps.size(); ++i) {
    const Appointment& record = update.plan.records[i].record;
    lines.push_back(
        {WordOf(update.steps[i].fate), record.date, platform::Utf8FromCodePage(ReadText(record.subject))});
  }
  for (const IcalLeftover& leftover : update.leftovers) {
    lines.push_back({WordOf(leftover.fate), leftover.date, platform::Utf8FromCodePage(leftover.subject)});
  }
  return lines;
}

}  // namespace core
