#include "core/file_passwords.h"

#include <string_view>

namespace core {
namespace {

std::string_view Kept(const std::string& password) {
  return std::string_view(password).substr(0, kPasswordKept);
}

}  // namespace

Result ReadPasswords(const RecordFile& file, FilePasswords& passwords) {
  HeaderBlock header;
  if (!file.ReadHeaderBlock(header)) return Result::kFailed;
  if (LevelOf(file.Password(), header) != Access::kOwner) return Result::kRefused;
  passwords.owner = ReadText(header.ownerPassword);
  passwords.assistant = ReadText(header.assistantPassword);
  passwords.reader = ReadText(header.readerPassword);
  return Result::kDone;
}

bool StorePasswords(RecordFile& file, const FilePasswords& passwords) {
  const bool written = file.UpdateHeaderBlock([&](HeaderBlock& header) {
    WriteText(header.ownerPassword, Kept(passwords.owner));
    WriteText(header.assistantPassword, Kept(passwords.assistant));
    WriteText(header.readerPassword, Kept(passwords.reader));
  });
  if (!written) return false;
  file.SetPassword(Kept(passwords.owner));
  file.Flush();
  return true;
}

}  // namespace core
