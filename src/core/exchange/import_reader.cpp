#include "core/exchange/import_reader.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

#include "core/store/file_messages.h"
#include "platform/system/code_page.h"

namespace core {
namespace {

constexpr std::size_t kWindow = 262144;
constexpr std::string_view kMark = "\xEF\xBB\xBF";
constexpr std::string_view kLineEnd = "\r\n";
constexpr const char* kMissingText = "Import file could not be found.";

}  // namespace

// ---- The file ----

std::string OpenImportFile(const std::string& path, const RecordFile* calendar, platform::File& file) {
  if (calendar != nullptr && calendar->Opened().IsAt(path)) {
    return CannotOpenText(path, "It is the calendar that the appointments are to go into.");
  }
  file.Close();
  const platform::FileResult opened = file.OpenReadOnly(path);
  if (opened == platform::FileResult::kMissing) return kMissingText;
  if (opened != platform::FileResult::kDone) return CannotOpenText(path, DescribeFileResult(opened));
  return "";
}

std::string ImportReader::Open(const std::string& path, const RecordFile* calendar) {
  taken.clear();
  std::string message = OpenImportFile(path, calendar, file);
  if (!message.empty()) return message;
  source = [this](char* buffer, std::size_t bytes, std::int64_t offset) {
    return file.ReadAt(buffer, bytes, offset);
  };
  size = file.Size();
  return Begin(path);
}

std::string ImportReader::Take(std::string text) {
  file.Close();
  taken = std::move(text);
  source = [this](char* buffer, std::size_t bytes, std::int64_t offset) {
    const std::size_t copied = taken.copy(buffer, bytes, static_cast<std::size_t>(offset));
    return static_cast<std::int64_t>(copied);
  };
  size = static_cast<std::int64_t>(taken.size());
  return Begin("");
}

// Looks through the file until it knows what ends its lines.
std::string ImportReader::Begin(const std::string& name) {
  const auto wrong = [&name](const char* why) { return name.empty() ? why : CannotOpenText(name, why); };
  utf8 = false;
  lineFeeds = false;
  Rewind();
  if (failed || size < 0) return wrong("Reading it failed.");
  if (window.empty()) return wrong("It is empty.");
  if (window.starts_with("\xFF\xFE") || window.starts_with("\xFE\xFF")) {
    return wrong("It is in UTF-16. Save it as UTF-8 or with single bytes.");
  }
  utf8 = window.starts_with(kMark);
  bool found = false;
  while (!found && Fill(2)) {
    found = window.find(kLineEnd, at) != std::string::npos;
    at = window.size() - 1;  // the last byte may be the first of a line end
  }
  if (failed) return wrong("Reading it failed.");
  lineFeeds = !found;
  Rewind();
  format = Detect();
  return failed ? wrong("Reading it failed.") : "";
}

void ImportReader::Rewind() {
  window.clear();
  windowOffset = 0;
  at = 0;
  failed = false;
  counted = {};
  searched = {};
  static_cast<void>(Fill(1));
  if (utf8) at = kMark.size();
}

void ImportReader::SetFormat(const ImportFormat& chosen) {
  format = chosen;
  Rewind();
}

ImportFormat ImportReader::Detect() const {
  const std::string_view text = std::string_view(window).substr(at);
  ImportFormat seen;
  const std::size_t separator = text.find_first_of(",\t");
  if (separator != std::string_view::npos) seen.separator = text[separator];
  if (text.starts_with('"')) seen.quote = '"';
  return seen;
}

// Sees to it that so many bytes lie in the window from `at` on. False when the file has no more of them.
bool ImportReader::Fill(std::size_t bytes) {
  if (window.size() - at >= bytes) return true;
  std::int64_t next = windowOffset + static_cast<std::int64_t>(window.size());
  if (failed || next >= size) return false;
  window.erase(0, at);
  windowOffset += static_cast<std::int64_t>(at);
  at = 0;
  while (!failed && window.size() < kWindow && next < size) {
    const std::size_t had = window.size();
    const auto wanted =
        static_cast<std::size_t>(std::min(static_cast<std::int64_t>(kWindow - had), size - next));
    window.resize(had + wanted);
    const std::int64_t read = source(window.data() + had, wanted, next);
    failed = read < 0;
    window.resize(had + static_cast<std::size_t>(std::max<std::int64_t>(read, 0)));
    if (read <= 0) size = next;  // it was cut off meanwhile
    next += std::max<std::int64_t>(read, 0);
  }
  return window.size() >= bytes;
}

// ---- Lines ----

// Whether a line ends at that place of the window, and with how many bytes.
bool ImportReader::HasLineEnd(std::size_t place, std::size_t& length) const {
  const std::string_view end = lineFeeds ? kLineEnd.substr(1) : kLineEnd;
  length = end.size();
  return std::string_view(window).substr(place).starts_with(end);
}

ImportLine ImportReader::ReadLine(std::vector<ImportText>& fields) {
  fields.clear();
  std::size_t length = 0;
  while (Fill(1) && (static_cast<void>(Fill(2)), HasLineEnd(at, length))) at += length;
  if (failed || at == window.size()) return failed ? ImportLine::kFailed : ImportLine::kEnd;
  FieldEnd end = FieldEnd::kSeparator;
  for (std::size_t column = 0; end == FieldEnd::kSeparator; ++column) {
    ImportText field;
    end = TakeField(field.text);
    if (column >= kMostColumns || end == FieldEnd::kUnended) continue;
    Convert(field);
    fields.push_back(std::move(field));
  }
  if (end == FieldEnd::kUnended) SkipLine();
  if (failed) return ImportLine::kFailed;
  return end == FieldEnd::kUnended ? ImportLine::kUnended : ImportLine::kRead;
}

// Counts those before `at`. What has left the window uncounted is forgotten, with all that was found by its
// count.
void ImportReader::CountQuotes() {
  const std::int64_t here = Done();
  if (counted.place < windowOffset) {
    counted = {here, false};
    searched = {};
  }
  const auto from = window.begin() + static_cast<std::ptrdiff_t>(counted.place - windowOffset);
  const auto quotes = std::count(from, window.begin() + static_cast<std::ptrdiff_t>(at), format.quote);
  counted = {here, counted.odd != (quotes % 2 != 0)};
}

// Where the quote stands that closes the field at `at`: the first one before a separator, the line's end or
// the file's with an even number of quotes up to it. npos when there is none.
std::size_t ImportReader::FindQuoteEnd() {
  QuotePlace& search = searched[counted.odd ? 1 : 0];
  if (search.place <= counted.place) search = {counted.place + 1, !counted.odd};
  const std::size_t last = std::min(window.size(), at + kMostQuoted);
  for (;;) {
    const std::size_t place =
        window.find(format.quote, static_cast<std::size_t>(search.place - windowOffset));
    search.place = windowOffset + static_cast<std::int64_t>(std::min(place, last));
    if (place >= last) return std::string::npos;
    std::size_t length = 0;
    const bool ends =
        place + 1 == window.size() || window[place + 1] == format.separator || HasLineEnd(place + 1, length);
    if (ends && search.odd != counted.odd) return place;
    search = {search.place + 1, !search.odd};
  }
}

ImportReader::FieldEnd ImportReader::TakeField(std::string& text) {
  if (format.quote != '\0') CountQuotes();
  static_cast<void>(Fill(kMostQuoted + 2));
  if (format.quote == '\0' || at == window.size() || window[at] != format.quote) return TakePlain(text);
  const std::size_t close = FindQuoteEnd();
  if (close == std::string::npos) return FieldEnd::kUnended;
  text.assign(window, at + 1, std::min(close - at - 1, kMostKept));
  at = close + 1;
  std::string nothing;
  return TakePlain(nothing);
}

// What stands before the next separator or line end, which is passed over.
ImportReader::FieldEnd ImportReader::TakePlain(std::string& text) {
  const char lineByte = lineFeeds ? '\n' : '\r';
  while (Fill(1)) {
    static_cast<void>(Fill(2));
    const std::size_t start = at;
    while (at < window.size() && window[at] != format.separator && window[at] != lineByte) ++at;
    text.append(window, start, std::min(at - start, kMostKept - text.size()));
    if (at == window.size()) continue;
    if (window[at] == format.separator) {
      ++at;
      return FieldEnd::kSeparator;
    }
    std::size_t length = 0;
    static_cast<void>(Fill(2));  // it moves the window
    if (HasLineEnd(at, length)) {
      at += length;
      return FieldEnd::kLine;
    }
    if (text.size() < kMostKept) text += window[at];
    ++at;
  }
  return FieldEnd::kData;
}

void ImportReader::SkipLine() {
  const char separator = std::exchange(format.separator, '\0');
  std::string skipped;
  while (TakePlain(skipped) == FieldEnd::kSeparator) skipped.clear();
  format.separator = separator;
}

void ImportReader::Convert(ImportText& field) const {
  if (utf8) field.text = platform::NearestInCodePage(field.text, field.replaced);
}

}  // namespace core
