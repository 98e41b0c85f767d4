// What the benchmarks work on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace lq::bench {

// `count` different names as projects have them, 21 characters on average: two out of three end in
// a running number.
std::vector<std::u16string> Names(std::size_t count);

// The names in another order, each copied anew so that they lie in memory in that order: a name
// that is looked up has just been read, and its own cache misses are not the table's.
std::vector<std::u16string> Shuffled(std::vector<std::u16string> names);

// IEC source text of at least `length` characters: the files of the folder that LQ_CORPUS names,
// or of the corpus beside the repository, else the bodies of the sample project; over and over.
const std::u16string& SourceText(std::size_t length);
// The same, each file for itself.
const std::vector<std::u16string>& SourceTexts();

// Generated source text of every kind of token, without a fault.
std::u16string GeneratedSource(std::size_t statements);

// A text in bytes for scanners of 8-bit characters: one byte a character, kWideLetter for
// every letter beyond ASCII and kWideOther for any other character there.
inline constexpr char kWideLetter = '\xC0';
inline constexpr char kWideOther = '\x80';
std::string Narrow(const std::u16string& text);

// A PLCopen project with so many globals and units.
std::string Project(int64_t globals, int64_t units);
// One with so many units of so many variables each, and nothing else.
std::string ProjectOfUnits(int64_t units, int64_t variables);

}  // namespace lq::bench
