#include "platform/desktop/qt/dialog_controls.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QTextCursor>
#include <QWheelEvent>
#include <cstring>
#include <memory>
#include <utility>

#include "platform/desktop/qt/control_text.h"
#include "platform/desktop/qt/dialog_widget.h"
#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/qt/storable_text.h"
#include "platform/desktop/qt/window_table.h"

namespace {

void Report(const QWidget* control, unsigned code) {
  const WindowEntry* entry = FindWindowEntry(HandleOf(control));
  if (entry == nullptr) return;
  const HWND dialog = HandleOf(control->window());
  SendMessage(dialog, WM_COMMAND, MakeWParam(static_cast<unsigned>(entry->controlId), code),
              reinterpret_cast<LPARAM>(entry->handle));
}

void BindLineEdit(QLineEdit* edit, QWidget* control, unsigned code) {
  if (!control->property("anyCharacter").toBool()) KeepStorable(*edit);
  QObject::connect(edit, &QLineEdit::textChanged, control, [control, code] { Report(control, code); });
}

void BindTextEdit(QPlainTextEdit* edit) {
  const auto trim = [edit](int position, int, int added) { TrimTextEdit(*edit, position, added); };
  // Queued: trimming while the document still reports a change would confuse it.
  QObject::connect(edit->document(), &QTextDocument::contentsChange, edit, trim, Qt::QueuedConnection);
  QObject::connect(edit, &QPlainTextEdit::textChanged, edit, [edit] { Report(edit, EN_CHANGE); });
}

// Who turns the wheel over a box that he does not work in means to scroll what is around it.
class WheelWithFocus : public QObject {
 public:
  explicit WheelWithFocus(QComboBox* wheeled) : QObject(wheeled), box(wheeled) {
    box->installEventFilter(this);
    box->setFocusPolicy(Qt::StrongFocus);  // the wheel gives no focus
  }

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::Wheel || box->hasFocus()) return false;
    event->ignore();
    return true;
  }

 private:
  QComboBox* box;
};

// A letter typed in a closed box selects the next line that begins with it, which the box tells nobody.
class ChoiceByLetter : public QObject {
 public:
  explicit ChoiceByLetter(QComboBox* typedIn) : QObject(typedIn), box(typedIn) {
    box->installEventFilter(this);
  }

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::KeyPress) return false;
    const QString text = static_cast<QKeyEvent*>(event)->text();
    if (text.isEmpty() || !text.front().isPrint()) return false;
    const auto tell = [this, before = box->currentIndex()] {
      if (box->currentIndex() != before) Report(box, CBN_SELCHANGE);
    };
    QMetaObject::invokeMethod(box, tell, Qt::QueuedConnection);  // by then the box has taken the key
    return false;
  }

 private:
  QComboBox* box;
};

void BindComboBox(QComboBox* box) {
  // Both are the box's, which owns them.
  new WheelWithFocus(box);
  if (!box->isEditable()) new ChoiceByLetter(box);
  // A list of as many lines as the template says; as a menu of all its lines it would be as high as the
  // screen.
  box->setStyleSheet(QStringLiteral("combobox-popup: 0"));
  if (box->isEditable()) {
    box->setCompleter(nullptr);  // any text may be typed; none is put in the user's mouth
    BindLineEdit(box->lineEdit(), box, CBN_EDITCHANGE);
  }
  QObject::connect(box, &QComboBox::activated, box, [box] { Report(box, CBN_SELCHANGE); });
}

// While nothing is selected, the first arrow key selects the line that has the focus mark. The list's own
// keys would step over it, so that a list of one line could not be chosen from.
class FirstLineByKey : public QObject {
 public:
  explicit FirstLineByKey(QListWidget* box) : QObject(box), list(box) { box->installEventFilter(this); }

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::KeyPress || list->currentItem() == nullptr ||
        !list->selectedItems().isEmpty())
      return false;
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool arrow = key == Qt::Key_Down || key == Qt::Key_Up;
    if (!arrow && key != Qt::Key_Home && key != Qt::Key_End) return false;
    list->currentItem()->setSelected(true);
    return arrow;  // the others go on to their own line
  }

 private:
  QListWidget* list;
};

