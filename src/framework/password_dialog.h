// Asks for the password of a file. What is typed is in code page 1252, as the file keeps it.
#pragma once

#include <string>

#include "core/calendar/calendar_file.h"
#include "framework/dialog_items.h"

// For the file at `path`.
class PasswordDialog : public ZarfDialog {
 public:
  enum ControlId { kPasswordEdit = 100 };

  explicit PasswordDialog(std::string filePath) : path(std::move(filePath)) {}

  // 1 for OK, with what was typed in Password(); 0 for Cancel.
  int Run(ZarfWnd* owner);
  const std::string& Password() const { return password; }

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  const std::string path;
  std::string password;
  TextItem edit{*this, kPasswordEdit};
};

// Asks so over a window.
core::PasswordPrompt AskOver(ZarfWnd* owner);
