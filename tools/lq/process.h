// What the program expects of the process it runs in.
#pragma once

namespace lq::tool {

// To be called before anything else. Signals: a reader that closes its pipe early ends the program
// at once and without a word, and a file that grows beyond the permitted size is an error of the
// write, whatever the parent process has set. The descriptors 0 to 2 are taken when they are
// closed, so that no file the program opens becomes a standard stream; their use still fails.
//
// Memory needs no call: from before the first static object is made, a program with this file ends
// with one message as soon as operator new or the library's allocation has none, or ReportShortage
// is called. So no command has to tell "no memory" from the other answers of the library, and no
// result that lacks something ever passes for a whole one.
void PrepareProcess();

}  // namespace lq::tool
