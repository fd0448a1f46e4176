// The user's account on the event server, as it is typed in and kept: section "Zarf Server" of Daybrix.ini.
// The password stands there in plain text, so the file is made readable by its user alone.
//
// Limits are in bytes. A field takes one character more than is kept of it: of a password of ten the first
// nine are kept and compared.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/store/edit_lock.h"

namespace core {

inline constexpr std::size_t kAccountName = 49;
inline constexpr std::size_t kAccountPassword = 9;
inline constexpr std::size_t kAccountText = 259;  // of the others

struct ServerAccount {
  std::string name;
  std::string email;
  std::string password;
  std::string server;
  std::string port;
};

// Each text cut to what is kept. A port that was never set is the one of "defaultport", which may be empty.
ServerAccount ReadServerAccount();

// Why an account is not taken, in the order in which it is looked at: the passwords differ, there is no name,
// no e-mail address, no password. Null when it is. Nothing else is asked of the texts.
const char* FaultOfAccount(const ServerAccount& account, std::string_view confirmation);

// Whether the account can be checked at all, and whether it can be used to register: what the buttons of a
// setup need.
bool IsAccountFilled(const ServerAccount& account, std::string_view confirmation);
bool IsServerFilled(const ServerAccount& account);

// Keeps all five texts, each cut to its limit. False when they could not be written; nothing was then.
[[nodiscard]] bool StoreServerAccount(const ServerAccount& account);

// Whether a typed password is the account's. Without a stored one nobody is asked.
bool IsServerPasswordSet();
bool IsServerPassword(std::string_view typed);

// Whether the account may be set up with this calendar open: its owner is still the one that new files get,
// and the password is the Owner's. kReader when not, kFailed when that cannot be read.
[[nodiscard]] CommandResult CheckMaySetUp(const RecordFile& calendar);

// Writes the event server's address into the calendar's header, where it is another one, and brings it to the
// disk. A calendar with an owner of its own keeps what it has.
[[nodiscard]] CommandResult StampServerAddress(RecordFile& calendar);

}  // namespace core
