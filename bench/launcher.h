// Runs work in processes of its own and tells what it cost.
//
// A process counts the memory of the one that it was forked from as its own peak. So a small
// process is set aside before this one grows, and forks the others.
#pragma once

#include <string>

namespace lq::bench {

struct Cost {
    double seconds = 0;  // of the processor
    double peak = 0;     // bytes
    bool succeeded = false;
    int status = -1;  // at its exit; -1 when a signal ended it
};

// What a process does with the file of that name; it does not return.
using Work = void (*)(const char* file);

// The work of lq, whose path the build sets.
void TranslateProject(const char* project);
void TellVersion(const char*);

// The instructions of a command, start-up included, as callgrind counts them; 0 when it fails.
double CountInstructions(const std::string& command);

// Before anything else of the program.
void StartLauncher();
Cost RunAlone(Work work, const std::string& file);

}  // namespace lq::bench
