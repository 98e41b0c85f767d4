#include "host/plcopen/xml.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

#include <expat.h>

#include "host/plcopen/xml_encoding.h"
#include "host/plcopen/xml_memory.h"
#include "lq_data/host/text/message.h"
#include "lq_data/memory.h"

namespace lq::host::plcopen {

namespace {

// In English these are expat's own words.
constexpr struct {
    XML_Error error;
    const char* text;
} kTexts[] = {
    {XML_ERROR_SYNTAX, Message("syntax error")},
    {XML_ERROR_NO_ELEMENTS, Message("no element found")},
    {XML_ERROR_INVALID_TOKEN, Message("not well-formed (invalid token)")},
    {XML_ERROR_UNCLOSED_TOKEN, Message("unclosed token")},
    {XML_ERROR_PARTIAL_CHAR, Message("partial character")},
    {XML_ERROR_TAG_MISMATCH, Message("mismatched tag")},
    {XML_ERROR_DUPLICATE_ATTRIBUTE, Message("duplicate attribute")},
    {XML_ERROR_JUNK_AFTER_DOC_ELEMENT, Message("junk after document element")},
    {XML_ERROR_UNDEFINED_ENTITY, Message("undefined entity")},
    {XML_ERROR_BAD_CHAR_REF, Message("reference to invalid character number")},
    {XML_ERROR_MISPLACED_XML_PI, Message("XML or text declaration not at start of entity")},
    {XML_ERROR_UNKNOWN_ENCODING, Message("unknown encoding")},
    {XML_ERROR_INCORRECT_ENCODING, Message("encoding specified in XML declaration is incorrect")},
    {XML_ERROR_UNCLOSED_CDATA_SECTION, Message("unclosed CDATA section")},
    {XML_ERROR_XML_DECL, Message("XML declaration not well-formed")},
    {XML_ERROR_UNBOUND_PREFIX, Message("unbound prefix")},
};

// In the user's language, but for rare errors, which only expat has words for.
std::string_view XmlErrorText(XML_Error error) noexcept {
    for (const auto& row : kTexts) {
        if (row.error == error) {
            return Translated(row.text);
        }
    }
    return XML_ErrorString(error);
}

// Of the references in a tag, as it stands in the document, the first to an entity that is not
// predefined; empty when there is none.
std::string_view UndeclaredEntity(std::string_view tag) {
    constexpr std::string_view kPredefined[] = {"amp", "lt", "gt", "apos", "quot"};
    for (std::size_t at = tag.find('&'); at != tag.npos; at = tag.find('&')) {
        tag.remove_prefix(at + 1);
        const std::string_view name = tag.substr(0, tag.find(';'));
        if (!name.starts_with('#') &&
            std::ranges::find(kPredefined, name) == std::end(kPredefined)) {
            return name;
        }
    }
    return {};
}

// A byte order mark, of UTF-8 or UTF-16.
bool BeginsWithMark(std::string_view bytes) {
    return bytes.starts_with("\xEF\xBB\xBF") || bytes.starts_with("\xFF\xFE") ||
           bytes.starts_with("\xFE\xFF");
}

// expat calls back through C, which no exception may cross: each callback keeps what was thrown and
// stops the parser.
class Parser {
  public:
    Parser(ElementHandler& handler, XmlFault& fault)
        : handler_(handler),
          fault_(fault),
          expat_(XML_ParserCreate_MM(nullptr, &XmlMemory::Functions(), kBehindNamespace)) {
        if (!expat_) {
            throw std::bad_alloc();
        }
        XML_SetUserData(Expat(), this);
        XML_SetElementHandler(Expat(), OnStart, OnEnd);
        XML_SetCharacterDataHandler(Expat(), OnText);
        XML_SetStartNamespaceDeclHandler(Expat(), OnNamespace);
        XML_SetStartDoctypeDeclHandler(Expat(), OnDocumentType);
        XML_SetEntityDeclHandler(Expat(), OnEntity);
        XML_SetAttlistDeclHandler(Expat(), OnAttribute);
        XML_SetElementDeclHandler(Expat(), OnElement);
        XML_SetNotationDeclHandler(Expat(), OnNotation);
        XML_SetSkippedEntityHandler(Expat(), OnSkippedEntity);
        XML_SetUnknownEncodingHandler(Expat(), OnEncoding, this);
        // So that expat tells of references to parameter entities. It opens nothing: that would be
        // the work of a handler for external entities, and there is none.
        XML_SetParamEntityParsing(Expat(), XML_PARAM_ENTITY_PARSING_ALWAYS);
    }

