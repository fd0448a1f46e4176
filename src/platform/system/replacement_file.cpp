#include "platform/system/replacement_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/system/descriptor.h"

namespace platform {

ReplacementFile::ReplacementFile() = default;

ReplacementFile::~ReplacementFile() {
  Discard();
}

void ReplacementFile::Discard() {
  created.reset();
  if (!name.empty()) unlink(name.c_str());
  name.clear();
}

FileResult ReplacementFile::Begin(const std::string& path) {
  Discard();
  target = ResolvedPath(path);
  size = 0;
  failure = FileResult::kDone;
  // A rename asks for no right on the old file, but who may not write a file may not replace it either.
  Descriptor old;
  const FileResult opened = OpenRegular(target, O_WRONLY, 0, old);
  if (opened != FileResult::kDone && opened != FileResult::kMissing) return opened;
  // With no more rights than the old file, which passes on its own in the end.
  created = std::make_unique<Descriptor>(CreateBeside(target, old.IsOpen() ? 0600 : 0666, name));
  if (created->IsOpen()) return FileResult::kDone;
  const FileResult why = ResultOfError(errno);
  name.clear();
  return why;
}

bool ReplacementFile::Write(std::string_view bytes) {
  if (failure != FileResult::kDone || created == nullptr) return false;
  bool failed = false;
  const std::size_t written = WriteFully(created->Number(), bytes.data(), bytes.size(), size, failed);
  if (written != bytes.size()) failure = IsDiskFull(errno) ? FileResult::kDiskFull : FileResult::kFailed;
  size += static_cast<std::int64_t>(written);
  return failure == FileResult::kDone;
}

FileResult ReplacementFile::Finish() {
  if (name.empty()) return FileResult::kFailed;
  if (failure == FileResult::kDone && !FlushFully(created->Number())) {
    failure = IsDiskFull(errno) ? FileResult::kDiskFull : FileResult::kFailed;
  }
  created.reset();
  if (failure == FileResult::kDone && RenameFile(name, target)) {
    name.clear();
  } else if (failure == FileResult::kDone) {
    failure = FileResult::kFailed;
  }
  Discard();
  return failure;
}

}  // namespace platform
