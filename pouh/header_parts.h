// A POU's header whose declarations are loaded in parts: the records of a declaration take several
// times the memory of what most callers keep of it.
#pragma once

#include <cstdint>

#include "lq_data/export.h"
#include "lq_data/pouh.h"

namespace lq::pouh {

class LQ_DATA_API HeaderParts {
  public:
    HeaderParts() = default;
    ~HeaderParts();
    HeaderParts(const HeaderParts&) = delete;
    HeaderParts& operator=(const HeaderParts&) = delete;

    // Fills `header`, which must outlive this, as LoadPOUHeader does from the object manager, but
    // for its declarations: its list is empty. Once. 1; 0 as LoadPOUHeader, too.
    int Open(POU_HEADER_TYP* header, ID id);
    // Destroys the declarations of the header's list and loads the next ones, at most `most`, in
    // the order of LoadPOUHeader. 0 when memory is short, else 1, also behind the last. The model
    // must be as it was when the header was opened.
    int LoadNext(uint32_t most);
    bool AtEnd() const { return next_ == count_; }

    // Which declaration of the model the n-th one of the part is, counted from 0 in the selection
    // of the POU's header or the data type; -1 for one that the POU has without declaring it.
    int32_t SourceOf(uint32_t n) const {
        const uint32_t place = order_[first_ + n];
        return place < implicitCount_ ? -1 : static_cast<int32_t>(place - implicitCount_);
    }

  private:
    static constexpr uint32_t kMaxImplicit = 3;  // the result, EN and ENO

    LQ_DATA_LOCAL bool TakeImplicit(LQPOU& pou);
    LQ_DATA_LOCAL bool Sort(bool byScope);
    LQ_DATA_LOCAL unsigned GroupAt(uint32_t place, bool byScope) const;
    LQ_DATA_LOCAL DECL_TYP* DeclarationAt(uint32_t place);

    POU_HEADER_TYP* header_ = nullptr;
    LQOBJECT* owner_ = nullptr;  // of the declarations
    // The places of the declarations, which are those of the implicit ones and, behind them, those
    // of the selection.
    uint32_t* order_ = nullptr;
    uint32_t count_ = 0;
    uint32_t first_ = 0;  // of the part
    uint32_t next_ = 0;   // behind the part
    DECL_TYP* implicit_[kMaxImplicit] = {};
    uint32_t implicitCount_ = 0;
};

}  // namespace lq::pouh
