// What the documents of the shapes are made of.
#pragma once

#include <cstddef>
#include <string>

namespace lq::bench {

using std::size_t;
using std::string;

inline string No(size_t i) {
    return std::to_string(i);
}

inline string Times(size_t count, const string& text) {
    string all;
    for (size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

// `item` of 0, 1, 2 and so on until there are so many bytes.
template <typename Item>
inline string Fill(size_t bytes, Item item) {
    string all;
    for (size_t i = 0; all.size() < bytes; ++i) {
        all += item(i);
    }
    return all;
}

inline string Fill(size_t bytes, const string& text) {
    return Times(bytes / text.size() + 1, text);
}

inline string Named(const string& element, const string& name, const string& inside) {
    return "<" + element + " name='" + name + "'>" + inside + "</" + element + ">\n";
}

inline string Typed(const string& name) {
    return "<derived name='" + name + "'/>";
}

inline string Value(const string& value) {
    return "<initialValue><simpleValue value='" + value + "'/></initialValue>";
}

inline string Var(const string& name, const string& type = "<INT/>", const string& rest = "") {
    return Named("variable", name, "<type>" + type + "</type>" + rest);
}

inline string ArrayOf(size_t length, const string& type) {
    return "<array><dimension lower='1' upper='" + No(length) + "'/><baseType>" + type +
           "</baseType></array>";
}

inline string Structure(const string& name, const string& members) {
    return Named("dataType", name, "<baseType><struct>" + members + "</struct></baseType>");
}

inline string Unit(const string& name, const string& interface, const string& code = "",
                   const string& language = "ST", const string& kind = "functionBlock") {
    return "<pou name='" + name + "' pouType='" + kind + "'><interface>" + interface +
           "</interface><body><" + language + "><p xmlns='http://www.w3.org/1999/xhtml'>" + code +
           "</p></" + language + "></body></pou>\n";
}

inline string Locals(const string& variables, const string& list = "localVars") {
    return "<" + list + ">" + variables + "</" + list + ">";
}

inline string Function(const string& name, const string& code) {
    return Unit(name, "<returnType><INT/></returnType>" + Locals(Var("x"), "inputVars"), code, "ST",
                "function");
}

inline string Document(const string& pous, const string& resource = "", const string& types = "",
                       const string& documentType = "", const string& rootAttributes = "") {
    return documentType + "<project xmlns='http://www.plcopen.org/xml/tc6_0201'" + rootAttributes +
           "><contentHeader name='made'/><types><dataTypes>" + types + "</dataTypes><pous>" + pous +
           "</pous></types><instances><configurations><configuration name='c'><resource name='r'>" +
           resource + "</resource></configuration></configurations></instances></project>";
}

inline string Globals(const string& variables) {
    return Document("", Locals(variables, "globalVars"));
}

template <typename Item>
inline string ManyGlobals(size_t bytes, Item item) {
    return Globals(Fill(bytes, item));
}

}  // namespace lq::bench
