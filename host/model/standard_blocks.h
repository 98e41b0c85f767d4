// The function blocks of the standard, with which every project's library pool begins.
#pragma once

namespace lq::host {

class Project;

// Enters them into the project's library. Throws std::bad_alloc.
void AddStandardBlocks(Project& project);

}  // namespace lq::host
