// A posted message on its way through Qt's event queue.
#pragma once

#include <QEvent>

#include "platform/desktop/types.h"

class PostedMessage : public QEvent {
 public:
  PostedMessage(UINT number, WPARAM first, LPARAM second)
      : QEvent(EventType()), message(number), wParam(first), lParam(second) {}

  static Type EventType() {
    static const Type type = static_cast<Type>(registerEventType());
    return type;
  }

  const UINT message;
  const WPARAM wParam;
  const LPARAM lParam;
};
