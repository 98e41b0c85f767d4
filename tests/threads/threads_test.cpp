// What several threads may do at a time, each with objects of its own. Races show in a build with
// ThreadSanitizer (./dev matrix '*-threads').
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "cgtab/cgtab_access.h"
#include "lq_data/containers.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/frame.h"
#include "lq_data/handles.h"
#include "lq_data/host/base/streams.h"
#include "lq_data/host/model/project.h"
#include "lq_data/host/plcopen/plcopen.h"
#include "lq_data/host/useradapt/user_adapter.h"
#include "lq_data/memory.h"
#include "lq_data/record_file.h"
#include "lq_data/records.h"
#include "lq_data/scanner.h"
#include "lq_data/types.h"

namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 50;

// All forms that ask for more than the text: wide letters, names of addresses, numbers beyond the
// range, escapes, times, and a token that needs memory.
std::u16string Source() {
    return u"Größe := ПУСК1 + 1e999 - 1.5E-400 * 12345678901234567890.5; 'a$00b$'' \"\u3042\" "
           u"T#1d2h3m4s5ms D#2024-02-29 %IX0.1 16#FF 4294967296 Ümlaut_2 (* c *) @x x.y[1..3] '" +
           std::u16string(5000, u'n') + u"'";
}

// The kinds and texts of all tokens.
std::u16string Scan(const std::u16string& text) {
    const auto length = static_cast<int32_t>(text.size());
    MEMSTREAM_W stream(text.data(), length, length, nullptr);
    const std::unique_ptr<CObject> object(CRuntimeClass::CreateObject("Scanner"));
    auto& scanner = static_cast<Scanner&>(*object);
    scanner.Initialize(stream);
    scanner.RegisterKeyword(u"ПУСК1", 7);
    std::u16string all;
    for (;;) {
        const Token token = scanner.GetToken();
        all += static_cast<char16_t>(u'A' + token.kind);
        all.append(token.text).append(u" ");
        if (token.kind == TK_EOF) {
            return all;
        }
    }
}

void OnThreads(const std::function<void(int)>& job, int count = kThreads) {
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&job, i] { job(i); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

// Behind B_COMMENT a comma ends a string, of the same thread.
TEST(Threads, ScannersOfTheirOwn) {
    const auto scan = [](int thread) {
        return Scan((thread % 2 == 0 ? u"B_COMMENT 'a, b' " : u"'a, b' ") + Source());
    };
    std::vector<std::u16string> results(kThreads * kRounds);
    OnThreads([&](int thread) {
        for (int round = 0; round < kRounds; ++round) {
            results[static_cast<std::size_t>(thread * kRounds + round)] = scan(thread);
        }
    });
    const std::u16string expected[] = {scan(0), scan(1)};
    EXPECT_GT(expected[0].size(), 2000u);
    for (std::size_t i = 0; i < results.size(); ++i) {
        ASSERT_TRUE(results[i] == expected[i / kRounds % 2]) << i;
    }
}

TEST(Threads, ContainersAndConstantsOfTheirOwn) {
    lq::host::GetUserAdapterAnswers().intAsBits = 1;
    std::vector<int> done(kThreads);
    OnThreads([&](int thread) {
        HashTable table(101, 0);
        R_FILE file(4);
        Val value;
        uint32_t bits = 0;
        DCE_GetIntConstRange(0, 1, &bits);  // all are the first to ask for the site's answer
        const uint32_t shortages = lq::CountShortages();
        for (int i = 0; i < thread; ++i) {
            lq::ReportShortage();
        }
        bool right = (bits & TB_ANY_BIT) == TB_ANY_BIT &&
                     lq::CountShortages() == shortages + static_cast<uint32_t>(thread);
        for (int32_t i = 0; i < 1000; ++i) {
            const std::u16string name =
                u"Имя_" + std::u16string(1, static_cast<char16_t>(0x4E00 + i));
            right = right && table.Insert(name.c_str(), i) && table.GetID(name.c_str()) == i &&
                    file.Write(&i, sizeof i) == sizeof i && value.Set(u"1.5E300", 0) != 0;
        }
        done[static_cast<std::size_t>(thread)] = right && table.GetCount() == 1000;
    });
    EXPECT_EQ(done, std::vector<int>(kThreads, 1));
}

// What a project holds that asks for all that threads have of their own or share: types and units
// of its names, strings of the default length, arrays, addresses and constants.
constexpr char kProject[] = R"(
<project xmlns='http://www.plcopen.org/xml/tc6_0201'><types><dataTypes><dataType name='Größe@'>
<baseType><struct><variable name='m@'><type><REAL/></type></variable></struct></baseType></dataType>
</dataTypes><pous><pou name='Block@' pouType='functionBlock'><interface>
<inputVars><variable name='in@'><type><INT/></type><initialValue><simpleValue value='1@'/>
</initialValue></variable></inputVars><localVars><variable name='g@'><type><derived name='Größe@'/>
</type></variable><variable name='a'><type><array><dimension lower='-@' upper='7'/><baseType><STRING/>
</baseType></array></type></variable></localVars></interface><body><ST/></body></pou>
<pou name='Other@' pouType='function'><interface><returnType><DINT/></returnType><localVars>
<variable name='b@'><type><derived name='Block@'/></type></variable></localVars></interface>
<body><ST/></body></pou></pous></types><instances><configurations><configuration name='c'>
<globalVars><variable name='s@' address='%MW@'><type><STRING/></type><initialValue>
<simpleValue value='&apos;x, @&apos;'/></initialValue></variable><variable name='r@'><type><LREAL/>
</type><initialValue><simpleValue value='@.5e30'/></initialValue></variable><variable name='t@'>
<type><TIME/></type><initialValue><simpleValue value='T#@s'/></initialValue></variable></globalVars>
</configuration></configurations></instances></project>)";

