// Files that are written whole or not at all.
#pragma once

#include <string>
#include <string_view>

namespace lq::tool {

// Throws CommandError: the path, and what the system says.
[[noreturn]] void CannotWrite(const std::string& path, int error);

// Writes all of the bytes. 0, or the system's error.
int WriteAll(int descriptor, std::string_view bytes);

// Removes the temporary file of an OutputFile when the program ends without its destructor; safe in
// a signal handler.
void RemoveUnfinishedFile() noexcept;

// A file to write to. It is a temporary one beside `path`, until Finish puts it in its place with
// the mode of the old file: a failure or an interrupt leaves that as it was. Symbolic links are
// followed. A path that leads to no ordinary file, such as a device or a pipe, is written to
// directly, and "-" is standard output. The constructor and Finish throw CommandError.
class OutputFile {
  public:
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    int Descriptor() const { return descriptor_; }
    const std::string& Name() const { return name_; }  // in messages

    // All is written.
    void Finish();

  private:
    void CreateTemporary();
    void CopyOwnerAndMode();

    std::string name_;
    std::string target_;
    std::string temporary_;  // empty: written to directly
    int descriptor_ = -1;
};

}  // namespace lq::tool
