// Rows of named values as aligned text for people, as CSV (RFC 4180) or as JSON for programs. All texts are
// UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/output.h"

namespace cli {

enum class Format { kText, kCsv, kJson };

// A value: a text, a number, true or false, a list of texts (an array in JSON, else with commas in between),
// or none at all (null in JSON, empty in CSV, "-" in text).
struct Cell {
  enum Kind { kNone, kText, kNumber, kBool, kList };

  static Cell Text(std::string value) { return {kText, std::move(value)}; }
  static Cell Number(std::int64_t value) { return {kNumber, std::to_string(value)}; }
  static Cell Bool(bool value) { return {kBool, value ? "true" : "false"}; }

  static Cell List(std::vector<std::string> texts);

  Kind kind = kNone;
  std::string text;
  std::vector<std::string> items = {};  // of a list
};

struct Column {
  std::string_view name;
  std::size_t width = 0;  // characters in text output; 0: as long as the value is, without padding
};

class Table {
 public:
  Table(Output& destination, Format outputFormat, std::vector<Column> tableColumns);

  // Writes a row; it has a cell for each column.
  void Row(const std::vector<Cell>& cells);
  // Writes what stands after the last row.
  void End();

 private:
  void TextRow(const std::vector<Cell>& cells);
  void CsvRow(const std::vector<Cell>& cells);

  Output& output;
  const Format format;
  const std::vector<Column> columns;
  bool hasRows = false;
};

// Writes one record of named values: in text a line each, in CSV a head and a line, in JSON one object.
void WriteObject(Output& output, Format format, const std::vector<Column>& columns,
                 const std::vector<Cell>& cells);

// The number of characters in a UTF-8 text.
std::size_t CharacterCount(std::string_view text);

// A text for one line of a terminal: control characters, which could steer it, become blanks.
std::string OneLine(std::string_view text);

}  // namespace cli
