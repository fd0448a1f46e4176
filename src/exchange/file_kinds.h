// The kinds of files that appointments are written to and read from, for the dialogs that ask for one.
#pragma once

inline constexpr const char* kExchangeFilter =
    "Comma file (*.csv)|*.csv|Text file (*.txt)|*.txt|iCalendar file (*.ics)|*.ics||";
inline constexpr const char* kExchangeExtension = "csv";
// As many characters of a path can be typed.
inline constexpr int kMostPathCharacters = 259;
