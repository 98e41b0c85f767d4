// The lines of a name.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "lq_data/cgtab.h"
#include "tools/lq/suggestion.h"
#include "tools/lq/table_rows.h"

namespace lq::tool {

class NameSearch {
  public:
    // A name matches whatever its case. "A.B" is the component B of the unit A, beside what is
    // called so as a whole. Throws CommandError when it is no text.
    explicit NameSearch(const std::string& name);

    // Calls `take` after each line of that name. Components name their units then. The damaged line
    // at which the search stopped; only lines that may have the name are looked at closely.
    std::optional<int32_t> Run(CgTab& tables, CgTab::TAB_ID id, RowReader& reader,
                               const std::function<void()>& take) const;

  private:
    bool MayHave(CgTab::TAB_ID id, std::string_view nameBytes) const;
    bool Has(CgTab::TAB_ID id, const RowReader& reader) const;

    std::u16string whole_;
    bool isOfUnit_ = false;  // there is a point
    std::u16string unit_;
    std::u16string component_;
};

// Considers all names that a search in the table would find.
void SuggestNames(CgTab::TAB_ID id, RowReader& reader, Suggestion& suggestion);

}  // namespace lq::tool
