// Direct addresses: their form, their size, and whether two variables share memory.

#include <algorithm>
#include <optional>
#include <set>
#include <tuple>
#include <unordered_set>

#include "host/check/checks.h"
#include "host/check/run.h"
#include "host/symbols/address.h"
#include "host/symbols/type_text.h"
#include "lq_data/env/lq_addrcheck.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/host/addrcheck/address_check.h"

namespace lq::host::check {

namespace {

using Kind = TypeInfo::Kind;
using symbols::AddressParts;

constexpr std::size_t kBit = 0;  // the size of %IX0 and of %I0
constexpr unsigned kBitsOfSizes[] = {1, 8, 16, 32, 64};

// "%I*", "%QW*": VAR_CONFIG gives the address.
bool IsIncomplete(u16string_view address) {
    return address.size() >= 3 && address.size() <= 4 && address.ends_with(u'*') &&
           symbols::IsOneAddress(std::u16string(address.substr(0, address.size() - 1)) + u"0");
}

// An address of the system's own.
bool IsCustom(const std::u16string& address) {
    return IsCustomAdress(Upper(address).c_str(), 1, 0) != 0;
}

std::vector<uint64_t> NumbersOf(const AddressParts& address) {
    std::vector<uint64_t> numbers(1);
    for (const char16_t c : address.numbers) {
        if (c == u'.') {
            numbers.push_back(0);
        } else {
            constexpr uint64_t kMost = uint64_t{1} << 50;  // what is longer is as good as this
            numbers.back() = std::min<uint64_t>(numbers.back() * 10 + (c - u'0'), kMost);
        }
    }
    return numbers;
}

// -- One address ----------------------------------------------------------------------------------

class Single {
  public:
    explicit Single(Run& run) : run_(run) {
        for (const Declaration& declaration : run.project.Declarations()) {
            if (declaration.section.scope == Scope::kConfig) {
                configured_.insert(LastName(declaration.name));
            }
        }
    }

    void Take(ID owner, ID id, const Declaration& variable) {
        const std::u16string address = variable.address;
        const bool isMember = SortOf(owner) == Sort::kDataType;
        const bool isIncomplete = IsIncomplete(address);
        if (!isIncomplete && !symbols::IsOneAddress(address)) {
            if (!isMember && !IsCustom(address) && !IsValid(address)) {
                run_.Report(4001, id, Say("'{}' is no direct address", Utf8(address)));
            }
            return;
        }
        CheckSection(owner, id, variable, isMember);
        if (isIncomplete) {
            CheckConfigured(owner, id, variable);
        } else {
            CheckSize(id, variable);
            CheckBit(id, variable);
            CheckBlock(owner, id, variable);
        }
    }

  private:
    static std::u16string LastName(u16string_view path) {
        path = path.substr(0, path.ends_with(u']') ? path.rfind(u'[') : path.npos);
        const std::size_t dot = path.rfind(u'.');
        return Upper(Trim(dot == path.npos ? path : path.substr(dot + 1)));
    }

    bool IsValid(const std::u16string& address) const {
        CLQString normalised;
        return GetAddressRules().normalise &&
               IsAdressValidOnl(address.c_str(), 0, 0, &normalised) != 0;
    }

    void CheckSection(ID owner, ID id, const Declaration& variable, bool isMember) {
        const Pou* pou = run_.project.GetPou(owner);
        const Scope scope = variable.section.scope;
        const bool isPlaced = scope == Scope::kLocal || scope == Scope::kGlobal;
        if (!isPlaced || isMember || (pou && pou->kind == LQ_KIND_FUNCTION)) {
            run_.Report(4005, id,
                        Say("'{}' cannot have an address where it stands", Utf8(variable.name)));
        }
    }

    void CheckSize(ID id, const Declaration& variable) {
        const TypeInfo& type = run_.types.WithoutLimits(run_.types.Of(variable.type));
        const unsigned bits = type.kind == Kind::kElementary ? symbols::BitsOfType(type.name) : 0;
        const unsigned given = symbols::BitsOfAddress(variable.address);
        if (bits != 0 && bits != given) {
            run_.Report(4002, id,
                        Say("the address {} has {} bits, and the type {} has {}",
                            Utf8(variable.address), given, Utf8(type.name), bits));
        }
    }

    void CheckBit(ID id, const Declaration& variable) {
        const AddressParts parts = symbols::PartsOfAddress(variable.address);
        const std::vector<uint64_t> numbers = NumbersOf(parts);
        if (run_.options.addresses != AddressModel::kSeparate && parts.size == kBit &&
            numbers.size() == 2 && numbers[1] > 7) {
            run_.Report(4008, id,
                        Say("a byte has no bit {}: {}", numbers[1], Utf8(variable.address)));
        }
    }

