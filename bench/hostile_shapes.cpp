// Much of little: attributes, entities, nesting, namespaces, names that come again, long tokens.
#include "bench/document_parts.h"
#include "bench/shapes.h"

namespace lq::bench {

namespace {

string WithType(const string& documentType) {
    return Document("", "", "", "<!DOCTYPE project " + documentType + ">");
}

string InText(const string& declarations) {
    return "VAR_GLOBAL\n" + declarations + "\nEND_VAR\n";
}

constexpr size_t kLong = 4;  // of what is long without a break

constexpr Shape kShapes[] = {
    {"entities in entities",
     [](size_t n) {
         const auto entity = [](size_t i) {
             const string inner = i == 0 ? "ha" : "&e" + No(i - 1) + ";";
             return "<!ENTITY e" + No(i) + " '" + inner + inner + "'>";
         };
         return WithType("[" + Fill(n, entity) + "]");
     }},
    {"one long entity", [](size_t n) { return WithType("[<!ENTITY e '" + string(n, 'x') + "'>]"); },
     kLong},
    {"parameter entities",
     [](size_t n) {
         return WithType("SYSTEM 'x' [" + Fill(n, [](size_t i) { return "%p" + No(i) + ";"; }) +
                         "]");
     }},
    {"references to no entity",
     [](size_t n) {
         return Document("", "", Fill(n, string("&e;")), "<!DOCTYPE project SYSTEM 'x'>");
     }},
    {"references to characters",
     [](size_t n) {
         return Document("",
                         Locals(Var("v", "<INT/>", Value(Fill(n, string("&#65;")))), "globalVars"),
                         "", "<!DOCTYPE project SYSTEM 'x'>");
     }},
    {"a long default of an attribute",
     [](size_t n) {
         return Document(
             "", Locals(Fill(n / 2, string("<variable/>")), "globalVars"), "",
             "<!DOCTYPE project [<!ATTLIST variable name CDATA '" + string(n / 2, 'x') + "'>]>");
     },
     kLong},
    {"many defaults of attributes",
     [](size_t n) {
         const auto attribute = [](size_t i) { return " a" + No(i) + " CDATA 'x'"; };
         return Document("", Locals(Fill(n / 2, string("<variable/>")), "globalVars"), "",
                         "<!DOCTYPE project [<!ATTLIST variable" + Fill(n / 2, attribute) + ">]>");
     }},
    {"a deep content model",
     [](size_t n) {
         return WithType("[<!ELEMENT e " + string(n / 2, '(') + "a" + string(n / 2, ')') + ">]");
     }},
    {"comments in the document type",
     [](size_t n) { return WithType("[" + Fill(n, string("<!-- no --><?no no?>")) + "]"); }},
    {"a long comment in the document type",
     [](size_t n) { return WithType("[<!--" + string(n, 'x') + "-->]"); }, kLong},
    {"a long address of the document type",
     [](size_t n) { return WithType("SYSTEM '" + string(n, 'x') + "'"); }, kLong},
    {"attributes of an element",
     [](size_t n) {
         return Document("", "<globalVars" + Fill(n, [](size_t i) {
                                 return " a" + No(i) + "=''";
                             }) + "></globalVars>");
     }},
    {"attributes of one name",
     [](size_t n) {
         return Document("", "<globalVars" + Fill(n, string(" a=''")) + "></globalVars>");
     }},
    {"attributes of many elements",
     [](size_t n) {
         return ManyGlobals(n, [](size_t i) {
             string element = "<variable name='v" + No(i) + "'";
             for (size_t k = 0; k < 100; ++k) {
                 element += " a" + No(i * 100 + k) + "=''";
             }
             return element + "/>";
         });
     }},
    {"attributes with a prefix",
     [](size_t n) {
         return Document("", "<globalVars xmlns:p='" + string(n / 2, 'u') + "'" +
                                 Fill(n / 2, [](size_t i) { return " p:a" + No(i) + "=''"; }) +
                                 "/>");
     }},
    {"attributes with a short prefix",
     [](size_t n) {
         return Document("", "<globalVars xmlns:p='" + string(200, 'u') + "'" +
                                 Fill(n, [](size_t i) { return " p:a" + No(i) + "=''"; }) + "/>");
     }},
    {"a long attribute",
     [](size_t n) { return Globals(Var("v", "<INT/>", Value(string(n, '1')))); }, kLong},
    {"a long name of an attribute",
     [](size_t n) { return Globals("<variable " + string(n, 'a') + "=''/>"); }, kLong},
    {"a long name of an element", [](size_t n) { return Globals("<" + string(n, 'a') + "/>"); },
     kLong},
    {"many names of elements",
     [](size_t n) { return Globals(Fill(n, [](size_t i) { return "<a" + No(i) + "/>"; })); }},
    {"elements that are kept to be judged",
     [](size_t n) { return Globals(Named("variable", "v", Fill(n, string("<a/>")))); }},
    {"texts that are kept to be judged",
     [](size_t n) { return Globals(Named("variable", "v", Fill(n, string("x<a/>")))); }},
    {"namespaces of an element",
     [](size_t n) {
         return Document("", "", "", "", Fill(n, [](size_t i) {
                             return " xmlns:n" + No(i) + "='u:" + No(i) + "'";
                         }));
     }},
    {"namespaces of nested elements",
     [](size_t n) {
         const string deep = Fill(8000, string("<a xmlns='u:1' xmlns:b='u:2'><b:c/>"));
         const size_t depth = 8000 / 35 + 1;
         return Globals(Fill(n, deep + Times(depth, "</a>")));
     }},
    {"a long namespace",
     [](size_t n) {
         return Globals("<variable name='v' xmlns:p='" + string(n / 2, 'u') + "'>" +
                        Fill(n / 2, string("<p:a/>")) + "</variable>");
     }},
    {"a long namespace of known elements",
     [](size_t n) {
         string document = ManyGlobals(n / 2, [](size_t i) { return Var("v" + No(i)); });
         const string space = "xmlns='http://www.plcopen.org/xml/tc6";
         return document.replace(document.find(space), space.size(), space + string(n / 2, 'u'));
     }},
    {"nested to the limit",
     [](size_t n) { return Globals(Fill(n, Times(240, "<a>") + Times(240, "</a>"))); }},
    {"nested to the limit where it is read",
     [](size_t n) {
         const string type =
             Times(120, "<array><baseType>") + "<INT/>" + Times(120, "</baseType></array>");
         return ManyGlobals(n, [&](size_t i) { return Var("v" + No(i), type); });
     }},
    {"nested beyond the limit", [](size_t n) { return Globals(Fill(n, string("<a>"))); }},
    {"globals of one name", [](size_t n) { return Globals(Fill(n, Var("same"))); }},
    {"lists with a global of one name",
     [](size_t n) { return Document("", Fill(n, Locals(Var("same"), "globalVars"))); }},
    {"units of one name",
     [](size_t n) { return Document(Fill(n, Unit("Same", Locals(Var("v"))))); }},
    {"types of one name",
     [](size_t n) { return Document("", "", Fill(n, Structure("Same", Var("m")))); }},
    {"tasks of one name",
     [](size_t n) {
         return Document(Unit("Main", ""),
                         Fill(n, string("<task name='T' priority='1'><pouInstance name='P' "
                                        "typeName='Main'/></task>")));
     }},
    {"variables of one name",
     [](size_t n) { return Document(Unit("U", Locals(Fill(n, Var("same"))))); }},
    {"members of one name",
     [](size_t n) { return Document("", "", Structure("T", Fill(n, Var("same")))); }},
    {"labels of one name",
     [](size_t n) {
         return Document(Unit("U", "", Fill(n, string("same: LD v\nJMP same\n")), "IL"));
     }},
    {"a long name of a unit with variables",
     [](size_t n) {
         const auto variable = [](size_t i) { return Var("1" + No(i)); };
         return Document(Unit(string(n / 2, 'u'), Locals(Fill(n / 2, variable))));
     }},
    {"a long name of a list with globals",
     [](size_t n) {
         const string globals = Fill(n / 2, [](size_t i) { return Var("1" + No(i)); });
         return Document(
             "", "<globalVars name='" + string(n / 2, 'g') + "'>" + globals + "</globalVars>");
     }},
    {"a long name of a type with members",
     [](size_t n) {
         const auto member = [](size_t i) { return Var("m" + No(i), Typed("No" + No(i))); };
         return Document("", "", Structure(string(n / 2, 't'), Fill(n / 2, member)));
     }},
    {"a long name of a unit with labels",
     [](size_t n) {
         const auto label = [](size_t i) { return "l" + No(i) + ":\n"; };
         return Document(Unit(string(n / 2, 'u'), "", Fill(n / 2, label), "IL"));
     }},
    {"a long name with many reports",
     [](size_t n) {
         const auto unknown = [](size_t i) { return "<a" + No(i) + "/>"; };
         return Globals(Named("variable", string(n / 2, 'v'), Fill(n / 2, unknown)));
     }},
    {"many faults in the format",
     [](size_t n) {
         const auto task = [](size_t i) { return "<task name='t' interval='?" + No(i) + "'/>"; };
         return Document("", Fill(n, task));
     }},
    {"a long comment", [](size_t n) { return Globals("<!--" + string(n, 'x') + "-->"); }, kLong},
    {"comments", [](size_t n) { return Globals(Fill(n, string("<!-- -->"))); }},
    {"a long CDATA section",
     [](size_t n) { return Document(Unit("U", "", "<![CDATA[" + string(n, ';') + "]]>")); }, kLong},
    {"CDATA sections",
     [](size_t n) { return Document(Unit("U", "", Fill(n, string("<![CDATA[;]]>")))); }},
    {"processing instructions", [](size_t n) { return Globals(Fill(n, string("<?a?>"))); }},
    {"a long processing instruction",
     [](size_t n) { return Globals("<?a " + string(n, 'x') + "?>"); }, kLong},
    {"open comments in a body",
     [](size_t n) { return Document(Unit("U", "", Fill(n, string("(* *) (* (* *)")))); }},
    {"open pragmas in a body",
     [](size_t n) { return Document(Unit("U", "", Fill(n, string("{ } {")))); }},
    {"open strings in a body",
     [](size_t n) { return Document(Unit("U", "", Fill(n, string("'\n\"\n$'")))); }},
    {"names of calls in a body",
     [](size_t n) {
         return Document(Unit("U", "", Fill(n, [](size_t i) { return "f" + No(i) + "("; })));
     }},
    {"tags cut off", [](size_t n) { return "<project " + string(n, ' '); }, kLong},

    // Texts.
    {"a text of open brackets", [](size_t n) { return InText("a : INT := " + string(n, '(')); },
     kLong},
    {"a text of open comments", [](size_t n) { return Fill(n, string("(* *) (* (* *)\n")); }},
    {"a text of open pragmas", [](size_t n) { return Fill(n, string("{ } {\n")); }},
    {"a text of open strings", [](size_t n) { return Fill(n, string("'\n\"\n$'")); }},
    {"a text of words without a unit",
     [](size_t n) { return Fill(n, string("VAR PROGRAM END_VAR\n")); }},
    {"a text of units without an end",
     [](size_t n) { return Fill(n, [](size_t i) { return "PROGRAM p" + No(i) + "\n"; }); }},
    {"a text of declarations without a sign",
     [](size_t n) { return InText(Fill(n, [](size_t i) { return "a" + No(i) + " b : \n"; })); }},
    {"a text of names",
     [](size_t n) { return InText(Fill(n, [](size_t i) { return "a" + No(i) + ","; })); }},
    {"a text with a long name", [](size_t n) { return InText(string(n, 'a') + " : INT;"); }, kLong},
    {"a text with a long value",
     [](size_t n) { return InText("a : INT := " + Fill(n, string("1,")) + ";"); }},
    {"a text with nested structures",
     [](size_t n) { return InText("a : " + Fill(n, string("STRUCT b : "))); }},
    {"a text with tasks of one name",
     [](size_t n) {
         return "CONFIGURATION c\n" + Fill(n / 2, string("TASK T(PRIORITY := 1);\n")) +
                Fill(n / 2, string("PROGRAM p WITH T : Main;\n"));
     }},
    {"a text of nested comments",
     [](size_t n) { return Fill(n / 2, string("(*")) + Fill(n / 2, string("*)")); }},
    {"a text of comments that nest once too often",
     [](size_t n) { return Fill(n, string("(* (* *) *) (* (* *)\n")); }},
    {"a text of brackets in a body",
     [](size_t n) { return "PROGRAM p\na := " + Fill(n, string("a[(")) + "\nEND_PROGRAM"; }},
    {"a text of nested types",
     [](size_t n) { return InText("a : " + Fill(n, string("ARRAY [1..2] OF "))); }},
    {"a text of nested values",
     [](size_t n) {
         return InText("a : INT := " + Fill(n / 2, string("(a := [")) + Fill(n / 2, string("])")) +
                       ";");
     }},
    {"a text of one long token", [](size_t n) { return string(n, '1'); }, kLong},
    {"a text with a long address",
     [](size_t n) { return InText("a AT %IX" + string(n, '1') + " : INT;"); }, kLong},
    {"a text with a long line",
     [](size_t n) { return "PROGRAM p VAR " + Fill(n, string("a : INT := 'open ")); }},
    {"a text with a long comment in front of a unit",
     [](size_t n) { return "(*" + string(n, 'x') + "*)\nPROGRAM p\nEND_PROGRAM\n"; }, kLong},
    {"a text of units of one name",
     [](size_t n) { return Fill(n, string("PROGRAM p VAR a : INT; END_VAR END_PROGRAM\n")); }},
    {"a text of types of one name",
     [](size_t n) { return "TYPE\n" + Fill(n, string("a : (a, b) := a;\n")) + "END_TYPE\n"; }},
    {"a text of sections of one unit",
     [](size_t n) { return "PROGRAM p\n" + Fill(n, string("VAR END_VAR\n")); }},
    {"a text of sections behind a body",
     [](size_t n) { return "PROGRAM p\n;\n" + Fill(n, string("VAR a : INT;\nEND_VAR\n")); }},
    {"a text of methods",
     [](size_t n) {
         return "PROGRAM p\n" + Fill(n, [](size_t i) { return "METHOD m" + No(i) + "\n"; });
     }},
    {"a text of faults of all kinds",
     [](size_t n) {
         return "PROGRAM p\nVAR\n" + Fill(n, [](size_t i) {
                    return "a" + No(i) + " : ;\nb" + No(i) + " INT;\n) c : INT AT %I1;\n'x\n";
                });
     }},
    {"a text of resources without an end",
     [](size_t n) { return "CONFIGURATION c\n" + Fill(n, string("RESOURCE r ON\nVAR_ACCESS\n")); }},
    {"a text of paths",
     [](size_t n) {
         return "CONFIGURATION c\nVAR_CONFIG\n" + Fill(n, string("a.")) + " : INT;\nEND_VAR\n";
     }},
    {"a text of comments",
     [](size_t n) { return InText(Fill(n, string("// a\n(* b *) c : INT;"))); }},
};

}  // namespace

std::span<const Shape> HostileShapes() {
    return kShapes;
}

}  // namespace lq::bench
