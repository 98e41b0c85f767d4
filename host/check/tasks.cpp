// Configurations, resources, tasks and the programs that they run.

#include "host/check/checks.h"
#include "host/check/findings.h"
#include "host/check/left_out.h"

namespace lq::host::check {

namespace {

using Class = Constant::Kind;

// -- Instances ------------------------------------------------------------------------------------

void CheckInstance(Run& run, ID id) {
    const ProgramInstance& instance = *run.project.GetProgramInstance(id);
    const std::string type = Utf8(instance.typeName);
    const ID unit = run.project.FindAnyPou(instance.typeName);
    if (unit == ID()) {
        run.Report(7001, run.OpenSeverity(), id, Say("no program is called '{}'", type));
    } else if (run.project.GetPou(unit)->kind != LQ_KIND_PROGRAM) {
        Finding& finding = run.Report(7002, id, Say("'{}' is no program", type));
        if (!run.project.GetPou(unit)->isStandard) {
            run.Relate(finding, unit, Say("declared here"));
        }
    }
    if (SortOf(instance.parent) == Sort::kResource) {
        run.Report(7013, id, Say("no task runs '{}'", Utf8(instance.name)));
    }
}

// -- Tasks ----------------------------------------------------------------------------------------

const Declaration* GlobalOf(Run& run, const Task& task, u16string_view name) {
    const uses::GlobalFound found = run.globals.Find(task.resource, name);
    return run.project.GetDeclaration(found.shared ? found.shared->globals.front() : found.id);
}

bool IsOfType(Run& run, const Declaration& variable, IEC_TYPE type) {
    const TypeInfo& info = run.types.WithoutLimits(run.types.Of(variable.type));
    return info.elementary == type || info.kind == TypeInfo::Kind::kUnknown ||
           info.kind == TypeInfo::Kind::kUnchecked;
}

void CheckPriority(Run& run, ID id, const Task& task) {
    int64_t priority = 0;
    constexpr int64_t kMost = 65535;
    if (!*task.priority) {
        run.Report(7006, Severity::kNote, id,
                   Say("the task '{}' has no priority", Utf8(task.name)));
    } else if (!Types::ReadNumber(task.priority, priority) || priority < 0 || priority > kMost) {
        run.Report(
            7006, id,
            Say("the priority '{}' is no whole number from 0 to 65535", Utf8(task.priority)));
    }
}

void CheckInterval(Run& run, ID id, const Task& task) {
    const u16string_view text = task.interval;
    const std::string interval = Utf8(text);
    const Constant constant = ReadConstant(text);
    // A name behind others, or a type of the third edition, is not followed.
    const std::u16string capitals = Upper(text);
    const bool isLong = capitals.starts_with(u"LTIME#") || capitals.starts_with(u"LT#");
    if (text.empty() || isLong ||
        (IsName(text.substr(0, 1)) && text.find(u'.') < text.find(u'#'))) {
        return;
    }
    if (constant.kind == Class::kName) {
        const Declaration* global = GlobalOf(run, task, text);
        if (!global) {
            run.Report(
                7007, run.ClosedSeverity(), id,
                Say("the interval '{}' is no duration, and no global is called so", interval));
        } else if (!IsOfType(run, *global, IEC_TIME)) {
            run.Report(7007, id,
                       Say("the interval '{}' is a variable of the type {}", interval,
                           Utf8(global->type)));
        }
    } else if (constant.kind != Class::kTime || constant.isNegative) {
        run.Report(7007, id, Say("the interval '{}' is no duration from zero on", interval));
    } else if (constant.isZero && !*task.event) {
        run.Report(7007, Severity::kWarning, id,
                   Say("the interval of the task '{}' is zero", Utf8(task.name)));
    }
}

void CheckEvent(Run& run, ID id, const Task& task) {
    if (!IsName(task.event) || ReadConstant(task.event).kind == Class::kBool) {
        return;
    }
    const std::string event = Utf8(task.event);
    const Declaration* global = GlobalOf(run, task, task.event);
    if (!global) {
        run.Report(7010, run.ClosedSeverity(), id, Say("no global is called '{}'", event));
    } else if (!IsOfType(run, *global, IEC_BOOL)) {
        run.Report(7010, id,
                   Say("the event '{}' is a variable of the type {}", event, Utf8(global->type)));
    }
}

void CheckTask(Run& run, ID id) {
    const Task& task = *run.project.GetTask(id);
    const std::string name = Utf8(task.name);
    CheckPriority(run, id, task);
    CheckInterval(run, id, task);
    CheckEvent(run, id, task);
    if (!*task.interval && !*task.event) {
        run.Report(7008, id, Say("the task '{}' has neither interval nor event", name));
    } else if (*task.interval && *task.event && !ReadConstant(task.interval).isZero) {
        run.Report(7009, id, Say("the task '{}' has an interval and an event", name));
    }
}

// -- Resources ------------------------------------------------------------------------------------

bool AddTwice(Run& run, uint16_t code, ID id, NameTable& names, const std::string& message) {
    const ID earlier = *run.project.NameOf(id) ? names.Add(id) : ID();
    if (earlier != ID()) {
        ReportTwice(run, code, id, earlier, message);
    }
    return earlier != ID();
}

// What an instance says behind its type in a text, tasks of its blocks among it, is not kept.
void CheckResource(Run& run, const LeftOut& leftOut, ID id) {
    const Resource& resource = *run.project.GetResource(id);
    NameTable tasks(run.project);
    NameTable instances(run.project);
    std::size_t programs = resource.programs.size();
    const auto addInstances = [&](const IdList& ids) {
        for (const ID instance : ids) {
            AddTwice(
                run, 7004, instance, instances,
                Say("two program instances are called '{}'", Utf8(run.project.NameOf(instance))));
        }
    };
    for (const ID task : resource.tasks) {
        const std::string name = Utf8(run.project.NameOf(task));
        const bool isTwice =
            AddTwice(run, 7003, task, tasks, Say("two tasks are called '{}'", name));
        if (!isTwice && run.project.GetTask(task)->programs.empty() &&
            !leftOut.OfConfigurations()) {
            run.Report(7011, task, Say("the task '{}' runs no program", name));
        }
        programs += run.project.GetTask(task)->programs.size();
        addInstances(run.project.GetTask(task)->programs);
    }
    addInstances(resource.programs);
    if (programs == 0) {
        run.Report(7015, id, Say("the resource '{}' runs no program", Utf8(resource.name)));
    }
}

template <typename Record, typename Look>
void ForEachOwn(Run& run, Sort sort, const std::deque<Record>& records, Look look) {
    for (uint32_t i = 0; i < records.size(); ++i) {
        if (run.IsOwn(MakeId(sort, i))) {
            look(run, MakeId(sort, i));
        }
    }
}

void CheckTasks(Run& run) {
    ForEachOwn(run, Sort::kProgramInstance, run.project.ProgramInstances(), CheckInstance);
    ForEachOwn(run, Sort::kTask, run.project.Tasks(), CheckTask);
    const LeftOut leftOut(run);
    ForEachOwn(run, Sort::kResource, run.project.Resources(),
               [&leftOut](Run& all, ID id) { CheckResource(all, leftOut, id); });
    const auto isProgram = [&](ID owner) {
        const Pou* pou = run.project.GetPou(owner);
        return pou && pou->kind == LQ_KIND_PROGRAM;
    };
    const auto program = std::ranges::find_if(run.Owners(), isProgram);
    if (!run.HasResource() && program != run.Owners().end()) {
        run.Report(7014, *program, Say("the project has programs and no resource to run them"));
    }
}

constexpr Check kRows[] = {
    {7001, "program-unknown", Severity::kWarning,
     Message("A program instance is one of a program of the project; an error with --closed"),
     Message("The resource cannot be built, or a file is missing"),
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;\nPROGRAM q WITH t : "
     "Mian;",
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;\nPROGRAM q WITH t : "
     "Main;",
     CheckTasks},
    {7002, "not-a-program", Severity::kError,
     Message("A task runs programs, no function blocks and no functions"),
     Message("Only programs have instances in a resource"),
     "FUNCTION_BLOCK Pump\nEND_FUNCTION_BLOCK\nCONFIGURATION c\nRESOURCE r\n"
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\n"
     "PROGRAM p WITH t : Pump;\nEND_RESOURCE\nEND_CONFIGURATION",
     "PROGRAM Pump\nEND_PROGRAM\nCONFIGURATION c\nRESOURCE r\n"
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\n"
     "PROGRAM p WITH t : Pump;\nEND_RESOURCE\nEND_CONFIGURATION",
     CheckTasks},
    {7003, "duplicate-task", Severity::kError,
     Message("The tasks of a resource have different names"),
     Message("Which of the two runs a program is not certain"),
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;\n"
     "TASK T(INTERVAL := T#20ms, PRIORITY := 2);\nPROGRAM q WITH T : Main;",
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;\n"
     "TASK u(INTERVAL := T#20ms, PRIORITY := 2);\nPROGRAM q WITH u : Main;",
     CheckTasks},
    {7004, "duplicate-instance", Severity::kError,
     Message("The program instances of a resource have different names"),
     Message("Paths of variables begin with the name"),
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;\nPROGRAM P WITH t : "
     "Main;",
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;\nPROGRAM q WITH t : "
     "Main;",
     CheckTasks},
    {7005, "task-unknown", Severity::kError,
     Message("The task that a program instance names is one of its resource"),
     Message("The program runs without a task, as often as the target finds time"),
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;\nPROGRAM q WITH u : "
     "Main;",
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;\nPROGRAM q WITH t : "
     "Main;"},
    {7006, "priority", Severity::kError,
     Message(
         "The priority of a task is a whole number from 0 to 65535; that there is none is a note"),
     Message("Which task waits for which is not certain"),
     "TASK t(INTERVAL := T#10ms, PRIORITY := high);\nPROGRAM p WITH t : Main;",
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;", CheckTasks},
    {7007, "interval", Severity::kError,
     Message(
         "The interval of a task is a duration, or a global of the type TIME; zero is a warning"),
     Message("The task runs at another time than was meant, or never"),
     "TASK t(INTERVAL := 10, PRIORITY := 1);\nPROGRAM p WITH t : Main;",
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;", CheckTasks},
    {7008, "no-trigger", Severity::kWarning, Message("A task has an interval or an event"),
     Message("Nothing ever starts it"), "TASK t(PRIORITY := 1);\nPROGRAM p WITH t : Main;",
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;", CheckTasks},
    {7009, "both-triggers", Severity::kNote,
     Message("A task has an interval or an event, not both of them"),
     Message("Targets differ in which of the two counts"),
     "TASK t(SINGLE := %IX0.0, INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;",
     "TASK t(SINGLE := %IX0.0, PRIORITY := 1);\nPROGRAM p WITH t : Main;", CheckTasks},
    {7010, "event-unknown", Severity::kError,
     Message("The event of a task that is a name is a global of the type BOOL; a warning, until "
             "--closed, where no file has the name"),
     Message("Nothing ever starts the task"),
     "PROGRAM Main\nEND_PROGRAM\nCONFIGURATION c\nVAR_GLOBAL\n  Start : INT;\nEND_VAR\nRESOURCE r\n"
     "TASK t(SINGLE := Start, PRIORITY := 1);\nPROGRAM p WITH t : "
     "Main;\nEND_RESOURCE\nEND_CONFIGURATION",
     "PROGRAM Main\nEND_PROGRAM\nCONFIGURATION c\nVAR_GLOBAL\n  Start : BOOL;\nEND_VAR\nRESOURCE "
     "r\n"
     "TASK t(SINGLE := Start, PRIORITY := 1);\nPROGRAM p WITH t : "
     "Main;\nEND_RESOURCE\nEND_CONFIGURATION",
     CheckTasks},
    {7011, "task-without-program", Severity::kNote, Message("A task runs a program"),
     Message("It takes its turn and does nothing"),
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nTASK u(INTERVAL := T#20ms, PRIORITY := "
     "2);\nPROGRAM p WITH t : Main;",
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;", CheckTasks},
    {7013, "instance-without-task", Severity::kOff, Message("A task runs each program instance"),
     Message("Without one it runs as often as the target finds time"), "PROGRAM p : Main;",
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;", CheckTasks},
    {7014, "no-configuration", Severity::kOff,
     Message("A project with programs has a resource that runs them"),
     Message("It is a library, or part of a project"), "PROGRAM Main\nEND_PROGRAM",
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;", CheckTasks},
    {7015, "resource-without-program", Severity::kNote, Message("A resource runs a program"),
     Message("It does nothing"), "CONFIGURATION c\nRESOURCE r\nEND_RESOURCE\nEND_CONFIGURATION",
     "TASK t(INTERVAL := T#10ms, PRIORITY := 1);\nPROGRAM p WITH t : Main;", CheckTasks},
};

}  // namespace

Rows TaskRows() {
    return kRows;
}

}  // namespace lq::host::check
