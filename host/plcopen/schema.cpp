#include "host/plcopen/schema.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "lq_data/host/text/message.h"

namespace lq::host::plcopen {

using std::string_view;

// A row tells an element's attributes and children. A word that begins with "-" is skipped by
// design, one with "!" is known and has no place in the project, any other is read. "*" stands for
// all that an element holds, "#" for text. "parent/element" goes before "element".
//
// Drawings: the project keeps no code, so a body's wiring is skipped; what is read of it are
// labels, jumps and calls.
struct Row {
    string_view element;
    string_view attributes;
    string_view children;
    bool drawn = false;  // with kDrawn's words as well
};

namespace {

constexpr string_view kTypes =
    "BOOL BYTE WORD DWORD LWORD SINT INT DINT LINT USINT UINT UDINT ULINT REAL LREAL TIME DATE DT "
    "TOD STRING WSTRING string wstring ANY ANY_DERIVED ANY_ELEMENTARY ANY_MAGNITUDE ANY_NUM "
    "ANY_REAL ANY_INT ANY_BIT ANY_STRING ANY_DATE array derived enum struct subrangeSigned "
    "subrangeUnsigned pointer iec:TypeName iec:InstantlyDefinedType";
constexpr string_view kListAttributes =
    "-accessSpecifier -name constant retain nonretain persistent nonpersistent";
constexpr string_view kList = "variable addData documentation";
constexpr string_view kNamespace =
    "iec:NamespaceDecl dataType iec:Program iec:FunctionBlock iec:Function addData !documentation";
constexpr string_view kIecUnit =
    "returnType iec:Parameters externalVars localVars tempVars globalVars iec:MainBody iec:Action "
    "addData documentation";
constexpr string_view kValues = "simpleValue arrayValue structValue";
constexpr string_view kLanguages = "ST IL FBD LD SFC addData !documentation";
constexpr string_view kDrawing =
    "block label jump inVariable outVariable inOutVariable contact coil leftPowerRail "
    "rightPowerRail return comment connector continuation actionBlock step macroStep jumpStep "
    "transition selectionDivergence selectionConvergence simultaneousDivergence "
    "simultaneousConvergence !error !vendorElement addData !documentation";

constexpr Row kDrawn = {
    {},
    "-localId -globalId -width -height -executionOrderId -negated -edge "
    "-storage -negatedIn -negatedOut -storageIn -storageOut -edgeIn -edgeOut",
    "-position -relPosition -connectionPointIn -connectionPointOut -documentation "
    "addData"};

constexpr Row kRows[] = {
    {"project", "-schemaVersion",
     "-fileHeader contentHeader types instances addData !documentation"},
    {"contentHeader",
     "name -creationDateTime -version -modificationDateTime -organization -author -language",
     "-coordinateInfo -iec:AddDataInfo !Comment addData !documentation"},
    {"types", "", "dataTypes pous iec:GlobalNamespace"},
    {"dataTypes", "", "dataType"},
    {"dataType", "name -globalId",
     "baseType iec:UserDefinedTypeSpec initialValue addData documentation"},
    {"pous", "", "pou"},
    {"pou", "name pouType -globalId", "interface actions transitions body addData documentation"},
    {"interface", "",
     "returnType localVars tempVars inputVars outputVars inOutVars externalVars globalVars "
     "accessVars addData documentation"},
    {"localVars", kListAttributes, kList},
    {"tempVars", kListAttributes, kList},
    {"inputVars", kListAttributes, kList},
    {"outputVars", kListAttributes, kList},
    {"inOutVars", kListAttributes, kList},
    {"externalVars", kListAttributes, kList},
    {"globalVars", "name constant retain nonretain persistent nonpersistent", kList},
    {"configVars", "-name", "configVariable addData !documentation"},
    {"configVariable", "instancePathAndName address -globalId",
     "type initialValue addData documentation"},
    {"accessVars", "-name", "accessVariable addData !documentation"},
    {"accessVariable", "alias instancePathAndName direction -globalId",
     "type addData documentation"},
    {"variable", "name address -globalId -orderWithinParamSet",
     "type initialValue iec:Address addData documentation"},

    {"returnType", "", kTypes},
    {"type", "", kTypes},
    {"baseType", "", kTypes},
    {"pointer", "", "baseType"},
    {"array", "", "dimension baseType"},
    {"dimension", "lower upper", ""},
    {"derived", "name", ""},
    {"enum", "", "values baseType"},
    {"values", "", "value"},
    {"values/value", "name value", ""},
    {"struct", "", "variable addData !documentation"},
    {"subrangeSigned", "", "range baseType"},
    {"subrangeUnsigned", "", "range baseType"},
    {"range", "lower upper", ""},
    {"string", "length", ""},
    {"wstring", "length", ""},
    {"STRING", "length", ""},
    {"WSTRING", "length", ""},

    // IEC 61131-10, where it differs.
    {"iec:GlobalNamespace", "", kNamespace},
    {"iec:NamespaceDecl", "name", kNamespace},
    {"iec:Program", "name -globalId", kIecUnit},
    {"iec:FunctionBlock", "name -globalId", kIecUnit},
    {"iec:Function", "name -globalId", kIecUnit},
    {"iec:Parameters", "", "inputVars outputVars inOutVars"},
    {"iec:Address", "address", "addData !documentation"},
    {"iec:TypeName", "", "#"},
    {"iec:InstantlyDefinedType", "", "baseType iec:DimensionSpec addData"},
    {"iec:UserDefinedTypeSpec", "",
     "variable baseType iec:DimensionSpec iec:Enumerator addData !documentation"},
    {"iec:UserDefinedTypeSpec/baseType", "", "iec:TypeName iec:InstantlyDefinedType #"},
    {"iec:DimensionSpec", "-dimensionNumber", "iec:IndexRange"},
    {"iec:IndexRange", "lower upper", ""},
    {"iec:Enumerator", "name value", "!documentation"},
    {"iec:MainBody", "", "iec:BodyContent addData !documentation"},
    {"iec:Action", "name -globalId", "iec:Body addData !documentation"},
    {"iec:Body", "", "iec:BodyContent addData !documentation"},
    {"iec:BodyContent", "-name", "*"},
    {"iec:ProgramInstance", "name typeName associatedTaskName -globalId", "addData documentation"},

    {"initialValue", "", kValues},
    {"simpleValue", "value", ""},
    {"arrayValue", "", "value"},
    {"structValue", "", "value"},
    {"arrayValue/value", "repetitionValue", kValues},
    {"structValue/value", "member", kValues},

    {"actions", "", "action"},
    {"actions/action", "name -globalId", "body addData !documentation"},
    {"transitions", "", "transition"},
    {"transitions/transition", "name -globalId", "body addData !documentation"},
    {"body", "-WorksheetName -globalId", kLanguages},
    {"ST", "", "*"},
    {"IL", "", "*"},
    {"FBD", "", kDrawing},
    {"LD", "", kDrawing},
    {"SFC", "", kDrawing},
    {"block", "typeName -instanceName", "-inputVariables -inOutVariables -outputVariables", true},
    {"label", "label", "", true},
    {"jump", "label", "", true},
    {"inVariable", "", "expression", true},
    {"outVariable", "", "expression", true},
    {"inOutVariable", "", "expression", true},
    {"expression", "", "#"},
    {"contact", "", "-variable", true},
    {"coil", "", "-variable", true},
    {"leftPowerRail", "", "", true},
    {"rightPowerRail", "", "", true},
    {"return", "", "", true},
    {"comment", "", "-content", true},
    {"connector", "-name", "", true},
    {"continuation", "-name", "", true},
    {"step", "-name -initialStep", "-connectionPointOutAction", true},
    {"macroStep", "-name", "body", true},
    {"jumpStep", "-targetName", "", true},
    {"transition", "-name -priority", "condition", true},
    {"condition", "-negated", "-reference -connectionPointIn -connection inline"},
    {"inline", "-name", kLanguages},
    {"selectionDivergence", "", "", true},
    {"selectionConvergence", "", "", true},
    {"simultaneousDivergence", "-name", "", true},
    {"simultaneousConvergence", "", "", true},
    {"actionBlock", "", "action", true},
    {"actionBlock/action", "-qualifier -duration -indicator -name", "-reference inline", true},

    {"instances", "", "configurations configuration"},
    {"configurations", "", "configuration"},
    {"configuration", "name -globalId",
     "resource globalVars accessVars configVars addData documentation"},
    {"resource", "name -globalId -resourceTypeName",
     "task globalVars pouInstance iec:ProgramInstance addData documentation"},
    {"task", "name single interval priority -globalId", "pouInstance addData documentation"},
    {"pouInstance", "name typeName type -globalId", "addData documentation"},

    {"addData", "", "data"},
    {"data", "name handleUnknown", "*"},
    {"documentation", "", "*"},
};

Verdict Look(string_view words, string_view wanted) {
    while (!words.empty()) {
        const string_view word = words.substr(0, words.find(' '));
        words.remove_prefix(std::min(word.size() + 1, words.size()));
        if (word == wanted || word == "*") {
            return Verdict::kRead;
        }
        const bool marked = word.starts_with('-') || word.starts_with('!');
        if (marked && word.substr(1) == wanted) {
            return word.starts_with('-') ? Verdict::kSkip : Verdict::kNotKept;
        }
    }
    return Verdict::kUnknown;
}

Verdict LookInRow(const Row* row, string_view Row::*words, string_view wanted) {
    if (!row) {
        return Verdict::kUnknown;
    }
    const Verdict verdict = Look(row->*words, wanted);
    return verdict == Verdict::kUnknown && row->drawn ? Look(kDrawn.*words, wanted) : verdict;
}

bool IsOpaque(const Element& element) {
    return element.kind->row && element.kind->row->children == "*";
}

}  // namespace

const Row* FindRow(const Kind* parent, string_view name) {
    static const auto rows = [] {
        std::unordered_map<string_view, const Row*> map;
        for (const Row& row : kRows) {
            map.emplace(row.element, &row);
        }
        return map;
    }();
    if (parent) {
        const auto exact = rows.find(parent->name + "/" + std::string(name));
        if (exact != rows.end()) {
            return exact->second;
        }
    }
    const auto row = rows.find(name);
    return row != rows.end() ? row->second : nullptr;
}

Verdict JudgeChild(const Row* parent, string_view name) {
    return LookInRow(parent, &Row::children, name);
}

Verdict JudgeAttribute(const Row* row, string_view name) {
    const bool ofXml = name.starts_with("{http://www.w3.org/");
    return ofXml ? Verdict::kSkip : LookInRow(row, &Row::attributes, name);
}

Verdict JudgeElement(Context& context, const Element& element) {
    const Verdict verdict = element.kind->verdict;
    if (verdict == Verdict::kUnknown || verdict == Verdict::kNotKept) {
        const bool isUnknown = verdict == Verdict::kUnknown;
        const char* format =
            isUnknown ? Message("<{}> in <{}> is not known and was left out")
                      : Message("<{}> in <{}> has no place in the project and was left out");
        context.Warn(element, isUnknown ? kUnknownElement : kNotKept,
                     Say(format, element.Name(), element.parent->Name()));
    }
    return verdict;
}

void JudgeAttributes(Context& context, const Element& element) {
    for (const Element::Setting& setting : element.attributes) {
        if (setting.kind->verdict == Verdict::kUnknown) {
            context.Warn(element, kUnknownAttribute,
                         Say("attribute '{}' of <{}> is not known and was left out",
                             setting.kind->name, element.Name()));
        }
    }
}

void JudgeData(Context& context, const Element& data) {
    if (data.Attribute("handleUnknown") != "discard") {
        context.Warn(data, kNotKept,
                     Say("additional data '{}' is not read", data.Attribute("name")));
    }
}

void ReportText(Context& context, const Element& text) {
    context.Warn(text, kUnknownText,
                 Say("text in <{}> is not known and was left out", text.parent->Name()));
}

void JudgeTree(Context& context, const Element& element) {
    JudgeAttributes(context, element);
    if (element.Name() == "data") {
        JudgeData(context, element);
    }
    if (IsOpaque(element)) {
        return;
    }
    for (const auto& child : element.children) {
        if (!child->IsText()) {
            if (JudgeElement(context, *child) == Verdict::kRead) {
                JudgeTree(context, *child);
            }
        } else if (JudgeChild(element.kind->row, "#") != Verdict::kRead) {
            ReportText(context, *child);
        }
    }
}

}  // namespace lq::host::plcopen
