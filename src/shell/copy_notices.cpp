#include "shell/copy_notices.h"

#include <cstdint>

#include "platform/desktop/application.h"
#include "platform/desktop/window.h"
#include "platform/system/running_copies.h"

namespace {

// Lives until the process ends: its descriptor is watched until then.
platform::RunningCopies& Copies() {
  static platform::RunningCopies copies;
  return copies;
}

void PassNoticesOn() {
  std::int32_t code = 0;
  while (Copies().Receive(code)) PostToAll(NotifyMessage(), static_cast<WPARAM>(code), 0);
}

}  // namespace

UINT NotifyMessage() {
  static const UINT message = RegisterWindowMessage("ZARF_UNIQUE_MSG201270");
  return message;
}

void JoinCopies() {
  if (Copies().Descriptor() < 0 && Copies().Open()) WatchDescriptor(Copies().Descriptor(), PassNoticesOn);
}

bool OtherCopiesRun() {
  return Copies().Others();
}

void BroadcastNotify(int code, HWND senderWindow) {
  Copies().Broadcast(code);
  // Not by the socket: the change must show here even where somebody tidied the runtime folder away.
  PostToAll(NotifyMessage(), static_cast<WPARAM>(code), reinterpret_cast<LPARAM>(senderWindow));
}
