// Icons of top-level windows.
#pragma once

#include <QIcon>

// A built-in icon, in all the sizes "<name>-<pixels>" there are.
QIcon LoadIcon(const char* name);
