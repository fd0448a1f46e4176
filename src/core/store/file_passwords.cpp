#include "core/store/file_passwords.h"

#include <string_view>

namespace core {
namespace {

std::string_view Kept(const std::string& password) {
  return std::string_view(password).substr(0, kPasswordKept);
}

CommandResult OwnersAlone(Access level) {
  if (level == Access::kOwner) return CommandResult::kDone;
  return level == Access::kNone ? CommandResult::kNoAccess : CommandResult::kReader;
}

}  // namespace

CommandResult ReadPasswords(const RecordFile& file, FilePasswords& passwords) {
  HeaderBlock header;
  if (!file.ReadHeaderBlock(header)) return CommandResult::kFailed;
  const CommandResult allowed = OwnersAlone(file.LevelIn(header));
  if (allowed != CommandResult::kDone) return allowed;
  passwords.owner = ReadText(header.ownerPassword);
  passwords.assistant = ReadText(header.assistantPassword);
  passwords.reader = ReadText(header.readerPassword);
  return CommandResult::kDone;
}

CommandResult StorePasswords(RecordFile& file, const FilePasswords& passwords) {
  // Asked again where the block is read to be written: somebody may have set other ones meanwhile.
  Access level = Access::kNone;
  const bool written = file.UpdateHeaderBlock([&](HeaderBlock& header) {
    level = file.LevelIn(header);
    if (level != Access::kOwner) return;
    WriteText(header.ownerPassword, Kept(passwords.owner));
    WriteText(header.assistantPassword, Kept(passwords.assistant));
    WriteText(header.readerPassword, Kept(passwords.reader));
  });
  if (!written) return CommandResult::kFailed;
  if (level != Access::kOwner) return OwnersAlone(level);
  file.SetPassword(Kept(passwords.owner));
  return Flush(file, CommandResult::kDone);
}

}  // namespace core