constexpr uint16_t kComponentAttributes = 0x4 | 0x80;  // initial values; recorded instances

// The globals and units of the thread's project as lines; how many there are.
int Enter(const lq::host::Project& project, CgTab& tables) {
    using namespace lq::host;
    int lines = 0;
    for (uint32_t i = 0; i < project.VariableLists().size(); ++i) {
        const lq::SymbolTablePtr symbols(CreateSymbolTable());
        LoadSelectedSymbolTable(symbols.get(), MakeId(Sort::kVariableList, i));
        for (const lq::Declaration decl : lq::Declarations(symbols.get())) {
            lines += tables.Insert(const_cast<DECL_TYP*>(decl.Record())) >= 0 ? 1 : 0;
        }
    }
    for (const ID id : project.Below(project.PouPool())) {
        const lq::HeaderPtr header(CreatePOUHeader());
        POU_LIST instances;
        CgTab::POS_DSC range = {};
        LoadPOUHeader(header.get(), id, 0);
        CgTabAccess::AppendCmp(tables, header.get(), kComponentAttributes, &instances, range, 1);
        lines += range.lines;
    }
    return lines;
}

// What the project of that number gives on this thread: the number of lines and the image.
std::string Translate(int number, CgTab& tables) {
    using namespace lq::host;
    Project project;
    std::vector<Report> reports;
    std::string text;
    for (const char c : std::string_view(kProject).substr(1)) {
        text += c == '@' ? std::to_string(number) : std::string(1, c);
    }
    std::istringstream source(text);
    ReadPlcopen(source, "project", project, reports);
    SetProject(&project);
    const int entered = Enter(project, tables);
    SetProject(nullptr);
    MEMSTREAM_A image;
    tables.Save(image);
    const bool hasTexts = GetResString(6491) == std::u16string(u"STRING");
    return (hasTexts ? std::to_string(entered) + " lines " : "no texts ")
        .append(reinterpret_cast<const char*>(image.GetData()),
                static_cast<std::size_t>(image.GetSize()));
}

// Also with sets that another thread has made.
TEST(Threads, ProjectsOfTheirOwn) {
    constexpr int kProjects = 2;
    constexpr int kTranslations = 20;
    std::vector<std::string> images(kProjects * kTranslations);
    std::vector<std::unique_ptr<CgTab>> sets;
    int ok = 0;
    while (sets.size() < images.size() / 2) {
        sets.push_back(std::make_unique<CgTab>(ok, nullptr));
    }
    OnThreads(
        [&](int thread) {
            for (int round = 0; round < kTranslations; ++round) {
                const auto at = static_cast<std::size_t>(round * kProjects + thread);
                int isMade = 0;
                CgTab own(isMade, nullptr);
                images[at] = Translate(thread, at < sets.size() ? *sets[at] : own);
            }
            CgTab_ReleaseTokenScanner();  // this thread's
        },
        kProjects);
    for (std::size_t at = 0; at < images.size(); ++at) {
        CgTab alone(ok, nullptr);
        const std::string expected = Translate(static_cast<int>(at % kProjects), alone);
        EXPECT_EQ(expected.substr(0, 8), "8 lines ");
        ASSERT_TRUE(images[at] == expected) << at;
    }
}

}  // namespace
