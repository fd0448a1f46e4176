// An iCalendar text taken apart: bytes to lines, lines to components. Whatever the text is, something comes
// of it: a component that never ends is ended by what cannot be within it, and what is no line is passed
// over.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace core {

// "DTSTART;TZID=Europe/Berlin:20040314T100000". Views into the text that it was taken from.
struct IcalLine {
  std::string_view name;
  std::string_view parameters;  // with the semicolon before each
  std::string_view value;
};

// Takes the next line that has a name and a value off the front of an unfolded text. False at its end.
bool TakeIcalLine(std::string_view& text, IcalLine& line);

// The value of a parameter, without quotes; empty when there is none.
std::string_view IcalParameter(const IcalLine& line, std::string_view name);

// Of the letters A to Z only.
bool EqualsIgnoringCase(std::string_view a, std::string_view b);
std::string_view TrimBlanks(std::string_view text);

// 64-bit FNV-1a, to be continued with what it answered.
inline constexpr std::uint64_t kHashStart = 14695981039346656037U;
std::uint64_t HashBytes(std::string_view bytes, std::uint64_t hash = kHashStart);

enum class IcalKind { kEvent, kTask, kJournal, kFreeBusy, kZone };

struct IcalComponent {
  IcalKind kind;
  bool cutOff = false;     // it never ends
  std::uint32_t calendar;  // its place in IcalDocument::calendars
  std::string_view text;   // the lines between its BEGIN and END, those of components within it included
  std::string_view uid;    // of an event
};

struct IcalCalendar {
  std::string_view version;
  std::string_view method;
};

struct IcalDocument {
  std::string text;  // unfolded; what the views point into
  std::vector<IcalComponent> components;
  std::vector<IcalCalendar> calendars;  // the first one stands for what lies in none
  bool isCalendar = false;              // anything of the format was found
};

// Lines end with any of CR LF, CR and LF; NUL bytes are dropped.
void ReadIcalDocument(std::string_view bytes, IcalDocument& document);

}  // namespace core
