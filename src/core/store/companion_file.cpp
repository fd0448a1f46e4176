#include "core/store/companion_file.h"

#include "core/store/compaction.h"
#include "core/store/file_messages.h"
#include "platform/system/file.h"

namespace core {
namespace {

CompanionFile Open(const std::string& path, const RecordKind& kind, std::string_view password,
                   OpenMode mode) {
  auto file = std::make_unique<RecordFile>(path, password, mode);
  if (file->OpenFailed()) {
    return {nullptr, DescribeOpenError(path, file->LastOpenError()), file->LastOpenError()};
  }
  if (file->SlotSize() == kind.slotSize) return {std::move(file), "", OpenError::kNone};
  return {nullptr, CannotOpenText(path, "It is a file of another kind."), OpenError::kNone};
}

}  // namespace

CompanionFile OpenCompanion(const std::string& path, const RecordKind& kind, std::string_view password) {
  const RepairOutcome repair = RepairCheck(path, false);
  CompanionFile opened = Open(path, kind, password, OpenMode::kReadAndWrite);
  if (opened.file != nullptr) opened.message = repair.message;
  return opened;
}

CompanionFile OpenOrMakeCompanion(const std::string& path, const RecordKind& kind, std::string_view password,
                                  const std::string& beside) {
  if (!platform::FileExists(path)) {
    HeaderBlock header;
    InitHeaderBlock(header, kind.kind, kind.kindDetail, 1);
    const std::string image = NewFileImage(header, DefaultCategories(), kind.slotSize, {});
    const platform::FileResult made = platform::WriteNewFile(path, image.data(), image.size(), beside);
    // A file that another copy made meanwhile will do.
    if (made != platform::FileResult::kDone && made != platform::FileResult::kExists) {
      return {nullptr, CannotCreateText(made) + "\r\n" + Quoted(path), FromFileResult(made)};
    }
  }
  return OpenCompanion(path, kind, password);
}

CompanionFile ReadCompanion(const std::string& path, const RecordKind& kind, std::string_view password) {
  return Open(path, kind, password, OpenMode::kReadOnly);
}

}  // namespace core
