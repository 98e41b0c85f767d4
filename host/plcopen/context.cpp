#include "host/plcopen/context.h"

#include <new>
#include <utility>

#include "lq_data/host/text/message.h"
#include "lq_data/host/text/utf.h"

namespace lq::host {

std::string ToText(const Report& report) {
    std::string place = report.file;
    if (report.line != 0) {
        place += ":" + std::to_string(report.line) + ":" + std::to_string(report.column);
    }
    std::string text = report.path.empty() ? report.message : report.path + ": " + report.message;
    if (report.more != 0) {
        text = Say("{} (and {} more)", text, report.more);
    }
    return place + ": " + (report.error ? Say("error: {}", text) : text);
}

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

void Context::Warn(const Element& where, uint16_t code, std::string message) {
    constexpr std::size_t kMost = 1000;
    if (byMessage_.size() >= kMost && !byMessage_.contains(message)) {
        message = Say("there is more to report, which is not told");
        code = kMoreReports;
    }
    const auto [known, isNew] = byMessage_.emplace(message, reports_.size());
    if (!isNew) {
        ++reports_[known->second].more;
        return;
    }
    reports_.push_back(
        {fileName_, where.line, where.column, PathOf(where), std::move(message), 0, false, code});
}

void Context::Fail(uint32_t line, uint32_t column, std::string message) {
    reports_.push_back({fileName_, line, column, {}, std::move(message), 0, true, kUnreadable});
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
