#include "framework/notices.h"

#include <algorithm>
#include <cstring>

#include "framework/zarf_wnd.h"
#include "platform/desktop/message_box.h"
#include "resources/strings.h"

namespace {

constexpr const char* kCaption = "Daybrix";

HWND HandleOfOwner(const ZarfWnd* owner) {
  return owner != nullptr ? owner->Handle() : nullptr;
}

}  // namespace

char* LoadText(char* buffer, int stringId, int size) {
  if (size <= 0) return buffer;
  const char* text = resources::FindText(stringId);
  const std::size_t length = std::min(std::strlen(text), static_cast<std::size_t>(size) - 1);
  std::memcpy(buffer, text, length);
  buffer[length] = '\0';
  return buffer;
}

void ShowInfo(ZarfWnd* owner, const std::string& text) {
  MessageBox(HandleOfOwner(owner), text, kCaption, MB_OK | MB_ICONINFORMATION);
}

void ShowInfoId(ZarfWnd* owner, int stringId) {
  ShowInfo(owner, resources::FindText(stringId));
}

bool AskYesNo(ZarfWnd* owner, int stringId) {
  return AskYesNo(owner, std::string(resources::FindText(stringId)));
}

bool AskYesNo(ZarfWnd* owner, const std::string& text) {
  return MessageBox(HandleOfOwner(owner), text, kCaption, MB_YESNO | MB_ICONQUESTION) == IDYES;
}
