// Looks for faults in an installation's content.
#pragma once

// Prints "file:line: what is wrong" for each fault, and "file:line: warning: what" for what could be better; gives the number of
// faults.
int CheckContent();
