#include "host/plcopen/xml.h"

#include <algorithm>
#include <deque>
#include <exception>
#include <iterator>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

#include <expat.h>

#include "host/plcopen/xml_error.h"
#include "host/plcopen/xml_memory.h"
#include "lq_data/host/text/message.h"
#include "lq_data/memory.h"

namespace lq::host::plcopen {

namespace {

// The elements of the document that are there at a time. They go in the opposite order of their
// coming, and what comes later takes their places and their memory.
class ElementStack {
  public:
    Element& Push() {
        if (used_ == elements_.size()) {
            elements_.emplace_back();
        }
        return elements_[used_++];
    }

    // Takes `element` and all that came after it away.
    void PopFrom(const Element& element) {
        do {
            Clear(elements_[--used_]);
        } while (&elements_[used_] != &element);
        if (elements_.size() > kMost && used_ < kMost) {
            elements_.resize(kMost);
        }
    }

  private:
    static constexpr std::size_t kMost = 256;  // that stay without use, and of what size
    static constexpr std::size_t kMostBytes = 1024;

    static void Clear(Element& element) {
        const std::size_t size =
            element.text.capacity() + element.attributes.capacity() + element.children.capacity();
        if (size > kMostBytes || element.ownKind || element.ownAttributes) {
            element = {};
            return;
        }
        element.kind = &kTextKind;
        element.text.clear();
        element.attributes.clear();
        element.children.clear();
    }

    std::deque<Element> elements_;
    std::size_t used_ = 0;
};

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
        // So that a reference to one is told. Nothing is opened: that would be a handler's work.
        XML_SetParamEntityParsing(Expat(), XML_PARAM_ENTITY_PARSING_ALWAYS);
    }

    // What is not complete at the end of a block, such as a long comment, is looked at anew with
    // the next one, which is twice as long then: the time stays in proportion.
    bool Read(std::istream& source) {
        int size = kBlock;
        XML_Index start = -1;  // of what is not complete
        for (bool last = false; !last;) {
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
    // Entities and default values of attributes make much of little.
    static void RefuseDeclaration(void* self, const XML_Char* name) {
        Guarded(self, [=](Parser& parser) {
            parser.Refuse(
                Say("the document type declares '{}'; declarations are not accepted", name));
        });
    }
    static void XMLCALL OnSkippedEntity(void* self, const XML_Char* name, int) {
        Guarded(self, [=](Parser& parser) { parser.RefuseUndeclared(name, parser.Here()); });
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
        Siblings().push_back(&element);
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
    // UTF-8. Within a tag, expat's own place moves meanwhile.
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
            DropLast();
        }
    }

    // expat delivers a run of text in pieces, which become one.
    void Text(std::string_view piece) {
        if (skipDepth_ != 0 || open_.empty()) {
            return;
        }
        if (!inText_) {
            Siblings().push_back(&NewElement(Here()));
            inText_ = true;
        }
        Siblings().back()->text += piece;
    }

    void EndText() {
        if (!inText_) {
            return;
        }
        inText_ = false;
        const Open& parent = open_.back();
        const Element& text = *Siblings().back();
        const bool blank = IsBlank(text.text);
        if (parent.streamed && !blank) {
            handler_.StrayText(text);
        }
        if (parent.streamed || (blank && !parent.element->IsXhtml())) {
            DropLast();
        }
    }

    void DropLast() {
        elements_.PopFrom(*Siblings().back());
        Siblings().pop_back();
    }

    Element& NewElement(const Place& place) {
        Element& element = elements_.Push();
        element.parent = open_.empty() ? nullptr : open_.back().element;
        element.line = place.line;
        element.column = place.column;
        return element;
    }

    Place Here() const {
        return {static_cast<uint32_t>(XML_GetCurrentLineNumber(Expat())),
                static_cast<uint32_t>(XML_GetCurrentColumnNumber(Expat()) + 1)};
    }

    std::vector<Element*>& Siblings() {
        return open_.empty() ? root_ : open_.back().element->children;
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

    // expat would yet finish its tag.
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
    std::vector<Element*> root_;
    std::vector<Open> open_;
    std::string tag_;  // that of CheckReferences
    bool typeIsElsewhere_ = false;
    int depth_ = 0;
    int skipDepth_ = 0;  // the depth of the element passed over; 0 for none
    bool inText_ = false;
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
