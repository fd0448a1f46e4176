// Files to import: whatever the bytes, the format and the map, reading comes to an end, no field is longer
// than what is kept, and what is stored in a record stays within its fields and is ended there. The first
// three bytes choose format and map.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "core/exchange/import_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

// Every byte that is no field's is as it was, and every text has its end.
void CheckRecord(const core::Appointment& record, unsigned char filling) {
  std::string bytes(reinterpret_cast<const char*>(&record), sizeof record);
  for (const core::ExchangeField& field : core::kExchangeFields) {
    if (field.kind == core::ExchangeKind::kText && bytes[field.offset + field.size - 1] != '\0') std::abort();
    std::memset(bytes.data() + field.offset, filling, field.size);
  }
  if (bytes.find_first_not_of(static_cast<char>(filling)) != std::string::npos) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  core::ImportReader reader;
  if (!reader.Take(std::string(reinterpret_cast<const char*>(data) + 3, size - 3)).empty()) return 0;
  if (data[0] != 0) reader.SetFormat({false, data[1] % 2 == 0 ? ',' : '\t', data[2] % 2 == 0 ? '"' : '\0'});
  std::vector<core::ImportText> fields;
  constexpr unsigned char kFilling = 0xA5;
  core::Appointment record;
  std::memset(&record, kFilling, sizeof record);
  for (const core::ExchangeField& field : core::kExchangeFields) {
    if (field.kind == core::ExchangeKind::kText)
      core::WriteText(reinterpret_cast<char*>(&record) + field.offset, field.size, "");
  }
  std::size_t lines = 0;
  for (;;) {
    const core::ImportLine line = reader.ReadLine(fields);
    if (line == core::ImportLine::kEnd || line == core::ImportLine::kFailed) break;
    if (++lines > size || fields.size() > core::ImportReader::kMostColumns) std::abort();
    for (std::size_t column = 0; column < fields.size(); ++column) {
      if (fields[column].text.size() > core::ImportReader::kMostKept) std::abort();
      const core::ExchangeField& field =
          core::kExchangeFields[(column + data[1]) % core::kExchangeFields.size()];
      if (!core::StoreField(field, fields[column].text, record)) break;
    }
  }
  CheckRecord(record, kFilling);
  if (reader.Done() != reader.Whole()) std::abort();
  return 0;
}
