// The bytes of another program's file of contacts.
#pragma once

#include <string>
#include <vector>

#include "core/store/record_format.h"
#include "core/store/text_field.h"

namespace tests {

// A file of the other program: its slots are larger than those of ours.
inline std::string ExternalFile(std::uint32_t slotSize, const std::vector<std::string>& slots,
                                const char* ownerPassword = "") {
  core::HeaderBlock header;
  core::InitHeaderBlock(header, "Contacts", "Theirs", 1);
  core::WriteText(header.ownerPassword, ownerPassword);
  core::WriteText(header.readerPassword, "rd");
  const core::FileHeader sizes{sizeof(core::HeaderBlock), sizeof(core::CategoryBlock), slotSize};
  const core::CategoryBlock categories{};
  std::string bytes(reinterpret_cast<const char*>(&sizes), sizeof sizes);
  bytes.append(reinterpret_cast<const char*>(&header), sizeof header);
  bytes.append(reinterpret_cast<const char*>(&categories), sizeof categories);
  for (const std::string& slot : slots) bytes.append(slot).append(slotSize - slot.size(), '\0');
  return bytes;
}

inline std::string ExternalSlot(const std::string& first, const std::string& last, char inUse = 1,
                                char secret = 0) {
  std::string slot(949, '\0');
  slot[4] = inUse;
  slot[14] = secret;
  return slot.replace(829, first.size(), first).replace(889, last.size(), last);
}

}  // namespace tests
