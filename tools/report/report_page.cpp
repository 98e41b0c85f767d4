#include "tools/report/report_page.h"

#include <algorithm>

#include "tools/report/page/page_parts.h"

namespace lq::tool {

namespace {

constexpr std::string_view kStyleMark = "{{style}}";
constexpr std::string_view kTablesMark = "{{tables}}";
constexpr std::string_view kProjectMark = "{{project}}";
constexpr std::string_view kScriptMark = "{{script}}";
constexpr size_t kPiece = size_t{1} << 16;

// What the frame holds between two of its marks; empty marks are its ends.
std::string_view Between(std::string_view first, std::string_view last) {
    const size_t from = report::kFrame.find(first) + first.size();
    const size_t to = last.empty() ? report::kFrame.size() : report::kFrame.find(last);
    return report::kFrame.substr(from, to - from);
}

// The value as it may stand within a script element: no '<', with which the element could end or a
// comment begin, and nothing but ASCII, so that no character counts as the end of a line. Both
// occur in texts only, where JSON has escapes for them.
std::string DataText(const Json& value) {
    std::string text = value.dump(-1, ' ', true, Json::error_handler_t::replace);
    for (size_t at = text.find('<'); at != text.npos; at = text.find('<', at)) {
        text.replace(at, 1, "\\u003c");
    }
    return text;
}

}  // namespace

ReportPage::ReportPage(OutputFile& file) : file_(file) {
    Add(Between("", kStyleMark));
    Add(report::kStyle);
    Add(Between(kStyleMark, kTablesMark));
}

void ReportPage::Add(std::string_view json) {
    pending_ += json;
    if (pending_.size() >= kPiece) {
        Write();
    }
}

void ReportPage::AppendText(std::string& to, std::string_view text) {
    const bool isPlain = std::all_of(text.begin(), text.end(), [](char c) {
        return c >= ' ' && c < 0x7F && c != '"' && c != '\\' && c != '<';
    });
    if (isPlain) {
        to.append(1, '"').append(text).append(1, '"');
    } else {
        to += DataText(text);
    }
}

void ReportPage::AddText(std::string_view text) {
    AppendText(pending_, text);
    Add("");
}

void ReportPage::AddValue(const Json& value) {
    Add(DataText(value));
}

void ReportPage::AddOpen(const Json& object) {
    std::string text = DataText(object);
    text.pop_back();
    Add(text);
}

void ReportPage::EndTables() {
    Add(Between(kTablesMark, kProjectMark));
}

void ReportPage::Finish() {
    Add(Between(kProjectMark, kScriptMark));
    Add(report::kScript);
    Add(Between(kScriptMark, ""));
    Write();
}

void ReportPage::Write() {
    if (const int error = WriteAll(file_.Descriptor(), pending_)) {
        CannotWrite(file_.Name(), error);
    }
    pending_.clear();
}

}  // namespace lq::tool
