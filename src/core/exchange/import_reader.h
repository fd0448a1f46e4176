// Reads appointments that another program, or the export, wrote as lines of fields: takes lines apart,
// whatever ends them and however long they are, and tells what the file looks like. Nothing of the file is
// kept but a window of some hundred kilobytes.
//
//   ImportReader reader;
//   std::string message = reader.Open(path, &calendar);
//   while (reader.ReadLine(fields) == ImportLine::kRead) ...
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/store/record_file.h"
#include "platform/system/file.h"

namespace core {

struct ImportFormat {
  bool header = true;    // the first line holds the names of the fields
  char separator = ',';  // or '\t'
  char quote = '\0';     // around fields, which may then hold separators and line ends; '\0' for none
};

// A field in code page 1252, between its quotes and as it stands there.
struct ImportText {
  std::string text;
  bool replaced = false;  // a character that the code page lacks became "?"
};

enum class ImportLine {
  kRead,
  kUnended,  // read up to a field whose closing quote never comes; the next line is the one below
  kEnd,
  kFailed,  // the file cannot be read
};

// Opens a file to import, of whatever form, which must not be the calendar that it is to go into. Answers
// what is wrong, for the user, and nothing when it is open.
[[nodiscard]] std::string OpenImportFile(const std::string& path, const RecordFile* calendar,
                                         platform::File& file);

class ImportReader {
 public:
  // As many fields of a line are kept, and as many bytes of each: more than any of an appointment needs.
  static constexpr std::size_t kMostColumns = 200;
  static constexpr std::size_t kMostKept = 8192;
  // The closing quote of a field must come within so many bytes.
  static constexpr std::size_t kMostQuoted = 65536;

  ImportReader() = default;
  ImportReader(const ImportReader&) = delete;
  ImportReader& operator=(const ImportReader&) = delete;

  // Opens a file as OpenImportFile does. Answers what is wrong, for the user, and nothing when it can be
  // read. It is read up to the length that it has now.
  [[nodiscard]] std::string Open(const std::string& path, const RecordFile* calendar);
  // The same with a text that came by another way.
  [[nodiscard]] std::string Take(std::string text);

  // At first how the file seems to be written: with names, separated by whichever of comma and tab comes
  // first, and quoted when it begins with a quote.
  const ImportFormat& Format() const { return format; }
  // Reading begins again at the first line.
  void SetFormat(const ImportFormat& chosen);

  // Reads the next line, the one with the names like any other; lines without a byte are passed over.
  [[nodiscard]] ImportLine ReadLine(std::vector<ImportText>& fields);

  // Bytes read so far, and of the whole file.
  std::int64_t Done() const { return windowOffset + static_cast<std::int64_t>(at); }
  std::int64_t Whole() const { return size; }

 private:
  using Source = std::function<std::int64_t(char* buffer, std::size_t size, std::int64_t offset)>;
  enum class FieldEnd { kSeparator, kLine, kData, kUnended };

  std::string Begin(const std::string& name);
  void Rewind();
  ImportFormat Detect() const;
  bool Fill(std::size_t bytes);
  bool HasLineEnd(std::size_t place, std::size_t& length) const;
  void CountQuotes();
  std::size_t FindQuoteEnd();
  FieldEnd TakeField(std::string& text);
  FieldEnd TakePlain(std::string& text);
  void SkipLine();
  void Convert(ImportText& field) const;

  platform::File file;
  std::string taken;
  Source source;
  std::int64_t size = 0;
  ImportFormat format;
  bool utf8 = false;       // the file begins with the mark of UTF-8
  bool lineFeeds = false;  // there is no carriage return with a line feed: line feeds end the lines

  std::string window;             // of the file from windowOffset on
  std::int64_t windowOffset = 0;  // bytes
  std::size_t at = 0;             // in the window
  bool failed = false;

  // Fields in quotes look for their end where the ones before them stopped looking, so that a file in which
  // few quotes are closed is not searched again and again. A place of the file and the quotes before it:
  struct QuotePlace {
    std::int64_t place;
    bool odd;
  };
  QuotePlace counted{};                  // quotes before a field
  std::array<QuotePlace, 2> searched{};  // nothing before it closes a field with an even, and an odd, number
};

}  // namespace core
