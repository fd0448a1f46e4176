#include "core/exchange/ical_fields.h"

#include <algorithm>
#include <optional>

#include "core/calendar/repeat_rule.h"
#include "core/exchange/nearest_letters.h"
#include "core/store/text_field.h"
#include "platform/system/code_page.h"

namespace core {
namespace {

constexpr std::string_view kNoSubject = "(no subject)";
constexpr int kMostDaysBefore = 99;
constexpr int kSlotSeconds = 300;

std::string_view TrimSpace(std::string_view text) {
  constexpr std::string_view kSpace = " \t\n";
  const std::size_t first = text.find_first_not_of(kSpace);
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

// Line ends, and the blanks about them, become one blank.
std::string OnOneLine(std::string_view text) {
  std::string line(TrimSpace(text));
  std::replace(line.begin(), line.end(), '\n', ' ');
  return line;
}

std::string WithCarriageReturns(std::string_view text) {
  std::string lines;
  for (const char c : text) {
    if (c == '\n') lines += '\r';
    lines += c;
  }
  return lines;
}

// Fields end with a zero byte. A CR LF is not cut through.
template <std::size_t kSize>
void WriteCut(char (&field)[kSize], std::string_view text, IcalFieldLoss& loss) {
  if (text.size() >= kSize) {
    loss.shortened = true;
    text = text.substr(0, text[kSize - 2] == '\r' ? kSize - 2 : kSize - 1);
  }
  WriteText(field, text);
}

// The description, and behind it where the event is, in full while there is room for it.
std::string NotesOf(const std::string& description, const std::string& location, const std::string& url,
                    IcalFieldLoss& loss) {
  constexpr std::size_t kRoom = sizeof(Appointment::notes) - 1;
  std::string last;
  if (!location.empty()) last = "Location: " + OnOneLine(location);
  if (!url.empty()) last += (last.empty() ? "" : "\r\n") + url;
  std::string notes = WithCarriageReturns(TrimSpace(description));
  if (last.empty()) return notes;
  const std::size_t room = last.size() + 2 < kRoom ? kRoom - last.size() - 2 : 0;
  if (notes.size() > room) {
    loss.shortened = true;
    notes.resize(room);
    while (!notes.empty() && (notes.back() == '\r' || notes.back() == '\n')) notes.pop_back();
  }
  return notes.empty() ? last : notes + "\r\n" + last;
}

void WriteCategory(const IcalEvent& event, const std::vector<std::string>& known, Appointment& record,
                   IcalFieldLoss& loss) {
  constexpr std::size_t kMostNames = 100;
  std::string chosen;
  std::size_t count = 0;
  for (const std::string_view name : event.categories) {
    IcalFieldLoss own;
    const std::string stored = OnOneLine(StoredText(name, own));
    const auto same = std::find_if(known.begin(), known.end(),
                                   [&](const std::string& one) { return EqualsIgnoringCase(one, stored); });
    if (chosen.empty()) {
      chosen = stored;
      loss.codePage |= own.codePage;
      loss.letters |= own.letters;
    }
    if (same != known.end()) chosen = *same;
    if (same != known.end() || ++count == kMostNames) break;
  }
  WriteCut(record.header.category, chosen, loss);
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

std::string WithoutPercents(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int high = text[i] == '%' && i + 2 < text.size() ? HexDigit(text[i + 1]) : -1;
    const int low = high >= 0 ? HexDigit(text[i + 2]) : -1;
    if (low >= 0) i += 2;
    decoded += low >= 0 ? static_cast<char>(high * 16 + low) : text[i];
  }
  return decoded;
}

bool StartsWith(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && EqualsIgnoringCase(text.substr(0, start.size()), start);
}

// The path that a file: URI names on this machine; empty for one elsewhere.
std::string PathOf(std::string_view uri) {
  uri.remove_prefix(std::string_view("file:").size());
  if (uri.starts_with("//")) {
    uri.remove_prefix(2);
    const std::string_view host = uri.substr(0, uri.find('/'));
    if (!host.empty() && !EqualsIgnoringCase(host, "localhost")) return {};
    uri.remove_prefix(host.size());
  }
  return WithoutPercents(uri);
}

bool WriteAttachment(std::string_view uri, Appointment& record) {
  const bool web = StartsWith(uri, "http://") || StartsWith(uri, "https://");
  if (!web && !StartsWith(uri, "file:")) return false;
  const std::string stored = web ? std::string(uri) : PathOf(uri);  // in bytes of the file system
  const bool hasControl =
      std::any_of(stored.begin(), stored.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; });
  if (stored.empty() || hasControl || stored.size() >= sizeof record.attachment) return false;
  record.attachmentKind = web ? kAttachedUrl : kAttachedDocument;
  WriteText(record.attachment, stored);
  return true;
}

void WriteAttachments(const IcalEvent& event, Appointment& record, IcalFieldLoss& loss) {
  const auto uri = std::find_if(event.attachments.begin(), event.attachments.end(), [](std::string_view one) {
    return !one.empty() && !StartsWith(one, "data:");
  });
  const bool written = uri != event.attachments.end() && WriteAttachment(*uri, record);
  loss.attachment = event.attachments.size() > (written ? 1U : 0U);
}

// When an alarm rings, in seconds behind the start of the event, by the calendar's clock. Nothing where a
// record cannot say it.
std::optional<std::int64_t> RingOf(const IcalEvent& event, const IcalAlarm& alarm, const IcalPiece& piece,
                                   const IcalZones& zones) {
  if (!alarm.rings) return std::nullopt;
  std::int64_t ring = alarm.at;
  if (alarm.isMoment) {
    // A moment is of one occurrence alone.
    if (!event.rules.empty() || !event.extras.empty()) return std::nullopt;
    ring =
        zones.Convert(zones.Utc(), alarm.at, nullptr) - (DayIndex(piece.date) * kSecondsOfDay + piece.second);
  } else if (alarm.fromEnd) {
    ring += piece.length;
  }
  if (ring > 0 || -DayOf(piece.second + ring) > kMostDaysBefore) return std::nullopt;
  return ring;
}

// Whether the time is behind the clock's.
bool IsToCome(int day, int slot, const AlarmMoment& now) {
  const int today = DayIndex(now.date);
  return day > today || (day == today && slot > TimeSlot(now.time));
}

}  // namespace

std::string StoredText(std::string_view value, IcalFieldLoss& loss) {
  std::string text = UnescapeText(value);
  if (std::optional<std::string> stored = InNearestLetters(text, loss.letters)) return *stored;
  loss.codePage = true;
  text.erase(std::remove_if(text.begin(), text.end(),
                            [](char c) {
                              return (static_cast<unsigned char>(c) < ' ' && c != '\n' && c != '\t') ||
                                     c == 0x7F;
                            }),
             text.end());
  std::replace(text.begin(), text.end(), '\t', ' ');
  return text;
}

bool IsPrivate(const IcalEvent& event) {
  return !event.classification.empty() && !EqualsIgnoringCase(event.classification, "PUBLIC");
}

void WriteFields(const IcalEvent& event, const std::vector<std::string>& categories, Appointment& record,
                 IcalFieldLoss& loss) {
  const std::string description = StoredText(event.description, loss);
  const std::string location = StoredText(event.location, loss);
  std::string url;
  if (!platform::CodePageFromUtf8(event.url, url)) url = StoredText(event.url, loss);
  std::string subject = OnOneLine(StoredText(event.summary, loss));
  if (subject.empty()) subject = OnOneLine(location);
  if (subject.empty()) {
    const std::string_view notes = TrimSpace(description);
    subject = OnOneLine(notes.substr(0, notes.find('\n')));
  }
  WriteCut(record.subject, subject.empty() ? kNoSubject : subject, loss);
  WriteCut(record.notes, NotesOf(description, location, url, loss), loss);
  WriteCategory(event, categories, record, loss);
  record.header.confidential = IsPrivate(event) ? 1 : 0;
  WriteAttachments(event, record, loss);
}

void WriteAlarm(const IcalEvent& event, const IcalPiece& piece, const IcalZones& zones,
                const AlarmMoment& now, Appointment& record, IcalFieldLoss& loss) {
  ResetAlarm(record);
  if (event.alarms.empty()) return;
  std::optional<std::int64_t> last;
  for (const IcalAlarm& alarm : event.alarms) {
    const std::optional<std::int64_t> ring = RingOf(event, alarm, piece, zones);
    if (ring && (!last || *ring > *last)) last = ring;
  }
  loss.alarms = event.alarms.size() > (last ? 1U : 0U);
  if (!last) return;
  const int daysBefore = -DayOf(piece.second + *last);
  const int slot = SecondOf(piece.second + *last) / kSlotSeconds;
  Date pending = record.date;
  if (HasRepeat(record) && !piece.row) {
    // The first occurrence whose ring is to come: not before that many days from today.
    Date today = now.date;
    while (DayIndex(pending) >= 0 && !IsToCome(DayIndex(pending) - daysBefore, slot, now)) {
      Date before = today;
      if (!StepDays(before, daysBefore - 1) || DayIndex(before) < DayIndex(pending)) before = pending;
      const std::optional<Date> next = NextOccurrence(record, before);
      if (!next) return;
      pending = *next;
    }
  }
  if (!IsToCome(DayIndex(pending) - daysBefore, slot, now)) return;
  Date ring = pending;
  if (!StepDays(ring, -daysBefore)) return;
  record.alarmOn = 1;
  record.alarmDaysBefore = daysBefore;
  TimeFromSlot(slot, record.alarmTime);
  record.alarmTime.second = 0;
  record.alarmDate = HasRepeat(record) ? pending : ring;
}

}  // namespace core
