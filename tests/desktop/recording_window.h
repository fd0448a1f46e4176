// A window that writes down the messages it is told, for tests of the desktop layer and the framework.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "framework/zarf_wnd.h"

class RecordingWindow : public ZarfWnd {
 public:
  explicit RecordingWindow(const char* name = "RecordingWindow", UINT classStyle = 0)
      : className(name), style(classStyle) {}

  int PrepareClass(WNDCLASS* windowClass) override {
    windowClass->className = className;
    windowClass->style = style;
    windowClass->background = background;
    return 0;
  }
  int PreCreate(char*, DWORD* windowStyle, int placement[4]) override {
    placement[0] = rect.left;
    placement[1] = rect.top;
    placement[2] = Width(rect);
    placement[3] = Height(rect);
    if (topLevel) *windowStyle = WS_OVERLAPPEDWINDOW;
    return 0;
  }
  LRESULT WindowProc(const MessageRecord& record) override {
    if (wanted(record.message)) log.push_back(record);
    if (hook) {
      if (const LRESULT result = hook(record)) return result;
    }
    return ZarfWnd::WindowProc(record);
  }
  void OnPaint(HDC hdc, PAINTSTRUCT paint) override {
    if (paintHook) paintHook(hdc, paint);
  }

  // Makes a top-level window and shows it.
  bool CreateTop() {
    topLevel = true;
    if (!Create(nullptr)) return false;
    Show();
    return true;
  }
  std::vector<UINT> Messages() const {
    std::vector<UINT> numbers;
    for (const MessageRecord& record : log) numbers.push_back(record.message);
    return numbers;
  }
  int Count(UINT message) const {
    int count = 0;
    for (const MessageRecord& record : log) count += record.message == message;
    return count;
  }

  const char* className;
  UINT style;
  COLORREF background = RGB(255, 255, 255);
  RECT rect{0, 0, 200, 150};
  bool topLevel = false;
  std::function<bool(UINT)> wanted = [](UINT) { return true; };
  std::function<LRESULT(const MessageRecord&)> hook;
  std::function<void(HDC, const PAINTSTRUCT&)> paintHook;
  std::vector<MessageRecord> log;
};