    // What is not complete at the end of a block, such as a long comment, is looked at anew with
    // the next one, which is twice as long then: the time stays in proportion.
    bool Read(std::istream& source) {
        int size = kBlock;
        XML_Index start = -1;  // of what is not complete
        for (bool first = true, last = false; !last; first = false) {
            void* const block = XML_GetBuffer(Expat(), size);  // read where it is parsed
            if (!block) {
                ExplainMemory();
                return false;
            }
            source.read(static_cast<char*>(block), size);
            last = source.eof();
            if (source.bad() || (source.fail() && !last)) {
                Fault(Say("the file cannot be read"));
                return false;
            }
            const auto count = static_cast<int>(source.gcount());
            if (first) {
                hasMark_ =
                    BeginsWithMark({static_cast<char*>(block), static_cast<std::size_t>(count)});
            }
            memory_.Allow(static_cast<std::size_t>(count));
            if (XML_ParseBuffer(Expat(), count, last ? 1 : 0) != XML_STATUS_OK) {
                Explain();
                return false;
            }
            const XML_Index at = XML_GetCurrentByteIndex(Expat());
            size = at == start ? std::min(size * 2, kLargestBlock) : kBlock;
            start = at;
        }
        return true;
    }

  private:
    static constexpr int kBlock = 64 * 1024;
    static constexpr int kLargestBlock = 16 * 1024 * 1024;
    static constexpr XML_Char kBehindNamespace[] = {kNamespaceEnd, 0};

    struct Closer {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    struct Place {
        uint32_t line;
        uint32_t column;
    };

    // An open element and what becomes of its children.
    struct Open {
        Element* element;
        Kind* kind;
        bool streamed;
    };

    XML_Parser Expat() const { return expat_.get(); }

    template <typename Function>
    static void Guarded(void* self, Function function) {
        auto& parser = *static_cast<Parser*>(self);
        if (parser.stopped_) {
            return;
        }
        try {
            function(parser);
        } catch (...) {
            parser.thrown_ = std::current_exception();
            parser.Stop();
        }
    }

    static void XMLCALL OnStart(void* self, const XML_Char* name, const XML_Char** attributes) {
        Guarded(self, [=](Parser& parser) { parser.Start(name, attributes); });
    }
    static void XMLCALL OnEnd(void* self, const XML_Char*) {
        Guarded(self, [](Parser& parser) { parser.End(); });
    }
    static void XMLCALL OnText(void* self, const XML_Char* text, int length) {
        const std::string_view piece(text, static_cast<std::size_t>(length));
        Guarded(self, [=](Parser& parser) { parser.Text(piece); });
    }
    static void XMLCALL OnNamespace(void* self, const XML_Char*, const XML_Char* name) {
        if (name && std::string_view(name).size() > kMaxNamespace) {
            Guarded(self, [](Parser& parser) {
                parser.Refuse(Say("the name of a namespace has more than {} bytes", kMaxNamespace));
            });
        }
    }
    static void XMLCALL OnDocumentType(void* self, const XML_Char*, const XML_Char* system,
                                       const XML_Char*, int) {
        static_cast<Parser*>(self)->typeIsElsewhere_ = system != nullptr;
    }
    static void XMLCALL OnEntity(void* self, const XML_Char* name, int, const XML_Char*, int,
                                 const XML_Char*, const XML_Char*, const XML_Char*,
                                 const XML_Char*) {
        RefuseDeclaration(self, name);
    }
    static void XMLCALL OnAttribute(void* self, const XML_Char*, const XML_Char* name,
                                    const XML_Char*, const XML_Char*, int) {
        RefuseDeclaration(self, name);
    }
    static void XMLCALL OnElement(void* self, const XML_Char* name, XML_Content* model) {
        XML_FreeContentModel(static_cast<Parser*>(self)->Expat(), model);
        RefuseDeclaration(self, name);
    }
    static void XMLCALL OnNotation(void* self, const XML_Char* name, const XML_Char*,
                                   const XML_Char*, const XML_Char*) {
        RefuseDeclaration(self, name);
    }
    // A short declaration, of an entity or of an attribute's default value, can make a short
    // document stand for gigabytes: none is accepted.
    static void RefuseDeclaration(void* self, const XML_Char* name) {
        Guarded(self, [=](Parser& parser) {
            parser.Refuse(
                Say("the document type declares '{}'; declarations are not accepted", name));
        });
    }
    static void XMLCALL OnSkippedEntity(void* self, const XML_Char* name, int) {
        Guarded(self, [=](Parser& parser) { parser.RefuseUndeclared(name, parser.Here()); });
    }

