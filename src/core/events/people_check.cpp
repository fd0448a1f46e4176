#include "core/events/people_check.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "core/contacts/contact.h"
#include "core/events/participant.h"
#include "core/store/record_scan.h"

namespace core {
namespace {

constexpr std::string_view kStoreEnding = ".tsi";

bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < ' ' || byte == 0x7F;
}

class PeopleChecker {
 public:
  PeopleChecker(const RecordFile& checkedFile, const FindingReport& findingReport)
      : file(checkedFile), report(findingReport) {}

  void Run() {
    const bool participants = file.SlotSize() == kSendKind.slotSize;
    if (!participants && file.SlotSize() != kAddressKind.slotSize) return;
    const ScanResult scanned = ScanLiveSlots(file, [&](const char* slot, std::int32_t offset) {
      if (participants) {
        CheckParticipant(slot, offset);
      } else {
        Contact contact;
        std::memcpy(&contact, slot, sizeof contact);
        CheckText("name", ReadText(contact.name), offset);
        CheckText("email", ReadText(contact.email), offset);
      }
    });
    if (participants && scanned != ScanResult::kFailed) CheckAppointments();
  }

 private:
  void Report(std::int32_t offset, const std::string& what) {
    if (!stopped) stopped = !report({offset, "slot", what});
  }

  void CheckText(const char* field, std::string_view text, std::int32_t offset) {
    if (std::any_of(text.begin(), text.end(), IsControl)) {
      Report(offset, std::string(field) + " has a control character in it");
    }
  }

  void CheckParticipant(const char* slot, std::int32_t offset) {
    Participant participant;
    std::memcpy(&participant, slot, sizeof participant);
    CheckText("name", ReadText(participant.name), offset);
    CheckText("email", ReadText(participant.email), offset);
    if (participant.state < kWaitForSend || participant.state > kCancelled) {
      Report(offset, "state is " + std::to_string(participant.state) + ", not 1 to 8");
    }
    events.push_back({participant.eventId, offset});
  }

  void CheckAppointments();

  struct EventPlace {
    std::uint64_t eventId;
    std::int32_t offset;
  };

  const RecordFile& file;
  const FindingReport& report;
  bool stopped = false;
  std::vector<EventPlace> events;  // of all participants
};

// Whoever deletes an event deletes its participants first. So the calendar is read after them, and who seems
// to belong to nothing is looked at once more.
void PeopleChecker::CheckAppointments() {
  if (!file.Path().ends_with(kStoreEnding)) return;
  const RecordFile calendar(file.Path().substr(0, file.Path().size() - kStoreEnding.size()), "",
                            OpenMode::kReadOnly);
  if (calendar.OpenFailed() || calendar.SlotSize() != kCalendarKind.slotSize) return;
  std::vector<std::uint64_t> ids;
  const ScanResult scanned = ScanLiveSlots(calendar, [&ids](const char* slot, std::int32_t) {
    std::uint64_t id = 0;
    std::memcpy(&id, slot + offsetof(RecordHeader, recordId), sizeof id);
    ids.push_back(id);
  });
  if (scanned != ScanResult::kAll) return;
  std::sort(ids.begin(), ids.end());
  for (const EventPlace& place : events) {
    Participant now;
    if (std::binary_search(ids.begin(), ids.end(), place.eventId) || !file.ReadSlot(&now, place.offset) ||
        now.header.inUse != 1 || now.eventId != place.eventId) {
      continue;
    }
    Report(place.offset, "it is a participant of an appointment that is not in the calendar");
  }
}

}  // namespace

void CheckPeople(const std::string& path, const FindingReport& report) {
  const RecordFile file(path, "", OpenMode::kReadOnly);
  if (!file.OpenFailed()) PeopleChecker(file, report).Run();
}

}  // namespace core
