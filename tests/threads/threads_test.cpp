// What several threads may do at a time, each with objects of its own. Races show in a build with
// ThreadSanitizer (./dev matrix '*-threads').
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "lq_data/containers.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/record_file.h"
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

// The kinds, texts and lengths of all tokens.
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

void OnThreads(const std::function<void(int)>& job) {
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&job, i] { job(i); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

// No string here has a comma: where one ends behind B_COMMENT is chance then.
TEST(Threads, ScannersOfTheirOwn) {
    std::vector<std::u16string> results(kThreads * kRounds);
    OnThreads([&](int thread) {
        for (int round = 0; round < kRounds; ++round) {
            Scan(u"B_COMMENT 'a, b' 'c, d'");
            results[static_cast<std::size_t>(thread * kRounds + round)] = Scan(Source());
        }
    });
    const std::u16string expected = Scan(Source());
    EXPECT_GT(expected.size(), 2000u);
    for (const std::u16string& result : results) {
        ASSERT_TRUE(result == expected);
    }
}

TEST(Threads, ContainersAndConstantsOfTheirOwn) {
    // The site's answers on constants are fetched by the first that are classified.
    uint32_t bits = 0;
    DCE_GetIntConstRange(0, 1, &bits);
    DCE_GetBOHConstRange(1, &bits);
    std::vector<int> done(kThreads);
    OnThreads([&](int thread) {
        HashTable table(101, 0);
        R_FILE file(4);
        Val value;
        bool right = true;
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

}  // namespace
