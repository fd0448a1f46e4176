#include "calendar/day_query.h"

#include <cstddef>

#include "core/appointment.h"
#include "core/repeat_rule.h"

bool ListDay(core::RecordQuery& records, core::RecordFile& file, const core::Date& date,
             std::string_view category) {
  records.Clear();
  records.AddCallbackCondition(0, &date, sizeof date, core::OccursOnDate, core::Connector::kAnd);
  if (!category.empty()) {
    records.AddTextCondition(offsetof(core::Appointment, header) + offsetof(core::RecordHeader, category),
                             sizeof(core::RecordHeader::category), core::ConditionOp::kEqual, category,
                             core::Connector::kAnd);
  }
  return records.Run(file) && records.Sort(file, core::kDayOrder);
}
