#include "support/screen_reader.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QMetaEnum>
#include <QWidget>
#include <utility>

#include "platform/desktop/qt/accessible_window.h"
#include "platform/desktop/qt/window_table.h"

namespace {

QAccessibleInterface* AccessibleOf(HWND window, int child) {
  const WindowEntry* entry = FindWindowEntry(window);
  QAccessibleInterface* found =
      entry != nullptr ? QAccessible::queryAccessibleInterface(entry->Outer()) : nullptr;
  return found != nullptr && child >= 0 ? found->child(child) : found;
}

std::string Said(const QAccessibleInterface* seen, QAccessible::Text kind) {
  return seen != nullptr ? CodePageFromText(seen->text(kind)) : std::string();
}

std::string TextOf(QAccessibleInterface* seen) {
  if (seen == nullptr || !seen->isValid()) return "none";
  std::string text = QMetaEnum::fromType<QAccessible::Role>().valueToKey(seen->role());
  text.append(" \"").append(Said(seen, QAccessible::Name)).append("\"");
  const std::string description = Said(seen, QAccessible::Description);
  if (!description.empty()) text.append(" (").append(description).append(")");
  if (QAccessibleValueInterface* slider = seen->valueInterface()) {
    text.append(" = ").append(std::to_string(slider->currentValue().toInt()));
    text.append("/").append(std::to_string(slider->maximumValue().toInt()));
  } else if (const std::string value = Said(seen, QAccessible::Value); !value.empty()) {
    text.append(" = ").append(value);
  }
  const QAccessible::State state = seen->state();
  if (state.selected) text += " selected";
  if (state.pressed) text += " pressed";
  if (state.focused) text += " focused";
  if (state.offscreen && !state.invisible) text += " offscreen";
  if (seen->childCount() > 0) text.append(" ").append(std::to_string(seen->childCount()));
  return text;
}

std::vector<std::string>& Heard() {
  static std::vector<std::string> heard;
  return heard;
}

void Hear(QAccessibleEvent* event) {
  const std::string name = Said(event->accessibleInterface(), QAccessible::Name);
  if (event->type() == QAccessible::Selection) Heard().push_back("selection " + name);
  if (event->type() == QAccessible::Focus) Heard().push_back("focus " + name);
  if (event->type() == QAccessible::ObjectReorder) Heard().push_back("items");
  if (event->type() != QAccessible::ValueChanged) return;
  Heard().push_back("value " +
                    static_cast<QAccessibleValueChangeEvent*>(event)->value().toString().toStdString());
}

// What is done is posted, told by a post, and passed on by another.
void Settle() {
  for (int round = 0; round < 3; ++round) {
    QApplication::processEvents();
    QApplication::sendPostedEvents();
  }
}

}  // namespace

std::string ScreenReader::Read(HWND window, int child) {
  return TextOf(AccessibleOf(window, child));
}

void ScreenReader::Act(HWND window, int child, const std::string& action) {
  QAccessibleInterface* seen = AccessibleOf(window, child);
  QAccessibleActionInterface* actions = seen != nullptr ? seen->actionInterface() : nullptr;
  const QString name = QString::fromStdString(action);
  if (actions == nullptr || !actions->actionNames().contains(name)) {
    ADD_FAILURE() << "nothing to " << action;
    return;
  }
  actions->doAction(name);
  Settle();
}

void ScreenReader::MoveSlider(HWND window, int position) {
  QAccessibleInterface* seen = AccessibleOf(window, -1);
  QAccessibleValueInterface* value = seen != nullptr ? seen->valueInterface() : nullptr;
  if (value == nullptr) {
    ADD_FAILURE() << "no slider";
    return;
  }
  value->setCurrentValue(position);
  Settle();
}

std::string ScreenReader::ReadAt(HWND window, POINT point) {
  const QAccessibleInterface* seen = AccessibleOf(window, -1);
  const POINT onScreen = ClientToScreen(window, point);
  return TextOf(seen != nullptr ? seen->childAt(onScreen.x, onScreen.y) : nullptr);
}

ScreenReader::ScreenReader() {
  SetAccessibilityListener(Hear);
  Heard().clear();
}

ScreenReader::~ScreenReader() {
  SetAccessibilityListener(nullptr);
}

std::vector<std::string> ScreenReader::TakeHeard() {
  Settle();
  return std::exchange(Heard(), {});
}

void ScreenReader::ExpectEnd(HWND window, const std::function<void()>& destroy) {
  std::vector<QAccessibleInterface*> seen{AccessibleOf(window, -1)};
  for (int child = 0; child < seen.front()->childCount(); ++child)
    seen.push_back(AccessibleOf(window, child));
  std::vector<QAccessible::Id> ids;
  ids.reserve(seen.size());
  for (QAccessibleInterface* interface : seen) ids.push_back(QAccessible::uniqueId(interface));
  destroy();
  for (QAccessibleInterface* interface : seen) {
    EXPECT_FALSE(interface->isValid());
    EXPECT_EQ(TextOf(interface), "none");
    EXPECT_TRUE(interface->state().invalid);
    interface->rect();
    interface->childAt(0, 0);
    if (QAccessibleActionInterface* actions = interface->actionInterface()) actions->doAction("Press");
  }
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  for (const QAccessible::Id id : ids) EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}
