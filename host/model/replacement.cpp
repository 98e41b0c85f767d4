// A POU that was read anew, in the place of what the project had of it.

#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include "lq_data/detail/chars.h"
#include "lq_data/host/model/project.h"

namespace lq::host {

namespace {

// A declaration of another project with this one's texts.
Declaration Renewed(Project& project, Declaration declaration, ID owner) {
    for (Text* const text : {&declaration.name, &declaration.type, &declaration.initValue,
                             &declaration.address, &declaration.comment, &declaration.comment2}) {
        *text = project.Intern(*text);
    }
    declaration.owner = owner;
    return declaration;
}

BodyCode Renewed(Project& project, BodyCode code) {
    for (BodyPiece& piece : code.pieces) {
        piece.name = project.Intern(piece.name);
        piece.second = project.Intern(piece.second);
    }
    for (std::vector<BodyToken>* const tokens : {&code.tokens, &code.pragmaWords}) {
        for (BodyToken& token : *tokens) {
            token.text = project.Intern(token.text);
        }
    }
    return code;
}

// The same of a POU, without its declarations.
Pou Renewed(Project& project, const Project& from, const Pou& read) {
    Pou pou = read;
    for (Text* const text : {&pou.name, &pou.resultType, &pou.comment, &pou.headerComment}) {
        *text = project.Intern(*text);
    }
    for (Body& body : pou.bodies) {
        body.name = project.Intern(body.name);
        const BodyCode* const code = from.CodeOf(body);
        body.code = 0;
        if (code && project.KeepsCode()) {
            project.EditCode(body) = Renewed(project, *code);
        }
        for (std::vector<Mark>* const marks : {&body.labels, &body.jumps}) {
            for (Mark& mark : *marks) {
                mark.name = project.Intern(mark.name);
            }
        }
    }
    pou.calls.clear();
    pou.callIndex = {};
    for (const Text callee : read.calls) {
        project.AddCall(pou, project.Intern(callee));
    }
    for (IdList* const list : {&pou.declarations, &pou.implicit, &pou.spare}) {
        list->clear();
    }
    return pou;
}

// The identifiers of the declarations of a POU that was read anew.
struct Identifiers {
    IdList of;              // the records', in their order
    IdList spare;           // those that are left
    std::size_t count = 0;  // of all declarations that the project then has
};

// Declarations whose name the POU had keep their identifier, others get one that is free, then new
// ones.
Identifiers Share(const Project& project, const Pou& pou, const std::vector<Declaration>& records) {
    IdList known = pou.declarations;
    known.insert(known.end(), pou.implicit.begin(), pou.implicit.end());
    FlatIndex<uint32_t> names;  // places in `known`, from 1, of the first of each name
    const auto hasName = [&](Text name) {
        return [&project, &known, name](uint32_t place) {
            return chars::EqualNoCase(project.NameOf(known[place - 1]), name);
        };
    };
    for (uint32_t place = 1; place <= known.size(); ++place) {
        const Text name = project.NameOf(known[place - 1]);
        names.AddFirst(place, HashOfName(name), hasName(name));
    }

    Identifiers ids{IdList(records.size()), pou.spare, project.Declarations().size()};
    std::vector<bool> isKept(known.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        const Text name = records[i].name;
        const uint32_t place = names.Find(HashOfName(name), hasName(name));
        if (place != 0 && !isKept[place - 1]) {
            isKept[place - 1] = true;
            ids.of[i] = known[place - 1];
        }
    }
    for (std::size_t i = 0; i < known.size(); ++i) {
        if (!isKept[i]) {
            ids.spare.push_back(known[i]);
        }
    }
    for (ID& id : ids.of) {
        if (id == ID() && !ids.spare.empty()) {
            id = ids.spare.back();
            ids.spare.pop_back();
        } else if (id == ID()) {
            id = MakeId(Sort::kDeclaration, static_cast<uint32_t>(ids.count++));
        }
    }
    if (ids.count > kMaxObjects) {
        throw std::bad_alloc();
    }
    return ids;
}

}  // namespace

bool Project::ReplacePou(ID pou, const Project& from, ID read) {
    Pou* const old = EditPou(pou);
    const Pou* const source = from.GetPou(read);
    if (!old || !source || old->isStandard || source->isStandard || old->kind != source->kind ||
        !chars::EqualNoCase(old->name, source->name)) {
        return false;
    }
    if (old == source) {
        return true;
    }
    Pou renewed = Renewed(*this, from, *source);
    std::vector<Declaration> records;
    for (const IdList* const list : {&source->declarations, &source->implicit}) {
        for (const ID id : *list) {
            records.push_back(Renewed(*this, *from.GetDeclaration(id), pou));
        }
    }
    Identifiers ids = Share(*this, *old, records);
    const auto behindOwn =
        ids.of.begin() + static_cast<std::ptrdiff_t>(source->declarations.size());
    renewed.declarations.assign(ids.of.begin(), behindOwn);
    renewed.implicit.assign(behindOwn, ids.of.end());
    renewed.spare = std::move(ids.spare);

    spareCodes_.reserve(spareCodes_.size() + old->bodies.size());
    declarations_.resize(ids.count);  // the last that can fail
    for (const ID id : renewed.spare) {
        declarations_[IndexOf(id)] = {};
    }
    for (std::size_t i = 0; i < records.size(); ++i) {
        declarations_[IndexOf(ids.of[i])] = records[i];
    }
    for (const Body& body : old->bodies) {
        if (body.code != 0) {
            codes_[body.code - 1] = {};
            spareCodes_.push_back(body.code);
        }
    }
    *old = std::move(renewed);
    return true;
}

}  // namespace lq::host
