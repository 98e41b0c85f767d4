// Outputs that would get in the way of something else. What they throw is a CommandError.
#pragma once

#include <string>

namespace lq::tool {

// Throws when `output` leads to the file that `input` leads to, whatever their names; both may be
// "-". Only ordinary files can be overwritten.
void RefuseInputAsOutput(const std::string& input, const std::string& output);

// Throws when an image and a JSON document are both to go to standard output.
void RefuseImageWithJson(const std::string& image, bool json);

}  // namespace lq::tool
