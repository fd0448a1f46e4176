// The contacts of another address-book program, from which the name in an appointment's description may come.
// Its files are record files of a kind of their own; all that is known of their records is where the two
// parts of a name lie. They are only read.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/store/opening.h"

namespace core {

struct ExternalContacts {
  enum Result {
    kRead,
    kCannotOpen,     // there is no such file, or it is no such record file
    kWrongPassword,  // the file asks for a password, and this is not it
  };
  Result result = kCannotOpen;
  std::vector<std::string> names;  // "first last" as stored, in file order; at most 10000
  bool whole = false;              // false when some could not be read
};

// Reads the names in the file at the path. An empty password is for a file without an Owner password; with
// kWrongPassword the user may be asked for one.
[[nodiscard]] ExternalContacts ReadExternalContacts(const std::string& path, std::string_view password);

// The sentence that such a file could not be opened.
std::string CannotOpenContactsText(const std::string& path);

// The file that was used the last time, "eContactFile" of the program's settings; where there is none, the
// one of the other program's settings, which is then remembered. May be empty.
std::string ExternalContactsPath();
// False when it could not be noted down.
[[nodiscard]] bool RememberExternalContacts(const std::string& path);

// What is proposed as the description of an appointment with a contact, or, where that is empty, with
// anybody.
std::vector<std::string> DescriptionProposals(std::string_view contact);

}  // namespace core
