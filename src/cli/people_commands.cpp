// The commands about people: the address book, the participants of events, and the account on the event
// server.
#include <algorithm>
#include <cstring>
#include <memory>
#include <unordered_map>
#include <vector>

#include "cli/calendar_access.h"
#include "cli/commands.h"
#include "cli/values.h"
#include "core/contacts/address_book.h"
#include "core/events/participant.h"
#include "core/events/registration.h"
#include "core/store/companion_file.h"
#include "core/store/record_scan.h"
#include "platform/system/file.h"
#include "resources/strings.h"

namespace cli {
namespace {

using core::CommandResult;
using core::Contact;

constexpr const char* kPartly = "Parts of it cannot be read; the list lacks them.";

// The same words for the book that is meant: the named one, or the one beside the settings.
Arguments ForBook(const Arguments& arguments) {
  Arguments book = arguments;
  book.file = arguments.Has("book") ? arguments.Value("book") : core::AddressBookPath();
  return book;
}

Outcome OpenBookToRead(const Arguments& arguments, std::unique_ptr<core::RecordFile>& file) {
  Outcome opened = OpenToRead(arguments, file);
  if (!opened.IsDone() || file->SlotSize() == core::kAddressKind.slotSize) return opened;
  return FailOn(arguments.file, kFile, "It is a file of another kind.");
}

Outcome ListContacts(const Arguments& arguments, Output& output) {
  Format format = Format::kText;
  Outcome outcome = ParseFormat("format", arguments.Value("format"), format);
  if (!outcome.IsDone()) return outcome;
  const bool text = format == Format::kText;
  Table table(output, format, {{"id", text ? 16U : 0U}, {"name", text ? 30U : 0U}, {"email"}});
  std::unique_ptr<core::RecordFile> file;
  bool whole = true;
  // A book that was never needed has nobody in it.
  if (arguments.Has("book") || platform::FileExists(arguments.file)) {
    outcome = OpenBookToRead(arguments, file);
    if (!outcome.IsDone()) return outcome;
    core::RecordQuery list;
    whole = core::ListContacts(*file, list);
    for (const core::RecordKey& key : list.Keys()) {
      Contact contact;
      if (!file->ReadRecord(&contact, key)) continue;  // deleted meanwhile
      table.Row({Cell::Text(FormatId(key.id)), Cell::Text(FromStored(core::ReadText(contact.name))),
                 Cell::Text(FromStored(core::ReadText(contact.email)))});
    }
  }
  table.End();
  return whole ? Outcome{} : FailOn(arguments.file, kFile, kPartly);
}

struct ContactTexts {
  std::string name;
  std::string email;
};

// Those that the options give take the place of what is there.
Outcome TakeTexts(const Arguments& arguments, ContactTexts& texts) {
  Outcome outcome;
  if (arguments.Has("name")) {
    outcome = ParseText("name", arguments.Value("name"), core::kContactName, true, texts.name);
  }
  if (outcome.IsDone() && arguments.Has("email")) {
    outcome = ParseText("email", arguments.Value("email"), core::kContactEmail, true, texts.email);
  }
  return outcome;
}

Outcome OpenBook(const Arguments& arguments, bool make, std::unique_ptr<core::RecordFile>& file) {
  std::string password;
  Outcome outcome = FindPassword(arguments, password);
  // Another kind of file, or one whose password this is not, is not even brought in order.
  const bool isThere = platform::FileExists(arguments.file);
  if (outcome.IsDone() && isThere) outcome = OpenBookToRead(arguments, file);
  if (!outcome.IsDone()) return outcome;
  file.reset();  // nobody may have it open while it is brought in order
  core::CompanionFile opened = make ? core::OpenOrMakeCompanion(arguments.file, core::kAddressKind, password)
                                    : core::OpenCompanion(arguments.file, core::kAddressKind, password);
  if (opened.file == nullptr) return FailOn(arguments.file, CodeOf(opened.error), opened.message);
  file = std::move(opened.file);
  return {};
}

Outcome AddContact(const Arguments& arguments, Output& output) {
  if (!arguments.Has("name") && !arguments.Has("email")) {
    return Fail(kUsage, "contacts add needs --name or --email");
  }
  ContactTexts texts;
  Outcome outcome = TakeTexts(arguments, texts);
  std::unique_ptr<core::RecordFile> file;
  if (outcome.IsDone()) outcome = OpenBook(arguments, true, file);
  if (!outcome.IsDone()) return outcome;
  Contact contact;
  const CommandResult added = core::AddContact(*file, texts.name, texts.email, contact);
  outcome = DescribeChange(*file, added);
  if (core::IsMade(added)) {
    const std::string id = FormatId(contact.header.recordId);
    output.Write(id + "\n");
    outcome.made = "The contact was added; its id is " + id + ".";
  }
  return outcome;
}

// Edits the contact, or deletes it.
Outcome ChangeContact(const Arguments& arguments, bool deletes) {
  ContactTexts texts;
  Outcome outcome = TakeTexts(arguments, texts);
  core::RecordKey key;
  if (outcome.IsDone()) outcome = ParseId(arguments.id, key.id);
  std::unique_ptr<core::RecordFile> file;
  if (outcome.IsDone()) outcome = OpenBook(arguments, false, file);
  if (outcome.IsDone()) outcome = FindRecord(arguments, *file, key);
  if (!outcome.IsDone()) return outcome;
  core::EditLock lock(*file);
  Contact contact;
  CommandResult result = lock.Take(key);
  if (result == CommandResult::kDone) result = lock.Read(&contact);
  if (result == CommandResult::kDone && deletes) {
    result = lock.Delete();
  } else if (result == CommandResult::kDone) {
    core::SetContact(contact, arguments.Has("name") ? texts.name : std::string(core::ReadText(contact.name)),
                     arguments.Has("email") ? texts.email : std::string(core::ReadText(contact.email)));
    result = lock.Write(&contact);
  }
  if (core::IsMade(result)) result = lock.Finish(result);
  const CommandResult released = lock.Release();
  return DescribeChange(*file, released == CommandResult::kDone ? result : released);
}

using Subjects = std::unordered_map<std::uint64_t, std::string>;

// The records of a calendar that its level may see, or the one that is named.
Outcome FindEvents(const Arguments& arguments, const core::RecordFile& calendar, Subjects& subjects) {
  std::uint64_t wanted = 0;
  if (!arguments.id.empty()) {
    Outcome parsed = ParseId(arguments.id, wanted);
    if (!parsed.IsDone()) return parsed;
  }
  const core::ScanResult scanned = core::ScanRecords(calendar, [&](const char* slot, std::int32_t) {
    const auto& record = *reinterpret_cast<const core::Appointment*>(slot);
    const std::uint64_t id = record.header.recordId;
    if (arguments.id.empty() || id == wanted) subjects[id] = FromStored(core::ReadText(record.subject));
  });
  if (scanned != core::ScanResult::kAll) return FailOn(arguments.file, kFile, kPartly);
  if (arguments.id.empty() || !subjects.empty()) return {};
  return FailOn(arguments.file, kRefused, "There is no record " + FormatId(wanted) + ".");
}

// The participants of these events, those of each together and by name. False when some could not be read.
bool FindParticipants(const core::RecordFile& store, const Subjects& subjects,
                      std::vector<core::Participant>& participants) {
  const core::ScanResult scanned = core::ScanRecords(store, [&](const char* slot, std::int32_t) {
    core::Participant participant;
    std::memcpy(&participant, slot, sizeof participant);
    const std::uint64_t id = participant.eventId;
    if (subjects.contains(id)) participants.push_back(participant);
  });
  const auto inOrder = [](const core::Participant& a, const core::Participant& b) {
    if (a.eventId != b.eventId) return a.eventId < b.eventId;
    return core::CompareText(a.name, b.name, sizeof a.name) < 0;
  };
  std::stable_sort(participants.begin(), participants.end(), inOrder);
  return scanned == core::ScanResult::kAll;
}

}  // namespace

Outcome ContactsCommand(const Arguments& arguments, Output& output) {
  const Arguments book = ForBook(arguments);
  const std::string& action = arguments.action;
  const bool names = action == "edit" || action == "delete";
  if (names && arguments.id.empty()) return Fail(kUsage, "contacts " + action + " needs an ID");
  if (!names && (!arguments.id.empty() || arguments.Has("offset"))) {
    return Fail(kUsage, "only edit and delete take an ID and --offset");
  }
  const bool takesTexts = action == "add" || action == "edit";
  if (!takesTexts && (arguments.Has("name") || arguments.Has("email"))) {
    return Fail(kUsage, "--name and --email are for contacts add and edit");
  }
  if (action == "edit" && !arguments.Has("name") && !arguments.Has("email")) {
    return Fail(kUsage, "contacts edit needs an option that says what to change");
  }
  if (action == "list") return ListContacts(book, output);
  if (action == "add") return AddContact(book, output);
  if (names) return ChangeContact(book, action == "delete");
  return Fail(kUsage, "contacts takes list, add, edit ID or delete ID");
}

Outcome ParticipantsCommand(const Arguments& arguments, Output& output) {
  Format format = Format::kText;
  Outcome outcome = ParseFormat("format", arguments.Value("format"), format);
  std::unique_ptr<core::RecordFile> calendar;
  if (outcome.IsDone()) outcome = OpenCalendarToRead(arguments, calendar);
  Subjects subjects;
  if (outcome.IsDone()) outcome = FindEvents(arguments, *calendar, subjects);
  if (!outcome.IsDone()) return outcome;
  const std::string path = core::ParticipantStorePath(arguments.file);
  std::vector<core::Participant> participants;
  bool whole = true;
  // Without a store there is no participant.
  if (platform::FileExists(path)) {
    const core::CompanionFile store = core::ReadCompanion(path, core::kSendKind);
    if (store.file == nullptr) return FailOn(path, CodeOf(store.error), store.message);
    whole = FindParticipants(*store.file, subjects, participants);
  }
  const bool text = format == Format::kText;
  Table table(output, format,
              {{"event", text ? 16U : 0U},
               {"subject", text ? 24U : 0U},
               {"state", text ? 14U : 0U},
               {"name", text ? 24U : 0U},
               {"email"}});
  for (const core::Participant& participant : participants) {
    const std::uint64_t id = participant.eventId;
    table.Row({Cell::Text(FormatId(id)), Cell::Text(subjects.at(id)),
               Cell::Text(core::ParticipantStateText(participant.state)),
               Cell::Text(FromStored(core::ReadText(participant.name))),
               Cell::Text(FromStored(core::ReadText(participant.email)))});
  }
  table.End();
  return whole ? Outcome{} : FailOn(path, kFile, kPartly);
}

Outcome RegisterCommand(Output& output) {
  const std::uint32_t status = core::RegisterOnServer();
  output.Write(std::string(resources::FindText(core::RegistrationTextId(status))) + "\n");
  if (status == core::kRegistered) return {};
  return Fail(status == core::kAddressTaken ? kRefused : kFile, "");
}

}  // namespace cli