void BindListBox(QListWidget* list) {
  list->setSelectionMode(QAbstractItemView::SingleSelection);
  new FirstLineByKey(list);  // the list's, which owns it
  // A press on the selected line changes nothing but is the user's choice all the same.
  const auto told = std::make_shared<bool>(false);
  QObject::connect(list, &QListWidget::itemSelectionChanged, list, [list, told] {
    *told = QGuiApplication::mouseButtons() != Qt::NoButton;
    Report(list, LBN_SELCHANGE);
  });
  QObject::connect(list, &QListWidget::itemPressed, list, [list, told] {
    if (!std::exchange(*told, false)) Report(list, LBN_SELCHANGE);
  });
  QObject::connect(list, &QListWidget::itemDoubleClicked, list, [list] { Report(list, LBN_DBLCLK); });
}

// Binds one control and answers the name of its class.
const char* Bind(QWidget* control) {
  if (auto* button = qobject_cast<QAbstractButton*>(control)) {
    QObject::connect(button, &QAbstractButton::clicked, button, [button] { Report(button, BN_CLICKED); });
    return "Button";
  }
  if (auto* line = qobject_cast<QLineEdit*>(control)) {
    BindLineEdit(line, line, EN_CHANGE);
    return "Edit";
  }
  if (auto* text = qobject_cast<QPlainTextEdit*>(control)) {
    BindTextEdit(text);
    return "Edit";
  }
  if (auto* box = qobject_cast<QComboBox*>(control)) {
    BindComboBox(box);
    return "ComboBox";
  }
  if (auto* list = qobject_cast<QListWidget*>(control)) {
    BindListBox(list);
    return "ListBox";
  }
  return "Static";
}

// The place of a text in a list: its end or, where the template says "sorted", behind what comes before it.
template <typename List, typename TextAt>
int PlaceFor(const List& list, const QString& text, TextAt textAt) {
  if (!list.property("sorted").toBool()) return list.count();
  int place = 0;
  while (place < list.count() && QString::compare(textAt(place), text, Qt::CaseInsensitive) <= 0) ++place;
  return place;
}

LRESULT SendToComboBox(QComboBox& box, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case CB_ADDSTRING: {
      const QString text = OnOneLine(TextFromCodePage(reinterpret_cast<const char*>(lParam)));
      const int place = PlaceFor(box, text, [&](int index) { return box.itemText(index); });
      const QString shown = box.currentText();
      box.insertItem(place, text);
      if (box.isEditable()) {
        // Adding to an empty box would select what was added.
        if (box.count() == 1) box.setCurrentIndex(-1);
        box.setEditText(shown);
      }
      return place;
    }
    case CB_RESETCONTENT:
      box.clear();
      if (box.isEditable()) box.clearEditText();
      return 0;
    case CB_GETCOUNT:
      return box.count();
    case CB_GETCURSEL:
      return box.currentIndex();
    case CB_SETCURSEL: {
      const int index = static_cast<int>(static_cast<LRESULT>(wParam));
      if (index >= box.count()) return kControlError;
      box.setCurrentIndex(index < 0 ? -1 : index);
      return index;
    }
    case CB_FINDSTRINGEXACT:
      return box.findText(OnOneLine(TextFromCodePage(reinterpret_cast<const char*>(lParam))),
                          Qt::MatchExactly | Qt::MatchCaseSensitive);
    default:
      return kControlError;
  }
}

LRESULT SendToProgressBar(QProgressBar& bar, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case PBM_SETRANGE32:
      bar.setRange(static_cast<int>(wParam), static_cast<int>(lParam));
      return 1;
    case PBM_SETPOS:
      bar.setValue(static_cast<int>(wParam));
      return 1;
    default:
      return kControlError;
  }
}

