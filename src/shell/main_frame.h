// The program's one top-level window and, at the same time, its application object: it is there, without a
// window, before anything else, and is what TheApp() answers. A program derives its own class from it and
// adds its commands.
#pragma once

#include <string>

#include "framework/zarf_wnd.h"

class ZarfWndApp : public ZarfWnd {
 public:
  // `newModuleName` forms the window's class name and the name of the single-instance guard, `newProductName`
  // is the title, `newModuleKind` is 1 for the calendar. At most one object exists at a time.
  ZarfWndApp(const char* newModuleName, const char* newProductName, int newModuleKind);
  ~ZarfWndApp() override;

  const std::string& ModuleName() const { return moduleName; }
  const std::string& ProductName() const { return productName; }
  int ModuleKind() const { return moduleKind; }

  // "ZarfWndApp_" and the module's name: class of the window, name of the guard.
  const std::string& WindowClass() const { return windowClass; }

  int PrepareClass(WNDCLASS* windowClassRecord) override;
  int PreCreate(char title[kTitleSize], DWORD* style, int placement[4]) override;
  // Notices of other running copies first, then the router.
  LRESULT WindowProc(const MessageRecord& record) override;
  // Posts the command that an accelerator stands for. The program's own commands are left to the derived
  // class.
  LRESULT OnCommand(const MessageRecord& record) override;
  LRESULT OnGetMinMaxInfo(const MessageRecord& record) override;
  LRESULT OnClose(const MessageRecord& record) override;
  // Ends the message loop.
  LRESULT OnDestroy(const MessageRecord& record) override;

 private:
  LRESULT OnNotice(const MessageRecord& record);

  std::string moduleName;
  std::string productName;
  std::string windowClass;
  int moduleKind;
};
