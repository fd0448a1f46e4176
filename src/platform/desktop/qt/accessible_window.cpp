#include "platform/desktop/qt/accessible_window.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QHash>
#include <QPointer>
#include <QWidget>
#include <algorithm>
#include <utility>

#include "platform/desktop/accessible.h"
#include "platform/desktop/qt/window_table.h"
#include "platform/desktop/window.h"

namespace {

void (*testListener)(QAccessibleEvent*) = nullptr;

// The menu that is open, and whose it is.
QPointer<QWidget> openMenu;
HWND menuOwner = nullptr;

QAccessible::Role QtRole(AccessibleRole role) {
  switch (role) {
    case AccessibleRole::kPane:
      return QAccessible::Pane;
    case AccessibleRole::kPicture:
      return QAccessible::Graphic;
    case AccessibleRole::kText:
      return QAccessible::StaticText;
    case AccessibleRole::kButton:
      return QAccessible::Button;
    case AccessibleRole::kMenuButton:
      return QAccessible::ButtonMenu;
    case AccessibleRole::kLink:
      return QAccessible::Link;
    case AccessibleRole::kChooser:
      return QAccessible::ComboBox;
    case AccessibleRole::kSlider:
      return QAccessible::Slider;
    case AccessibleRole::kScrollBar:
      return QAccessible::ScrollBar;
    case AccessibleRole::kToolBar:
      return QAccessible::ToolBar;
    case AccessibleRole::kTabList:
      return QAccessible::PageTabList;
    case AccessibleRole::kTab:
      return QAccessible::PageTab;
    case AccessibleRole::kList:
      return QAccessible::List;
    case AccessibleRole::kListItem:
      return QAccessible::ListItem;
    case AccessibleRole::kCalendar:
      return QAccessible::Table;
    case AccessibleRole::kDay:
      return QAccessible::Cell;
  }
  return QAccessible::Client;
}

bool OpensMenu(AccessibleRole role) {
  return role == AccessibleRole::kMenuButton || role == AccessibleRole::kChooser;
}

AccessiblePart Ask(HWND window, int item) {
  AccessiblePart part;
  const WindowEntry* entry = FindWindowEntry(window);
  // Before WM_CREATE was handled and after WM_DESTROY there is nothing to describe.
  if (entry == nullptr || !entry->created || entry->destroying) return part;
  SendMessage(window, WM_DESCRIBE, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&part));
  return part;
}

QString TextOf(const AccessiblePart& part, QAccessible::Text kind) {
  switch (kind) {
    case QAccessible::Name:
      return TextFromCodePage(part.name.c_str());
    case QAccessible::Description:
      return TextFromCodePage(part.description.c_str());
    case QAccessible::Value:
      return TextFromCodePage(part.value.c_str());
    default:
      return {};
  }
}

// Posted: the caller waits for the answer, and what is done may open a dialog. What lies under a dialog or a
// menu cannot be worked, as with the mouse.
void Do(HWND window, AccessibleAction action, int value) {
  const WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr || !entry->widget->isVisible() || !entry->widget->isEnabled()) return;
  const QWidget* modal = QApplication::activeModalWidget();
  if (QApplication::activePopupWidget() != nullptr ||
      (modal != nullptr && modal != entry->widget->window())) {
    return;
  }
  PostMessage(window, WM_DOACTION, static_cast<WPARAM>(action), value);
}