    void CheckBlock(ID owner, ID id, const Declaration& variable) {
        const Pou* pou = run_.project.GetPou(owner);
        if (pou && pou->kind == LQ_KIND_FUNCTION_BLOCK && variable.section.scope == Scope::kLocal) {
            const bool isAlone = run_.graph.HasOneInstance(owner);
            run_.Report(4010, isAlone ? Severity::kNote : run_.SeverityOf(4010), id,
                        Say("all instances of '{}' share the address {}", Utf8(pou->name),
                            Utf8(variable.address)));
        }
    }

    void CheckConfigured(ID owner, ID id, const Declaration& variable) {
        const bool isRun = SortOf(owner) == Sort::kPou && run_.graph.RunBy(owner) != 0;
        if (isRun && !configured_.contains(Upper(variable.name))) {
            run_.Report(4006, id,
                        Say("no VAR_CONFIG gives '{}' its address in place of {}",
                            Utf8(variable.name), Utf8(variable.address)));
        }
    }

    Run& run_;
    std::unordered_set<std::u16string> configured_;  // last names of the paths, in capitals
};

void CheckAddresses(Run& run) {
    Single single(run);
    for (const ID owner : run.Owners()) {
        for (const ID id : run.project.Below(owner)) {
            const Declaration& variable = *run.project.GetDeclaration(id);
            if (*variable.address) {
                single.Take(owner, id, variable);
            }
        }
    }
}

// -- Two addresses --------------------------------------------------------------------------------

// A variable at an address, and the resources that it lives in.
struct Located {
    ID id;
    AddressParts address;
    std::vector<uint64_t> numbers;
    uint64_t lives = 0;  // a bit for each resource
    uint64_t own = 0;    // identifies a unit that no resource runs
    uint64_t bits = 0;   // of address or type, whichever is longer
    uint64_t start = 0;  // in the model that is looked at
};

// Where the address begins; nothing where its numbers are those of slots and channels.
std::optional<uint64_t> StartOf(const Located& at, AddressModel model) {
    const bool isBit = at.address.size == kBit;
    const std::vector<uint64_t>& n = at.numbers;
    if (n.size() > (isBit ? 2u : 1u)) {
        return {};
    }
    if (n.size() == 2) {
        return 8 * n[0] + n[1];
    }
    if (isBit) {
        return model == AddressModel::kElement ? std::optional(n[0]) : std::nullopt;
    }
    return n[0] * (model == AddressModel::kByte ? 8 : kBitsOfSizes[at.address.size]);
}

class Shared {
  public:
    explicit Shared(Run& run) : run_(run) {
        for (const ID owner : run.Owners()) {
            for (const ID id : run.project.Below(owner)) {
                const Declaration& variable = *run.project.GetDeclaration(id);
                const Scope scope = variable.section.scope;
                if (*variable.address && (scope == Scope::kLocal || scope == Scope::kGlobal) &&
                    SortOf(owner) != Sort::kDataType) {
                    Enter(owner, id, variable);
                }
            }
        }
    }

    void Check() {
        CheckEqual();
        if (run_.options.addresses == AddressModel::kSeparate) {
            CheckBothModels();
        } else {
            for (const auto& [a, b] : Overlaps(run_.options.addresses)) {
                ReportOverlap(run_.SeverityOf(4004), *a, *b,
                              Say("{} at {} overlaps {} at {}", NameOf(*b), TextOf(*b), NameOf(*a),
                                  TextOf(*a)));
            }
        }
    }

  private:
    using Pair = std::pair<const Located*, const Located*>;

    void Enter(ID owner, ID id, const Declaration& variable) {
        Located at{id, symbols::PartsOfAddress(variable.address), {}};
        if (at.address.numbers.empty()) {
            return;
        }
        const VariableList* list = run_.project.GetVariableList(owner);
        const ID holder = list ? list->parent : owner;
        const bool isUnit = SortOf(holder) == Sort::kPou;
        at.lives = isUnit ? run_.graph.RunBy(holder) : run_.graph.SeenBy(holder);
        at.own = at.lives == 0 ? holder.GetNumber() : 0;
        at.numbers = NumbersOf(at.address);
        at.bits = std::max<uint64_t>(kBitsOfSizes[at.address.size], BitsOf(variable.type));
        all_.push_back(std::move(at));
    }

