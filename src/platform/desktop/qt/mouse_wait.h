// Waiting for the mouse in a loop of its own.
#pragma once

#include <QPoint>
#include <functional>

// Runs messages until the left button goes up, or until it turns out not to be down. The release is used up;
// each move before it is given to `moved` in screen pixels and used up too.
void WaitForRelease(const std::function<void(QPoint)>& moved);
