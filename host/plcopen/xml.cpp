#include "host/plcopen/xml.h"

#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

#include <expat.h>

#include "host/plcopen/xml_error.h"
#include "host/plcopen/xml_memory.h"
#include "host/text/message.h"

namespace lq::host::plcopen {

namespace {

// The elements of the document that are there at a time. They go in the opposite order of their
// coming, and what comes later takes their places and their memory.
class ElementStack {
  public:
    Element& Push() {
        if (used_ == elements_.size()) {
            elements_.push_back(std::make_unique<Element>());
        }
        return *elements_[used_++];
    }

    // Takes `element` and all that came after it away.
    void PopFrom(const Element& element) {
        do {
            Clear(*elements_[--used_]);
        } while (elements_[used_].get() != &element);
        if (elements_.size() > kMost && used_ < kMost) {
            elements_.resize(kMost);
        }
    }

  private:
    static constexpr std::size_t kMost = 256;  // that stay without use, and of what size
    static constexpr std::size_t kMostBytes = 1024;

    static void Clear(Element& element) {
        const std::size_t size = element.text.capacity() + element.values.capacity() +
                                 element.attributes.capacity() + element.children.capacity();
        if (size > kMostBytes || element.ownKind) {
            element = {};
            return;
        }
        element.kind = &kTextKind;
        element.text.clear();
        element.values.clear();
        element.attributes.clear();
        element.children.clear();
        element.ownAttributes.clear();
    }

    std::vector<std::unique_ptr<Element>> elements_;
    std::size_t used_ = 0;
};

// expat calls back through C, which no exception may cross: each callback keeps what was thrown and
// stops the parser.
class Parser {
  public:
    Parser(ElementHandler& handler, XmlFault& fault)
        : handler_(handler),
          fault_(fault),
          expat_(XML_ParserCreate_MM(nullptr, &kXmlMemory, &kNamespaceEnd)) {
        if (!expat_) {
            throw std::bad_alloc();
        }
        XML_SetUserData(Expat(), this);
        XML_SetElementHandler(Expat(), OnStart, OnEnd);
        XML_SetCharacterDataHandler(Expat(), OnText);
        XML_SetEntityDeclHandler(Expat(), OnEntity);
        XML_SetSkippedEntityHandler(Expat(), OnSkippedEntity);
    }

    bool Read(std::istream& source) {
        for (bool last = false; !last;) {
            void* const block = XML_GetBuffer(Expat(), kBlock);  // read where it is parsed
            if (!block) {
                throw std::bad_alloc();
            }
            source.read(static_cast<char*>(block), kBlock);
            last = source.eof();
            if (source.bad() || (source.fail() && !last)) {
                Fault(Say("the file cannot be read"));
                return false;
            }
            const auto count = static_cast<int>(source.gcount());
            if (XML_ParseBuffer(Expat(), count, last ? 1 : 0) != XML_STATUS_OK) {
                Explain();
                return false;
            }
        }
        return true;
    }

  private:
    static constexpr int kBlock = 64 * 1024;

    struct Closer {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
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
    static void XMLCALL OnEntity(void* self, const XML_Char* name, int, const XML_Char*, int,
                                 const XML_Char*, const XML_Char*, const XML_Char*,
                                 const XML_Char*) {
        Guarded(self, [=](Parser& parser) {
            parser.Refuse(
                Say("the document declares the entity '{}'; entities are not accepted", name));
        });
    }
    static void XMLCALL OnSkippedEntity(void* self, const XML_Char* name, int) {
        Guarded(self, [=](Parser& parser) {
            parser.Refuse(Say("the entity '{}' is not declared", name));
        });
    }

    void Start(const XML_Char* name, const XML_Char** attributes) {
        if (++depth_ > kMaxDepth) {
            Refuse(Say("elements are nested deeper than {}", kMaxDepth));
            return;
        }
        if (skipDepth_ != 0) {
            return;
        }
        EndText();
        Element& element = NewElement();
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
        element.values.reserve(size);
        for (Element::Setting& setting : element.attributes) {
            const std::size_t start = element.values.size();
            element.values += setting.value;
            setting.value = std::string_view(element.values).substr(start);
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
            Siblings().push_back(&NewElement());
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

    Element& NewElement() {
        Element& element = elements_.Push();
        element.parent = open_.empty() ? nullptr : open_.back().element;
        element.line = static_cast<uint32_t>(XML_GetCurrentLineNumber(Expat()));
        element.column = static_cast<uint32_t>(XML_GetCurrentColumnNumber(Expat()) + 1);
        return element;
    }

    std::vector<Element*>& Siblings() {
        return open_.empty() ? root_ : open_.back().element->children;
    }

    void Fault(std::string message) {
        fault_.line = static_cast<uint32_t>(XML_GetCurrentLineNumber(Expat()));
        fault_.column = static_cast<uint32_t>(XML_GetCurrentColumnNumber(Expat()) + 1);
        fault_.message = std::move(message);
    }

    void Refuse(std::string message) {
        Fault(std::move(message));
        Stop();
    }

    void Stop() {
        stopped_ = true;
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
            throw std::bad_alloc();
        }
        Fault(Say("the file is not well-formed XML: {}", XmlErrorText(error)));
    }

    ElementHandler& handler_;
    XmlFault& fault_;
    std::unique_ptr<XML_ParserStruct, Closer> expat_;
    ElementStack elements_;
    std::vector<Element*> root_;
    std::vector<Open> open_;
    int depth_ = 0;
    int skipDepth_ = 0;  // the depth of the element passed over; 0 for none
    bool inText_ = false;
    bool stopped_ = false;
    std::exception_ptr thrown_;
};

}  // namespace

bool ParseXml(std::istream& source, ElementHandler& handler, XmlFault& fault) {
    const std::uint32_t shortages = XmlShortages();
    const bool complete = Parser(handler, fault).Read(source);
    if (XmlShortages() != shortages) {
        throw std::bad_alloc();
    }
    return complete;
}

}  // namespace lq::host::plcopen
