// What the checks find, kept small: a project may have a finding for each of its variables. What an
// object says anyway, its name, its path and its file, becomes text when findings are handed out.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "lq_data/host/check/check.h"
#include "lq_data/host/text/utf.h"

namespace lq::host::check {

inline std::string Utf8(std::u16string_view text) {
    return EncodeUtf8(text);
}

// What the object is directly in; null for what is in nothing.
ID HolderOf(const Project& project, ID object);

// The unit, the type, or "Configuration.Resource" of objects, the same one after the other.
class Paths {
  public:
    explicit Paths(const Project& project) : project_(project) {}

    const std::string& Of(ID object);

  private:
    const Project& project_;
    ID holder_;
    std::string path_;  // of what is in the holder
};

// A finding as the checks make it; the library's Finding is what becomes of it.
struct Finding {
    // What it does not have from its object.
    struct Texts {
        std::string message;
        bool hasName = false;
        std::string unit;
        std::string name;
        std::vector<RelatedPlace> related;  // those without a file are in the finding's own
    };

    void SetName(std::string unit, std::string name);
    Texts& OwnTexts();

    const Check* check = nullptr;
    const char* format = nullptr;  // of a message whose only word is the object's name
    std::unique_ptr<Texts> texts;  // null when there is nothing of that
    uint64_t digest = 0;
    ID object;
    uint32_t file = 0;  // which one of the store's
    uint32_t line = 0;
    uint32_t column = 0;
    uint32_t more = 0;
    Severity severity = Severity::kOff;
};

class Store {
  public:
    explicit Store(const Project& project) : project_(project) {}

    // At the object; where it is said, at another place.
    Finding& Add(const Check& check, Severity severity, ID object);
    uint32_t NumberOf(const std::string& file);
    std::deque<Finding>& All() { return all_; }

    // It is handed out; the others are suppressed. When all that are have been kept they are put in
    // order.
    void Keep(Finding& finding);
    void Arrange();

    std::string UnitOf(const Finding& finding) const;
    std::string NameOf(const Finding& finding) const;

    // Those of a severity; of any when it is kOff.
    void ForEach(Severity severity, const TakeFinding& take) const;
    std::size_t Kept() const { return kept_.size(); }

  private:
    void Number();
    void Fill(const Finding& from, Paths& paths, host::Finding& finding) const;

    const Project& project_;
    std::deque<Finding> all_;
    std::vector<Finding*> kept_;
    std::vector<std::string> files_{std::string()};  // the first one is that of findings without
    std::vector<uint32_t> ranks_;  // of the files: in the order in which the first finding came
    uint32_t nextRank_ = 1;        // 0 for a file that has none yet
    std::unordered_map<std::string, uint32_t> numbers_{{std::string(), 0}};
    const SourceFile* lastFile_ = nullptr;
    uint32_t lastNumber_ = 0;
};

}  // namespace lq::host::check
