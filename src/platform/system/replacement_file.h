// A file that is written piece by piece and takes the place of another one when it is whole, for what may be
// too long to be held in memory; what is short goes through ReplaceFile.
//
//   ReplacementFile file;
//   FileResult result = file.Begin(path);
//   if (result == FileResult::kDone && file.Write("...")) result = file.Finish();
//
// Until Finish the path names what it named before, and after a failure still does.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/system/file.h"

namespace platform {

class Descriptor;

class ReplacementFile {
 public:
  ReplacementFile();
  ~ReplacementFile();  // without Finish, what was written is gone
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;

  // Makes a new file beside the one at `path`, or the one that a link there leads to. Fails where that one
  // may not be written or is no regular file.
  [[nodiscard]] FileResult Begin(const std::string& path);

  // Adds bytes at the end. False when they could not all be written; Finish then tells why.
  [[nodiscard]] bool Write(std::string_view bytes);

  // Brings everything to the disk and gives the file its name and the rights of the old one.
  [[nodiscard]] FileResult Finish();

 private:
  void Discard();

  std::string target;
  std::string name;  // of the new file, empty for none
  std::unique_ptr<Descriptor> created;
  std::int64_t size = 0;
  FileResult failure = FileResult::kDone;
};

}  // namespace platform
