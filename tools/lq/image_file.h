// Images of table sets as files.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "lq_data/cgtab.h"

namespace lq::tool {

// Writes the image to an OutputFile. Throws CommandError.
void SaveImage(CgTab& tables, const std::string& path);

// Whether an image that is not too large can begin so.
bool CanBeginImage(std::string_view beginning);

// Whether the bytes are an image: the lengths of its tables add up to all of them.
bool IsImage(std::string_view bytes);

// The tables of an image. Throws CommandError, naming `path`, when the bytes are no whole image.
std::unique_ptr<CgTab> RestoreImage(std::string_view bytes, const std::string& path);

}  // namespace lq::tool
