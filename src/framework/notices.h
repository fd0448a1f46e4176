// What the program tells and asks its user in message boxes, captioned with the product's name.
#pragma once

#include <string>

class ZarfWnd;

// Copies text `stringId` of the string table, cut to size - 1 bytes, into the buffer and answers the buffer.
char* LoadText(char* buffer, int stringId, int size);

// A notice with an OK button over `owner` (null: over nothing). `text` is UTF-8.
void ShowInfo(ZarfWnd* owner, const std::string& text);
void ShowInfoId(ZarfWnd* owner, int stringId);
// A question with Yes and No. Only Yes is true.
bool AskYesNo(ZarfWnd* owner, int stringId);
bool AskYesNo(ZarfWnd* owner, const std::string& text);
