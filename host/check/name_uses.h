// What the names in bodies say of the objects that they stand for.
#pragma once

#include <unordered_set>
#include <vector>

#include "host/check/findings.h"
#include "host/check/left_out.h"
#include "lq_data/host/uses/uses.h"

namespace lq::host::check {

class NameUses {
  public:
    NameUses(Run& run, const LeftOut& leftOut);

    // Each use of the project, in the order of ForEachUse; then what they come to.
    void Take(const Use& use);
    void Finish();

  private:
    // What is done with an instance of a function block.
    enum Deed : uint8_t {
        kNamed = 1,   // something in it
        kCalled = 2,  // or what may be that
    };

    void TakeInstance(const Use& use);
    void TakeBlock(const Use& use);
    void CheckBlock(const Use& use);
    ID BlockIn(u16string_view type) const;
    void TakeCall(const Use& use);
    void TakeEnumerator(const Use& use);
    void TakeSpelling(const Use& use);
    void AddTypesIn(ID holder, Text text);
    void CheckInstances();
    void CheckTypes();
    u16string_view DeclaredName(const Use& use);

    Run& run_;
    const LeftOut& leftOut_;
    const bool wantsSpelling_;
    std::vector<bool> isInstance_;  // by declaration: of a block of the project or the standard
    std::vector<uint8_t> deeds_;    // by declaration, bits
    std::vector<bool> isUsed_;      // by data type
    ID block_;                      // of the drawing's box whose instance comes
    std::vector<Graph::Call> calls_;
    std::unordered_set<uint64_t> knownCalls_;
    ID pending_;                // an instance that was named; what follows tells why
    bool isQualified_ = false;  // a type stands in front of what comes
    Causes shared_;
    Causes spellings_;
};

// Finds the codes of NameUses, VariableUses, calls and malformed literals in one walk.
void CheckVariableUses(Run& run);

// What calls itself, and what nothing leads to, once the graph has the calls of that walk.
void CheckCalls(Run& run);

}  // namespace lq::host::check