    // The bits of an elementary type, or of an array of one; 0 for others.
    uint64_t BitsOf(Text text) {
        const TypeInfo& type = run_.types.WithoutLimits(run_.types.Of(text));
        if (type.kind == Kind::kElementary) {
            return symbols::BitsOfType(type.name);
        }
        if (type.kind != Kind::kArray || !type.base) {
            return 0;
        }
        const TypeInfo& element = run_.types.WithoutLimits(*type.base);
        uint64_t bits = element.kind == Kind::kElementary ? symbols::BitsOfType(element.name) : 0;
        for (const Limits& limits : type.limits) {
            int64_t lower = 0;
            int64_t upper = 0;
            const bool isKnown = Types::ReadNumber(limits.lower, lower) &&
                                 Types::ReadNumber(limits.upper, upper) && lower <= upper &&
                                 upper - lower < (1 << 24);
            bits *= isKnown ? static_cast<uint64_t>(upper - lower) + 1 : 0;
            bits = std::min(bits, uint64_t{1} << 40);
        }
        return bits;
    }

    static bool MeetInTime(const Located& a, const Located& b) {
        return a.lives == 0 || b.lives == 0 ? a.own == b.own && a.own != 0
                                            : (a.lives & b.lives) != 0;
    }

    std::string NameOf(const Located& at) const {
        return "'" + Utf8(run_.project.NameOf(at.id)) + "'";
    }
    std::string TextOf(const Located& at) const {
        return Utf8(run_.project.GetDeclaration(at.id)->address);
    }

    static bool IsEqual(const Located& a, const Located& b) {
        return a.address.location == b.address.location && a.address.size == b.address.size &&
               a.numbers == b.numbers;
    }

    // One finding for all variables of an address.
    void CheckEqual() {
        std::ranges::stable_sort(all_, [](const Located& a, const Located& b) {
            return std::tie(a.address.location, a.address.size, a.numbers) <
                   std::tie(b.address.location, b.address.size, b.numbers);
        });
        for (std::size_t first = 0; first < all_.size();) {
            std::size_t end = first + 1;
            while (end < all_.size() && IsEqual(all_[first], all_[end])) {
                ++end;
            }
            ReportEqual(first, end);
            first = end;
        }
    }

    void ReportEqual(std::size_t first, std::size_t end) {
        constexpr std::size_t kMostCompared = 100;  // far more than any project has at one address
        end = std::min(end, first + kMostCompared);
        Finding* finding = nullptr;
        for (std::size_t i = first + 1; i < end; ++i) {
            const auto other =
                std::find_if(all_.begin() + static_cast<std::ptrdiff_t>(first),
                             all_.begin() + static_cast<std::ptrdiff_t>(i),
                             [&](const Located& at) { return MeetInTime(at, all_[i]); });
            if (other == all_.begin() + static_cast<std::ptrdiff_t>(i)) {
                continue;
            }
            if (finding) {
                run_.Relate(*finding, all_[i].id, Say("{} is there, too", NameOf(all_[i])));
                continue;
            }
            constexpr std::size_t kOutputs = 1;
            const Severity severity =
                other->address.location == kOutputs ? run_.SeverityOf(4003) : Severity::kNote;
            finding = &run_.Report(4003, severity, all_[i].id,
                                   Say("{} has the address {} of {}", NameOf(all_[i]),
                                       TextOf(all_[i]), NameOf(*other)));
            run_.Relate(*finding, other->id, Say("first declared here"));
        }
    }

    // Each variable with the one that reaches farthest of those that begin before it, when they
    // overlap.
    std::vector<Pair> Overlaps(AddressModel model) {
        std::vector<const Located*> order;
        for (Located& at : all_) {
            if (const auto start = StartOf(at, model)) {
                at.start = *start;
                order.push_back(&at);
            }
        }
        std::ranges::stable_sort(order, [](const Located* a, const Located* b) {
            return std::tie(a->address.location, a->start) <
                   std::tie(b->address.location, b->start);
        });
        constexpr std::size_t kMostOpen = 16;
        std::vector<Pair> pairs;
        std::vector<const Located*> open;  // those that may reach what comes
        for (const Located* at : order) {
            std::erase_if(open, [at](const Located* other) {
                return other->address.location != at->address.location ||
                       other->start + other->bits <= at->start;
            });
            const auto meets = std::ranges::find_if(open, [at](const Located* other) {
                return !IsEqual(*other, *at) && MeetInTime(*other, *at);
            });
            if (meets != open.end()) {
                pairs.emplace_back(*meets, at);
            }
            if (open.size() < kMostOpen) {
                open.push_back(at);
            }
        }
        return pairs;
    }

    void ReportOverlap(Severity severity, const Located& a, const Located& b, std::string message) {
        Finding& finding = run_.Report(4004, severity, b.id, std::move(message));
        run_.Relate(finding, a.id, Say("{} begins here", TextOf(a)));
    }