    static int XMLCALL OnEncoding(void* self, const XML_Char* name, XML_Encoding* encoding) {
        bool isKnown = false;
        Guarded(self, [&](Parser&) { isKnown = DescribeEncoding(name, *encoding); });
        return isKnown ? XML_STATUS_OK : XML_STATUS_ERROR;
    }

    static void XMLCALL OnTag(void* self, const XML_Char* text, int length) {
        const std::string_view piece(text, static_cast<std::size_t>(length));
        Guarded(self, [=](Parser& parser) { parser.tag_ += piece; });
    }

    void Start(const XML_Char* name, const XML_Char** attributes) {
        const Place place = Here();
        if (++depth_ > kMaxDepth) {
            Refuse(Say("elements are nested deeper than {}", kMaxDepth));
            return;
        }
        if (CountOf(attributes) > kMaxAttributes) {
            Refuse(Say("an element has more than {} attributes", kMaxAttributes));
            return;
        }
        if (typeIsElsewhere_ && !CheckReferences(place)) {
            return;
        }
        if (skipDepth_ != 0) {
            return;
        }
        EndText();
        Element& element = NewElement(place);
        Kind& kind = KindOf(name, element);
        element.kind = &kind;
        SetAttributes(element, kind, attributes);
        const bool offered = open_.empty() || open_.back().streamed;
        const Treatment treatment = offered ? handler_.Start(element) : Treatment::kCapture;
        if (treatment == Treatment::kRefuse) {
            Refuse(handler_.Refusal());
            return;
        }
        if (treatment == Treatment::kSkip) {
            skipDepth_ = depth_;
            elements_.PopFrom(element);
            return;
        }
        if (!offered) {
            open_.back().element->children.push_back(&element);
        }
        open_.push_back({&element, &kind, treatment == Treatment::kStream});
    }

    static int CountOf(const XML_Char** attributes) {
        int count = 0;
        while (attributes[2 * count]) {
            ++count;
        }
        return count;
    }

    // Where a document type lies elsewhere, it may declare any entity: expat then leaves references
    // out of the values of attributes without a word. So each tag is looked at as it stands, in
    // UTF-8. Meanwhile expat's place moves within the tag: that of its beginning is `place`.
    bool CheckReferences(const Place& place) {
        tag_.clear();
        XML_SetDefaultHandlerExpand(Expat(), OnTag);
        XML_DefaultCurrent(Expat());
        XML_SetDefaultHandlerExpand(Expat(), nullptr);
        const std::string_view entity = UndeclaredEntity(tag_);
        if (!stopped_ && !entity.empty()) {
            RefuseUndeclared(entity, place);
        }
        return !stopped_;
    }

    Kind& KindOf(std::string_view name, Element& element) {
        if (!open_.empty()) {
            return open_.back().kind->Below(name, element.ownKind);
        }
        element.ownKind = std::make_unique<Kind>(nullptr, name);  // the root's
        return *element.ownKind;
    }

    // The values, at first expat's, are copied into one text, which must not move meanwhile.
    static void SetAttributes(Element& element, Kind& kind, const XML_Char** attributes) {
        std::size_t size = 0;
        for (const XML_Char** at = attributes; *at; at += 2) {
            const std::string_view value(at[1]);
            element.attributes.push_back({&kind.Attribute(at[0], element.ownAttributes), value});
            size += value.size();
        }
        element.text.reserve(size);
        for (Element::Setting& setting : element.attributes) {
            const std::size_t start = element.text.size();
            element.text += setting.value;
            setting.value = std::string_view(element.text).substr(start);
        }
    }

    void End() {
        const int depth = depth_--;
        if (skipDepth_ != 0) {
            skipDepth_ = depth == skipDepth_ ? 0 : skipDepth_;
            return;
        }
        EndText();
        const Element& element = *open_.back().element;
        open_.pop_back();
        if (open_.empty() || open_.back().streamed) {
            handler_.End(element);
            elements_.PopFrom(element);
        }
    }

    // expat delivers a run of text in pieces, which become one.
    void Text(std::string_view piece) {
        if (skipDepth_ != 0 || open_.empty()) {
            return;
        }
        if (!inText_) {
            inText_ = true;
            textPlace_ = Here();
            isBlank_ = true;
            runEnd_ = XML_GetCurrentByteIndex(Expat());
        }
        isBlank_ = isBlank_ && IsBlank(piece);
        if (!isBlank_ && !open_.back().streamed) {
            TakePlace(piece);
        }
        text_ += piece;
    }

