// The operators, and the table by which the scanner knows them from their first character.
#pragma once

#include <array>
#include <cstdint>

#include "lq_data/scanner.h"

namespace lq::scanner {

// The operator that a character is, and the second characters that make longer ones of it.
struct Lead {
    static constexpr char16_t kNoSecond = Scanner::kEndOfInput;  // never part of a token
    struct Longer {
        char16_t second = kNoSecond;
        uint16_t code = 0;
    };

    uint16_t code = 0;
    Longer longer[2] = {};
};

// The operators of one character. The longer ones begin with them.
struct OperatorOfOne {
    char16_t character;
    OPERATOR_CODE code;
};
inline constexpr OperatorOfOne kOperatorsOfOne[] = {
    {u'+', OP_PLUS},     {u'-', OP_MINUS},    {u'/', OP_DIV},       {u'&', OP_AMPERSAND},
    {u'(', OP_LPAREN},   {u')', OP_RPAREN},   {u';', OP_SEMICOLON}, {u',', OP_COMMA},
    {u'[', OP_LBRACKET}, {u']', OP_RBRACKET}, {u'*', OP_MUL},       {u'<', OP_LT},
    {u'>', OP_GT},       {u':', OP_COLON},    {u'=', OP_EQ},        {u'.', OP_DOT},
};

// The code of "(*", which is no operator: it begins a comment.
inline constexpr OPERATOR_CODE kCommentBegins{};

struct OperatorOfTwo {
    char16_t first;
    char16_t second;
    OPERATOR_CODE code;
};
inline constexpr OperatorOfTwo kOperatorsOfTwo[] = {
    {u'(', u'*', kCommentBegins}, {u'*', u'*', OP_POWER}, {u'<', u'>', OP_NE},
    {u'<', u'=', OP_LE},          {u'>', u'=', OP_GE},    {u':', u'=', OP_ASSIGN},
    {u'=', u'>', OP_ARROW},       {u'.', u'.', OP_RANGE},
};

consteval std::array<Lead, 128> MakeLeads() {
    std::array<Lead, 128> leads{};
    for (const OperatorOfOne& op : kOperatorsOfOne) {
        leads[op.character].code = op.code;
    }
    for (const OperatorOfTwo& op : kOperatorsOfTwo) {
        auto& longer = leads[op.first].longer;
        longer[longer[0].second == Lead::kNoSecond ? 0 : 1] = {op.second,
                                                               static_cast<uint16_t>(op.code)};
    }
    return leads;
}

// Indexed by the first character.
inline constexpr std::array<Lead, 128> kLeads = MakeLeads();

}  // namespace lq::scanner
