// Loading tasks from the project's resource pool: a pool of collections whose members are the
// tasks.

#include <memory>

#include "pouh/attributes.h"
#include "pouh/record_lists.h"
#include "pouh/record_types.h"

namespace lq::pouh {

namespace {

bool RenewTask(TASK_TYP& task) {
    DestroyTaskInfo(task.info);
    DestroyTaskPOUList(task.pous);
    task.info = CreateTaskInfo();
    task.pous = CreateTaskPOUList();
    return task.info && task.pous;
}

LQCOLLECTION* ResourcePool() {
    LQNAVIOBJECTMAN* manager = LQNAVIOBJECTMAN::Get();
    return manager ? manager->GetResourcePool() : nullptr;
}

LQNAVIOBJECT* ObjectOf(ID id) {
    LQNAVIOBJECTMAN* manager = LQNAVIOBJECTMAN::Get();
    return manager && id != ID() ? manager->Get(id) : nullptr;
}

// The object of that name in the first collection that has one; null when none has.
LQNAVIOBJECT* FindTaskObject(const char16_t* name) {
    LQCOLLECTION* pool = ResourcePool();
    const int32_t count = pool ? pool->GetMemberCount() : 0;
    for (int32_t i = 0; i < count; ++i) {
        const LQNAVIOBJECT* collection = ObjectOf(pool->GetID(i));
        if (!collection) {
            continue;
        }
        const ID id = LQNAVIOBJECTMAN::Get()->Find(name, collection->GetId(), LQ_ANY_KIND);
        if (LQNAVIOBJECT* object = ObjectOf(id)) {
            return object;
        }
    }
    return nullptr;
}

bool FillTaskInfo(TASK_INFO_TYP& info, const LQTASK& task) {
    return StoreText(info.name, task.GetName()) && StoreText(info.event, task.GetEvent()) &&
           StoreText(info.interval, task.GetInterval()) &&
           StoreText(info.priority, task.GetPriority()) &&
           StoreText(info.comment, task.GetComment(0));
}

bool AppendPouNames(FLIST* list, LQTASK& task) {
    LQSELECTION* selection = task.GetSelection();
    LQDECLMAN* manager = LQDECLMAN::Get();
    const int32_t count = selection && manager ? selection->GetCount() : 0;
    const MemoryWatch watch;
    for (int32_t i = 0; i < count; ++i) {
        const std::unique_ptr<LQOBJECT> pou(manager->Get(selection->GetID(i)));
        if (watch.WasShort()) {
            return false;  // the model may have had no memory for the object
        }
        if (pou && !AppendName(list, pou->GetName())) {
            return false;
        }
    }
    return true;
}

int FillTask(TASK_TYP& task, LQNAVIOBJECT* object) {
    auto* source = dynamic_cast<LQTASK*>(object);
    if (!source || !FillTaskInfo(*task.info, *source)) {
        return 0;
    }
    task.pous->list = NewNameList();
    return task.pous->list && AppendPouNames(task.pous->list, *source);
}

bool AppendTaskNames(FLIST* list, const LQCOLLECTION& collection) {
    const int32_t count = collection.GetMemberCount();
    for (int32_t i = 0; i < count; ++i) {
        const LQNAVIOBJECT* task = ObjectOf(collection.GetID(i));
        if (task && task->GetMemberCount() != 0 && !AppendName(list, task->GetName())) {
            return false;
        }
    }
    return true;
}

}  // namespace

}  // namespace lq::pouh

int LoadTask(TASK_TYP* task, const char16_t* name) {
    if (!task || !name || !lq::pouh::RenewTask(*task)) {
        return 0;
    }
    return lq::pouh::FillTask(*task, lq::pouh::FindTaskObject(name));
}

int LoadTask(TASK_TYP* task, ID id) {
    if (!task || id == ID() || !lq::pouh::RenewTask(*task)) {
        return 0;
    }
    return lq::pouh::FillTask(*task, lq::pouh::ObjectOf(id));
}

namespace {

// False when a name could not be appended.
bool AppendAllTaskNames(FLIST* list) {
    const LQCOLLECTION* pool = lq::pouh::ResourcePool();
    const int32_t count = pool ? pool->GetMemberCount() : 0;
    for (int32_t i = 0; i < count; ++i) {
        const auto* collection =
            dynamic_cast<const LQCOLLECTION*>(lq::pouh::ObjectOf(pool->GetID(i)));
        if (collection && !lq::pouh::AppendTaskNames(list, *collection)) {
            return false;
        }
    }
    return true;
}

}  // namespace

int LoadTaskList(FLIST* list) {
    AppendAllTaskNames(list);
    return 1;
}

TASK_LIST_TYP* CreateTaskList() {
    TASK_LIST_TYP* record = lq::New<TASK_LIST_TYP>();
    if (!record) {
        return nullptr;
    }
    record->list = lq::pouh::NewNameList();
    if (!record->list || !AppendAllTaskNames(record->list)) {
        DestroyTaskList(record);
        return nullptr;
    }
    return record;
}
