// The project as the library sees it: small objects that answer from a project's records. None of
// them can change the project; a declaration made by LQPOUHDECL::CreateObject is an object of its
// own (new_declaration.cpp).
#pragma once

#include "lq_data/env/lq_model.h"
#include "lq_data/host/model/objects.h"

namespace lq::host {

class Project;

// A new view of an object with a place in the project's tree; null when there is no such object or
// memory is short. Owned by the caller; not to be used after its project.
LQNAVIOBJECT* NewView(const Project& project, ID id);

// A new view of a declaration: an LQGVLDECL for one of a variable list (kind 51), else an
// LQPOUHDECL.
LQDECL* NewDeclarationView(const Project& project, ID id);

class ObjectManager final : public LQNAVIOBJECTMAN {
  public:
    explicit ObjectManager(const Project& project) : project_(project) {}

    LQNAVIOBJECT* Get(ID id) override;
    ID Find(const char16_t* name, ID parent, uint32_t kind) override;
    LQCOLLECTION* GetPOUPool() override;
    LQCOLLECTION* GetLibraryPool() override;
    LQCOLLECTION* GetResourcePool() override;

  private:
    const Project& project_;
};

class DeclarationManager final : public LQDECLMAN {
  public:
    explicit DeclarationManager(const Project& project) : project_(project) {}

    LQOBJECT* Get(ID id) override;

  private:
    const Project& project_;
};

struct Managers {
    explicit Managers(const Project& project) : objects(project), declarations(project) {}

    ObjectManager objects;
    DeclarationManager declarations;
};

}  // namespace lq::host
