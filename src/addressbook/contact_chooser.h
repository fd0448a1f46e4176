// The dialog "E-Record": one contact of the address book to be chosen.
#pragma once

#include <string>

class ZarfWnd;

// Opens the address book and runs the dialog over `owner`. True when the user chose a contact, with its name
// and its e-mail address, of which either may be empty; false, and both untouched, when he gave up.
[[nodiscard]] bool ChooseContact(ZarfWnd* owner, std::string& name, std::string& email);
