#include "tools/lq/report_page.h"

#include <string_view>

#include "tools/lq/report/page_parts.h"

namespace lq::tool {

namespace {

// The data as it may stand within a script element: no '<', with which the element could end or a
// comment begin, and nothing but ASCII, so that no character counts as the end of a line. Both
// occur in texts only, where JSON has escapes for them.
std::string DataText(const Json& data) {
    const std::string json = data.dump(-1, ' ', true, Json::error_handler_t::replace);
    std::string text;
    text.reserve(json.size());
    for (const char c : json) {
        if (c == '<') {
            text += "\\u003c";
        } else {
            text += c;
        }
    }
    return text;
}

}  // namespace

std::string ReportPage(const Json& data) {
    const std::string json = DataText(data);
    const struct {
        std::string_view mark;
        std::string_view text;
    } parts[] = {
        {"{{style}}", report::kStyle}, {"{{data}}", json}, {"{{script}}", report::kScript}};
    std::string page;
    std::string_view rest = report::kFrame;
    for (const auto& part : parts) {  // in the order of their marks
        const size_t at = rest.find(part.mark);
        page.append(rest.substr(0, at)).append(part.text);
        rest.remove_prefix(at + part.mark.size());
    }
    return page.append(rest);
}

}  // namespace lq::tool
