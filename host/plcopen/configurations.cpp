#include <string>

#include "host/plcopen/parts.h"
#include "lq_data/host/text/message.h"

namespace lq::host::plcopen {

void ReadProgramInstance(Context& context, const Element& instance, ID parent) {
    // The format's first version says "type".
    const std::string_view older = Trim(instance.Attribute("type"));
    ProgramInstance program;
    program.name = context.Intern(Required(context, instance, "name"));
    program.typeName =
        context.Intern(older.empty() ? Required(context, instance, "typeName") : older);
    program.comment = context.Documentation(instance);
    program.parent = parent;
    program.line = instance.line;
    if (*program.typeName != 0) {
        context.project.AddProgramInstance(program);
    }
}

void ReadTask(Context& context, const Element& element, ID resource) {
    Task task;
    task.name = context.Intern(HolderName(context, element, Required(context, element, "name")));
    if (*task.name == 0) {
        return;
    }
    std::string interval;
    if (!IntervalText(element.Attribute("interval"), interval)) {
        context.Warn(element, Say("the interval '{}' is no duration and no name", interval));
    }
    task.interval = context.Intern(interval);
    task.event = context.Intern(Trim(element.Attribute("single")));
    task.priority = context.Intern(Trim(element.Attribute("priority")));
    task.comment = context.Documentation(element);
    task.resource = resource;
    task.line = element.line;
    const ID id = context.project.AddTask(task);
    for (const auto& child : element.children) {
        if (child->Name() == "pouInstance") {
            ReadProgramInstance(context, *child, id);
        }
    }
}

}  // namespace lq::host::plcopen
