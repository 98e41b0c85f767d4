#include <new>

#include "lq_data/containers.h"
#include "lq_data/handles.h"
#include "lq_data/host/text/utf.h"
#include "lq_data/pouh.h"
#include "lq_data/records.h"
#include "tools/lq/command.h"
#include "tools/lq/commands.h"
#include "tools/lq/input.h"
#include "tools/lq/output.h"
#include "tools/lq/project_input.h"

namespace lq::tool {

using host::EncodeUtf8;

namespace {

Json TaskRow(ID id) {
    const TaskPtr task(CreateTask());
    if (!task || !LoadTask(task.get(), id)) {
        throw std::bad_alloc();
    }
    TASK_INFO_TYP* info = nullptr;
    TASK_POU_LIST_TYP* pous = nullptr;
    GetAttrOfTask(task.get(), POUH_TASKINFO, &info);
    GetAttrOfTask(task.get(), POUH_TASKPOUS, &pous);
    Json programs = Json::array();
    FLIST* names = pouh::ListOf(pous);
    void* slot = nullptr;
    for (uint32_t at = ListGet(names, slot, nullptr, LC_FIRST, 0); at != 0;
         at = ListGet(names, slot, nullptr, LC_NEXT, 0)) {
        programs.push_back(EncodeUtf8(*static_cast<const char16_t**>(slot)));
    }
    return {{"task", EncodeUtf8(pouh::TextOf(info, POUH_NAME))},
            {"priority", EncodeUtf8(pouh::TextOf(info, POUH_PRIORITY))},
            {"interval", EncodeUtf8(pouh::TextOf(info, POUH_INTERVAL))},
            {"event", EncodeUtf8(pouh::TextOf(info, POUH_EVENT))},
            {"comment", EncodeUtf8(pouh::TextOf(info, POUH_COMMENT))},
            {"programs", programs}};
}

// Each with the unit that it runs.
Json InstancesOf(const host::Project& project, const host::IdList& instances) {
    Json all = Json::array();
    for (const ID id : instances) {
        const host::ProgramInstance& instance = *project.GetProgramInstance(id);
        all.push_back(
            {{"instance", EncodeUtf8(instance.name)}, {"program", ProgramName(project, instance)}});
    }
    return all;
}

Json ProgramsOf(const host::Project& project, const host::IdList& instances) {
    Json programs = Json::array();
    for (const ID id : instances) {
        programs.push_back(ProgramName(project, *project.GetProgramInstance(id)));
    }
    return programs;
}

void PrintTasks(Json rows, const Json& others) {
    for (const Json& other : others) {
        Json row = other;
        row.update({{"task", "no task"},
                    {"priority", nullptr},
                    {"interval", nullptr},
                    {"event", nullptr},
                    {"comment", nullptr}});
        rows.push_back(std::move(row));
    }
    for (Json& row : rows) {
        std::string text;
        for (const Json& instance : row["instances"]) {
            text += (text.empty() ? "" : ", ") + instance["instance"].get<std::string>() + ": " +
                    instance["program"].get<std::string>();
        }
        row["programs"] = text;
    }
    Print(TableOf("",
                  {{"resource"},
                   {"task"},
                   {"priority", true},
                   {"interval"},
                   {"event"},
                   {"programs"},
                   {"comment"}},
                  rows));
}

}  // namespace

int RunTasks(const TasksOptions& options) {
    CurrentProject current;
    const int status = ReadAndReport(options.files, current.project);
    Json tasks = Json::array();
    Json others = Json::array();  // programs that no task runs
    for (const ID resourceId : current.project.Below(current.project.ResourcePool())) {
        if (current.project.IsOfLibrary(resourceId)) {
            continue;
        }
        const host::Resource& resource = *current.project.GetResource(resourceId);
        const std::string name = EncodeUtf8(resource.name);
        for (const ID id : resource.tasks) {
            Json row = {{"resource", name}};
            row.update(TaskRow(id));
            row["instances"] = InstancesOf(current.project, current.project.GetTask(id)->programs);
            tasks.push_back(std::move(row));
        }
        if (!resource.programs.empty()) {
            others.push_back({{"resource", name},
                              {"programs", ProgramsOf(current.project, resource.programs)},
                              {"instances", InstancesOf(current.project, resource.programs)}});
        }
    }
    if (options.json) {
        Json document = NewDocument();
        document["tasks"] = std::move(tasks);
        document["programs_without_task"] = std::move(others);
        PrintJson(document);
    } else {
        PrintTasks(std::move(tasks), others);
    }
    return status;
}

}  // namespace lq::tool
