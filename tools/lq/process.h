// What the program expects of the process it runs in.
#pragma once

namespace lq::tool {

// To be called before anything else. Signals: a reader that closes its pipe early ends the program
// at once and without a word, and a file that grows beyond the permitted size is an error of the
// write, whatever the parent process has set. The descriptors 0 to 2 are taken when they are
// closed, so that no file the program opens becomes a standard stream; their use still fails.
// Memory: where operator new has none, the program ends with a message at once, since what the
// commands hold needs memory of its own to be given back.
void PrepareProcess();

}  // namespace lq::tool
