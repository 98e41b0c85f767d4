// Reading the records of POU interfaces without buffers: what the attribute functions say, typed.
//
//   for (const lq::Declaration decl : lq::Declarations(header)) {
//       Show(decl.Name(), decl.TypeText(), decl.InitialValue());
//   }
//
// A view holds the address of its record and nothing else, allocates nothing and may be copied. A
// null record reads as one without texts, numbers and elements. The text that a view gives is the
// record's own, of any length, and ends in a terminator behind its last character: it stays valid
// until that attribute is set, or the record or one above it is destroyed.
//
// A range walks a list without moving the list's position; it ends where the list does, also when
// it grows meanwhile. Removing the element that an iterator is at ends that iterator's validity.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "lq_data/containers.h"
#include "lq_data/export.h"
#include "lq_data/pouh.h"

namespace lq::pouh {

// What the views read with. A text is never null: a missing text, attribute or record reads as the
// empty text.
LQ_DATA_API const char16_t* TextOf(const POUH_COMMENT_TYP* record, POUH_ATTRIBUTE_FLAG flag);
// A text of a unit's info record.
LQ_DATA_API const char16_t* TextOf(const POUH_INFO_TYP* record, POUH_ATTRIBUTE_FLAG flag);
// A text of a declaration.
LQ_DATA_API const char16_t* TextOf(const DECL_TYP* record, POUH_ATTRIBUTE_FLAG flag);
// A text of the type of an instance.
LQ_DATA_API const char16_t* TextOf(const FBINST_SPEC_TYP* record, POUH_ATTRIBUTE_FLAG flag);
// A text of a task.
LQ_DATA_API const char16_t* TextOf(const TASK_INFO_TYP* record, POUH_ATTRIBUTE_FLAG flag);

// What a declaration says about its type, whichever specification it has. The type kind is 0
// without a type record; the type text of a subrange is its first text.
LQ_DATA_API uint32_t TypeKindOf(const DECL_TYP* decl);
// The type text; of a subrange its first text.
LQ_DATA_API const char16_t* TypeTextOf(const DECL_TYP* decl);
// The range of a subrange, else the empty text.
LQ_DATA_API const char16_t* RangeOf(const DECL_TYP* decl);
// The initial value.
LQ_DATA_API const char16_t* InitValueOf(const DECL_TYP* decl);
// The comments of the specification record, POUH_COMMENT or POUH_COMMENT2.
LQ_DATA_API const char16_t* CommentOf(const DECL_TYP* decl, POUH_ATTRIBUTE_FLAG flag);

// The list of a list record, or of a header's declaration list record; null when there is none.
LQ_DATA_API FLIST* ListOf(const SYMBOL_TABLE_TYP* record);
// The declarations of a declaration list.
LQ_DATA_API FLIST* ListOf(const POUH_DECL_LIST_TYP* record);
// The names of tasks.
LQ_DATA_API FLIST* ListOf(const TASK_LIST_TYP* record);
// The names of a task's units.
LQ_DATA_API FLIST* ListOf(const TASK_POU_LIST_TYP* record);
// The declarations of a header.
LQ_DATA_API FLIST* ListOf(const POU_HEADER_TYP* record);

// The section keyword of a scope; the empty text when it has none.
LQ_DATA_API const char16_t* KeywordOfScope(uint32_t scope);

}  // namespace lq::pouh

namespace lq {

// A declaration: one variable of a section.
class Declaration {
  public:
    Declaration(const DECL_TYP* record) : record_(record) {}

    const DECL_TYP* Record() const { return record_; }

    std::u16string_view Name() const { return pouh::TextOf(record_, POUH_NAME); }
    std::u16string_view Address() const { return pouh::TextOf(record_, POUH_ADDRESS); }
    DECL_SCOPE Scope() const { return static_cast<DECL_SCOPE>(Number(POUH_SCOPE)); }
    // The keyword of the scope, as in "VAR_INPUT"; empty for an unknown one.
    std::u16string_view Section() const { return pouh::KeywordOfScope(Number(POUH_SCOPE)); }

    // DT_ELEMENTARY to DT_FB_INSTANCE; 0 without a type.
    POUH_TYPE_KIND TypeKind() const {
        return static_cast<POUH_TYPE_KIND>(pouh::TypeKindOf(record_));
    }
    // As written; of a subrange without its bounds.
    std::u16string_view TypeText() const { return pouh::TypeTextOf(record_); }
    // The bounds of a subrange; empty for any other kind.
    std::u16string_view Range() const { return pouh::RangeOf(record_); }
    std::u16string_view InitialValue() const { return pouh::InitValueOf(record_); }
    std::u16string_view Comment() const { return pouh::CommentOf(record_, POUH_COMMENT); }
    std::u16string_view SecondComment() const { return pouh::CommentOf(record_, POUH_COMMENT2); }

    // POUH_DECL_MARK.
    bool IsMarked() const { return (Number(POUH_DECLFLAGS) & POUH_DECL_MARK) != 0; }
    uint16_t Flags() const { return static_cast<uint16_t>(Number(POUH_DECLFLAGS)); }
    uint16_t Word() const { return static_cast<uint16_t>(Number(POUH_DECLWORD)); }

