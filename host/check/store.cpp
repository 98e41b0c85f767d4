#include "host/check/store.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "lq_data/host/text/message.h"

namespace lq::host::check {

namespace {

// FNV-1a: the same for the same text, on every machine.
class Digest {
  public:
    Digest& Add(std::string_view text) {
        for (const char c : text) {
            value_ = (value_ ^ static_cast<unsigned char>(c)) * 0x100000001B3;
        }
        return *this;
    }
    explicit Digest(uint64_t value = 0xCBF29CE484222325) : value_(value) {}
    uint64_t Value() const { return value_; }

  private:
    uint64_t value_;
};

// What stands in front of the names: the same of most findings that follow each other.
class Prefix {
  public:
    Digest Of(const Check& check, const std::string& unit) {
        if (&check != check_ || unit != unit_) {
            check_ = &check;
            unit_ = unit;
            digest_ = Digest();
            digest_.Add(CodeText(check.code)).Add("\n").Add(unit).Add("\n");
        }
        return digest_;
    }

  private:
    const Check* check_ = nullptr;
    std::string unit_;
    Digest digest_;
};

void WriteDigits(uint64_t digest, std::string& digits) {
    digits.resize(16);
    for (std::size_t i = digits.size(); i-- > 0; digest >>= 4) {
        digits[i] = "0123456789abcdef"[digest & 15];
    }
}

}  // namespace

ID HolderOf(const Project& project, ID object) {
    switch (SortOf(object)) {
        case Sort::kDeclaration:
            return project.GetDeclaration(object)->owner;
        case Sort::kVariableList:
            return project.GetVariableList(object)->parent;
        case Sort::kResource:
            return project.GetResource(object)->configuration;
        case Sort::kTask:
            return project.GetTask(object)->resource;
        case Sort::kProgramInstance:
            return project.GetProgramInstance(object)->parent;
        default:
            return {};
    }
}

const std::string& Paths::Of(ID object) {
    ID holder = HolderOf(project_, object);
    if (SortOf(holder) == Sort::kVariableList || SortOf(holder) == Sort::kTask) {
        holder = HolderOf(project_, holder);
    }
    if (holder == holder_) {
        return path_;
    }
    holder_ = holder;
    path_ = Utf8(project_.NameOf(holder));
    if (const Resource* resource = project_.GetResource(holder)) {
        const std::string configuration = Utf8(project_.NameOf(resource->configuration));
        path_.insert(0, configuration + (configuration.empty() || path_.empty() ? "" : "."));
    }
    return path_;
}

void Finding::SetName(std::string unit, std::string name) {
    Texts& own = OwnTexts();
    own.hasName = true;
    own.unit = std::move(unit);
    own.name = std::move(name);
}

Finding::Texts& Finding::OwnTexts() {
    if (!texts) {
        texts = std::make_unique<Texts>();
    }
    return *texts;
}

uint32_t Store::NumberOf(const std::string& file) {
    const auto [known, isNew] = numbers_.try_emplace(file, static_cast<uint32_t>(files_.size()));
    if (isNew) {
        files_.push_back(file);
    }
    return known->second;
}

Finding& Store::Add(const Check& check, Severity severity, ID object) {
    Finding& finding = all_.emplace_back();
    finding.check = &check;
    finding.severity = severity;
    finding.object = object;
    if (const SourceFile* file = project_.FileOf(object)) {
        if (file != lastFile_) {
            lastFile_ = file;
            lastNumber_ = NumberOf(Utf8(file->name));
        }
        finding.file = lastNumber_;
        finding.line = project_.LineOf(object);
        finding.column = project_.ColumnOf(object);
    }
    return finding;
}

void Store::Keep(Finding& finding) {
    ranks_.resize(std::max(ranks_.size(), files_.size()));
    uint32_t& rank = ranks_[finding.file];
    rank = rank == 0 ? nextRank_++ : rank;
    kept_.push_back(&finding);
}

void Store::Arrange() {
    const auto isLess = [this](const Finding* a, const Finding* b) {
        const auto key = [this](const Finding& f) {
            return std::tuple(ranks_[f.file], f.line, f.column, f.check->code);
        };
        return key(*a) < key(*b);
    };
    if (!std::ranges::is_sorted(kept_, isLess)) {
        std::ranges::stable_sort(kept_, isLess);
    }
    Number();
}

// Gives each its digest; those that have one in common are told apart by their order.
void Store::Number() {
    std::vector<std::pair<uint64_t, uint32_t>> same;  // digests, and the places of their findings
    same.reserve(kept_.size());
    Paths paths(project_);
    Prefix prefix;
    for (Finding* finding : kept_) {
        const bool isOwn = finding->texts && finding->texts->hasName;
        Digest digest =
            prefix.Of(*finding->check, isOwn ? finding->texts->unit : paths.Of(finding->object));
        finding->digest = digest.Add(NameOf(*finding)).Value();
        same.emplace_back(finding->digest, static_cast<uint32_t>(same.size()));
    }
    std::ranges::sort(same);
    for (std::size_t i = 1, earlier = 0; i < same.size(); ++i) {
        earlier = same[i].first == same[i - 1].first ? earlier + 1 : 0;
        if (earlier != 0) {
            kept_[same[i].second]->digest =
                Digest(same[i].first).Add('\n' + std::to_string(earlier)).Value();
        }
    }
}

std::string Store::UnitOf(const Finding& finding) const {
    return finding.texts && finding.texts->hasName ? finding.texts->unit
                                                   : Paths(project_).Of(finding.object);
}

std::string Store::NameOf(const Finding& finding) const {
    return finding.texts && finding.texts->hasName ? finding.texts->name
                                                   : Utf8(project_.NameOf(finding.object));
}

void Store::Fill(const Finding& from, Paths& paths, host::Finding& finding) const {
    const Finding::Texts* texts = from.texts.get();
    finding.check = from.check;
    finding.severity = from.severity;
    finding.object = from.object;
    finding.file = files_[from.file];
    finding.line = from.line;
    finding.column = from.column;
    finding.unit = texts && texts->hasName ? texts->unit : paths.Of(from.object);
    finding.name = NameOf(from);
    finding.message = from.format ? Say(from.format, finding.name)
                      : texts     ? texts->message
                                  : std::string();
    finding.more = from.more;
    finding.related.clear();
    if (texts) {
        finding.related = texts->related;
    }
    for (RelatedPlace& place : finding.related) {
        if (place.file.empty() && place.line != 0) {
            place.file = finding.file;
        }
    }
    WriteDigits(from.digest, finding.fingerprint);
}

void Store::ForEach(Severity severity, const TakeFinding& take) const {
    Paths paths(project_);
    host::Finding finding;
    for (const Finding* from : kept_) {
        if (severity == Severity::kOff || severity == from->severity) {
            Fill(*from, paths, finding);
            take(finding);
        }
    }
}

}  // namespace lq::host::check
