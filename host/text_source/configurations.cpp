// Configurations: resources, tasks, program instances, global variables.

#include <utility>

#include "host/text_source/parts.h"
#include "host/text_source/spelling.h"
#include "lq_data/detail/chars.h"
#include "lq_data/host/model/flat_index.h"
#include "lq_data/host/text/utf.h"

namespace lq::host::text_source {

namespace {

class ConfigurationReader {
  public:
    explicit ConfigurationReader(Context& context)
        : context_(context), cursor_(context.cursor), project_(context.project) {}

    void Read() {
        const Piece word = cursor_.Take();
        const Piece name = cursor_.Take();
        Configuration configuration;
        configuration.name = project_.Intern(cursor_.TextOf(name));
        configuration.comment = project_.Intern(cursor_.CommentBefore(word, true));
        configuration.line = word.spot.line;
        configuration.column = cursor_.ColumnOf(word.spot);
        configuration_ = project_.AddConfiguration(configuration);
        ReadParts(word, Word::kEndConfiguration);
    }

  private:
    // An instance whose task may come behind it.
    struct Instance {
        ProgramInstance program;
        Piece task;  // an end: without one
        Piece name;
    };

    // Of the configuration, or of a resource.
    void ReadParts(const Piece& begin, Word end) {
        for (;;) {
            const Word word = cursor_.Peek().word;
            if (word == Word::kTask) {
                ReadTask();
            } else if (word == Word::kProgram && !IsUnit()) {
                ReadInstance();
            } else if (word == Word::kResource && end == Word::kEndConfiguration) {
                ReadResource();
            } else if (IsSection(word)) {
                ReadConfiguredSection(word, end);
            } else if (word == end) {
                cursor_.Take();
                break;
            } else if (IsAtBoundary(context_)) {
                WarnMissing(context_, begin.spot, Spelled(end));
                break;
            } else {
                LeaveStray();
            }
        }
        EndResource();
    }

    // A unit behind a configuration that has no end: "PROGRAM name" for a line of its own.
    bool IsUnit() {
        const std::size_t name = IsMark(cursor_.Peek(1).word) ? 2 : 1;
        const Piece behind = cursor_.Peek(name + 1);
        return behind.isFirst && !behind.Is(OP_COLON) && behind.word != Word::kWith;
    }

    void ReadConfiguredSection(Word word, Word end) {
        if (word == Word::kVarGlobal) {
            ReadSection(context_, end == Word::kEndResource ? resource_ : configuration_, nullptr);
        } else if (word == Word::kVarConfig || word == Word::kVarAccess) {
            ReadSection(context_, configuration_, nullptr);
        } else {
            LeaveSection(context_, Message("{} belongs to no unit and was left out"));
        }
    }

    void LeaveStray() {
        const Piece first = cursor_.Take();
        if (!first.Is(OP_SEMICOLON)) {
            cursor_.Warn(first, kNotRead,
                         Say("this is no part of a configuration and was left out"));
            PassDeclaration(context_);
        }
    }

    void ReadResource() {
        EndResource();
        const Piece word = cursor_.Take();
        const bool isNamed = cursor_.IsName(cursor_.Peek()) && !IsEnd(cursor_.Peek().word);
        AddResource(
            project_.Intern(isNamed ? cursor_.TextOf(cursor_.Take()) : std::u16string_view()),
            word);
        if (cursor_.Peek().word == Word::kOn) {
            cursor_.Take();
            TakeProcessor();
        }
        ReadParts(word, Word::kEndResource);
    }

    // What a resource runs on, behind ON.
    void TakeProcessor() {
        const Piece next = cursor_.Peek();
        const bool isPart =
            next.word == Word::kTask || next.word == Word::kProgram || next.word == Word::kResource;
        const Piece behind = cursor_.Peek(1);
        const bool isNext = isPart && (next.isFirst || (cursor_.IsName(behind) && !behind.isFirst));
        if (cursor_.IsName(next) && !isNext && !IsAtBoundary(context_)) {
            cursor_.Take();
        } else {
            cursor_.Warn(cursor_.Last(), kNotRead, Say("a type is missing behind '{}'", "ON"));
        }
    }

    void AddResource(Text name, const Piece& word) {
        Resource resource;
        resource.name = name;
        resource.configuration = configuration_;
        resource.comment = project_.Intern(cursor_.CommentBefore(word, true));
        resource.line = word.spot.line;
        resource.column = cursor_.ColumnOf(word.spot);
        resource_ = project_.AddResource(resource);
    }

    // Tasks that stand in no resource lie in one without a name.
    void NeedResource(const Piece& word) {
        if (resource_ == ID()) {
            AddResource(u"", word);
        }
    }

    void ReadTask() {
        const Piece word = cursor_.Take();
        NeedResource(word);
        Task task;
        task.name = project_.Intern(cursor_.IsName(cursor_.Peek()) ? cursor_.TextOf(cursor_.Take())
                                                                   : std::u16string_view());
        task.resource = resource_;
        task.line = word.spot.line;
        task.column = cursor_.ColumnOf(word.spot);
        if (*task.name == 0 || !cursor_.Peek().Is(OP_LPAREN) || !TakeSettings(task)) {
            cursor_.Warn(word, kNotRead,
                         *task.name == 0
                             ? Say("this is no part of a configuration and was left out")
                             : Say("'{}' was left out: its declaration cannot be read",
                                   EncodeUtf8(task.name)));
            PassDeclaration(context_);
            return;
        }
        PassEnd();
        task.comment = project_.Intern(cursor_.CommentOn(word));
        const ID id = project_.AddTask(task);
        tasks_.AddFirst(id.GetNumber(), HashOfName(task.name),
                        [&](uint32_t known) { return IsNamed(known, task.name); });
    }

