#include "lq_data/host/symbols/symbols.h"

#include <algorithm>
#include <string>
#include <vector>

#include "host/symbols/address.h"
#include "host/symbols/configured.h"
#include "host/symbols/expansion.h"
#include "lq_data/detail/chars.h"

namespace lq::host {

namespace {

using Order = SymbolOptions::Order;
using std::u16string_view;

class Walk {
  public:
    Walk(const Project& project, const SymbolOptions& options, const TakeSymbol& take)
        : project_(project),
          options_(options),
          take_(take),
          expansion_(project, configured_, options.located, take) {
        if (options.expand) {
            configured_.Read();
        }
        for (const Resource& resource : project.Resources()) {
            resourcePaths_.push_back(PathOfResource(resource));
        }
    }

    void Run();

  private:
    std::u16string PathOfResource(const Resource& resource) const {
        const std::u16string configuration(project_.NameOf(resource.configuration));
        return configuration + (configuration.empty() || !*resource.name ? u"" : u".") +
               resource.name;
    }

    ID HolderOf(const Declaration& declaration) const {
        return symbols::HolderOf(project_, declaration);
    }
    u16string_view AddressOf(const Declaration& declaration) const;
    Text PathOf(const Declaration& declaration) const;
    bool IsWanted(uint32_t index) const;
    int Compare(const Declaration& a, const Declaration& b) const;
    void Tell(uint32_t index);

    const Project& project_;
    const SymbolOptions& options_;
    const TakeSymbol& take_;
    symbols::ConfiguredAddresses configured_{project_};
    symbols::Expansion expansion_;
    std::vector<std::u16string> resourcePaths_;
    Section section_;  // whose text is at hand
    std::u16string sectionText_ = WrittenSection({});
};

// The one to sort by.
u16string_view Walk::AddressOf(const Declaration& declaration) const {
    return configured_.InPlaceOf(declaration.address, HolderOf(declaration), declaration.name);
}

Text Walk::PathOf(const Declaration& declaration) const {
    const ID holder = HolderOf(declaration);
    return SortOf(holder) == Sort::kResource ? resourcePaths_[IndexOf(holder)].c_str()
                                             : project_.NameOf(holder);
}

bool Walk::IsWanted(uint32_t index) const {
    const Declaration& declaration = project_.Declarations()[index];
    const ID holder = HolderOf(declaration);
    const Pou* pou = project_.GetPou(holder);
    const SourceFile* file = project_.FileOf(MakeId(Sort::kDeclaration, index));
    return declaration.owner != ID() && SortOf(holder) != Sort::kDataType &&
           !(pou && pou->isStandard) && !(file && file->isLibrary) &&
           (options_.unit == ID() || options_.unit == holder) &&
           (!options_.located || options_.expand || *declaration.address);
}

int Walk::Compare(const Declaration& a, const Declaration& b) const {
    if (options_.order == Order::kAddress) {
        return symbols::CompareAddresses(AddressOf(a), AddressOf(b));
    }
    const int order = chars::CompareNoCase(a.name, b.name);
    return order != 0 ? order : chars::CompareNoCase(PathOf(a), PathOf(b));
}

void Walk::Tell(uint32_t index) {
    const Declaration& declaration = project_.Declarations()[index];
    if (section_ != declaration.section) {
        section_ = declaration.section;
        sectionText_ = WrittenSection(section_);
    }
    const ID id = MakeId(Sort::kDeclaration, index);
    const SourceFile* file = project_.FileOf(id);
    Symbol symbol;
    symbol.declaration = id;
    symbol.path = PathOf(declaration);
    symbol.name = declaration.name;
    symbol.section = sectionText_;
    symbol.type = declaration.type;
    const bool isAccess = section_.scope == Scope::kAccess;
    symbol.address = isAccess ? declaration.comment2 : declaration.address;
    symbol.initial = declaration.initValue;
    symbol.comment = declaration.comment;
    symbol.file = file ? file->name : u"";
    symbol.line = declaration.line;
    symbol.column = declaration.column;
    if (options_.expand) {
        expansion_.Run(symbol, HolderOf(declaration), section_.scope);
    } else {
        take_(symbol);
    }
}

void Walk::Run() {
    const auto count = static_cast<uint32_t>(project_.Declarations().size());
    std::vector<uint32_t> order;
    for (uint32_t index = 0; index < count; ++index) {
        if (!IsWanted(index)) {
            continue;
        }
        if (options_.order == Order::kProject) {
            Tell(index);
        } else {
            order.push_back(index);
        }
    }
    std::ranges::sort(order, [this](uint32_t a, uint32_t b) {
        const auto& all = project_.Declarations();
        const int compared = Compare(all[a], all[b]);
        return compared != 0 ? compared < 0 : a < b;
    });
    for (const uint32_t index : order) {
        Tell(index);
    }
}

}  // namespace

void ForEachSymbol(const Project& project, const SymbolOptions& options, const TakeSymbol& take) {
    Walk(project, options, take).Run();
}

}  // namespace lq::host
