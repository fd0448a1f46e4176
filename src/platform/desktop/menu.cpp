#include "platform/desktop/menu.h"

#include <QMenu>

#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/qt/window_table.h"
#include "platform/desktop/window.h"

struct MenuHandle {
  QMenu menu;
  QAction* current = nullptr;  // owned by the menu
};

namespace {

// Of a user's own text; a menu as wide as the screen would cover what it belongs to.
constexpr int kWidestLiteral = 300;

// The text as it stands, cut where it is too wide. Control characters have no look of their own.
QString LiteralLabel(const QMenu& menu, QString text) {
  for (QChar& character : text) {
    if (character.category() == QChar::Other_Control) character = u' ';
  }
  return menu.fontMetrics()
      .elidedText(text, Qt::ElideRight, kWidestLiteral)
      .replace(u'&', QStringLiteral("&&"));
}

QAction* FindAction(const QMenu& menu, unsigned command) {
  for (QAction* action : menu.actions()) {
    if (!action->isSeparator() && action->data().toUInt() == command) return action;
  }
  return nullptr;
}

}  // namespace

HMENU CreatePopupMenu() {
  UseDialogFont();
  return new MenuHandle;
}
void DestroyMenu(HMENU menu) {
  delete menu;
}

void AppendMenu(HMENU menu, UINT flags, unsigned command, const char* text) {
  if (flags & MF_SEPARATOR) {
    menu->menu.addSeparator();
    return;
  }
  const QString label = TextFromCodePage(text);
  QAction* action = menu->menu.addAction(flags & MF_LITERAL ? LiteralLabel(menu->menu, label) : label);
  action->setData(command);
  action->setEnabled(!(flags & MF_GRAYED));
  action->setCheckable(flags & MF_CHECKED);
  action->setChecked(flags & MF_CHECKED);
}

void SetMenuCurrent(HMENU menu, unsigned command) {
  menu->current = FindAction(menu->menu, command);
  if (menu->current == nullptr) return;
  menu->current->setCheckable(true);
  menu->current->setChecked(true);
}

unsigned TrackPopupMenu(HMENU menu, POINT screenPoint, HWND owner) {
  if (menu->current != nullptr) menu->menu.setActiveAction(menu->current);
  // A chosen item must not reach an owner that died while the menu was open: PostMessage sees to that.
  const QAction* chosen = menu->menu.exec(QPoint(screenPoint.x, screenPoint.y));
  if (chosen == nullptr) return 0;
  const unsigned command = chosen->data().toUInt();
  PostMessage(owner, WM_COMMAND, command, 0);
  return command;
}
