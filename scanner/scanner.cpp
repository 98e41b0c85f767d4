// The scanner's frame: its buffers, its stream, its keywords; and its tokens.
#include "lq_data/scanner.h"

#include "lq_data/detail/chars.h"
#include "lq_data/hash_table.h"
#include "lq_data/memory.h"
#include "scanner/buffer_pair.h"
#include "scanner/keyword_cache.h"
#include "scanner/string_rules.h"

LQ_IMPLEMENT_DYNAMIC(Scanner, CObject, &Scanner::CreateObject)
LQ_IMPLEMENT_DYNAMIC(Token, CObject, nullptr)
LQ_IMPLEMENT_DYNAMIC(Address, CObject, nullptr)

static_assert(sizeof(void*) <= sizeof(Token::value) && sizeof(double) == sizeof(Token::value));

namespace {

constexpr int32_t kHalfSize = 1024;
static_assert(kHalfSize <= Scanner::kBufferSize, "a token within one half fits the buffers");
constexpr uint32_t kKeywordBuckets = 233;

// The three buffers are one block, which the text buffer begins. Each has room for the last step of
// a copy (BufferPair::CopyShort).
constexpr int32_t kBufferLength = Scanner::kBufferSize + BufferPair::kStep;

}  // namespace

void Token::Clear() {
    kind = TK_NONE;
    line = 0;
    text = nullptr;
    SetValue(uint64_t{0});
}

CObject* Scanner::CreateObject() {
    auto* scanner = new Scanner;
    if (scanner && !scanner->HasBuffers()) {
        delete scanner;
        scanner = nullptr;
    }
    return scanner;
}

Scanner::Scanner()
    : textBuf(lq::AllocateArray<char16_t>(3 * kBufferLength)),
      keywords(new HashTable(kKeywordBuckets, 1)),
      allowNulEscape(lq::scanner::AskNulEscape()),
      keywordCache(new lq::scanner::KeywordCache) {
    lq::scanner::commaEndsString.Set(false);
    if (HasBuffers()) {
        spaceBuf = textBuf + kBufferLength;
        valueBuf = spaceBuf + kBufferLength;
        textBuf[0] = spaceBuf[0] = valueBuf[0] = 0;
    }
}

Scanner::~Scanner() {
    ReleaseStream();
    delete keywordCache;
    delete keywords;
    delete reader;
    lq::Release(textBuf);
    lq::Release(SrcEx);
}

bool Scanner::HasBuffers() const {
    return textBuf && keywords && keywordCache;
}

void Scanner::FreeHugeBuffer() {
    if (SrcEx) {
        lq::Release(SrcEx);
        SrcEx = nullptr;
    }
    HugeBufLen = 0;
    HugeBufComplete = 0;
}

void Scanner::Initialize(STREAM_W& stream) {
    delete reader;
    reader = new BufferPair(stream, kHalfSize);
    if (reader) {
        reader->SetOwner(this);
        reader->NextChar();
    }
}

void Scanner::AssignStream(STREAM_W& stream, int line) {
    nActLine = line;
    textBuf[0] = valueBuf[0] = 0;
    token.Clear();
    if (!reader) {
        Initialize(stream);
        return;
    }
    reader->Bind(stream);
    reader->NextChar();
}

int Scanner::CanRead() const {
    return reader && reader->IsUsable() ? 1 : 0;
}

int Scanner::IsEOF() const {
    return !reader || reader->Current() == kEndOfInput ? 1 : 0;
}

STREAM_W* Scanner::ReleaseStream() {
    return reader ? reader->Unbind() : nullptr;
}

int Scanner::RegisterKeyword(const char16_t* name, int id) {
    const char16_t* const copy = keywordCache->Reserve() ? keywords->Insert(name, id) : nullptr;
    if (!copy) {
        return 0;
    }
    keywordCache->Add(copy, id);
    return 1;
}

int32_t Scanner::GetStreamPosition() const {
    return reader ? reader->GetPosition() : -1;
}

int Scanner::SetCheckAccessOfCustomAddress(int flag) {
    const int previous = checkAccessOfCustomAddress;
    checkAccessOfCustomAddress = flag;
    return previous;
}
