#include "framework/dialog_items.h"

LRESULT DialogItem::Send(UINT message, WPARAM wParam, LPARAM lParam) const {
  return SendDlgItemMessage(dialog.Handle(), id, message, wParam, lParam);
}

LRESULT DialogItem::SendText(UINT message, const std::string& text) const {
  return Send(message, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

std::string TextItem::Text(std::size_t mostBytes) const {
  std::string text(mostBytes + 1, '\0');
  const int length = GetDlgItemText(dialog.Handle(), Id(), text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

int ComboItem::Find(const std::string& text) const {
  return static_cast<int>(SendText(CB_FINDSTRINGEXACT, text));
}

std::string ListItem::Line(int line) const {
  const LRESULT length = Send(LB_GETTEXTLEN, static_cast<WPARAM>(line));
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  if (length > 0) Send(LB_GETTEXT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(text.data()));
  return text;
}