    // What overlaps whatever the numbers mean is worth one note.
    void CheckBothModels() {
        const std::vector<Pair> bytes = Overlaps(AddressModel::kByte);
        const auto ordered = [](const Pair& pair) {
            return Pair(std::min(pair.first, pair.second), std::max(pair.first, pair.second));
        };
        std::set<Pair> both;
        for (const Pair& pair : Overlaps(AddressModel::kElement)) {
            both.insert(ordered(pair));
        }
        for (const Pair& pair : bytes) {
            if (both.contains(ordered(pair))) {
                ReportOverlap(Severity::kNote, *pair.first, *pair.second,
                              Say("{} overlaps {} on most targets; --addresses says what the "
                                  "numbers mean",
                                  TextOf(*pair.second), TextOf(*pair.first)));
                return;
            }
        }
    }

    Run& run_;
    std::vector<Located> all_;
};

void CheckSharedAddresses(Run& run) {
    Shared(run).Check();
}

constexpr Check kRows[] = {
    {4001, "bad-address", Severity::kError,
     Message("An address is %, the letter I, Q or M, a size, and numbers with dots between them"),
     Message("No target knows what it stands for"), "VAR\n  a AT %ZZ1 : BOOL;\nEND_VAR",
     "VAR\n  a AT %IX1 : BOOL;\nEND_VAR", CheckAddresses},
    {4002, "address-size", Severity::kWarning,
     Message("An address has as many bits as the number, the bit string or the BOOL at it"),
     Message("The variable takes part of the place, or more than the place"),
     "VAR\n  a AT %QX1 : INT;\nEND_VAR", "VAR\n  a AT %QW1 : INT;\nEND_VAR", CheckAddresses},
    {4003, "same-address", Severity::kWarning,
     Message("Two variables that live together have different addresses; a note for inputs and "
             "memory, where a second name is common"),
     Message("Each overwrites what the other one wrote"),
     "VAR\n  a AT %QX0.0 : BOOL;\n  b AT %Q0.0 : BOOL;\nEND_VAR",
     "VAR\n  a AT %QX0.0 : BOOL;\n  b AT %QX0.1 : BOOL;\nEND_VAR", CheckSharedAddresses},
    {4004, "overlap", Severity::kWarning,
     Message("Addresses do not overlap, by what --addresses says of their numbers; as long as it "
             "says nothing, one note where they would whatever the numbers mean"),
     Message("A byte that changes changes the word that it is in"),
     "VAR\n  a AT %QW1 : INT;\n  b AT %QB2 : BYTE;\nEND_VAR",
     "VAR\n  a AT %QW1 : INT;\n  b AT %QB4 : BYTE;\nEND_VAR", CheckSharedAddresses},
    {4005, "address-section", Severity::kError,
     Message("Only local variables of programs and function blocks, and globals, have an address"),
     Message("Parameters and temporaries lie where the caller puts them"),
     "VAR_INPUT\n  a AT %IX0.0 : BOOL;\nEND_VAR", "VAR\n  a AT %IX0.0 : BOOL;\nEND_VAR",
     CheckAddresses},
    {4006, "incomplete-address", Severity::kWarning,
     Message("VAR_CONFIG completes an address that ends in *, where the unit is run"),
     Message("Without it the variable is at no address"),
     "PROGRAM Main\nVAR\n  a AT %I* : BOOL;\nEND_VAR\nEND_PROGRAM\n"
     "CONFIGURATION c\nRESOURCE r\nTASK t(INTERVAL := T#10ms, PRIORITY := 1);\n"
     "PROGRAM p WITH t : Main;\nEND_RESOURCE\nEND_CONFIGURATION",
     "PROGRAM Main\nVAR\n  a AT %I* : BOOL;\nEND_VAR\nEND_PROGRAM\n"
     "CONFIGURATION c\nRESOURCE r\nTASK t(INTERVAL := T#10ms, PRIORITY := 1);\n"
     "PROGRAM p WITH t : Main;\nEND_RESOURCE\n"
     "VAR_CONFIG\n  r.p.a AT %IX0.0 : BOOL;\nEND_VAR\nEND_CONFIGURATION",
     CheckAddresses},
    {4008, "bit-number", Severity::kWarning,
     Message("Where numbers are those of bytes, a bit has a number from 0 to 7 (--addresses)"),
     Message("The address is one of another byte, or of none"),
     "VAR\n  a AT %IX0.9 : BOOL;\nEND_VAR", "VAR\n  a AT %IX1.1 : BOOL;\nEND_VAR", CheckAddresses},
    {4010, "fixed-address-in-block", Severity::kWarning,
     Message("A variable of a function block has no complete address"),
     Message("All instances share the one place"),
     "FUNCTION_BLOCK Lamp\nVAR\n  a AT %QX0.0 : BOOL;\nEND_VAR\nEND_FUNCTION_BLOCK",
     "FUNCTION_BLOCK Lamp\nVAR\n  a AT %Q* : BOOL;\nEND_VAR\nEND_FUNCTION_BLOCK", CheckAddresses},
};

}  // namespace

Rows AddressRows() {
    return kRows;
}

}  // namespace lq::host::check
