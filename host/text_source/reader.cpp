// The course of a text: what stands in no unit, and what begins there.

#include <algorithm>
#include <istream>
#include <limits>
#include <utility>

#include "host/text_source/parts.h"
#include "host/text_source/source_bytes.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/host/text_source/text_source.h"

namespace lq::host {

namespace text_source {

namespace {

class Reader {
  public:
    // `own` is where the text lies; null for one of the caller's.
    Reader(Context& context, SourceText* own)
        : context_(context), cursor_(context.cursor), own_(own) {}

    // False when the text declares nothing.
    bool Read() {
        while (!cursor_.Peek().IsEnd()) {
            if (!ReadPart()) {
                LeaveStray();
            }
            if (own_) {
                own_->Forget(cursor_.Last().spot.at);
            }
        }
        return hasParts_;
    }

  private:
    bool ReadPart() {
        const Word word = cursor_.Peek().word;
        if (cursor_.Peek().Is(OP_SEMICOLON)) {
            cursor_.Take();
            return true;
        }
        if (word == Word::kNone) {
            return false;
        }
        if (IsSection(word)) {
            return ReadLooseSection(word);
        }
        if (IsEnd(word)) {
            Close(word);
            return true;
        }
        if (word == Word::kUsing) {
            cursor_.Take();
            PassDeclaration(context_);
            return true;
        }
        return ReadHeader(word);
    }

    // False where a word is no beginning of anything. Behind a unit the next one may stand on the
    // same line.
    bool ReadHeader(Word word) {
        // Nothing but a frame, or a type whose sign is missing, can be meant here.
        const Piece behind = cursor_.Peek(1);
        const bool isOfTypes = behind.Is(OP_SEMICOLON) || behind.word == Word::kEndType ||
                               (cursor_.IsName(behind) && !IsEnd(behind.word));
        const bool isFrame = cursor_.Peek().isFirst &&
                             (word == Word::kInterface || (word == Word::kType && isOfTypes));
        const bool isBehindUnit = !isStray_ || cursor_.Peek().spot.line == attributeLine_;
        if (!IsAtHeader(context_, isBehindUnit) && !isFrame) {
            return false;
        }
        hasParts_ = true;
        isStray_ = false;
        if (IsUnit(word)) {
            ReadUnit(context_);
        } else if (word == Word::kType) {
            ReadTypes(context_);
        } else if (word == Word::kConfiguration) {
            ReadConfiguration(context_);
        } else if (word == Word::kNamespace) {
            OpenNamespace();
        } else {
            LeaveOut(context_);
        }
        return true;
    }

    // What a namespace holds is read, under its plain name.
    void OpenNamespace() {
        const Piece word = cursor_.Take();
        Piece name = cursor_.Take();
        while (cursor_.Peek().Is(OP_DOT)) {
            cursor_.Take();
            name.end = cursor_.Take().end;
        }
        cursor_.Warn(word, kNotKept,
                     Say("what namespace '{}' holds was read without it", Quoted(context_, name)));
        ++namespaces_;
    }

    void Close(Word word) {
        const Piece end = cursor_.Take();
        if (word == Word::kEndNamespace && namespaces_ != 0) {
            --namespaces_;
            return;
        }
        if (word == Word::kEndVar || word == Word::kEndStruct) {
            NoteStray(end);
            return;
        }
        cursor_.Warn(end, kNotRead, Say("'{}' ends nothing", Spelled(word)));
        isStray_ = false;
        hasParts_ = true;
    }

    bool ReadLooseSection(Word word) {
        if (IsDeclared(context_)) {
            return false;
        }
        hasParts_ = true;
        isStray_ = false;
        if (word == Word::kVarGlobal) {
            ReadSection(context_, {}, nullptr);
        } else {
            LeaveSection(context_, Message("{} belongs to no unit and was left out"));
        }
        return true;
    }

    // A run of what begins nothing is one report.
    void LeaveStray() { NoteStray(cursor_.Take()); }

