#include "host/plcopen/context.h"

#include <new>
#include <utility>

#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"

namespace lq::host {

namespace plcopen {

Text Context::Intern(std::string_view utf8) {
    if (utf8.empty()) {
        return u"";  // most addresses and many values
    }
    DecodeUtf8(utf8, buffer_);
    return project.Intern(buffer_);
}

Text Context::InternType(std::string_view utf8) {
    if (utf8 != lastType_) {
        lastTypeText_ = Intern(utf8);
        lastType_ = utf8;
    }
    return lastTypeText_;
}

Text Context::Store(std::string_view utf8) {
    DecodeUtf8(utf8, buffer_);
    return project.Store(buffer_);
}

Text Context::Documentation(const Element& element) {
    const Element* documentation = element.Child("documentation");
    return documentation ? Intern(Prose(*documentation)) : u"";
}

Scanner& Context::CodeScanner() {
    if (!scanner_) {
        scanner_.reset(Scanner::CreateObject());
    }
    if (!scanner_) {
        throw std::bad_alloc();
    }
    return static_cast<Scanner&>(*scanner_);
}

void Context::Warn(const Element& where, ReportCode code, std::string message) {
    if (Report* const report = reports_.Warn(where.line, where.column, code, std::move(message))) {
        report->path = PathOf(where);
    }
}

std::string_view HolderName(Context& context, const Element& holder, std::string_view name) {
    constexpr std::size_t kMost = 1024;
    if (name.size() <= kMost) {
        return name;
    }
    context.Warn(
        holder, kNameBeyondLimit,
        Say("the name of <{}> has more than {} bytes and was left out", holder.Name(), kMost));
    return {};
}

std::string_view Required(Context& context, const Element& element, std::string_view attribute) {
    const std::string_view value = Trim(element.Attribute(attribute));
    if (value.empty()) {
        context.Warn(element, kMissingAttribute, Say("<{}> has no {}", element.Name(), attribute));
    }
    return value;
}

}  // namespace plcopen

}  // namespace lq::host
