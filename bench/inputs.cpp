#include "bench/inputs.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string_view>

#include "lq_data/detail/chars.h"
#include "lq_data/host/text/utf.h"

namespace lq::bench {

namespace {

namespace fs = std::filesystem;

constexpr const char* kPlaces[] = {"Conveyor", "Mixer", "Tank",  "Pump",
                                   "Furnace",  "Press", "Crane", "Filter"};
constexpr const char* kThings[] = {"Motor", "Temperature", "Valve",  "Level",
                                   "Speed", "Position",    "Torque", "Pressure"};
constexpr const char* kStates[] = {"Actual", "Setpoint", "Ready", "Fault"};

template <std::size_t kCount>
const char* Word(const char* const (&words)[kCount], std::size_t number) {
    return words[number % kCount];
}

std::string ReadFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

fs::path CorpusFolder() {
    const char* folder = std::getenv("LQ_CORPUS");
    return folder ? fs::path(folder) : fs::path(LQ_BENCH_SOURCE) / "../shared/corpus";
}

// The texts of a PLCopen project's bodies.
std::string Bodies(const std::string& xml) {
    constexpr std::string_view kBegin = "<![CDATA[";
    std::string bodies;
    std::size_t end = 0;
    for (std::size_t begin; (begin = xml.find(kBegin, end)) != xml.npos;) {
        end = std::min(xml.find("]]>", begin), xml.size());
        bodies.append(xml, begin + kBegin.size(), end - begin - kBegin.size());
    }
    return bodies;
}

std::vector<std::u16string> ReadSources() {
    std::vector<fs::path> files;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(CorpusFolder() / "st", none)) {
        if (entry.path().extension() == ".st") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    std::vector<std::u16string> texts;
    for (const fs::path& file : files) {
        host::DecodeSource(ReadFile(file), texts.emplace_back());
    }
    if (texts.empty()) {
        host::DecodeSource(Bodies(ReadFile(LQ_BENCH_SOURCE "/examples/plant/plant.xml")),
                           texts.emplace_back());
    }
    for (std::u16string& text : texts) {
        std::erase(text, u'\x1A');  // would end the input
        text += u'\n';
    }
    return texts;
}

}  // namespace

std::vector<std::u16string> Names(std::size_t count) {
    std::vector<std::u16string> names;
    names.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t mixed = i * 7919;
        const std::string number = std::to_string(i);
        std::string name = Word(kPlaces, mixed);
        if (i % 3 == 0) {
            name += number + "_" + Word(kThings, mixed / 8) + "_" + Word(kStates, mixed / 64);
        } else {
            name += std::string("_") + Word(kThings, mixed / 8) + "_" + number;
        }
        names.emplace_back(name.begin(), name.end());
    }
    return names;
}

const std::vector<std::u16string>& SourceTexts() {
    static const std::vector<std::u16string> texts = ReadSources();
    return texts;
}

const std::u16string& SourceText(std::size_t length) {
    static std::u16string text;
    while (text.size() < length) {
        for (const std::u16string& source : SourceTexts()) {
            text += source;
        }
    }
    return text;
}

std::vector<std::u16string> Shuffled(std::vector<std::u16string> names) {
    std::shuffle(names.begin(), names.end(), std::mt19937(1));
    std::vector<std::u16string> copies;
    copies.reserve(names.size());
    for (const std::u16string& name : names) {
        copies.push_back(name);
    }
    return copies;
}

std::u16string GeneratedSource(std::size_t statements) {
    static constexpr const char* kStatements[] = {
        "IF @.Ready AND NOT @ THEN\n    @ := 16#FF;\nEND_IF;\n",
        "(* What the @ does when it is too warm *)\n@(IN := TRUE, PT := T#1m30s);\n",
        "    @ := @ * 1.25 + INT_TO_REAL(%IW4.2);\r\n",
        "FOR i := 1 TO 10 BY 2 DO @[i] := @[i + 1] >= 12345; END_FOR\n",
        "  message := 'The @ is ready$N'; started := TOD#12:30:00.5;\n"};
    const std::vector<std::u16string> names = Names(500);
    std::u16string text;
    std::size_t name = 0;
    for (std::size_t i = 0; i < statements; ++i) {
        for (const char* c = Word(kStatements, i); *c != 0; ++c) {
            if (*c == '@') {
                text += names[name++ % names.size()];
            } else {
                text += static_cast<char16_t>(*c);
            }
        }
    }
    return text;
}

std::string Narrow(const std::u16string& text) {
    std::string narrow(text.size(), 0);
    std::transform(text.begin(), text.end(), narrow.begin(), [](char16_t c) {
        return chars::IsAscii(c)    ? static_cast<char>(c)
               : chars::IsLetter(c) ? kWideLetter
                                    : kWideOther;
    });
    return narrow;
}

namespace {

constexpr const char* kHead =
    "<?xml version='1.0' encoding='utf-8'?>\n"
    "<project xmlns='http://www.plcopen.org/xml/tc6_0201'>"
    "<fileHeader companyName='c' productName='p' productVersion='1' "
    "creationDateTime='2024-01-01T00:00:00'/>"
    "<contentHeader name='generated'><coordinateInfo><fbd><scaling x='0' y='0'/></fbd>"
    "<ld><scaling x='0' y='0'/></ld><sfc><scaling x='0' y='0'/></sfc></coordinateInfo>"
    "</contentHeader><types><dataTypes/><pous>\n";

void PutVariable(std::ostream& xml, const char* name, int64_t number) {
    xml << "<variable name='" << name << number << "'><type><INT/></type><initialValue>"
        << "<simpleValue value='" << number % 1000 << "'/></initialValue></variable>\n";
}

}  // namespace

std::string Project(int64_t globals, int64_t units) {
    std::ostringstream xml;
    xml << kHead;
    for (int64_t i = 0; i < units; ++i) {
        xml << "<pou name='Unit_" << i << "' pouType='functionBlock'><interface><inputVars>"
            << "<variable name='Enable'><type><BOOL/></type></variable>"
            << "<variable name='Setpoint'><type><REAL/></type><initialValue>"
            << "<simpleValue value='1.5'/></initialValue></variable></inputVars><outputVars>"
            << "<variable name='Ready'><type><BOOL/></type></variable></outputVars></interface>"
            << "<body><ST><p xmlns='http://www.w3.org/1999/xhtml'>Ready := Enable AND (Setpoint > "
            << i << ".0);</p></ST></body></pou>\n";
    }
    xml << "</pous></types><instances><configurations>"
           "<configuration name='c'><resource name='r'><globalVars>\n";
    for (int64_t i = 0; i < globals; ++i) {
        PutVariable(xml, "Conveyor_Motor_", i);
    }
    xml << "</globalVars></resource></configuration></configurations></instances></project>\n";
    return xml.str();
}

std::string ProjectOfUnits(int64_t units, int64_t variables) {
    std::ostringstream xml;
    xml << kHead;
    for (int64_t i = 0; i < units; ++i) {
        xml << "<pou name='Unit_" << i << "' pouType='program'><interface><localVars>\n";
        for (int64_t n = 0; n < variables; ++n) {
            PutVariable(xml, "Conveyor_Motor_", n);
        }
        xml << "</localVars></interface><body><ST><p xmlns='http://www.w3.org/1999/xhtml'>"
            << "Conveyor_Motor_0 := 1;</p></ST></body></pou>\n";
    }
    xml << "</pous></types><instances><configurations/></instances></project>\n";
    return xml.str();
}

}  // namespace lq::bench
