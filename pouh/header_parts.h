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
    // What the model declares in the header; null when it has no list of that.
    const LQSELECTION* Declarations() const;
    // Destroys the declarations of the header's list and loads the next ones, at most `most`, in
    // the order of LoadPOUHeader. 0 when memory is short, else 1, also behind the last. The model
    // must be as it was when the header was opened.
    int LoadNext(uint32_t most);
    // True behind the last part; there is one of a header without declarations, too.
    bool AtEnd() const { return isBegun_ && next_ == count_; }

  private:
    static constexpr uint32_t kMaxImplicit = 3;  // the result, EN and ENO

    LQ_DATA_LOCAL uint32_t DeclaredCount() const;
    LQ_DATA_LOCAL bool TakeImplicit();
    LQ_DATA_LOCAL bool Sort();
    LQ_DATA_LOCAL unsigned GroupAt(uint32_t place) const;
    LQ_DATA_LOCAL DECL_TYP* DeclarationAt(uint32_t place);

    POU_HEADER_TYP* header_ = nullptr;
    LQPOU* pou_ = nullptr;       // null of a data type, whose order is the model's
    LQOBJECT* owner_ = nullptr;  // of the declarations
    bool isBegun_ = false;
    // The places of the declarations, which are those of the implicit ones and, behind them, those
    // of the selection. Not made when all come at once.
    uint32_t* order_ = nullptr;
    uint32_t count_ = 0;
    uint32_t next_ = 0;  // behind the part
    DECL_TYP* implicit_[kMaxImplicit] = {};
    uint32_t implicitCount_ = 0;
};

}  // namespace lq::pouh