  private:
    uint32_t Number(POUH_ATTRIBUTE_FLAG flag) const {
        uint32_t value = 0;
        GetAttrOfDecl(record_, flag, &value);
        return value;
    }

    const DECL_TYP* record_;
};

// The elements of a list as objects that are made of where they lie. `Element` has a static From
// that takes the slot.
template <typename Element>
class ListRange {
  public:
    class Iterator {
      public:
        using iterator_category = std::input_iterator_tag;
        using value_type = typename Element::Value;
        using difference_type = std::ptrdiff_t;
        using pointer = const value_type*;
        using reference = value_type;

        Iterator() = default;
        Iterator(const FLIST* list, void* slot) : list_(list), slot_(slot) {}

        value_type operator*() const { return Element::From(slot_); }
        Iterator& operator++() {
            slot_ = list_->SlotBehind(slot_);
            return *this;
        }
        Iterator operator++(int) {
            Iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const Iterator& other) const { return slot_ == other.slot_; }

      private:
        const FLIST* list_ = nullptr;
        void* slot_ = nullptr;
    };

    explicit ListRange(FLIST* list) : list_(list) {}

    FLIST* List() const { return list_; }
    std::size_t size() const { return CardinalityOfList(list_); }
    bool empty() const { return size() == 0; }
    Iterator begin() const { return {list_, list_ ? list_->SlotBehind(nullptr) : nullptr}; }
    Iterator end() const { return {list_, nullptr}; }

  private:
    FLIST* list_;
};

struct DeclarationElement {
    using Value = Declaration;
    static Value From(void* slot) { return *static_cast<DECL_TYP**>(slot); }
};
struct NameElement {
    using Value = std::u16string_view;
    static Value From(void* slot) {
        const char16_t* const text = *static_cast<const char16_t**>(slot);
        return text ? text : u"";
    }
};
using DeclarationRange = ListRange<DeclarationElement>;
using NameRange = ListRange<NameElement>;

// The declarations of a unit's header, of a list record, of a symbol table, or of a list itself.
inline DeclarationRange Declarations(const POU_HEADER_TYP* header) {
    return DeclarationRange(pouh::ListOf(header));
}
inline DeclarationRange Declarations(const POUH_DECL_LIST_TYP* record) {
    return DeclarationRange(pouh::ListOf(record));
}
inline DeclarationRange Declarations(const SYMBOL_TABLE_TYP* record) {
    return DeclarationRange(pouh::ListOf(record));
}
inline DeclarationRange Declarations(FLIST* list) {
    return DeclarationRange(list);
}

// The names of a project's tasks, and of the units of a task.
inline NameRange Names(const TASK_LIST_TYP* record) {
    return NameRange(pouh::ListOf(record));
}
inline NameRange Names(const TASK_POU_LIST_TYP* record) {
    return NameRange(pouh::ListOf(record));
}

// The header of a unit.
class Header {
  public:
    Header(const POU_HEADER_TYP* record) : record_(record) {
        GetAttrOfPOUHeader(record, POUH_INFO, &info_);
    }

    const POU_HEADER_TYP* Record() const { return record_; }

    std::u16string_view Name() const { return pouh::TextOf(info_, POUH_NAME); }
    POUH_POU_TYPE Kind() const { return static_cast<POUH_POU_TYPE>(Number(POUH_POUTYPE)); }
    uint32_t Flag() const { return Number(POUH_HEADERFLAG); }
    std::u16string_view Comment() const { return Remark(POUH_COMMENT); }
    // The unit's own comment, beside that of its header.
    std::u16string_view UnitComment() const { return Remark(POUH_POUCOMMENT); }
    DeclarationRange Declarations() const { return lq::Declarations(record_); }

  private:
    uint32_t Number(POUH_ATTRIBUTE_FLAG flag) const {
        uint32_t value = 0;
        GetAttrOfPOUHInfo(info_, flag, &value);
        return value;
    }
    std::u16string_view Remark(POUH_ATTRIBUTE_FLAG flag) const {
        const POUH_COMMENT_TYP* comment = nullptr;
        GetAttrOfPOUHInfo(info_, flag, &comment);
        return pouh::TextOf(comment, POUH_REMARK);
    }

    const POU_HEADER_TYP* record_;
    const POUH_INFO_TYP* info_ = nullptr;
};

// A task of the project.
class Task {
  public:
    Task(const TASK_TYP* record) {
        GetAttrOfTask(record, POUH_TASKINFO, &info_);
        GetAttrOfTask(record, POUH_TASKPOUS, &units_);
    }

    std::u16string_view Name() const { return pouh::TextOf(info_, POUH_NAME); }
    std::u16string_view Event() const { return pouh::TextOf(info_, POUH_EVENT); }
    std::u16string_view Interval() const { return pouh::TextOf(info_, POUH_INTERVAL); }
    std::u16string_view Priority() const { return pouh::TextOf(info_, POUH_PRIORITY); }
    std::u16string_view Comment() const { return pouh::TextOf(info_, POUH_COMMENT); }
    NameRange Units() const { return Names(units_); }

  private:
    const TASK_INFO_TYP* info_ = nullptr;
    const TASK_POU_LIST_TYP* units_ = nullptr;
};

}  // namespace lq
