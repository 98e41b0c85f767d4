// The model's process-wide side: the current project, and the searches by name that answer for it.

#include "host/model/views.h"
#include "lq_data/host/model/project.h"

namespace lq::host {

namespace {

Project* current = nullptr;  // set by SetProject

}  // namespace

void SetProject(Project* project) {
    current = project;
}

Project* GetProject() {
    return current;
}

}  // namespace lq::host

using lq::host::GetProject;

LQNAVIOBJECTMAN* LQNAVIOBJECTMAN::Get() {
    return GetProject() ? &GetProject()->GetManagers().objects : nullptr;
}

LQDECLMAN* LQDECLMAN::Get() {
    return GetProject() ? &GetProject()->GetManagers().declarations : nullptr;
}

ID FindPOUByName(const char16_t* name) {
    return GetProject() && name ? GetProject()->FindAnyPou(name) : ID();
}

ID FindDUTByName(const char16_t* name) {
    return GetProject() && name ? GetProject()->FindDataType(name) : ID();
}

LQDECL* FindGVLDeclByName(const char16_t* name) {
    if (!GetProject() || !name) {
        return nullptr;
    }
    return lq::host::NewDeclarationView(*GetProject(), GetProject()->FindGlobal(name));
}

LQDUT* GetDutByName(const char16_t* name) {
    const ID id = FindDUTByName(name);
    return id != ID() ? static_cast<LQDUT*>(GetProject()->GetView(id)) : nullptr;
}

int IsFBName(const char16_t* name) {
    const ID id = FindPOUByName(name);
    return id != ID() && GetProject()->GetPou(id)->kind == LQ_KIND_FUNCTION_BLOCK ? 1 : 0;
}
