#include "host/model/standard_blocks.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "lq_data/host/model/project.h"

namespace lq::host {

namespace {

using std::u16string_view;

// Parameters are written "name:TYPE", separated by blanks. In a counter's, "#" stands for the type
// that it counts in.
struct Block {
    u16string_view name;
    u16string_view inputs;
    u16string_view outputs;
    u16string_view comment;
};

constexpr Block kBlocks[] = {
    {u"SR", u"S1:BOOL R:BOOL", u"Q1:BOOL", u"Bistable, setting dominates"},
    {u"RS", u"S:BOOL R1:BOOL", u"Q1:BOOL", u"Bistable, resetting dominates"},
    {u"SEMA", u"CLAIM:BOOL RELEASE:BOOL", u"BUSY:BOOL", u"Semaphore"},
    {u"R_TRIG", u"CLK:BOOL", u"Q:BOOL", u"Detects a rising edge"},
    {u"F_TRIG", u"CLK:BOOL", u"Q:BOOL", u"Detects a falling edge"},
    {u"TP", u"IN:BOOL PT:TIME", u"Q:BOOL ET:TIME", u"Pulse"},
    {u"TON", u"IN:BOOL PT:TIME", u"Q:BOOL ET:TIME", u"Delays switching on"},
    {u"TOF", u"IN:BOOL PT:TIME", u"Q:BOOL ET:TIME", u"Delays switching off"},
};

constexpr Block kCounters[] = {
    {u"CTU", u"CU:BOOL R:BOOL PV:#", u"Q:BOOL CV:#", u"Counts up"},
    {u"CTD", u"CD:BOOL LD:BOOL PV:#", u"Q:BOOL CV:#", u"Counts down"},
    {u"CTUD", u"CU:BOOL CD:BOOL R:BOOL LD:BOOL PV:#", u"QU:BOOL QD:BOOL CV:#",
     u"Counts up and down"},
};

// The plain counters count in INT; the others carry their type in their name.
constexpr u16string_view kPlainCounterType = u"INT";
constexpr u16string_view kCounterTypes[] = {u"INT", u"DINT", u"LINT", u"UDINT", u"ULINT"};

void AddParameters(Project& project, ID pou, Scope scope, u16string_view parameters,
                   u16string_view counterType) {
    while (!parameters.empty()) {
        const std::size_t blank = std::min(parameters.find(u' '), parameters.size());
        const u16string_view parameter = parameters.substr(0, blank);
        parameters.remove_prefix(std::min(blank + 1, parameters.size()));

        const std::size_t colon = parameter.find(u':');
        const u16string_view type = parameter.substr(colon + 1);
        Declaration declaration;
        declaration.name = project.Intern(parameter.substr(0, colon));
        declaration.type = project.Intern(type == u"#" ? counterType : type);
        declaration.section.scope = scope;
        declaration.owner = pou;
        project.AddDeclaration(declaration);
    }
}

void AddBlock(Project& project, const Block& block, u16string_view name,
              u16string_view counterType) {
    Pou pou;
    pou.name = project.Intern(name);
    pou.kind = LQ_KIND_FUNCTION_BLOCK;
    pou.comment = project.Intern(block.comment);
    pou.isStandard = true;
    const ID id = project.AddPou(pou);
    AddParameters(project, id, Scope::kInput, block.inputs, counterType);
    AddParameters(project, id, Scope::kOutput, block.outputs, counterType);
}

}  // namespace

void AddStandardBlocks(Project& project) {
    for (const Block& block : kBlocks) {
        AddBlock(project, block, block.name, {});
    }
    for (const Block& counter : kCounters) {
        AddBlock(project, counter, counter.name, kPlainCounterType);
        for (const u16string_view type : kCounterTypes) {
            std::u16string name(counter.name);
            name.append(u"_").append(type);
            AddBlock(project, counter, name, type);
        }
    }
}

}  // namespace lq::host
