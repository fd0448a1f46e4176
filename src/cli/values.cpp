#include "cli/values.h"

#include <array>
#include <charconv>
#include <cstdio>

#include "core/calendar/repeat_rule.h"
#include "platform/system/clock.h"
#include "platform/system/code_page.h"

namespace cli {
namespace {

Outcome WrongValue(std::string_view option, std::string_view text, const std::string& why) {
  return Fail(kUsage, "--" + std::string(option) + " \"" + OneLine(text) + "\" " + why);
}

// Digits only: no sign, no blank.
template <typename T>
bool ParseNumber(std::string_view text, T& number, int base = 10) {
  if (text.empty() || text.front() == '-') return false;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  return error == std::errc() && end == text.data() + text.size();
}

std::string TwoDigits(int number) {
  return std::string(number < 10 ? "0" : "").append(std::to_string(number));
}

// The bytes of the UTF-8 character at the front, one for what is none.
std::string_view FirstCharacter(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
  for (std::size_t i = 1; i < length; ++i) {
    if (i >= text.size() || (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return text.substr(0, 1);
  }
  return text.substr(0, length);
}

// "U+20AC" for the bytes of one character.
std::string CodeOf(std::string_view character) {
  unsigned code = static_cast<unsigned char>(character.front());
  if (character.size() > 1) {
    code &= 0x7FU >> character.size();
    for (const char tail : character.substr(1)) code = code << 6 | (static_cast<unsigned char>(tail) & 0x3F);
  }
  std::array<char, 16> name;
  std::snprintf(name.data(), name.size(), "U+%04X", code);
  return name.data();
}

Outcome WrongCharacter(std::string_view option, std::string_view character) {
  const std::string name = "--" + std::string(option) + ": ";
  if (character.size() == 1 && static_cast<unsigned char>(character.front()) >= 0x80) {
    return Fail(kUsage, name + "the text is not UTF-8");
  }
  if (character.size() == 1)
    return Fail(kUsage, name + "the character " + CodeOf(character) + " cannot stand in it");
  return Fail(kUsage, name + "the character " + std::string(character) + " (" + CodeOf(character) +
                          ") is not in code page 1252");
}

// Of the control characters tabs may, and a carriage return before a line feed.
bool MayStand(std::string_view character, std::string_view rest, bool oneLine) {
  const bool control = static_cast<unsigned char>(character.front()) < 0x20 || character.front() == '\x7F';
  const bool lineEnd = character == "\r" && rest.starts_with('\n');
  return !control || (!oneLine && (character == "\t" || lineEnd));
}

std::string_view TakeField(std::string_view& text, char separator) {
  const std::size_t end = text.find(separator);
  const std::string_view field = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return field;
}

bool ParseWeekdays(std::string_view text, std::uint32_t& mask) {
  constexpr std::array<std::string_view, 7> kNames{"sun", "mon", "tue", "wed", "thu", "fri", "sat"};
  mask = 0;
  do {
    const std::string_view name = TakeField(text, ',');
    int number = 1;
    while (number <= 7 && kNames[static_cast<std::size_t>(number) - 1] != name) ++number;
    if (number > 7) return false;
    mask |= core::WeekdayBit(number);
  } while (!text.empty());
  return true;
}

}  // namespace

Outcome ParseDate(std::string_view option, std::string_view text, core::Date& date) {
  int year = 0;
  int month = 0;
  int day = 0;
  const bool formed = text.size() == 10 && text[4] == '-' && text[7] == '-' &&
                      ParseNumber(text.substr(0, 4), year) && ParseNumber(text.substr(5, 2), month) &&
                      ParseNumber(text.substr(8), day);
  date = {day, month, year};
  if (!formed) return WrongValue(option, text, "is no date like 2004-03-14");
  if (core::DayIndex(date) >= 0) return {};
  if (!core::IsValidDate(date.day, date.month, date.year)) return WrongValue(option, text, "is no day");
  return WrongValue(
      option, text,
      "is not in the years " + std::to_string(core::kFirstYear) + " to " + std::to_string(core::LastYear()));
}

Outcome ParseMonth(std::string_view option, std::string_view text, core::Date& first) {
  if (text.size() == 7 && ParseDate(option, std::string(text) + "-01", first).IsDone()) return {};
  return WrongValue(option, text, "is no month of the calendar like 2004-03");
}

Outcome ParseMoment(std::string_view option, std::string_view text, core::AlarmMoment& moment) {
  platform::LocalTime time{};
  if (text.size() != 16 || !platform::ParseClockText(std::string(text) + ":00", time))
    return WrongValue(option, text, "is no moment like 2004-03-14T10:40");
  moment.time = {time.hour % 12, time.minute - time.minute % 5, 0,
                 time.hour < 12 ? core::kBeforeNoon : core::kAfterNoon};
  return ParseDate(option, text.substr(0, 10), moment.date);
}

Outcome ParseTime(std::string_view option, std::string_view text, core::TimeOfDay& time) {
  int hour = 0;
  int minute = 0;
  const bool formed = text.size() == 5 && text[2] == ':' && ParseNumber(text.substr(0, 2), hour) &&
                      ParseNumber(text.substr(3), minute);
  if (!formed || hour > 23 || minute > 59) return WrongValue(option, text, "is no time like 09:30");
  if (minute % 5 != 0) return WrongValue(option, text, "is not in steps of five minutes");
  time = {hour % 12, minute, 0, hour < 12 ? core::kBeforeNoon : core::kAfterNoon};
  return {};
}

Outcome ParseText(std::string_view option, std::string_view text, std::size_t most, bool oneLine,
                  std::string& bytes) {
  bytes.clear();
  while (!text.empty()) {
    const std::string_view character = FirstCharacter(text);
    text.remove_prefix(character.size());
    std::string converted;
    if (character == "\n" && !oneLine) {
      converted = bytes.ends_with('\r') ? "\n" : "\r\n";
    } else if (!MayStand(character, text, oneLine) || !platform::CodePageFromUtf8(character, converted)) {
      return WrongCharacter(option, character);
    }
    bytes += converted;
  }
  if (bytes.size() <= most) return {};
  return Fail(kUsage, "--" + std::string(option) + ": the text has " + std::to_string(bytes.size()) +
                          " characters, at most " + std::to_string(most) + " find room");
}

Outcome ParseRepeat(std::string_view option, std::string_view text, core::RepeatChoice& repeat) {
  Outcome wrong = WrongValue(
      option, text,
      "is no rule like daily:3, weekly:1:mon,fri, monthly:1 or yearly:1, with intervals of 1 to 99");
  repeat = {};
  std::string_view rest = text;
  const std::string_view type = TakeField(rest, ':');
  if (type == "daily") repeat.type = core::kRepeatDaily;
  if (type == "weekly") repeat.type = core::kRepeatWeekly;
  if (type == "monthly") repeat.type = core::kRepeatMonthly;
  if (type == "yearly") repeat.type = core::kRepeatYearly;
  if (repeat.type == core::kRepeatNone || text.ends_with(':') || text.ends_with(',')) return wrong;
  if (rest.empty()) return {};
  if (!ParseNumber(TakeField(rest, ':'), repeat.every) || repeat.every < 1 ||
      repeat.every > core::kLongestInterval) {
    return wrong;
  }
  if (rest.empty()) return {};
  return repeat.type == core::kRepeatWeekly && ParseWeekdays(rest, repeat.weekdays) ? Outcome{} : wrong;
}

Outcome ParseId(std::string_view text, std::uint64_t& id) {
  if (text.size() == 16 && ParseNumber(text, id, 16)) return {};
  return Fail(kUsage, std::string("\"").append(OneLine(text)).append("\" is no id of 16 hexadecimal digits"));
}

std::string FormatId(std::uint64_t id) {
  std::array<char, 20> text;
  std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(id));
  return text.data();
}

Outcome ParseOffset(std::string_view option, std::string_view text, std::int32_t& offset) {
  return ParseNumber(text, offset) ? Outcome{} : WrongValue(option, text, "is no offset");
}

Outcome ParseFormat(std::string_view option, std::string_view text, Format& format) {
  format = Format::kText;
  if (text == "csv") format = Format::kCsv;
  if (text == "json") format = Format::kJson;
  if (format != Format::kText || text.empty() || text == "text") return {};
  return WrongValue(option, text, "is not text, csv or json");
}

Cell DateCell(const core::Date& date) {
  if (core::StoredDayIndex(date) < 0) return {};
  return Cell::Text(std::to_string(date.year) + "-" + TwoDigits(date.month) + "-" + TwoDigits(date.day));
}

Cell TimeCell(const core::TimeOfDay& time) {
  const int slot = core::TimeSlot(time);
  if (slot < 0 || slot >= core::kDaySlots) return {};
  return Cell::Text(TwoDigits(slot / 12) + ":" + TwoDigits(time.minute));
}

std::string FromStored(std::string_view bytes) {
  std::string text = platform::Utf8FromCodePage(bytes);
  for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at))
    text.erase(at, 1);
  return text;
}

}  // namespace cli
