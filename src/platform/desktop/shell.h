// What is handed to other programs of the desktop. Every call returns at once. Paths are in the file system's
// encoding, other texts UTF-8.
#pragma once

#include <functional>
#include <string>
#include <vector>

// Called from the message loop when the program that was to open something says that it could not.
using WhenNotOpened = std::function<void()>;

// Opens a file or folder (existing; a relative path counts from the current folder) or an address with a
// scheme ("https://..."; "www. ..." is taken for one) as a double click would. False when it is none of these
// or the desktop has no program for it.
bool OpenOnDesktop(const std::string& target, WhenNotOpened notOpened = {});
// Opens a new message in the mail program; to nobody when `address` is empty. The address may come from a
// foreign file: nothing in it becomes a field of the message or an option of a program.
bool OpenMail(const std::string& address, WhenNotOpened notOpened = {});
// Prints a file through the system's printing, or opens it where there is none.
void PrintFile(const std::string& path);
// Starts a program, found by its name as the shell finds it, and leaves it to itself, mute. False when there
// is none.
bool RunInBackground(const std::string& program, const std::vector<std::string>& arguments);
