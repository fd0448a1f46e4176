#include "core/exchange/ical_writer.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <optional>

#include "core/calendar/repeat_rule.h"
#include "platform/system/clock.h"
#include "platform/system/code_page.h"

namespace core {
namespace {

constexpr std::size_t kLongestLine = 75;  // bytes, without the line end
constexpr int kMinutesOfDay = 24 * 60;
// A rule with a larger interval, in a damaged record, is written out: not every program reads one.
constexpr std::uint32_t kMostInterval = 999;
constexpr std::int32_t kMostDaysBefore = 9999;
constexpr std::array<const char*, 7> kWeekdays{"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < ' ' || c == '\x7F';
}

bool BeginsCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) != 0x80;
}

// Adds a line, in pieces where it is too long, which are cut between characters only.
void PutLine(std::string_view name, std::string_view value, std::string& text) {
  std::string_view rest = value;
  text += name;
  std::size_t room = kLongestLine - name.size();
  while (rest.size() > room) {
    std::size_t cut = room;
    while (cut > 0 && !BeginsCharacter(rest[cut])) --cut;
    text.append(rest.substr(0, cut)).append("\r\n ");
    rest.remove_prefix(cut);
    room = kLongestLine - 1;
  }
  text.append(rest).append("\r\n");
}

// A stored text as the value of a property.
std::string EscapedText(std::string_view bytes) {
  std::string escaped;
  const std::string utf8 = platform::Utf8FromCodePage(bytes);
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const char c = utf8[i];
    const bool pair = c == '\r' && i + 1 < utf8.size() && utf8[i + 1] == '\n';
    if (c == '\n' || (c == '\r' && !pair)) {
      escaped += "\\n";
    } else if (c == '\\' || c == ';' || c == ',') {
      escaped.append("\\").append(1, c);
    } else if (c == '\xC2' && static_cast<unsigned char>(utf8[i + 1]) < 0xA0) {
      ++i;  // what the code page leaves undefined
    } else if (!IsControl(c) || c == '\t') {
      escaped += c;
    }
  }
  return escaped;
}

void PutText(std::string_view name, std::string_view bytes, std::string& text) {
  if (!bytes.empty()) PutLine(name, EscapedText(bytes), text);
}

// Minutes since midnight. Noon may be hour 12, and an hour of 24 stand as it was written by whoever wrote the
// record; nothing for what is no time on either face.
std::optional<int> MinuteOf(const TimeOfDay& time) {
  if (time.minute < 0 || time.minute > 59 || time.hour < 0 || time.hour > 23) return std::nullopt;
  const bool afternoon = time.half != kBeforeNoon && time.hour < 12;
  return (time.hour + (afternoon ? 12 : 0)) * 60 + time.minute;
}

std::string DateText(const Date& date) {
  std::array<char, 16> digits{};
  const int length = std::snprintf(digits.data(), digits.size(), "%04d%02d%02d", date.year % 10000,
                                   date.month % 100, date.day % 100);
  return {digits.data(), static_cast<std::size_t>(length)};
}

// An instant of a time zone that is not named, or the day where there is no minute.
std::string MomentText(const Date& date, std::optional<int> minute) {
  if (!minute) return DateText(date);
  std::array<char, 16> digits{};
  const int length =
      std::snprintf(digits.data(), digits.size(), "T%02d%02d00", *minute / 60 % 24, *minute % 60);
  return DateText(date).append(digits.data(), static_cast<std::size_t>(length));
}

// The calendar's last day has one as well.
Date DayAfter(Date date) {
  if (NextDay(date)) return date;
  return {1, 1, date.year + 1};
}

// When an event begins and ends, as the file has it: minutes are missing from one of the whole day.
struct Times {
  std::optional<int> start;
  std::optional<int> end;  // behind the start, else none
};

Times TimesOf(const Appointment& record) {
  Times times;
  if (record.allDay != 0) return times;
  times.start = MinuteOf(record.startTime);
  const std::optional<int> end = MinuteOf(record.endTime);
  if (times.start && end && *end > *times.start) times.end = end;
  return times;
}

