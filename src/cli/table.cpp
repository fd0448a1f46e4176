#include "cli/table.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace cli {
namespace {

// U+0080 to U+009F, which terminals may obey too, are C2 and a byte from 80 to 9F.
bool IsC1(std::string_view text, std::size_t at) {
  return at + 1 < text.size() && text[at] == '\xC2' && static_cast<unsigned char>(text[at + 1]) < 0xA0;
}

bool IsC0(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == '\x7F';
}

// The bytes of the UTF-8 character at `at`, which is none of ASCII; 0 where none begins. Only names of files
// can have bytes that are none.
std::size_t CharacterLength(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
  const unsigned lead = byte(at);
  const unsigned next = byte(at + 1);
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  // Those that are too long for what they mean, halves of pairs, and what lies beyond the last character.
  if (lead < 0xC2 || lead > 0xF4 || (lead == 0xE0 && next < 0xA0) || (lead == 0xED && next > 0x9F) ||
      (lead == 0xF0 && next < 0x90) || (lead == 0xF4 && next > 0x8F)) {
    return 0;
  }
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return 0;
  }
  return length;
}

std::string JsonText(std::string_view text) {
  std::string quoted = "\"";
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    char escape[8];
    if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += c;
    } else if (c == '\n') {
      quoted += "\\n";
    } else if (IsC0(c) || IsC1(text, i)) {
      const unsigned code = IsC0(c) ? static_cast<unsigned char>(c) : static_cast<unsigned char>(text[++i]);
      std::snprintf(escape, sizeof escape, "\\u%04x", code);
      quoted += escape;
    } else if (static_cast<unsigned char>(c) < 0x80) {
      quoted += c;
    } else if (const std::size_t length = CharacterLength(text, i); length != 0) {
      quoted += text.substr(i, length);
      i += length - 1;
    } else {
      quoted += "\\ufffd";  // no reader of JSON takes the byte itself
    }
  }
  return quoted + '"';
}

std::string JsonList(const std::vector<std::string>& items) {
  std::string list;
  for (const std::string& item : items) list.append(list.empty() ? "" : ", ").append(JsonText(item));
  return "[" + list + "]";
}

std::string JsonValue(const Cell& cell) {
  switch (cell.kind) {
    case Cell::kNone:
      return "null";
    case Cell::kText:
      return JsonText(cell.text);
    case Cell::kList:
      return JsonList(cell.items);
    default:
      return cell.text;
  }
}

// Quoted where it has to be, and where blanks at an end might be taken away.
std::string CsvText(const std::string& text) {
  const bool plain =
      text.find_first_of(",\"\r\n") == std::string::npos && !text.starts_with(' ') && !text.ends_with(' ');
  if (plain) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

std::string JsonObject(const std::vector<Column>& columns, const std::vector<Cell>& cells) {
  std::string object = "{";
  for (std::size_t i = 0; i < columns.size(); ++i) {
    object.append(i == 0 ? "" : ", ")
        .append(JsonText(columns[i].name))
        .append(": ")
        .append(JsonValue(cells[i]));
  }
  return object + "}";
}

std::string CsvHead(const std::vector<Column>& columns) {
  std::string head;
  for (const Column& column : columns)
    head.append(head.empty() ? "" : ",").append(CsvText(std::string(column.name)));
  return head + "\r\n";
}

std::string TextValue(const Cell& cell) {
  return cell.kind == Cell::kNone ? "-" : OneLine(cell.text);
}

}  // namespace

Cell Cell::List(std::vector<std::string> texts) {
  Cell cell{kList, "", std::move(texts)};
  for (const std::string& item : cell.items) cell.text.append(cell.text.empty() ? "" : ", ").append(item);
  return cell;
}

std::size_t CharacterCount(std::string_view text) {
  std::size_t count = 0;
  for (const char c : text) count += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
  return count;
}

std::string OneLine(std::string_view text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool c1 = IsC1(text, i);
    line += c1 || IsC0(text[i]) ? ' ' : text[i];
    if (c1) ++i;
  }
  return line;
}

Table::Table(Output& destination, Format outputFormat, std::vector<Column> tableColumns)
    : output(destination), format(outputFormat), columns(std::move(tableColumns)) {
  if (format == Format::kCsv) output.Write(CsvHead(columns));
  if (format == Format::kJson) output.Write("[");
}

void Table::Row(const std::vector<Cell>& cells) {
  switch (format) {
    case Format::kText:
      TextRow(cells);
      break;
    case Format::kCsv:
      CsvRow(cells);
      break;
    case Format::kJson:
      output.Write(hasRows ? ",\n " : "\n ");
      output.Write(JsonObject(columns, cells));
      break;
  }
  hasRows = true;
}

void Table::End() {
  if (format == Format::kJson) output.Write(hasRows ? "\n]\n" : "]\n");
}

void Table::TextRow(const std::vector<Cell>& cells) {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::string value = TextValue(cells[i]);
    const std::size_t length = CharacterCount(value);
    line.append(i == 0 ? "" : "  ").append(value);
    if (i + 1 < cells.size() && length < columns[i].width) line.append(columns[i].width - length, ' ');
  }
  output.Write(line + "\n");
}

void Table::CsvRow(const std::vector<Cell>& cells) {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i)
    line.append(i == 0 ? "" : ",").append(CsvText(cells[i].text));
  output.Write(line + "\r\n");
}

void WriteObject(Output& output, Format format, const std::vector<Column>& columns,
                 const std::vector<Cell>& cells) {
  if (format == Format::kJson) {
    output.Write(JsonObject(columns, cells) + "\n");
    return;
  }
  if (format == Format::kCsv) {
    Table table(output, format, columns);
    table.Row(cells);
    return;
  }
  std::size_t width = 0;
  for (const Column& column : columns) width = std::max(width, column.name.size());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    std::string line(columns[i].name);
    line.append(width + 2 - line.size(), ' ');
    output.Write(line + TextValue(cells[i]) + "\n");
  }
}

}  // namespace cli
