// Initial values of structure members: "a := 1, b := 16#FF".
//
// A comma ends a value only when an identifier follows, so that an array value keeps its commas.

#include "lq_data/detail/chars.h"
#include "lq_data/env/lq_base.h"
#include "lq_data/env/lq_model.h"
#include "lq_data/pouh.h"
#include "pouh/check_scan.h"

struct DUVMemberInit_C::Entry {
    CLQString member;
    CLQString value;
    Entry* next = nullptr;
};

namespace {

using lq::pouh::CheckScan;

enum class ValueEnd {
    kNextMember,  // the assignment is complete and another one begins
    kText,        // the assignment is complete when it has a value
    kDropped,     // a comma ended the text
    kNoMemory,
};

// Reads a value up to its end. `token` becomes the next member's identifier, if one follows.
ValueEnd ReadValue(CheckScan& scan, CLQString& value, Token& token) {
    value.Empty();
    for (token = scan.Next(); token.kind != TK_EOF; token = scan.Next()) {
        if (token.IsOperator(OP_COMMA)) {
            token = scan.Next();
            if (token.kind == TK_IDENTIFIER) {
                return ValueEnd::kNextMember;
            }
            if (token.kind == TK_EOF) {
                return ValueEnd::kDropped;
            }
            value += u",";
            if (value.HasFailed()) {
                return ValueEnd::kNoMemory;
            }
        }
        const char16_t* text = scan.WholeText(token);
        value += text;
        if (!text || value.HasFailed()) {
            return ValueEnd::kNoMemory;
        }
    }
    return ValueEnd::kText;
}

bool IsTrimmed(char16_t c) {
    return c == u' ' || c == u'\t';
}

}  // namespace

DUVMemberInit_C::DUVMemberInit_C(const char16_t* text) {
    if (!text || !*text) {
        return;
    }
    CheckScan scan(text);
    if (!scan.IsOpen()) {
        return;
    }
    CLQString member;
    CLQString value;
    Token token = scan.Next();
    while (token.kind == TK_IDENTIFIER) {
        const char16_t* name = scan.WholeText(token);
        member = name;
        if (!name || member.HasFailed() || !scan.Next().IsOperator(OP_ASSIGN)) {
            return;
        }
        const ValueEnd end = ReadValue(scan, value, token);
        const bool isComplete =
            end == ValueEnd::kNextMember || (end == ValueEnd::kText && !value.IsEmpty());
        if (!isComplete || !AppendOverloadInit(member, value)) {
            return;
        }
    }
}

DUVMemberInit_C::~DUVMemberInit_C() {
    while (head_) {
        Entry* next = head_->next;
        lq::Delete(head_);
        head_ = next;
    }
}

// The model's check is asked about the value, as about every other initial value. Its answer is not
// used: the value stays as it is written.
bool DUVMemberInit_C::AppendOverloadInit(const char16_t* member, const char16_t* value) {
    (void)CheckInitSyntax(nullptr, value);
    Entry* entry = lq::New<Entry>();
    if (!entry) {
        return false;
    }
    entry->member = member;
    entry->value = value;
    if (entry->member.HasFailed() || entry->value.HasFailed()) {
        lq::Delete(entry);
        return false;
    }
    entry->next = head_;
    head_ = entry;
    return true;
}

const char16_t* DUVMemberInit_C::FindNewInit(const char16_t* member) const {
    if (!member) {
        return nullptr;
    }
    while (IsTrimmed(*member)) {
        ++member;
    }
    std::size_t charCount = lq::chars::Length(member);
    while (charCount > 0 && IsTrimmed(member[charCount - 1])) {
        --charCount;
    }
    if (charCount == 0) {
        return nullptr;
    }
    for (const Entry* entry = head_; entry; entry = entry->next) {
        const char16_t* name = entry->member.GetText();
        if (lq::chars::Length(name) == charCount &&
            lq::chars::CompareNoCase(name, member, charCount) == 0) {
            return entry->value.GetText();
        }
    }
    return nullptr;
}