std::string WeekdayList(const Appointment& record, int first) {
  std::string names;
  for (int bit = 0; bit < 7; ++bit) {
    if ((record.repeat.repeatParam >> bit & 1) == 0) continue;
    names.append(names.empty() ? "" : ",").append(kWeekdays[static_cast<std::size_t>((first + bit) % 7)]);
  }
  return names;
}

// The rule without its end; nothing for one that does not come as often as its words say, and is written out.
std::string RuleText(const Appointment& record) {
  const std::uint32_t param = record.repeat.repeatParam;
  if (record.repeat.repeatEvery < 1 || record.repeat.repeatEvery > kMostInterval) return "";
  const std::string interval = ";INTERVAL=" + std::to_string(record.repeat.repeatEvery);
  switch (record.repeat.repeatType) {
    case kRepeatDaily:
      return "FREQ=DAILY" + interval;
    case kRepeatWeekly: {
      const int first = std::max(FirstWeekdayOf(record.date), 0);
      return "FREQ=WEEKLY" + interval + ";WKST=" + kWeekdays[static_cast<std::size_t>(first)] +
             ";BYDAY=" + WeekdayList(record, first);
    }
    case kRepeatMonthly:
      return "FREQ=MONTHLY" + interval + ";BYMONTHDAY=" + std::to_string(param);
    case kRepeatYearly: {
      // What not every year has: on such a day it falls in its leap years only, and from such a date once.
      constexpr int kCommonYear = 2001;
      const auto month = static_cast<int>(param >> 16);
      const auto day = static_cast<int>(param & 0xFFFF);
      if (!IsValidDate(record.date.day, record.date.month, kCommonYear) ||
          !IsValidDate(day, month, kCommonYear)) {
        return "";
      }
      return "FREQ=YEARLY" + interval + ";BYMONTH=" + std::to_string(month) +
             ";BYMONTHDAY=" + std::to_string(day);
    }
    default:
      return "";
  }
}

// The last day of the rule, nothing for one without an end. An end behind the calendar stays as it is.
std::optional<Date> LastDay(const Appointment& record) {
  const std::optional<Date> end = EndOf(record.repeat);
  if (!end || StoredDayIndex(*end) > DayIndex(LastDate())) return end;
  return LastOccurrence(record);
}

void PutRule(const Appointment& record, const Date& first, const Times& times, std::string& text) {
  const std::string rule = RuleText(record);
  if (!rule.empty()) {
    const std::optional<Date> last = LastDay(record);
    PutLine("RRULE:", last ? rule + ";UNTIL=" + MomentText(*last, times.start) : rule, text);
    return;
  }
  std::string dates;
  for (std::optional<Date> day = NextOccurrence(record, first); day; day = NextOccurrence(record, *day)) {
    dates.append(dates.empty() ? "" : ",").append(MomentText(*day, times.start));
  }
  if (!dates.empty()) PutLine(times.start ? "RDATE:" : "RDATE;VALUE=DATE:", dates, text);
}

// Bytes of the file system as a URI, or a part of one: with a percent sign where `plain` says no.
std::string PercentEncoded(std::string_view bytes, bool (*plain)(char)) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (plain(c)) {
      encoded += c;
    } else {
      encoded.append("%").append(1, kDigits[byte >> 4U]).append(1, kDigits[byte & 0xFU]);
    }
  }
  return encoded;
}

bool StaysInPath(char c) {
  constexpr std::string_view kOthers = "-._~/";
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         kOthers.find(c) != std::string_view::npos;
}

// A URL has its percent signs already.
bool StaysInUrl(char c) {
  return c > ' ' && c < '\x7F';
}

void PutAttachment(const Appointment& record, std::string& text) {
  if (!HasAttachment(record)) return;
  const std::string_view attached = ReadText(record.attachment);
  if (record.attachmentKind == kAttachedUrl) {
    PutLine("ATTACH:", PercentEncoded(attached, StaysInUrl), text);
  } else {
    PutLine(attached.starts_with('/') ? "ATTACH:file://" : "ATTACH:file:",
            PercentEncoded(attached, StaysInPath), text);
  }
}

