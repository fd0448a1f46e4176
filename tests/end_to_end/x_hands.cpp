#include "end_to_end/x_hands.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <poll.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace tests {
namespace {

// Windows may go at any time.
int Ignore(Display*, XErrorEvent*) {
  return 0;
}

struct Free {
  void operator()(void* taken) const { XFree(taken); }
};
using Owned = std::unique_ptr<unsigned char, Free>;

constexpr int kRoundMs = 100;
constexpr long kPingEvents = StructureNotifyMask;

}  // namespace

struct XHands::Connection {
  Display* display = nullptr;
  Window root = 0;
  Atom processId = 0;
  Atom title = 0;
  Atom utf8 = 0;
  Atom protocols = 0;
  Atom ping = 0;
  mutable long pings = 0;

  // A property of a window, null for none; `count` is the number of its items.
  Owned Property(Window window, Atom name, Atom type, unsigned long& count) const {
    Atom actual = 0;
    int format = 0;
    unsigned long left = 0;
    unsigned char* bytes = nullptr;
    count = 0;
    XGetWindowProperty(display, window, name, 0, 256, False, type, &actual, &format, &count, &left, &bytes);
    return Owned(bytes);
  }
  pid_t ProcessOf(Window window) const {
    unsigned long count = 0;
    const Owned bytes = Property(window, processId, XA_CARDINAL, count);
    return bytes != nullptr && count == 1 ? static_cast<pid_t>(*reinterpret_cast<long*>(bytes.get())) : 0;
  }
  std::string TitleOf(Window window) const {
    unsigned long count = 0;
    const Owned bytes = Property(window, title, utf8, count);
    return bytes != nullptr ? std::string(reinterpret_cast<char*>(bytes.get()), count) : std::string();
  }
};

XHands::XHands(const std::string& display) : x(new Connection) {
  XSetErrorHandler(Ignore);
  x->display = XOpenDisplay(display.c_str());
  if (x->display == nullptr) {
    std::fprintf(stderr, "no display %s\n", display.c_str());
    std::abort();
  }
  x->root = DefaultRootWindow(x->display);
  const auto atom = [&](const char* name) { return XInternAtom(x->display, name, False); };
  x->processId = atom("_NET_WM_PID");
  x->title = atom("_NET_WM_NAME");
  x->utf8 = atom("UTF8_STRING");
  x->protocols = atom("WM_PROTOCOLS");
  x->ping = atom("_NET_WM_PING");
  XSelectInput(x->display, x->root, kPingEvents);
}

XHands::~XHands() {
  XCloseDisplay(x->display);
  delete x;
}

std::vector<ShownWindow> XHands::Windows(pid_t process) const {
  std::vector<ShownWindow> shown;
  Window root = 0;
  Window parent = 0;
  Window* children = nullptr;
  unsigned count = 0;
  if (XQueryTree(x->display, x->root, &root, &parent, &children, &count) == 0) return shown;
  const Owned owned(reinterpret_cast<unsigned char*>(children));
  for (unsigned i = 0; i < count; ++i) {
    XWindowAttributes is;
    if (XGetWindowAttributes(x->display, children[i], &is) == 0 || is.map_state != IsViewable) continue;
    if (is.c_class != InputOutput || x->ProcessOf(children[i]) != process) continue;
    shown.push_back(
        {children[i], x->TitleOf(children[i]), is.override_redirect != 0, is.x, is.y, is.width, is.height});
  }
  return shown;
}

void XHands::Focus(unsigned long window) const {
  Window focused = 0;
  int revert = 0;
  XGetInputFocus(x->display, &focused, &revert);
  if (focused != window) XSetInputFocus(x->display, window, RevertToPointerRoot, CurrentTime);
}

void XHands::Raise(pid_t process) const {
  for (const ShownWindow& window : Windows(process)) XRaiseWindow(x->display, window.id);
}

void XHands::Key(unsigned long symbol, bool down) const {
  const KeyCode code = XKeysymToKeycode(x->display, symbol);
  if (code != 0) XTestFakeKeyEvent(x->display, code, down ? True : False, CurrentTime);
}

void XHands::Hold(unsigned modifiers, bool down) const {
  if ((modifiers & kShift) != 0) Key(XK_Shift_L, down);
  if ((modifiers & kCtrl) != 0) Key(XK_Control_L, down);
  if ((modifiers & kAlt) != 0) Key(XK_Alt_L, down);
  XFlush(x->display);
}

void XHands::Press(const std::string& key, unsigned modifiers) const {
  const KeySym symbol = XStringToKeysym(key.c_str());
  Hold(modifiers, true);
  Key(symbol, true);
  Key(symbol, false);
  Hold(modifiers, false);
}

void XHands::Type(const std::string& text) const {
  for (const char character : text) {
    // Latin characters are their own key symbols.
    const auto symbol = static_cast<KeySym>(static_cast<unsigned char>(character));
    const bool upper = character >= 'A' && character <= 'Z';
    if (upper) Hold(kShift, true);
    Key(symbol, true);
    Key(symbol, false);
    if (upper) Hold(kShift, false);
  }
  XFlush(x->display);
}

void XHands::MoveTo(int toX, int toY) const {
  XTestFakeMotionEvent(x->display, -1, toX, toY, CurrentTime);
  XFlush(x->display);
}

void XHands::Button(unsigned button, bool down) const {
  XTestFakeButtonEvent(x->display, button, down ? True : False, CurrentTime);
  XFlush(x->display);
}

void XHands::Click(int atX, int atY, unsigned button) const {
  MoveTo(atX, atY);
  Button(button, true);
  Button(button, false);
}

bool XHands::Answers(unsigned long window, int timeoutMs) const {
  const long number = ++x->pings;
  XEvent ask{};
  ask.xclient.type = ClientMessage;
  ask.xclient.window = window;
  ask.xclient.message_type = x->protocols;
  ask.xclient.format = 32;
  ask.xclient.data.l[0] = static_cast<long>(x->ping);
  ask.xclient.data.l[1] = number;
  ask.xclient.data.l[2] = static_cast<long>(window);
  XSendEvent(x->display, window, False, NoEventMask, &ask);
  XFlush(x->display);
  // Counted, not timed: whoever halts the whole test for a while shall not find a hang.
  for (int round = 0; round <= timeoutMs / kRoundMs; ++round) {
    while (XPending(x->display) > 0) {
      XEvent event;
      XNextEvent(x->display, &event);
      if (event.type == ClientMessage && event.xclient.message_type == x->protocols &&
          event.xclient.data.l[1] == number) {
        return true;
      }
    }
    pollfd connection = {ConnectionNumber(x->display), POLLIN, 0};
    if (poll(&connection, 1, kRoundMs) > 0) continue;
    XWindowAttributes is;
    if (XGetWindowAttributes(x->display, window, &is) == 0) return true;
  }
  return false;
}

}  // namespace tests
