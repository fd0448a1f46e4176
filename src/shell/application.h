// The process: its start, its message loop and its end.
#pragma once

#include <string>

class ZarfWndApp;

// Runs the program from its start to its end and answers the exit code. Call it once, after StartDesktop.
// `file` is the path named on the command line, empty for none. Without one only a single copy runs: when
// another copy of this module runs already, the answer is 0 at once and nothing is shown. With one, a further
// copy runs beside the first.
int RunApplication(ZarfWndApp& application, const std::string& file);
// The path that the command line named (UTF-8); empty for none.
const std::string& CommandLineFile();