std::string DurationText(std::int64_t minutes) {
  const std::int64_t length = std::abs(minutes);
  const std::int64_t days = length / kMinutesOfDay;
  const std::int64_t hours = length % kMinutesOfDay / 60;
  std::string text = minutes < 0 ? "-P" : "P";
  if (days != 0) text += std::to_string(days) + "D";
  if (length % kMinutesOfDay == 0 && days != 0) return text;
  text += "T";
  if (hours != 0) text += std::to_string(hours) + "H";
  if (length % 60 != 0 || hours == 0) text += std::to_string(length % 60) + "M";
  return text;
}

void PutAlarm(const Appointment& record, const Times& times, std::string& text) {
  const std::optional<int> ring = MinuteOf(record.alarmTime);
  if (record.alarmOn != 1 || !ring || record.alarmDaysBefore > kMostDaysBefore) return;
  const std::int64_t before = std::max(std::int32_t{record.alarmDaysBefore}, 0);
  text += "BEGIN:VALARM\r\nACTION:DISPLAY\r\n";
  const std::string_view subject = ReadText(record.subject);
  PutText("DESCRIPTION:", subject.empty() ? "Reminder" : subject, text);
  PutLine("TRIGGER:", DurationText(*ring - times.start.value_or(0) - before * kMinutesOfDay), text);
  text += "END:VALARM\r\n";
}

std::string StampText(std::int64_t unixSeconds) {
  constexpr std::int64_t kSecondsOfDay = 86400;
  const std::chrono::sys_days day{std::chrono::days{unixSeconds / kSecondsOfDay}};
  const std::chrono::year_month_day date{day};
  const auto second = static_cast<int>(unixSeconds % kSecondsOfDay);
  std::string text = MomentText(
      {static_cast<std::int32_t>(static_cast<unsigned>(date.day())),
       static_cast<std::int32_t>(static_cast<unsigned>(date.month())), static_cast<int>(date.year())},
      second / 60);
  return text.append("Z");
}

}  // namespace

bool IsIcalName(std::string_view path) {
  constexpr std::string_view kEnding = ".ics";
  if (path.size() <= kEnding.size()) return false;
  const std::string_view ending = path.substr(path.size() - kEnding.size());
  return std::equal(ending.begin(), ending.end(), kEnding.begin(),
                    [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; });
}

IcalWriter::IcalWriter() : stamp(StampText(platform::UnixSeconds())) {}

void IcalWriter::Meet(const RecordKey& key) {
  const unsigned number = ++met[key.id];
  if (number > 1) copies.emplace(key.offset, number);
}

void IcalWriter::PutHead(std::string& text) const {
  text += "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Daybrix//Tempoline " DAYBRIX_VERSION "//EN\r\n";
}

void IcalWriter::PutTail(std::string& text) const {
  text += "END:VCALENDAR\r\n";
}

bool IcalWriter::PutEvent(const Appointment& record, const RecordKey& key, std::string& text) const {
  const std::optional<Date> first = FirstOccurrence(record);
  if (!first) return false;
  const Times times = TimesOf(record);
  std::array<char, 17> id{};
  std::snprintf(id.data(), id.size(), "%016llx", static_cast<unsigned long long>(key.id));
  const auto copy = copies.find(key.offset);
  const std::string number =
      copy == copies.end() ? "" : std::string("-").append(std::to_string(copy->second));
  text.append("BEGIN:VEVENT\r\nUID:").append(id.data()).append(number).append(kIcalUidEnd);
  text.append("\r\nDTSTAMP:").append(stamp).append("\r\n");
  const std::string_view type = times.start ? ":" : ";VALUE=DATE:";
  text.append("DTSTART").append(type).append(MomentText(*first, times.start)).append("\r\n");
  if (!times.start) text.append("DTEND;VALUE=DATE:").append(DateText(DayAfter(*first))).append("\r\n");
  if (times.end) text.append("DTEND:").append(MomentText(*first, times.end)).append("\r\n");
  if (HasRepeat(record)) PutRule(record, *first, times, text);
  PutText("SUMMARY:", ReadText(record.subject), text);
  PutText("DESCRIPTION:", ReadText(record.notes), text);
  PutText("CATEGORIES:", ReadText(record.header.category), text);
  if (record.header.confidential == 1) text += "CLASS:CONFIDENTIAL\r\n";
  PutAttachment(record, text);
  PutAlarm(record, times, text);
  text += "END:VEVENT\r\n";
  return true;
}

}  // namespace core