int SelectedLine(const QListWidget& list) {
  const QList<QListWidgetItem*> selected = list.selectedItems();
  return selected.isEmpty() ? -1 : list.row(selected.front());
}

void SelectLine(QListWidget& list, int line) {
  const QSignalBlocker quiet(list);  // only what the user selects is reported
  list.clearSelection();
  list.setCurrentRow(line);
}

// The bytes of a line as they were given; an item shows its own text, which may differ.
std::string LineBytes(const QListWidgetItem& item) {
  return item.data(Qt::UserRole).toByteArray().toStdString();
}

LRESULT SendToListBox(QListWidget& list, UINT message, WPARAM wParam, LPARAM lParam) {
  const int line = static_cast<int>(static_cast<LRESULT>(wParam));
  switch (message) {
    case LB_ADDSTRING: {
      const auto* bytes = reinterpret_cast<const char*>(lParam);
      const QString text = TextFromCodePage(bytes);
      auto* item = new QListWidgetItem(text);
      item->setData(Qt::UserRole, QByteArray(bytes));
      const int place = PlaceFor(list, text, [&](int index) { return list.item(index)->text(); });
      list.insertItem(place, item);
      return place;
    }
    case LB_DELETESTRING: {
      const QSignalBlocker quiet(list);
      const std::unique_ptr<QListWidgetItem> taken(list.takeItem(line));
      list.clearSelection();
      return taken != nullptr ? list.count() : kControlError;
    }
    case LB_RESETCONTENT: {
      const QSignalBlocker quiet(list);
      list.clear();
      return 0;
    }
    case LB_GETCOUNT:
      return list.count();
    case LB_GETCURSEL:
      return SelectedLine(list);
    case LB_SETCURSEL:
      SelectLine(list, line >= 0 && line < list.count() ? line : -1);
      return SelectedLine(list);
    case LB_GETTEXTLEN:
    case LB_GETTEXT: {
      const QListWidgetItem* item = list.item(line);
      if (item == nullptr) return kControlError;
      const std::string bytes = LineBytes(*item);
      if (message == LB_GETTEXT)
        std::memcpy(reinterpret_cast<char*>(lParam), bytes.c_str(), bytes.size() + 1);
      return static_cast<LRESULT>(bytes.size());
    }
    default:
      return kControlError;
  }
}

}  // namespace

void BindControls(QDialog& dialog) {
  const QList<QWidget*> children = dialog.findChildren<QWidget*>();
  for (QWidget* control : children) {
    const QVariant id = control->property("controlId");
    if (!id.isValid()) continue;
    WindowEntry& entry = AddWindow(control, WindowKind::kControl, Bind(control));
    entry.controlId = id.toInt();
    // A dialog that hides what does not belong to a choice must not jump about. What is there or not from the
    // beginning leaves no hole.
    QSizePolicy policy = control->sizePolicy();
    policy.setRetainSizeWhenHidden(!control->property("leavesNoHole").toBool());
    control->setSizePolicy(policy);
  }
}

LRESULT SendToControl(const WindowEntry& control, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_GETTEXTLENGTH) return static_cast<LRESULT>(ControlText(*control.widget).size());
  if (message == WM_SETTEXT) {
    SetControlText(*control.widget, reinterpret_cast<const char*>(lParam));
    return 1;
  }
  if (message == WM_SETFONT) {
    control.widget->setFont(reinterpret_cast<HFONT>(wParam)->Resolve().font);
    return 1;
  }
  if (message == EM_LIMITTEXT) {
    LimitControlText(*control.widget, static_cast<int>(wParam));
    return 1;
  }
  if (auto* box = qobject_cast<QComboBox*>(control.widget))
    return SendToComboBox(*box, message, wParam, lParam);
  if (auto* list = qobject_cast<QListWidget*>(control.widget))
    return SendToListBox(*list, message, wParam, lParam);
  if (auto* bar = qobject_cast<QProgressBar*>(control.widget))
    return SendToProgressBar(*bar, message, wParam, lParam);
  return kControlError;
}
