// A contact: one slot of the address book. Of the record header only its size, its two state bytes and its
// id are used; the rest is zero.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/store/record_format.h"
#include "core/store/record_sort.h"
#include "core/store/value_compare.h"

namespace core {

#pragma pack(push, 1)

struct Contact {
  RecordHeader header;
  char name[50];
  char email[260];
};

#pragma pack(pop)

static_assert(sizeof(Contact) == 859 && sizeof(Contact) == kAddressKind.slotSize);
static_assert(offsetof(Contact, name) == 549 && offsetof(Contact, email) == 599);

// What of a text is stored: a byte less than the field holds, which is its terminator.
inline constexpr std::size_t kContactName = sizeof(Contact::name) - 1;
inline constexpr std::size_t kContactEmail = sizeof(Contact::email) - 1;

// By name, A to Z as a to z.
inline constexpr RecordOrder kContactOrder{offsetof(Contact, name), sizeof(Contact::name), CompareText};

// Puts texts into a contact, cut to what is stored. Nothing is asked of them; both may be empty.
void SetContact(Contact& contact, std::string_view name, std::string_view email);

}  // namespace core
