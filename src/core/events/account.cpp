#include "core/events/account.h"

#include <array>

#include "core/events/registration.h"
#include "core/ini_file.h"

namespace core {
namespace {

constexpr const char* kFile = "Daybrix.ini";
constexpr const char* kSection = "Zarf Server";
constexpr const char* kPasswordKey = "password";
constexpr const char* kWrongPassword = "Incorrect Password";

std::string Cut(std::string_view text, std::size_t most) {
  return std::string(text.substr(0, most));
}

std::string ReadKey(const char* key, std::size_t most) {
  std::string value;
  // Empty where there is none.
  static_cast<void>(IniFile(kFile).ReadString(kSection, key, value));
  return Cut(value, most);
}

bool HasDefaultOwner(const HeaderBlock& header) {
  return ReadText(header.ownerIdentity.userName) == kDefaultOwnerName &&
         ReadText(header.ownerIdentity.email) == kDefaultOwnerEmail;
}

}  // namespace

ServerAccount ReadServerAccount() {
  ServerAccount account{ReadKey("username", kAccountName), ReadKey("email", kAccountText),
                        ReadKey(kPasswordKey, kAccountPassword), ReadKey("server", kAccountText),
                        ReadKey("port", kAccountText)};
  if (account.port.empty()) account.port = ReadKey("defaultport", kAccountText);
  return account;
}

const char* FaultOfAccount(const ServerAccount& account, std::string_view confirmation) {
  if (Cut(account.password, kAccountPassword) != confirmation.substr(0, kAccountPassword)) {
    return kWrongPassword;
  }
  if (account.name.empty()) return "Incorrect Name";
  if (account.email.empty()) return "Incorrect E-mail";
  return account.password.empty() ? kWrongPassword : nullptr;
}

bool IsAccountFilled(const ServerAccount& account, std::string_view confirmation) {
  return !account.name.empty() && !account.email.empty() && !account.password.empty() &&
         !confirmation.empty();
}

bool IsServerFilled(const ServerAccount& account) {
  return !account.server.empty() && !account.port.empty();
}

bool StoreServerAccount(const ServerAccount& account) {
  const std::array<IniEntry, 5> entries = {{{"username", Cut(account.name, kAccountName)},
                                            {"email", Cut(account.email, kAccountText)},
                                            {kPasswordKey, Cut(account.password, kAccountPassword)},
                                            {"server", Cut(account.server, kAccountText)},
                                            {"port", Cut(account.port, kAccountText)}}};
  return IniFile(kFile).WritePrivately(kSection, entries);
}

bool IsServerPasswordSet() {
  return !ReadKey(kPasswordKey, kAccountPassword).empty();
}

bool IsServerPassword(std::string_view typed) {
  return typed.substr(0, kAccountPassword) == ReadKey(kPasswordKey, kAccountPassword);
}

CommandResult CheckMaySetUp(const RecordFile& calendar) {
  HeaderBlock header;
  if (!calendar.ReadHeaderBlock(header)) return CommandResult::kFailed;
  const bool owner = calendar.LevelIn(header) == Access::kOwner;
  return owner && HasDefaultOwner(header) ? CommandResult::kDone : CommandResult::kReader;
}

CommandResult StampServerAddress(RecordFile& calendar) {
  const EventServer server = ReadEventServer();
  HeaderBlock header;
  if (!calendar.ReadHeaderBlock(header)) return CommandResult::kFailed;
  const auto isStamped = [&server](const HeaderBlock& block) {
    return !HasDefaultOwner(block) ||
           (ReadText(block.serverAddress) == server.address && ReadText(block.serverPort) == server.port);
  };
  if (isStamped(header)) return CommandResult::kDone;
  const bool written = calendar.UpdateHeaderBlock([&](HeaderBlock& block) {
    if (isStamped(block)) return;
    WriteText(block.serverAddress, server.address);
    WriteText(block.serverPort, server.port);
  });
  return written ? Flush(calendar, CommandResult::kDone) : CommandResult::kFailed;
}

}  // namespace core
