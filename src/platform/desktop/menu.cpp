#include "platform/desktop/menu.h"

#include <QApplication>
#include <QMenu>
#include <QProxyStyle>

#include "platform/desktop/qt/accessible_window.h"
#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/qt/window_table.h"
#include "platform/desktop/window.h"

namespace {

// A long menu is one column that scrolls, and the items of a chooser are found by typing their texts.
class MenuStyle : public QProxyStyle {
 public:
  bool chooser = false;

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override {
    if (hint == SH_Menu_Scrollable) return 1;
    if (hint == SH_Menu_KeyboardSearch && chooser) return 1;
    return QProxyStyle::styleHint(hint, option, widget, returned);
  }
};

class Menu : public QMenu {
 public:
  QAction* current = nullptr;  // owned by the menu

 protected:
  // Scrolls to the current item, now that the menu knows its height.
  void showEvent(QShowEvent* event) override {
    QMenu::showEvent(event);
    if (current != nullptr) setActiveAction(current);
  }
};

}  // namespace

struct MenuHandle {
  MenuStyle style;
  Menu menu;
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
  auto* menu = new MenuHandle;
  menu->menu.setStyle(&menu->style);
  return menu;
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
  QAction* current = FindAction(menu->menu, command);
  if (current == nullptr) return;
  current->setCheckable(true);
  current->setChecked(true);
  menu->menu.current = current;
  menu->style.chooser = true;
}

unsigned TrackPopupMenu(HMENU menu, POINT screenPoint, HWND owner) {
  // A chosen item must not reach an owner that died while the menu was open: PostMessage sees to that.
  const QAction* chosen = nullptr;
  // Assistive technology triggers an item and leaves the menu as it is.
  const QObject scope;
  QObject::connect(&menu->menu, &QMenu::triggered, &scope, [&](const QAction* action) {
    chosen = action;
    menu->menu.close();
  });
  ShowAccessibleMenu(owner, &menu->menu);
  menu->menu.exec(QPoint(screenPoint.x, screenPoint.y));
  ShowAccessibleMenu(nullptr, nullptr);
  if (chosen == nullptr) return 0;
  const unsigned command = chosen->data().toUInt();
  PostMessage(owner, WM_COMMAND, command, 0);
  return command;
}

bool IsMenuOpen() {
  return QApplication::activePopupWidget() != nullptr;
}
