#include "host/plcopen/xml_element.h"

#include <algorithm>

namespace lq::host::plcopen {

namespace {

constexpr std::string_view kBlanks = " \t\n\r";

bool EndsLine(const Element& element) {
    for (const char* name : {"xhtml:p", "xhtml:div", "xhtml:br", "xhtml:li"}) {
        if (element.Name() == name) {
            return true;
        }
    }
    return false;
}

void AppendProse(const Element& element, std::string& prose) {
    for (const auto& child : element.children) {
        prose += child->Text();
        AppendProse(*child, prose);
        if (EndsLine(*child)) {
            prose += '\n';
        }
    }
}

class CodeBuilder {
  public:
    void AppendBelow(const Element& element) {
        for (const auto& child : element.children) {
            if (child->IsText()) {
                AppendText(*child);
            }
            AppendBelow(*child);
            if (EndsLine(*child) && !code_.text.empty()) {
                Append("\n");
            }
        }
    }

    Code Take() { return std::move(code_); }

  private:
    void AppendText(const Element& text) {
        if (!code_.text.empty() && code_.text.back() != '\n' && text.line > Line()) {
            Append("\n");
        }
        Break(text.line, text.column);
        std::size_t at = 0;
        for (const PlaceBreak& next : text.breaks) {
            Append(std::string_view(text.text).substr(at, next.at - at));
            Break(next.line, next.column);
            at = next.at;
        }
        Append(std::string_view(text.text).substr(at));
    }

    void Append(std::string_view text) {
        code_.text += text;
        length_ += static_cast<std::size_t>(
            std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
    }

    void Break(uint32_t line, uint32_t column) {
        code_.breaks.push_back({length_, line, column});
        begin_ = code_.text.size();
    }

    // The file's, at the end of the last text.
    int64_t Line() const {
        const std::string_view run = std::string_view(code_.text).substr(begin_);
        return code_.breaks.back().line + std::ranges::count(run, '\n');
    }

    Code code_;
    std::size_t length_ = 0;  // in characters
    std::size_t begin_ = 0;   // of what is behind the last break
};

// Empties an element for the next one, which takes over its memory, unless that is much.
void Clear(Element& element) {
    constexpr std::size_t kMostBytes = 1024;
    const std::size_t size = element.text.capacity() + element.attributes.capacity() +
                             element.children.capacity() + element.breaks.capacity();
    if (size > kMostBytes || element.ownKind || element.ownAttributes) {
        element = {};
        return;
    }
    element.kind = &kTextKind;
    element.text.clear();
    element.attributes.clear();
    element.children.clear();
    element.breaks.clear();
}

}  // namespace

std::string_view Element::Attribute(std::string_view attribute) const {
    for (const Setting& setting : attributes) {
        if (setting.kind->name == attribute) {
            return setting.value;
        }
    }
    return {};
}

const Element* Element::Child(std::string_view child) const {
    for (const auto& candidate : children) {
        if (candidate->Name() == child) {
            return candidate;
        }
    }
    return nullptr;
}

const Element* Element::FirstElement() const {
    for (const auto& candidate : children) {
        if (!candidate->IsText()) {
            return candidate;
        }
    }
    return nullptr;
}

Element& ElementStack::Push() {
    if (used_ == elements_.size()) {
        elements_.push_back(std::make_unique<Element>());
    }
    return *elements_[used_++];
}

void ElementStack::PopFrom(const Element& element) {
    constexpr std::size_t kMost = 256;  // stay for elements to come
    do {
        Clear(*elements_[--used_]);
    } while (elements_[used_].get() != &element);
    if (elements_.size() > kMost && used_ < kMost) {
        elements_.resize(kMost);
    }
}

std::string_view XsiTypeOf(const Element& element) {
    const std::string_view type =
        Trim(element.Attribute("{http://www.w3.org/2001/XMLSchema-instance}type"));
    return type.substr(type.find(':') + 1);  // the whole of it where there is no prefix
}

std::string PathOf(const Element& element) {
    std::string path = element.parent ? PathOf(*element.parent) + "/" : std::string();
    path += element.IsText() ? "text" : element.Name();
    const std::string_view name = element.Attribute("name");
    if (!name.empty()) {
        path.append("[").append(Shortened(name)).append("]");
    }
    return path;
}

std::string Shortened(std::string_view text) {
    constexpr std::size_t kMost = 255;
    if (text.size() <= kMost) {
        return std::string(text);
    }
    std::size_t end = kMost;
    while ((text[end] & 0xC0) == 0x80) {  // within a character
        --end;
    }
    return std::string(text.substr(0, end)) + "...";
}

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(kBlanks) == text.npos;
}

std::string_view Trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == text.npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string Prose(const Element& element) {
    std::string prose;
    AppendProse(element, prose);
    return std::string(Trim(prose));
}

Code CodeOf(const Element& element) {
    CodeBuilder code;
    code.AppendBelow(element);
    return code.Take();
}

}  // namespace lq::host::plcopen
