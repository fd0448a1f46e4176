#include "core/store/access.h"

namespace core {

Access LevelOf(std::string_view password, const HeaderBlock& header) {
  if (password == ReadText(header.ownerPassword)) return Access::kOwner;
  if (password == ReadText(header.assistantPassword)) return Access::kAssistant;
  if (password == ReadText(header.readerPassword)) return Access::kReader;
  return Access::kNone;
}

}  // namespace core
