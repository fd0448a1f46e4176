// The controls of a dialog as objects of their kind, each by its number in the template. A dialog has them as
// members, so that what it does with a control reads as such:
//
//   TextItem subject{*this, kSubjectEdit};
//   ...
//   subject.ShowField(record.subject);  // in OnInitDialog
//   subject.TakeField(record.subject);  // on OK
//
// They work while the dialog is open; of a closed one, and of a number that its template lacks, nothing is
// shown, selected or held.
#pragma once

#include <string>
#include <string_view>

#include "core/store/text_field.h"
#include "framework/zarf_dialog.h"

class DialogItem {
 public:
  DialogItem(ZarfWnd& owningDialog, int itemId) : dialog(owningDialog), id(itemId) {}

  int Id() const { return id; }
  HWND Handle() const { return GetDlgItem(dialog.Handle(), id); }
  void Enable(bool enabled) const { EnableWindow(Handle(), enabled); }
  void SetVisible(bool visible) const { ShowWindow(Handle(), visible ? SW_SHOW : SW_HIDE); }
  void Focus() const { SetFocus(Handle()); }

 protected:
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
  LRESULT SendText(UINT message, const std::string& text) const;

  ZarfWnd& dialog;

 private:
  const int id;
};

// An edit, a label, a push button, or what is typed in a combo box. Texts are in code page 1252.
class TextItem : public DialogItem {
 public:
  using DialogItem::DialogItem;

  void SetText(const std::string& text) const { SetDlgItemText(dialog.Handle(), Id(), text.c_str()); }
  // At most so many bytes of what it holds.
  [[nodiscard]] std::string Text(std::size_t mostBytes) const;
  // At most so many bytes can be typed.
  void LimitTo(std::size_t bytes) const { Send(EM_LIMITTEXT, bytes); }

  // The same for what names a file, in the file system's encoding.
  void SetPath(const std::string& path) const { SetDlgItemPath(dialog.Handle(), Id(), path); }
  [[nodiscard]] std::string Path() const { return GetDlgItemPath(dialog.Handle(), Id()); }

  // Shows a stored text, and leaves room for as much as its field holds with a terminator.
  template <std::size_t kSize>
  void ShowField(const char (&field)[kSize]) const {
    LimitTo(kSize - 1);
    SetText(std::string(core::ReadText(field)));
  }
  // Stores the text. A text that filled its field without a terminator, and was not touched, stays whole.
  template <std::size_t kSize>
  void TakeField(char (&field)[kSize]) const {
    core::WriteText(field, Text(kSize));
  }
};

// A check box or a radio button.
class CheckItem : public DialogItem {
 public:
  using DialogItem::DialogItem;

  void Check(bool checked) const { CheckDlgButton(dialog.Handle(), Id(), checked); }
  [[nodiscard]] bool Checked() const { return IsDlgButtonChecked(dialog.Handle(), Id()); }
};

// A combo box. Lines count from 0; -1 is none.
class ComboItem : public TextItem {
 public:
  using TextItem::TextItem;

  void Add(const std::string& line) const { SendText(CB_ADDSTRING, line); }
  void Clear() const { Send(CB_RESETCONTENT); }
  void Select(int line) const { Send(CB_SETCURSEL, static_cast<WPARAM>(line)); }
  [[nodiscard]] int Selected() const { return static_cast<int>(Send(CB_GETCURSEL)); }
  // The line with just this text.
  [[nodiscard]] int Find(const std::string& text) const;
};

// A list box. Lines count from 0; -1 is none.
class ListItem : public DialogItem {
 public:
  using DialogItem::DialogItem;

  // Answers the new line's number: a sorted list has its own place for it.
  int Add(const std::string& line) const { return static_cast<int>(SendText(LB_ADDSTRING, line)); }
  void Clear() const { Send(LB_RESETCONTENT); }
  void Remove(int line) const { Send(LB_DELETESTRING, static_cast<WPARAM>(line)); }
  void Select(int line) const { Send(LB_SETCURSEL, static_cast<WPARAM>(line)); }
  [[nodiscard]] int Selected() const { return static_cast<int>(Send(LB_GETCURSEL)); }
  [[nodiscard]] int Count() const { return static_cast<int>(Send(LB_GETCOUNT)); }
  [[nodiscard]] std::string Line(int line) const;
};
