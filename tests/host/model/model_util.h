// A project that is the current one as long as it lives, and short ways to fill it.
#pragma once

#include <memory>

#include "lq_data/host/model/project.h"

namespace lq::host {

class CurrentProject : public Project {
  public:
    CurrentProject() { SetProject(this); }
    ~CurrentProject() { SetProject(nullptr); }

    ID NewPou(LQ_OBJECT_KIND kind, Text name) {
        Pou pou;
        pou.kind = kind;
        pou.name = name;
        return AddPou(pou);
    }

    ID NewDataType(Text name, bool structure) {
        DataType type;
        type.name = name;
        type.structure = structure;
        return AddDataType(type);
    }

    ID NewConfiguration() { return AddConfiguration({}); }

    ID NewResource(ID configuration) {
        Resource resource;
        resource.configuration = configuration;
        return AddResource(resource);
    }

    ID NewList(ID parent) {
        VariableList list;
        list.parent = parent;
        return AddVariableList(list);
    }

    ID NewVariable(ID owner, Text name, Text type, Section section = {}) {
        Declaration declaration;
        declaration.owner = owner;
        declaration.name = name;
        declaration.type = type;
        declaration.section = section;
        return AddDeclaration(declaration);
    }
};

}  // namespace lq::host