    void NoteStray(const Piece& piece) {
        // "@EXTERNAL FUNCTION f".
        if (cursor_.TextOf(piece).starts_with(u'@')) {
            attributeLine_ = piece.spot.line;
        }
        if (!isStray_) {
            cursor_.Warn(piece, kNotRead, Say("this belongs to no unit and was left out"));
        }
        isStray_ = true;
    }

    Context& context_;
    Cursor& cursor_;
    SourceText* const own_;
    bool hasParts_ = false;
    bool isStray_ = false;
    uint32_t attributeLine_ = 0;
    uint32_t namespaces_ = 0;
};

// "Plant" of "src/Plant.gvl" and "src/Plant.gvl.st": names have no points.
std::string_view StemOf(std::string_view path) {
    path.remove_prefix(path.find_last_of('/') + 1);
    return path.substr(0, path.find('.', 1));
}

bool Read(std::u16string_view text, const std::string& fileName, Project& project,
          std::vector<Report>& reports, SourceText* own) {
    ReportList list(fileName, reports);
    if (text.size() >= static_cast<std::size_t>(std::numeric_limits<int32_t>::max())) {
        list.Fail(0, 0, Say("the text is too long"));
        return false;
    }
    std::u16string name;
    DecodeUtf8(fileName, name);
    project.BeginFile({project.Intern(name)});
    DecodeUtf8(StemOf(fileName), name);
    Context context(project, list, text);
    context.fileStem = project.Intern(name);
    const std::size_t before = reports.size();
    if (!Reader(context, own).Read()) {
        // One report tells what no others could tell better, but for a comment that may hold all.
        reports.resize(before);
        ReportList told(fileName, reports);
        if (!context.cursor.TellOpenComment(told)) {
            told.Warn(0, 0, kNotRead, Say("the file holds no declaration"));
        }
    }
    return true;
}

// The fault in the text's encoding, with its place.
void Refuse(ReportList& list, std::u16string_view before, const TextStatus& status) {
    const std::size_t line = before.substr(0, before.rfind(u'\n') + 1).size();
    const auto breaks = std::ranges::count(before, u'\n');
    const auto halves = std::ranges::count_if(
        before.substr(line), [](char16_t c) { return c >= 0xDC00 && c <= 0xDFFF; });
    list.Fail(static_cast<uint32_t>(breaks + 1),
              static_cast<uint32_t>(before.size() - line + 1) - static_cast<uint32_t>(halves),
              Say("is not text: {} at byte {}", Translated(Describe(status.fault)), status.offset));
}

bool Read(std::istream& source, const std::string& fileName, Project& project,
          std::vector<Report>& reports, std::optional<TextEncoding> codePage) {
    SourceText text;
    const TextStatus status = text.Read(source, codePage);
    if (!status.IsFine()) {
        ReportList list(fileName, reports);
        Refuse(list, text.Text(), status);
        return false;
    }
    return Read(text.Text(), fileName, project, reports, &text);
}

}  // namespace

}  // namespace text_source

bool ReadText(std::u16string_view text, const std::string& fileName, Project& project,
              std::vector<Report>& reports) noexcept {
    return Contained(fileName, reports,
                     [&] { return text_source::Read(text, fileName, project, reports, nullptr); });
}

bool ReadText(std::istream& source, const std::string& fileName, Project& project,
              std::vector<Report>& reports, std::optional<TextEncoding> codePage) noexcept {
    return Contained(fileName, reports, [&] {
        return text_source::Read(source, fileName, project, reports, codePage);
    });
}

bool ReadTextFile(const std::string& path, Project& project, std::vector<Report>& reports,
                  std::optional<TextEncoding> codePage) noexcept {
    return Contained(path, reports, [&] {
        std::ifstream source;
        ReportList list(path, reports);
        return OpenSource(source, list) &&
               text_source::Read(source, path, project, reports, codePage);
    });
}

}  // namespace lq::host