// Something that a window draws.
class ItemInterface : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  ItemInterface(QWidget* itemWidget, HWND window, int itemNumber)
      : widget(itemWidget), hwnd(window), item(itemNumber) {}

  bool isValid() const override { return widget != nullptr && item < Ask(hwnd, kWholeWindow).items; }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return widget != nullptr ? widget->window()->windowHandle() : nullptr; }
  QAccessibleInterface* parent() const override {
    return widget != nullptr ? QAccessible::queryAccessibleInterface(widget) : nullptr;
  }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  void setText(QAccessible::Text, const QString&) override {}

  QString text(QAccessible::Text kind) const override { return TextOf(Part(), kind); }
  QAccessible::Role role() const override { return QtRole(Part().role); }
  QRect rect() const override {
    const RECT place = Part().place;
    const POINT corner = ClientToScreen(hwnd, {place.left, place.top});
    return {corner.x, corner.y, Width(place), Height(place)};
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    if (!isValid()) {
      state.invalid = true;
      return state;
    }
    const AccessiblePart part = Part();
    state.selectable = (part.state & kAccessibleSelectable) != 0;
    state.focusable = CanFocus(part);
    state.focused = widget->hasFocus() && Ask(hwnd, kWholeWindow).currentItem == item;
    state.selected = (part.state & kAccessibleSelected) != 0;
    state.pressed = (part.state & kAccessiblePressed) != 0;
    state.hasPopup = OpensMenu(part.role);
    state.disabled = !widget->isEnabled();
    state.invisible = !widget->isVisible();
    state.offscreen = state.invisible || part.place == RECT{};
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }
  QStringList actionNames() const override {
    const AccessiblePart part = Part();
    QStringList names;
    if (part.pressable) names << pressAction();
    if (CanFocus(part)) names << setFocusAction();
    return names;
  }
  void doAction(const QString& name) override {
    if (!isValid()) return;
    if (name == pressAction()) Do(hwnd, AccessibleAction::kPress, item);
    if (name == setFocusAction()) Do(hwnd, AccessibleAction::kSelect, item);
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  AccessiblePart Part() const { return isValid() ? Ask(hwnd, item) : AccessiblePart(); }
  bool CanFocus(const AccessiblePart& part) const {
    return (part.state & kAccessibleSelectable) != 0 && widget != nullptr &&
           widget->focusPolicy() != Qt::NoFocus;
  }

  QPointer<QWidget> widget;
  const HWND hwnd;
  const int item;
};

