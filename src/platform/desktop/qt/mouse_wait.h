// Waiting for the mouse in a loop of its own.
#pragma once

#include <QPoint>
#include <functional>
#include <optional>

// Runs messages until the left button goes up, or until it turns out not to be down. The release is used up;
// each move before it is given to `moved` in screen pixels and used up too.
void WaitForRelease(const std::function<void(QPoint)>& moved);
// Runs messages until the mouse, whose left button is down, has left the point where it is by more than a
// trembling hand moves it. Answers where it is then, in screen pixels; none when the button went up before,
// which uses up the release.
std::optional<QPoint> WaitForDrag();
