// Looks for faults in an installation's content.
#pragma once

// Prints "file:line: what is wrong" for each fault, and gives their number.
int CheckContent();
