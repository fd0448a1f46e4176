#include "core/events/participant.h"

#include <algorithm>
#include <string_view>

#include "platform/system/file.h"

namespace core {
namespace {

constexpr std::string_view kStoreEnding = ".tsi";

}  // namespace

Participant NewParticipant(std::uint64_t eventId, std::string_view name, std::string_view email) {
  Participant participant{};
  participant.header.recordSize = sizeof participant;
  participant.header.inUse = 1;
  participant.state = kWaitForSend;
  participant.eventId = eventId;
  WriteText(participant.name, name.substr(0, sizeof participant.name - 1));
  WriteText(participant.email, email.substr(0, sizeof participant.email - 1));
  return participant;
}

const char* ParticipantStateText(int state) {
  switch (state) {
    case kWaitForSend:
      return "wait for send";
    case kNoReply:
      return "no reply yet";
    case kAccepted:
    case kAcceptedAgain:
      return "accepted";
    case kNewData:
      return "new data";
    case kRejected:
      return "rejected";
    case kAcceptMessage:
      return "accept message";
    case kCancelled:
      return "canceld";
    default:
      return "?";
  }
}

std::string ParticipantItem(const Participant& participant) {
  std::string item(ReadText(participant.email));
  item.append("\n").append(ReadText(participant.name)).append("\n");
  return item + std::to_string(participant.state);
}

std::string ParticipantStorePath(const std::string& calendar) {
  return platform::ResolvedPath(calendar).append(kStoreEnding);
}

std::string CalendarOfStore(const std::string& storePath) {
  return storePath.substr(0, storePath.size() - std::min(storePath.size(), kStoreEnding.size()));
}

bool IsEventOwner(const RecordFile& file, const Appointment& record) {
  HeaderBlock header;
  return file.ReadHeaderBlock(header) &&
         ReadText(header.ownerIdentity.userName) == ReadText(record.header.ownerIdentity.userName) &&
         ReadText(header.ownerIdentity.email) == ReadText(record.header.ownerIdentity.email);
}

}  // namespace core
