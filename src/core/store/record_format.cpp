#include "core/store/record_format.h"

#include <array>
#include <cstring>
#include <random>
#include <string>

#include "core/ini_file.h"
#include "platform/system/clock.h"

namespace core {
namespace {

constexpr std::uint64_t kFirstChangeCounter = 10;

constexpr std::array<std::string_view, 15> kDefaultCategories{
    "Calls",    "Clients",  "Expenses", "Follow up", "Ideas",  "Meetings", "Issues", "People",
    "Personal", "Projects", "Public",   "Holiday",   "Travel", "Vacation", "Test"};

void InitIdentityNames(OwnerNames& names) {
  WriteText(names.userName, kDefaultOwnerName);
  WriteText(names.email, kDefaultOwnerEmail);
}

void CopyOwner(ServerIdentity& identity, const HeaderBlock& file) {
  WriteText(identity.userName, ReadText(file.ownerIdentity.userName));
  WriteText(identity.email, ReadText(file.ownerIdentity.email));
  WriteText(identity.thirdText, ReadText(file.ownerPassword));
}

}  // namespace

const RecordKind* FindKind(const HeaderBlock& header) {
  for (const RecordKind* known : {&kCalendarKind, &kAddressKind, &kSendKind}) {
    if (ReadText(header.kind) == known->kind) return known;
  }
  return nullptr;
}

void InitHeaderBlock(HeaderBlock& block, std::string_view kind, std::string_view kindDetail,
                     std::uint32_t formatWord) {
  std::memset(&block, 0, sizeof block);
  block.blockSize = sizeof block;
  WriteText(block.kind, kind);
  WriteText(block.kindDetail, kindDetail);
  block.formatWord = formatWord;
  block.secondFormatWord = 1;
  block.thirdFormatWord = 1;
  InitIdentityNames(block.ownerIdentity);
  OwnerNames second{};
  InitIdentityNames(second);
  std::memcpy(&block.secondIdentity, &second, sizeof second);

  const IniFile settings("Daybrix.ini");
  std::string value;
  // A byte less than the fields hold: a new file's texts have their terminators.
  if (settings.ReadString("eServer", "server", value)) {
    WriteText(block.serverAddress, value.substr(0, sizeof block.serverAddress - 1));
  }
  if (settings.ReadString("eServer", "port", value)) {
    WriteText(block.serverPort, value.substr(0, sizeof block.serverPort - 1));
  }
  block.changeCounter = kFirstChangeCounter;
}

CategoryBlock DefaultCategories() {
  CategoryBlock block{};
  block.blockSize = sizeof block;
  block.count = kDefaultCategories.size();
  for (std::size_t i = 0; i < kDefaultCategories.size(); ++i) {
    WriteText(block.entries[i].name, kDefaultCategories[i]);
    block.entries[i].value = -1;
  }
  return block;
}

std::string NewFileImage(const HeaderBlock& header, const CategoryBlock& categories, std::uint32_t slotSize,
                         std::string_view slots) {
  const RecordKind* kind = FindKind(header);
  if (kind == nullptr || kind->slotSize != slotSize || slots.size() % slotSize != 0) return {};
  const FileHeader sizes{sizeof(HeaderBlock), sizeof(CategoryBlock), slotSize};
  std::string image(kFirstSlotOffset, '\0');
  std::memcpy(image.data(), &sizes, sizeof sizes);
  std::memcpy(image.data() + kHeaderBlockOffset, &header, sizeof header);
  std::memcpy(image.data() + kCategoryBlockOffset, &categories, sizeof categories);
  image += slots;
  return image;
}

void InitRecordHeader(RecordHeader& record, std::uint32_t slotSize, const HeaderBlock& file) {
  record.recordSize = slotSize;
  record.inUse = 1;
  record.editLock = 0;
  record.recordId = NewRecordId();
  record.confidential = 0;
  record.zero = 0;
  WriteText(record.category, "");
  record.categoryValue = 0;
  record.creationDate = Today();
  record.creationTime = NowRounded(5);
  CopyOwner(record.ownerIdentity, file);
  CopyOwner(record.secondIdentity, file);
  record.secondDate = record.creationDate;
  record.secondTime = record.creationTime;
  WriteText(record.eventSubject, "");
  record.eventFlag = 0;
  record.eventByte = 0;
  record.eventRole = 1;
}

std::uint64_t NewRecordId() {
  // The machine's own randomness beside the time: two copies started in the same second must not agree.
  static std::mt19937_64 generator = [] {
    std::random_device device;
    const auto seconds = static_cast<std::uint64_t>(platform::UnixSeconds());
    std::seed_seq seed{static_cast<unsigned>(seconds), static_cast<unsigned>(seconds >> 32), device(),
                       device()};
    return std::mt19937_64(seed);
  }();
  return generator();
}

}  // namespace core
