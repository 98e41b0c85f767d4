#include "pouh/header_parts.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <numeric>
#include <utility>

#include "lq_data/env/lq_model.h"
#include "lq_data/memory.h"
#include "pouh/declarations.h"
#include "pouh/record_lists.h"
#include "pouh/record_types.h"

namespace lq::pouh {

namespace {

constexpr unsigned kNoGroup = kScopeGroups;  // of an identifier without an object

LQOBJECT* ObjectAt(LQOBJECT& owner, uint32_t index) {
    LQDECLMAN* const manager = LQDECLMAN::Get();
    return manager ? manager->Get(owner.GetSelection()->GetID(static_cast<int32_t>(index)))
                   : nullptr;
}

}  // namespace

HeaderParts::~HeaderParts() {
    std::for_each(implicit_, implicit_ + implicitCount_, DestroyDecl);
    lq::Release(order_);
}

int HeaderParts::Open(POU_HEADER_TYP* header, ID id) {
    LQNAVIOBJECTMAN* const manager = LQNAVIOBJECTMAN::Get();
    LQNAVIOBJECT* const object = header && id != ID() && manager ? manager->Get(id) : nullptr;
    if (!object) {
        return 0;
    }
    header_ = header;
    const HeaderSource source = OpenHeader(*header, *object);
    pou_ = source.pou;
    owner_ = source.owner;
    return owner_ ? 1 : 0;
}

const LQSELECTION* HeaderParts::Declarations() const {
    return owner_->GetSelection();
}

uint32_t HeaderParts::DeclaredCount() const {
    const LQSELECTION* const selection = Declarations();
    return static_cast<uint32_t>(selection ? std::max(selection->GetCount(), 0) : 0);
}

// Loads the implicit declarations, which stay here until their parts are loaded.
bool HeaderParts::TakeImplicit() {
    FLIST* const list = header_->declList->list;
    const bool isWhole = !pou_ || PrependUndeclared(list, *pou_);
    void* slot = nullptr;
    while (ListGet(list, slot, nullptr, LC_FIRST, 0) != 0) {
        implicit_[implicitCount_++] = *static_cast<DECL_TYP**>(slot);
        RemoveElementOfList(list, nullptr, nullptr, LC_FIRST, 0);
    }
    return isWhole;
}

unsigned HeaderParts::GroupAt(uint32_t place) const {
    if (place < implicitCount_) {
        return GroupOf(implicit_[place]->scope);
    }
    const std::unique_ptr<LQOBJECT> object(ObjectAt(*owner_, place - implicitCount_));
    return !object ? kNoGroup : pou_ ? GroupOf(ScopeOf(*object)) : 0;
}

// Puts the places into order by counting those of each group.
bool HeaderParts::Sort() {
    const MemoryWatch watch;
    const uint32_t places = implicitCount_ + DeclaredCount();
    order_ = lq::AllocateArray<uint32_t>(places);
    auto* const groups = lq::AllocateArray<uint8_t>(places);
    uint32_t starts[kNoGroup + 2] = {};
    for (uint32_t place = 0; place < places && !watch.WasShort(); ++place) {
        groups[place] = static_cast<uint8_t>(GroupAt(place));
        ++starts[groups[place] + 1];
    }
    const bool isWhole = !watch.WasShort();
    if (isWhole) {
        std::partial_sum(starts, std::end(starts), starts);
        count_ = starts[kNoGroup];
        for (uint32_t place = 0; place < places; ++place) {
            order_[starts[groups[place]]++] = place;
        }
    }
    lq::Release(groups);
    return isWhole;
}

// A new record, or null when memory is short or the model has lost the object.
DECL_TYP* HeaderParts::DeclarationAt(uint32_t place) {
    if (place < implicitCount_) {
        return std::exchange(implicit_[place], nullptr);
    }
    const uint32_t index = place - implicitCount_;
    const std::unique_ptr<LQOBJECT> object(ObjectAt(*owner_, index));
    DECL_TYP* const decl = object ? ConvertDeclaration(*object, false) : nullptr;
    if (decl) {
        decl->place = index + 1;
    }
    return decl;
}

int HeaderParts::LoadNext(uint32_t most) {
    if (!isBegun_) {
        isBegun_ = true;
        if (most >= kMaxImplicit && DeclaredCount() <= most - kMaxImplicit) {
            return LoadWhole(*header_, {pou_, owner_}) ? 1 : 0;
        }
        if (!TakeImplicit() || !Sort()) {
            return 0;
        }
    }
    if (!RenewDeclarations(*header_)) {
        return 0;
    }
    for (const uint32_t first = next_; next_ != count_ && next_ - first < most; ++next_) {
        if (!AddDecl(header_->declList->list, DeclarationAt(order_[next_]), LC_LAST)) {
            return 0;
        }
    }
    return 1;
}

}  // namespace lq::pouh