// A window, with its child windows, its open menu and then its items as children. Of a window with a frame of
// its own the frame is the window and has the items; the area inside is only a pane.
class WindowInterface : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  WindowInterface(QWidget* ownWidget, HWND ownWindow) : QAccessibleWidget(ownWidget), hwnd(ownWindow) {}

  bool isValid() const override { return QAccessibleWidget::isValid() && FindWindowEntry(hwnd) != nullptr; }
  int childCount() const override { return Windows() + Part().items; }
  QAccessibleInterface* child(int index) const override {
    const int widgets = QAccessibleWidget::childCount();
    if (index < widgets) return QAccessibleWidget::child(index);
    return index < Windows() ? Menu() : Item(index - Windows());
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    if (child != nullptr && child == Menu()) return Windows() - 1;
    const auto found = numbers.constFind(child);
    return found != numbers.constEnd() ? Windows() + *found : QAccessibleWidget::indexOfChild(child);
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    if (!isValid()) return nullptr;
    const POINT point = ScreenToClient(hwnd, {x, y});
    if (Part().items > 0) {
      const LRESULT found = SendMessage(hwnd, WM_ITEMAT, 0, MakeLParam(point.x, point.y));
      if (QAccessibleInterface* item = Item(static_cast<int>(found) - 1)) return item;
    }
    for (int index = 0; index < QAccessibleWidget::childCount(); ++index) {
      QAccessibleInterface* inner = QAccessibleWidget::child(index);
      if (inner != nullptr && !inner->state().invisible && inner->rect().contains(x, y)) return inner;
    }
    return nullptr;
  }
  QAccessibleInterface* focusChild() const override {
    if (isValid() && widget()->hasFocus()) {
      if (QAccessibleInterface* item = Item(Part().currentItem)) return item;
    }
    return QAccessibleWidget::focusChild();
  }

  QString text(QAccessible::Text kind) const override {
    if (!isValid()) return {};
    const AccessiblePart part = Part();
    const QString own = TextOf(part, kind);
    if (kind != QAccessible::Name) return own.isEmpty() ? QAccessibleWidget::text(kind) : own;
    QString name = own.isEmpty() ? widget()->windowTitle() : own;
    if (part.role != AccessibleRole::kChooser) return name;
    // The protocol of the desktop has no words for the value of a chooser: as Qt's own it names it.
    return name + QStringLiteral(": ") + TextOf(part, QAccessible::Value);
  }
  QAccessible::Role role() const override {
    const AccessiblePart part = Part();
    const bool top = part.role == AccessibleRole::kPane && isValid() && widget()->isWindow();
    return top ? QAccessible::Window : QtRole(part.role);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.invalid = !isValid();
    const AccessiblePart part = Part();
    state.pressed = (part.state & kAccessiblePressed) != 0;
    state.hasPopup = OpensMenu(part.role);
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type != QAccessible::ValueInterface) return QAccessibleWidget::interface_cast(type);
    return Part().lastPosition >= 0 ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
  }
  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (Part().pressable) names.prepend(pressAction());
    return names;
  }
  void doAction(const QString& name) override {
    if (name == pressAction() && Part().pressable) {
      Do(hwnd, AccessibleAction::kPress, kWholeWindow);
    } else {
      QAccessibleWidget::doAction(name);
    }
  }

  QVariant currentValue() const override { return Part().position; }
  void setCurrentValue(const QVariant& value) override {
    Do(hwnd, AccessibleAction::kSetPosition, std::clamp(value.toInt(), 0, std::max(Part().lastPosition, 0)));
  }
  QVariant maximumValue() const override { return Part().lastPosition; }
  QVariant minimumValue() const override { return 0; }
  QVariant minimumStepSize() const override { return 1; }

  QAccessibleInterface* Item(int item) const {
    if (item < 0 || item >= Part().items) return nullptr;
    const auto made = items.constFind(item);
    if (made != items.constEnd()) return QAccessible::accessibleInterface(*made);
    auto* added = new ItemInterface(widget(), hwnd, item);
    items.insert(item, QAccessible::registerAccessibleInterface(added));
    numbers.insert(added, item);
    return added;
  }

 protected:
  ~WindowInterface() override {
    for (const QAccessible::Id id : std::as_const(items)) QAccessible::deleteAccessibleInterface(id);
  }

 private:
  bool IsOuter() const {
    const WindowEntry* entry = FindWindowEntry(hwnd);
    return entry != nullptr && widget() == entry->Outer();
  }
  AccessiblePart Part() const { return IsOuter() ? Ask(hwnd, kWholeWindow) : AccessiblePart(); }
  QAccessibleInterface* Menu() const {
    return openMenu != nullptr && menuOwner == hwnd && IsOuter()
               ? QAccessible::queryAccessibleInterface(openMenu)
               : nullptr;
  }
  // How many of its children are windows.
  int Windows() const { return QAccessibleWidget::childCount() + (Menu() != nullptr ? 1 : 0); }

  const HWND hwnd;
  // The items that somebody has asked for; Qt's cache owns their interfaces.
  mutable QHash<int, QAccessible::Id> items;
  mutable QHash<const QAccessibleInterface*, int> numbers;
};

}  // namespace

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
  if (object == nullptr || !object->isWidgetType()) return nullptr;
  auto* widget = static_cast<QWidget*>(object);
  const WindowEntry* entry = FindWindowEntry(HandleOf(widget));
  if (entry == nullptr || entry->kind != WindowKind::kWindow) return nullptr;
  return new WindowInterface(widget, entry->handle);
}

bool AccessibilityIsHeard() {
  return testListener != nullptr || QAccessible::isActive();
}

void TellAccessibility(QAccessibleEvent* event) {
  if (testListener != nullptr) {
    testListener(event);
  } else {
    QAccessible::updateAccessibility(event);
  }
}

void SetAccessibilityListener(void (*listener)(QAccessibleEvent* event)) {
  testListener = listener;
}

void ShowAccessibleMenu(HWND owner, QWidget* menu) {
  openMenu = menu;
  menuOwner = owner;
}

QAccessibleInterface* CurrentAccessibleItem(QWidget* widget) {
  QAccessibleInterface* window = QAccessible::queryAccessibleInterface(widget);
  const AccessiblePart part = Ask(HandleOf(widget), kWholeWindow);
  if (window == nullptr || part.currentItem < 0) return nullptr;
  return window->child(window->childCount() - part.items + part.currentItem);
}

void AnnounceFocus(QWidget* widget) {
  if (!widget->hasFocus()) return;
  QAccessibleInterface* item = CurrentAccessibleItem(widget);
  if (item == nullptr) return;
  QAccessibleEvent focused(item, QAccessible::Focus);
  TellAccessibility(&focused);
}

QVariant AccessibleValue(HWND window) {
  const AccessiblePart part = Ask(window, kWholeWindow);
  if (part.lastPosition >= 0) return part.position;
  return TextFromCodePage(part.value.c_str());
}
