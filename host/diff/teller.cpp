#include "host/diff/teller.h"

#include <utility>

namespace lq::host::diff {

namespace {

void SetSide(Difference::Side& side, const Project& project, ID object) {
    const SourceFile* file = project.FileOf(object);
    side.object = object;
    side.file = file ? file->name : u"";
    side.line = project.LineOf(object);
    side.column = project.ColumnOf(object);
}

}  // namespace

Difference Teller::About(Subject subject, std::u16string_view path, std::u16string_view name,
                         ID inOld, ID inNew) const {
    Difference about;
    about.change = inOld == ID()   ? Change::kAdded
                   : inNew == ID() ? Change::kRemoved
                                   : Change::kChanged;
    about.subject = subject;
    about.path = path;
    about.name = name;
    SetSide(about.before, before, inOld);
    SetSide(about.after, after, inNew);
    return about;
}

Difference Teller::About(Subject subject, std::u16string_view path, ID inOld, ID inNew) const {
    return About(subject, path, NameOf(inOld, inNew), inOld, inNew);
}

Text Teller::NameOf(ID inOld, ID inNew) const {
    return inNew == ID() ? before.NameOf(inOld) : after.NameOf(inNew);
}

void Teller::TellWhole(Difference about, std::u16string_view text) const {
    (about.change == Change::kAdded ? about.after : about.before).text = text;
    take(about);
}

void Teller::TellIfChanged(Difference about, Aspect aspect, Text inOld, Text inNew,
                           bool (*isSame)(Text, Text)) const {
    if (isSame(inOld, inNew)) {
        return;
    }
    about.aspect = aspect;
    about.before.text = inOld;
    about.after.text = inNew;
    take(about);
}

std::vector<Key> Teller::KeysOf(const Project& project, const IdList& objects) {
    std::vector<Key> keys;
    keys.reserve(objects.size());
    for (const ID object : objects) {
        keys.push_back({0, project.NameOf(object)});
    }
    return keys;
}

Pairs::Pairs(const Teller& teller, IdList before, IdList after)
    : inOld(std::move(before)), inNew(std::move(after)), pairing(inOld.size(), inNew.size()) {
    pairing.Match(Teller::KeysOf(teller.before, inOld), Teller::KeysOf(teller.after, inNew));
}

std::u16string PathOf(const Project& project, ID holder) {
    const Resource* resource = project.GetResource(holder);
    std::u16string path(resource ? project.NameOf(resource->configuration) : u"");
    const Text name = project.NameOf(holder);
    path += path.empty() || !*name ? u"" : u".";
    return path + name;
}

}  // namespace lq::host::diff
