// What a project keeps of bodies: their languages, labels and jumps, the units that are called, and
// the code where it keeps that.

#include "host/diff/teller.h"
#include "host/diff/written.h"
#include "lq_data/detail/chars.h"

namespace lq::host::diff {

namespace {

template <typename Record>
std::vector<Key> KeysOf(const std::vector<Record>& records) {
    std::vector<Key> keys;
    keys.reserve(records.size());
    for (const Record& record : records) {
        keys.push_back({0, record.name});
    }
    return keys;
}

// Calls take(about, inOld, inNew) for the records of two lists, paired by their names; either may
// be null. `unit` is what the units are.
template <typename Record, typename Take>
void ForEachPair(const Difference& unit, Subject subject, const std::vector<Record>& inOld,
                 const std::vector<Record>& inNew, Take take) {
    Pairing pairing(inOld.size(), inNew.size());
    pairing.Match(KeysOf(inOld), KeysOf(inNew));
    pairing.Walk([&](uint32_t oldItem, uint32_t newItem) {
        Difference about = unit;
        about.subject = subject;
        const auto recordOf = [&about](Difference::Side& side, const std::vector<Record>& records,
                                       uint32_t item) -> const Record* {
            if (item == kNone) {
                side = {};
                return nullptr;
            }
            about.name = records[item].name;
            side.line = records[item].line;
            side.column = records[item].column;
            return &records[item];
        };
        const Record* const a = recordOf(about.before, inOld, oldItem);
        const Record* const b = recordOf(about.after, inNew, newItem);
        about.change = !a ? Change::kAdded : !b ? Change::kRemoved : Change::kChanged;
        take(about, a, b);
    });
}

class Bodies {
  public:
    Bodies(const Teller& teller, std::u16string_view path, ID oldUnit, ID newUnit)
        : teller_(teller),
          unit_(teller.About(Subject::kBody, path, u"", oldUnit, newUnit)),
          inOld_(*teller.before.GetPou(oldUnit)),
          inNew_(*teller.after.GetPou(newUnit)) {}

    void Compare() const {
        ForEachPair(unit_, Subject::kBody, inOld_.bodies, inNew_.bodies,
                    [this](const Difference& about, const Body* a, const Body* b) {
                        if (a && b) {
                            CompareBody(about, *a, *b);
                        } else {
                            teller_.TellWhole(about, LanguageText((a ? a : b)->language));
                        }
                    });
        CompareMarks(Subject::kCall, u"", CallsOf(inOld_), CallsOf(inNew_));
    }

  private:
    void CompareBody(const Difference& about, const Body& inOld, const Body& inNew) const {
        teller_.TellIfChanged(about, Aspect::kLanguage, LanguageText(inOld.language),
                              LanguageText(inNew.language));
        if (inOld.language == inNew.language && teller_.before.KeepsCode() &&
            teller_.after.KeepsCode()) {
            CompareCode(teller_, about, inOld, inNew);
        }
        CompareMarks(Subject::kLabel, inNew.name, inOld.labels, inNew.labels);
        CompareMarks(Subject::kJump, inNew.name, inOld.jumps, inNew.jumps);
    }

    void CompareMarks(Subject subject, std::u16string_view body, const std::vector<Mark>& inOld,
                      const std::vector<Mark>& inNew) const {
        std::u16string name;
        ForEachPair(unit_, subject, inOld, inNew,
                    [&](Difference about, const Mark* a, const Mark* b) {
                        name = body;
                        name += body.empty() ? u"" : u".";
                        name += about.name;
                        about.name = name;
                        if (a && b) {
                            teller_.TellIfChanged(about, Aspect::kCondition, ConditionText(*a),
                                                  ConditionText(*b));
                        } else {
                            teller_.TellWhole(about, ConditionText(*(a ? a : b)));
                        }
                    });
    }

    // The units among what a unit calls, as marks at its place. A call of a unit that only the
    // other side has is one, too.
    std::vector<Mark> CallsOf(const Pou& unit) const {
        std::vector<Mark> calls;
        FlatIndex<Text> known;
        for (const Text name : unit.calls) {
            const bool isUnit =
                teller_.before.FindAnyPou(name) != ID() || teller_.after.FindAnyPou(name) != ID();
            const auto isSame = [name](Text other) { return chars::EqualNoCase(name, other); };
            if (isUnit && known.AddFirst(name, HashOfName(name), isSame)) {
                calls.push_back({name, unit.line, unit.column});
            }
        }
        return calls;
    }

    const Teller& teller_;
    const Difference unit_;
    const Pou& inOld_;
    const Pou& inNew_;
};

}  // namespace

void CompareBodies(const Teller& teller, std::u16string_view path, ID oldUnit, ID newUnit) {
    Bodies(teller, path, oldUnit, newUnit).Compare();
}

}  // namespace lq::host::diff