    // "(INTERVAL := T#1s, PRIORITY := 1)".
    bool TakeSettings(Task& task) {
        cursor_.Take();
        while (!cursor_.Peek().Is(OP_RPAREN)) {
            const Piece setting = cursor_.Take();
            if (!cursor_.Peek().Is(OP_ASSIGN)) {
                return false;
            }
            cursor_.Take();
            Spelling value(cursor_);
            for (std::size_t depth = 0;;) {
                const Piece next = cursor_.Peek();
                const bool isOver = next.Is(OP_COMMA) || next.Is(OP_RPAREN);
                if (IsAtBoundary(context_) || next.Is(OP_SEMICOLON)) {
                    return false;
                }
                if (depth == 0 && isOver) {
                    break;
                }
                depth += next.Is(OP_LPAREN) ? 1u : 0u;
                depth -= next.Is(OP_RPAREN) ? 1u : 0u;
                value.Add(cursor_.Take());
            }
            Set(task, setting, project_.Intern(value.Text()));
            if (cursor_.Peek().Is(OP_COMMA)) {
                cursor_.Take();
            }
        }
        cursor_.Take();
        return true;
    }

    void Set(Task& task, const Piece& setting, Text value) {
        switch (setting.word) {
            case Word::kInterval:
                task.interval = value;
                break;
            case Word::kPriority:
                task.priority = value;
                break;
            case Word::kSingle:
                task.event = value;
                break;
            default:
                cursor_.Warn(
                    setting, kNotKept,
                    Say("the setting '{}' of a task was left out", Quoted(context_, setting)));
        }
    }

    // "PROGRAM RETAIN name WITH task : type(a := 1);"
    void ReadInstance() {
        const Piece word = cursor_.Take();
        NeedResource(word);
        if (IsMark(cursor_.Peek().word) && cursor_.IsName(cursor_.Peek(1))) {
            cursor_.Take();
        }
        Instance instance;
        instance.name = cursor_.Take();
        instance.program.name = project_.Intern(cursor_.TextOf(instance.name));
        instance.program.line = word.spot.line;
        instance.program.column = cursor_.ColumnOf(word.spot);
        if (cursor_.Peek().word == Word::kWith) {
            cursor_.Take();
            instance.task = cursor_.Take();
        }
        Spec spec;
        const bool isTyped = cursor_.Peek().Is(OP_COLON) && !cursor_.Take().IsEnd();
        if (!isTyped || !ReadType(context_, spec)) {
            cursor_.Warn(instance.name, kNotRead,
                         Say("'{}' was left out: its declaration cannot be read",
                             Quoted(context_, instance.name)));
            PassDeclaration(context_);
            return;
        }
        if (spec.hasArguments) {
            cursor_.Warn(
                instance.name, kNotKept,
                Say("the arguments of '{}' were left out", Quoted(context_, instance.name)));
        }
        PassEnd();
        instance.program.typeName = project_.Intern(spec.type);
        instance.program.comment = project_.Intern(cursor_.CommentOn(word));
        instances_.push_back(instance);
    }

    void PassEnd() {
        if (cursor_.Peek().Is(OP_SEMICOLON)) {
            cursor_.Take();
        } else {
            WarnMissing(context_, cursor_.EndOf(cursor_.Last()), ";");
        }
    }

    bool IsNamed(uint32_t task, std::u16string_view name) const {
        const std::u16string_view known = project_.NameOf(ID(task));
        return known.size() == name.size() &&
               chars::CompareNoCase(known.data(), name.data(), name.size()) == 0;
    }

    // All tasks of the resource are known: its instances get theirs.
    void EndResource() {
        for (Instance& instance : instances_) {
            ID parent = resource_;
            if (!instance.task.IsEnd()) {
                const std::u16string_view name = cursor_.TextOf(instance.task);
                const ID task(tasks_.Find(HashOfName(name),
                                          [&](uint32_t known) { return IsNamed(known, name); }));
                parent = task != ID() ? task : parent;
                if (task == ID()) {
                    cursor_.Warn(
                        instance.task, kTaskUnknown,
                        Say("no task is called '{}': '{}' runs without one",
                            Quoted(context_, instance.task), Quoted(context_, instance.name)));
                }
            }
            instance.program.parent = parent;
            project_.AddProgramInstance(instance.program);
        }
        instances_.clear();
        tasks_ = {};
        resource_ = {};
    }

    Context& context_;
    Cursor& cursor_;
    Project& project_;
    ID configuration_;
    ID resource_;
    std::vector<Instance> instances_;  // of the resource
    FlatIndex<uint32_t> tasks_;        // likewise
};

}  // namespace

void ReadConfiguration(Context& context) {
    ConfigurationReader(context).Read();
}

}  // namespace lq::host::text_source
