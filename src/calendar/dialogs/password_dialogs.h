// The dialogs that set a file's passwords. What is typed is in code page 1252, as the file keeps it.
#pragma once

#include <string>

#include "core/store/file_passwords.h"
#include "framework/dialog_items.h"

// Asks for the three passwords of a file, or for them once more.
class NetworkPasswordsDialog : public ZarfDialog {
 public:
  enum class Mode { kSet = 1004, kVerify = 1005 };  // the dialogs' numbers
  enum ControlId { kOwnerEdit = 100, kAssistantEdit, kReaderEdit };

  // With kSet `shown` are the passwords there are; with kVerify it is left out.
  explicit NetworkPasswordsDialog(Mode dialogMode, core::FilePasswords shown = {})
      : mode(dialogMode), passwords(std::move(shown)) {}

  // 1 for OK, with what was typed, cut to what a file keeps, in Passwords(); 0 for Cancel.
  int Run(ZarfWnd* over);
  const core::FilePasswords& Passwords() const { return passwords; }

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  const Mode mode;
  core::FilePasswords passwords;
  TextItem owner{*this, kOwnerEdit};
  TextItem assistant{*this, kAssistantEdit};
  TextItem reader{*this, kReaderEdit};
};
