// The three passwords of a record file, which its owner sets. They lie in the file as plain text in code page
// 1252 and are compared byte for byte.
#pragma once

#include <cstddef>
#include <string>

#include "core/store/edit_lock.h"

namespace core {

// Characters that a password can be typed with, and that are kept of it: the last byte of its field ends it,
// so that one typed in full length is kept one shorter than it was typed, and only as kept it opens the file.
inline constexpr std::size_t kPasswordTyped = 20;
inline constexpr std::size_t kPasswordKept = 19;

// Empty for none.
struct FilePasswords {
  std::string owner;
  std::string assistant;
  std::string reader;
  bool operator==(const FilePasswords&) const = default;
};

// Reads the passwords of a file that was opened with its Owner password: kDone. kReader for everybody else,
// kNoAccess when the password is none of the file's any more, and kFailed when it cannot be read.
[[nodiscard]] CommandResult ReadPasswords(const RecordFile& file, FilePasswords& passwords);

// Sets all three, brings them to the disk, and lets the file go on with the new Owner password as its own, so
// that the owner stays the owner. Nothing else in the header block changes. kDone, or
// kNotFlushed, or nothing is changed, with a result as above.
[[nodiscard]] CommandResult StorePasswords(RecordFile& file, const FilePasswords& passwords);

}  // namespace core
