#include "core/contacts/external_contacts.h"

#include <array>

#include "core/ini_file.h"
#include "core/store/access.h"
#include "core/store/record_list.h"
#include "platform/system/file.h"

namespace core {
namespace {

constexpr std::size_t kNamePart = 60;
constexpr std::array<std::size_t, 2> kNameOffsets = {829, 889};
constexpr std::size_t kKnownBytes = kNameOffsets.back() + kNamePart;
constexpr std::string_view kSection = "Preference";
constexpr std::string_view kPathKey = "eContactFile";

// The kind is the other program's own, and so is the size of its slots: any that has room for the names, and
// no more than the file has.
bool ReadHeader(const platform::File& file, FileHeader& sizes, HeaderBlock& header) {
  return file.ReadAt(&sizes, sizeof sizes, 0) == std::int64_t{sizeof sizes} &&
         sizes.headerBlockSize == sizeof(HeaderBlock) && sizes.categoryBlockSize == sizeof(CategoryBlock) &&
         sizes.slotSize >= kKnownBytes && sizes.slotSize <= file.Size() &&
         file.ReadAt(&header, sizeof header, kHeaderBlockOffset) == std::int64_t{sizeof header};
}

Access LevelFor(std::string_view password, const HeaderBlock& header) {
  const bool open = ReadText(header.ownerPassword).empty();
  return open || !password.empty() ? LevelOf(password, header) : Access::kNone;
}

// False when it cannot be read.
bool ReadName(const platform::File& file, std::int64_t offset, Access level, ExternalContacts& contacts) {
  std::array<char, kKnownBytes> slot;
  if (file.ReadAt(slot.data(), slot.size(), offset) != std::int64_t{kKnownBytes}) return false;
  const bool hidden = slot[offsetof(RecordHeader, confidential)] == 1 && level != Access::kOwner;
  if (slot[offsetof(RecordHeader, inUse)] != 1 || hidden) return true;
  std::string name;
  for (const std::size_t at : kNameOffsets) {
    if (at != kNameOffsets.front()) name += ' ';
    name += ReadText(slot.data() + at, kNamePart);
  }
  contacts.names.push_back(name);
  return true;
}

}  // namespace

ExternalContacts ReadExternalContacts(const std::string& path, std::string_view password) {
  ExternalContacts contacts;
  platform::File file;
  FileHeader sizes;
  HeaderBlock header;
  if (file.OpenReadOnly(path) != platform::FileResult::kDone || !ReadHeader(file, sizes, header)) {
    return contacts;
  }
  const Access level = LevelFor(password, header);
  contacts.result = level == Access::kNone ? ExternalContacts::kWrongPassword : ExternalContacts::kRead;
  if (level == Access::kNone) return contacts;
  contacts.whole = true;
  const std::int64_t end = file.Size();
  // A slot beyond the offsets has none in any record file, and a file may be longer than the disk it is on.
  for (std::int64_t offset = kFirstSlotOffset; offset < kOffsetsEnd && offset + sizes.slotSize <= end &&
                                               contacts.names.size() < RecordList::kMostRecords;
       offset += sizes.slotSize) {
    if (!ReadName(file, offset, level, contacts)) contacts.whole = false;
  }
  return contacts;
}

std::string CannotOpenContactsText(const std::string& path) {
  return "Can't open Nameleaf file.\r\n" + path;
}

std::string ExternalContactsPath() {
  std::string path;
  if (IniFile().ReadString(kSection, kPathKey, path)) return path;
  if (!IniFile("Nameleaf.ini").ReadString(kSection, "DefaulFile", path)) return "";
  // Where it cannot be noted down it is found in the same way the next time.
  static_cast<void>(RememberExternalContacts(path));
  return path;
}

bool RememberExternalContacts(const std::string& path) {
  return IniFile().WriteString(kSection, kPathKey, path);
}

std::vector<std::string> DescriptionProposals(std::string_view contact) {
  std::vector<std::string> proposals;
  for (const char* beginning : {"Appointment with", "Meeting with", "Call"}) {
    std::string text = beginning;
    if (!contact.empty()) text.append(" ").append(contact).append(".");
    proposals.push_back(text);
  }
  if (!contact.empty()) proposals.emplace_back(contact);
  return proposals;
}

}  // namespace core
