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
    ID NewDataType(Text name, bool structure = true, Text comment = u"") {
        DataType type;
        type.name = name;
        type.structure = structure;
        type.comment = comment;
        return AddDataType(type);
    }
    ID NewConfiguration(Text name = u"") {
        Configuration configuration;
        configuration.name = name;
        return AddConfiguration(configuration);
    }
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
    ID NewVar(ID owner, Text name, Text type, Section section = {}, Text init = u"",
              Text address = u"") {
        Declaration declaration;
        declaration.owner = owner;
        declaration.name = name;
        declaration.type = type;
        declaration.section = section;
        declaration.initValue = init;
        declaration.address = address;
        return AddDeclaration(declaration);
    }
};

}  // namespace lq::host