    // A piece runs on from the one before it where its bytes follow, unless one of them is a
    // reference. Asking for each piece's line would take longer.
    void TakePlace(std::string_view piece) {
        const XML_Index at = XML_GetCurrentByteIndex(Expat());
        if (at != runEnd_) {
            const Place place = Here();
            breaks_.push_back({text_.size(), place.line, place.column});
        }
        const int size = XML_GetCurrentByteCount(Expat());
        runEnd_ = IsReference(piece, size) ? -1 : at + size;
    }

    // Of `size` bytes in the document. In UTF-16 a line break may have four.
    static bool IsReference(std::string_view piece, int size) {
        return piece == "\n" ? size > 4 : static_cast<std::size_t>(size) > 2 * piece.size();
    }

    void EndText() {
        if (!inText_) {
            return;
        }
        inText_ = false;
        Element& parent = *open_.back().element;
        const bool streamed = open_.back().streamed;
        if (isBlank_ && (streamed || !parent.IsXhtml())) {
            text_.clear();
            return;
        }
        Element& text = NewElement(textPlace_);
        text.text.swap(text_);  // which is empty then, as all of a new element
        text.breaks.swap(breaks_);
        if (streamed) {
            handler_.StrayText(text);
            elements_.PopFrom(text);
        } else {
            parent.children.push_back(&text);
        }
    }

    Element& NewElement(const Place& place) {
        Element& element = elements_.Push();
        element.parent = open_.empty() ? nullptr : open_.back().element;
        element.line = place.line;
        element.column = place.column;
        return element;
    }

    // expat counts a byte order mark as a character of the first line.
    Place Here() const {
        const auto line = static_cast<uint32_t>(XML_GetCurrentLineNumber(Expat()));
        const auto column = static_cast<uint32_t>(XML_GetCurrentColumnNumber(Expat()));
        return {line, hasMark_ && line == 1 && column > 0 ? column : column + 1};
    }

    void Fault(std::string message) { Fault(std::move(message), Here()); }
    void Fault(std::string message, const Place& place) {
        fault_ = {place.line, place.column, std::move(message)};
    }

    void Refuse(std::string message) {
        Fault(std::move(message));
        Stop();
    }

    void RefuseUndeclared(std::string_view entity, const Place& place) {
        Fault(Say("the entity '{}' is not declared", entity), place);
        Stop();
    }

    // expat still finishes the tag that it is at; the memory that its attributes would take for
    // that is refused.
    void Stop() {
        stopped_ = true;
        memory_.End();
        XML_StopParser(Expat(), XML_FALSE);
    }

    // After XML_ParseBuffer failed: because of a callback, or of the document.
    void Explain() {
        if (thrown_) {
            std::rethrow_exception(thrown_);
        }
        if (stopped_) {
            return;
        }
        const XML_Error error = XML_GetErrorCode(Expat());
        if (error == XML_ERROR_NO_MEMORY) {
            ExplainMemory();
            return;
        }
        Fault(Say("the file is not well-formed XML: {}", XmlErrorText(error)));
    }

    void ExplainMemory() {
        if (!memory_.IsExceeded()) {
            throw std::bad_alloc();
        }
        Fault(Say("the document takes more memory than its size warrants"));
    }

    ElementHandler& handler_;
    XmlFault& fault_;
    XmlMemory memory_;
    std::unique_ptr<XML_ParserStruct, Closer> expat_;
    ElementStack elements_;
    std::vector<Open> open_;
    std::string tag_;  // that of CheckReferences
    bool typeIsElsewhere_ = false;
    int depth_ = 0;
    int skipDepth_ = 0;  // the depth of the element passed over; 0 for none
    bool hasMark_ = false;
    bool inText_ = false;
    std::string text_;  // of the run that has not ended
    Place textPlace_ = {};
    bool isBlank_ = true;             // the run so far
    XML_Index runEnd_ = -1;           // of what runs on through the document; -1 behind a reference
    std::vector<PlaceBreak> breaks_;  // of the run, in bytes
    bool stopped_ = false;
    std::exception_ptr thrown_;
};

}  // namespace

bool ParseXml(std::istream& source, ElementHandler& handler, XmlFault& fault) {
    const MemoryWatch watch;
    const bool complete = Parser(handler, fault).Read(source);
    if (watch.WasShort()) {
        throw std::bad_alloc();  // expat may have got over it, with something left out
    }
    return complete;
}

}  // namespace lq::host::plcopen
