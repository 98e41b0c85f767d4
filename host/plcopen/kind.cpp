#include "host/plcopen/kind.h"

#include <algorithm>
#include <iterator>

#include "host/plcopen/schema.h"

namespace lq::host::plcopen {

namespace {

constexpr std::string_view kPlcopen = "http://www.plcopen.org/xml/tc6";
constexpr std::string_view kXhtml = "http://www.w3.org/1999/xhtml";
constexpr std::string_view kIec = "www.iec.ch/public/TC65SC65BWG7TF10";
constexpr std::size_t kRoom = 64;  // searched one by one

// The elements of IEC 61131-10 that hold what one of the PLCopen namespaces does.
constexpr struct {
    std::string_view iec;
    std::string_view plcopen;
} kSameElements[] = {
    {"AddData", "addData"},
    {"ArrayValue", "arrayValue"},
    {"BaseType", "baseType"},
    {"Configuration", "configuration"},
    {"ContentHeader", "contentHeader"},
    {"CoordinateInfo", "coordinateInfo"},
    {"Data", "data"},
    {"DataTypeDecl", "dataType"},
    {"Documentation", "documentation"},
    {"ExternalVars", "externalVars"},
    {"FileHeader", "fileHeader"},
    {"GlobalVars", "globalVars"},
    {"InitialValue", "initialValue"},
    {"InoutVars", "inOutVars"},
    {"InputVars", "inputVars"},
    {"Instances", "instances"},
    {"Member", "variable"},
    {"OutputVars", "outputVars"},
    {"Project", "project"},
    {"Resource", "resource"},
    {"ResultType", "returnType"},
    {"SimpleValue", "simpleValue"},
    {"StructValue", "structValue"},
    {"Task", "task"},
    {"TempVars", "tempVars"},
    {"Type", "type"},
    {"Types", "types"},
    {"Value", "value"},
    {"Variable", "variable"},
    {"Vars", "localVars"},
};

std::string NameOfIec(std::string_view local) {
    const auto row = std::ranges::find(kSameElements, local, [](const auto& r) { return r.iec; });
    return row == std::end(kSameElements) ? "iec:" + std::string(local) : std::string(row->plcopen);
}

std::string NameOf(std::string_view expatName) {
    const std::size_t end = expatName.find(kNamespaceEnd);
    if (end == expatName.npos) {
        return "{}" + std::string(expatName);
    }
    const std::string_view space = expatName.substr(0, end);
    std::string local(expatName.substr(end + 1));
    if (space.starts_with(kPlcopen)) {
        return local;
    }
    if (space == kIec) {
        return NameOfIec(local);
    }
    return (space == kXhtml ? "xhtml:" : "{" + std::string(space) + "}") + local;
}

std::string AttributeNameOf(std::string_view expatName) {
    return expatName.find(kNamespaceEnd) == expatName.npos ? std::string(expatName)
                                                           : NameOf(expatName);
}

template <typename Item>
Item* Find(const std::vector<std::unique_ptr<Item>>& items, std::string_view expatName) {
    for (const auto& item : items) {
        if (item->source == expatName) {
            return item.get();
        }
    }
    return nullptr;
}

}  // namespace

const Kind kTextKind;

Kind::Kind(const Kind* parent, std::string_view expatName)
    : source(expatName), name(NameOf(expatName)), row(FindRow(parent, name)) {
    if (parent) {
        verdict = JudgeChild(parent->row, name);
    }
}

Kind& Kind::Below(std::string_view expatName, std::unique_ptr<Kind>& own) {
    if (Kind* known = Find(below_, expatName)) {
        return *known;
    }
    auto kind = std::make_unique<Kind>(this, expatName);
    auto& place = below_.size() < kRoom ? below_.emplace_back() : own;
    place = std::move(kind);
    return *place;
}

const AttributeKind& Kind::Attribute(std::string_view expatName,
                                     std::unique_ptr<AttributeKinds>& own) {
    if (const AttributeKind* known = Find(attributes_, expatName)) {
        return *known;
    }
    auto kind = std::make_unique<AttributeKind>();
    kind->source = expatName;
    kind->name = AttributeNameOf(expatName);
    kind->verdict = JudgeAttribute(row, kind->name);
    if (attributes_.size() < kRoom) {
        return *attributes_.emplace_back(std::move(kind));
    }
    if (!own) {
        own = std::make_unique<AttributeKinds>();
    }
    return *own->emplace_back(std::move(kind));
}

}  // namespace lq::host::plcopen
