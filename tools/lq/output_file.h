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

// What a message says behind its sentence when the command failed later: "; a.lqt was saved", or
// nothing when no file was put in its place.
const char* SavedNote() noexcept;

// A file to write to. It is a temporary one in the folder of `path`, until Finish puts it in its
// place with the mode of the old file: a failure, an interrupt or the loss of power leaves that as
// it was. The temporary one has no name where the system can do that, so that nothing is left when
// the program is killed; elsewhere, and for the moment in which it takes the place of an old file,
// its name is .lq-0123456789abcdef, it is locked (flock), and the next OutputFile in the folder
// removes it when its program has been killed. Symbolic links are followed. A path that leads to no
// ordinary file, such as a device or a pipe, is written to directly, and "-" is standard output.
// The constructor and Finish throw CommandError.
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
    void NameTemporary();
    int CreateNamed();
    void CopyOwnerAndMode();
    int CopyToNamed();
    int NameUnnamed();
    int PutInPlace();

    std::string name_;
    std::string target_;
    std::string folder_;     // of the target
    std::string temporary_;  // the name of the temporary file; empty for none
    bool isWhole_ = true;    // nothing is left to be put in its place
    int descriptor_ = -1;
};

}  // namespace lq::tool
