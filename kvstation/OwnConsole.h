// The tool as a double click starts it: without a word, in a console of its own that goes with it. Windows only.
#pragma once

namespace kvstation {

// Whether nobody but this process is on its console, which then nobody reads once it ends.
bool hasOwnConsole();

// Writes the page of this station to the temporary folder and opens it as Windows opens pages. Gives the exit status;
// what goes wrong stays on the console until somebody has read it.
int showPageInBrowser();

}  // namespace kvstation
