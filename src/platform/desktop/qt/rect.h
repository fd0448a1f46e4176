// Rectangles of the program and of Qt.
#pragma once

#include <QRect>

#include "platform/desktop/types.h"

inline QRect ToQt(const RECT& rect) {
  return {rect.left, rect.top, Width(rect), Height(rect)};
}

inline RECT FromQt(const QRect& rect) {
  return {rect.left(), rect.top(), rect.left() + rect.width(), rect.top() + rect.height()};
}
