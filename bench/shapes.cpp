#include "bench/shapes.h"

#include <string_view>

namespace lq::bench {

namespace {

using std::size_t;
using std::string;

string No(size_t i) {
    return std::to_string(i);
}

string Times(size_t count, const string& text) {
    string all;
    for (size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

// `item` of 0, 1, 2 and so on until there are so many bytes.
template <typename Item>
string Fill(size_t bytes, Item item) {
    string all;
    for (size_t i = 0; all.size() < bytes; ++i) {
        all += item(i);
    }
    return all;
}

string Fill(size_t bytes, const string& text) {
    return Times(bytes / text.size() + 1, text);
}

string Named(const string& element, const string& name, const string& inside) {
    return "<" + element + " name='" + name + "'>" + inside + "</" + element + ">\n";
}

string Typed(const string& name) {
    return "<derived name='" + name + "'/>";
}

string Value(const string& value) {
    return "<initialValue><simpleValue value='" + value + "'/></initialValue>";
}

string Var(const string& name, const string& type = "<INT/>", const string& rest = "") {
    return Named("variable", name, "<type>" + type + "</type>" + rest);
}

string ArrayOf(size_t length, const string& type) {
    return "<array><dimension lower='1' upper='" + No(length) + "'/><baseType>" + type +
           "</baseType></array>";
}

string Structure(const string& name, const string& members) {
    return Named("dataType", name, "<baseType><struct>" + members + "</struct></baseType>");
}

string Unit(const string& name, const string& interface, const string& code = "",
            const string& language = "ST", const string& kind = "functionBlock") {
    return "<pou name='" + name + "' pouType='" + kind + "'><interface>" + interface +
           "</interface><body><" + language + "><p xmlns='http://www.w3.org/1999/xhtml'>" + code +
           "</p></" + language + "></body></pou>\n";
}

string Locals(const string& variables, const string& list = "localVars") {
    return "<" + list + ">" + variables + "</" + list + ">";
}

string Function(const string& name, const string& code) {
    return Unit(name, "<returnType><INT/></returnType>" + Locals(Var("x"), "inputVars"), code, "ST",
                "function");
}

string Document(const string& pous, const string& resource = "", const string& types = "",
                const string& documentType = "", const string& rootAttributes = "") {
    return documentType + "<project xmlns='http://www.plcopen.org/xml/tc6_0201'" + rootAttributes +
           "><contentHeader name='made'/><types><dataTypes>" + types + "</dataTypes><pous>" + pous +
           "</pous></types><instances><configurations><configuration name='c'><resource name='r'>" +
           resource + "</resource></configuration></configurations></instances></project>";
}

string Globals(const string& variables) {
    return Document("", Locals(variables, "globalVars"));
}

template <typename Item>
string ManyGlobals(size_t bytes, Item item) {
    return Globals(Fill(bytes, item));
}

string WithType(const string& documentType) {
    return Document("", "", "", "<!DOCTYPE project " + documentType + ">");
}

// Chains of ten: each holds the one before.
string Chains(size_t bytes, string (*link)(const string& name, const string& before)) {
    return Fill(bytes, [link](size_t i) {
        const string name = "C" + No(i / 10) + "_";
        return link(name + No(i % 10), i % 10 == 0 ? "" : name + No(i % 10 - 1));
    });
}

constexpr std::size_t kLong = 16;  // of what is long without a break

constexpr Shape kShapes[] = {
    // -- Honest: what a large plant may be large in
    // ------------------------------------------------
    {"globals", false,
     [](size_t n) {
         return ManyGlobals(
             n, [](size_t i) { return Var("Motor_" + No(i), "<INT/>", Value(No(i % 1000))); });
     }},
    {"globals with reals", false,
     [](size_t n) {
         return ManyGlobals(
             n, [](size_t i) { return Var("Level" + No(i), "<REAL/>", Value(No(i) + ".25")); });
     }},
    {"globals with texts", false,
     [](size_t n) {
         return ManyGlobals(n, [](size_t i) {
             return Var("Say" + No(i), "<string length='80'/>",
                        Value("&apos;no " + No(i) + "&apos;"));
         });
     }},
    {"globals with addresses", false,
     [](size_t n) {
         return ManyGlobals(n, [](size_t i) {
             return "<variable name='In" + No(i) + "' address='%IW" + No(i) +
                    "'><type><INT/></type></variable>";
         });
     }},
    {"globals of array types", false,
     [](size_t n) {
         return ManyGlobals(n,
                            [](size_t i) { return Var("Row" + No(i), ArrayOf(i + 1, "<INT/>")); });
     }},
    {"globals of own types", false,
     [](size_t n) {
         const auto type = [](size_t i) { return Structure("T" + No(i), Var("m")); };
         const auto global = [n](size_t i) {
             return Var("G" + No(i), Typed("T" + No(i % (n / 2000 + 1))));
         };
         return Document("", Locals(Fill(n * 3 / 4, global), "globalVars"), Fill(n / 4, type));
     }},
    {"globals with faults", false,
     [](size_t n) {
         return ManyGlobals(n,
                            [](size_t i) { return Var("X" + No(i), "<INT/>", Value("not one")); });
     }},
    {"configurations", false,
     [](size_t n) {
         const string all = Fill(n, [](size_t i) {
             return Named("configuration", "C" + No(i),
                          Named("resource", "r", Locals(Var("g" + No(i)), "globalVars")));
         });
         string document = Document("");
         return document.insert(document.find("</configurations>"), all);
     }},
    {"units", false,
     [](size_t n) {
         return Document(Fill(n, [](size_t i) {
             return Unit(
                 "Unit" + No(i),
                 Locals(Var("On", "<BOOL/>") + Var("Goal", "<REAL/>", Value("1.5")), "inputVars") +
                     Locals(Var("Done", "<BOOL/>"), "outputVars"),
                 "Done := On AND Goal > " + No(i) + ".0;");
         }));
     }},
    {"small units", false,
     [](size_t n) {
         return Document(Fill(n, [](size_t i) { return Unit("U" + No(i), Locals(Var("v"))); }));
     }},
    {"units with 100 variables", false,
     [](size_t n) {
         string variables;
         for (size_t i = 0; i < 100; ++i) {
             variables += Var("v" + No(i), "<INT/>", Value(No(i)));
         }
         return Document(Fill(n, [&](size_t i) { return Unit("U" + No(i), Locals(variables)); }));
     }},
    {"variables of a unit", false,
     [](size_t n) {
         const auto variable = [](size_t i) {
             return Var("v" + No(i), "<INT/>", Value(No(i % 99)));
         };
         return Document(Unit("Big", Locals(Fill(n, variable))));
     }},
    {"temporaries", false,
     [](size_t n) {
         const auto variable = [](size_t i) { return Var("t" + No(i)); };
         return Document(Unit("Big", Locals(Fill(n, variable), "tempVars")));
     }},
    {"labels", false,
     [](size_t n) {
         const auto code = [](size_t i) {
             return "l" + No(i) + ": LD v\n JMP l" + No(i / 2) + "\n";
         };
         return Document(Unit("Big", Locals(Var("v")), Fill(n, code), "IL"));
     }},
    {"externals", false,
     [](size_t n) {
         const auto global = [](size_t i) { return Var("G" + No(i)); };
         const auto unit = [](size_t i) {
             string variables;
             for (size_t k = 0; k < 10; ++k) {
                 variables += Var("G" + No(i * 7 + k));
             }
             return Unit("U" + No(i), Locals(variables, "externalVars"));
         };
         return Document(Fill(n / 2, unit), Locals(Fill(n / 2, global), "globalVars"));
     }},
    {"calls of one unit", false,
     [](size_t n) {
         return Document(Function("F", "F := x;") +
                         Unit("Big", Locals(Var("y")), Fill(n, string("y := F(x := y);\n"))));
     }},
    {"calls of many units", false,
     [](size_t n) {
         const auto function = [](size_t i) { return Function("F" + No(i), "x;"); };
         const auto call = [](size_t i) { return "y := F" + No(i) + "(x := y);\n"; };
         return Document(Fill(n * 9 / 10, function) +
                         Unit("Big", Locals(Var("y")), Fill(n / 10, call)));
     }},
    {"functions, each calls the next", false,
     [](size_t n) {
         return Document(Fill(
             n, [](size_t i) { return Function("F" + No(i), "y := F" + No(i + 1) + "(x);"); }));
     }},
    {"function blocks, each in the next", false,
     [](size_t n) {
         return Document(Fill(n, [](size_t i) {
             return Unit("B" + No(i), Locals(Var("b", Typed("B" + No(i == 0 ? 0 : i - 1)))));
         }));
     }},
    {"function blocks, ten in each other", false,
     [](size_t n) {
         return Document(Chains(n, [](const string& name, const string& before) {
             return Unit(name, Locals(Var("b", before.empty() ? "<INT/>" : Typed(before))));
         }));
     }},
    {"tasks of one program", false,
     [](size_t n) {
         const auto task = [](size_t i) {
             return "<task name='T" + No(i) +
                    "' priority='1' interval='T#10ms'><pouInstance name='P" + No(i) +
                    "' typeName='Main'/></task>";
         };
         return Document(Unit("Main", "", "", "ST", "program"), Fill(n, task));
     }},
    {"tasks and programs", false,
     [](size_t n) {
         const auto program = [](size_t i) { return Unit("M" + No(i), "", "", "ST", "program"); };
         const auto task = [](size_t i) {
             return "<task name='T" + No(i) + "' priority='1'><pouInstance name='P" + No(i) +
                    "' typeName='M" + No(i) + "'/></task>";
         };
         return Document(Fill(n / 2, program), Fill(n / 2, task));
     }},
    {"structures", false,
     [](size_t n) {
         const string members = Var("a") + Var("b", "<REAL/>") + Var("c", "<BOOL/>");
         return Document("", "",
                         Fill(n, [&](size_t i) { return Structure("T" + No(i), members); }));
     }},
    {"structures, ten in each other", false,
     [](size_t n) {
         const auto link = [](const string& name, const string& before) {
             return Structure(
                 name, Var("m", before.empty() ? "<INT/>" : ArrayOf(10, Typed(before))) + Var("k"));
         };
         const auto global = [](size_t i) { return Var("G" + No(i), Typed("C" + No(i) + "_9")); };
         return Document("", Locals(Fill(n / 20, global), "globalVars"), Chains(n, link));
     }},
    {"members of a structure", false,
     [](size_t n) {
         return Document("", "",
                         Structure("T", Fill(n, [](size_t i) { return Var("m" + No(i)); })));
     }},
    {"values of a structure", false,
     [](size_t n) {
         const auto member = [](size_t i) { return Var("m" + No(i)); };
         const auto value = [](size_t i) {
             return "<value member='m" + No(i) + "'><simpleValue value='1'/></value>";
         };
         const string values =
             "<initialValue><structValue>" + Fill(n / 2, value) + "</structValue></initialValue>";
         return Document("", Locals(Var("g", Typed("T"), values), "globalVars"),
                         Structure("T", Fill(n / 2, member)));
     }},
    {"values of an array", false,
     [](size_t n) {
         const string values = Fill(n, string("<value><simpleValue value='7'/></value>"));
         return Globals(
             Var("g", ArrayOf(n, "<INT/>"),
                 "<initialValue><arrayValue>" + values + "</arrayValue></initialValue>"));
     }},
    {"names of an enumeration", false,
     [](size_t n) {
         const auto value = [](size_t i) { return "<value name='e" + No(i) + "'/>"; };
         return Document(
             "", "",
             Named("dataType", "T",
                   "<baseType><enum><values>" + Fill(n, value) + "</values></enum></baseType>"));
     }},
    {"arrays of arrays", false,
     [](size_t n) {
         return ManyGlobals(n, [](size_t i) {
             string type = "<INT/>";
             for (int depth = 0; depth < 50; ++depth) {
                 type = ArrayOf(2, type);
             }
             return Var("a" + No(i), type);
         });
     }},
    {"long body", false,
     [](size_t n) {
         return Document(Unit("U", Locals(Var("y")), Fill(n, string("y := y + 1;\n"))));
     }},
    {"long expression", false,
     [](size_t n) {
         return Document(
             Unit("U", Locals(Var("y")),
                  "y := " + Fill(n / 2, string("(y+")) + "1" + Fill(n / 6, string(")")) + ";"));
     }},
    {"long comment in a body", false,
     [](size_t n) {
         return Document(Unit("U", Locals(Var("y")), "(*" + Fill(n, string("say ")) + "*)"));
     }},
    {"long documentation", false,
     [](size_t n) {
         return Document(Unit("U", Locals(Var("y")) +
                                       "<documentation><p xmlns='http://www.w3.org/1999/xhtml'>" +
                                       Fill(n, string("text ")) + "</p></documentation>"));
     }},
    {"paragraphs of a body", false,
     [](size_t n) {
         return Document(
             Unit("U", Locals(Var("y")),
                  Fill(n, string("y := 1;</p>\n<p xmlns='http://www.w3.org/1999/xhtml'>"))));
     }},

    // -- Hostile
    // -----------------------------------------------------------------------------------
    {"entities in entities", true,
     [](size_t n) {
         const auto entity = [](size_t i) {
             const string inner = i == 0 ? "ha" : "&e" + No(i - 1) + ";";
             return "<!ENTITY e" + No(i) + " '" + inner + inner + "'>";
         };
         return WithType("[" + Fill(n, entity) + "]");
     }},
    {"one long entity", true,
     [](size_t n) { return WithType("[<!ENTITY e '" + string(n, 'x') + "'>]"); }, kLong},
    {"parameter entities", true,
     [](size_t n) {
         return WithType("SYSTEM 'x' [" + Fill(n, [](size_t i) { return "%p" + No(i) + ";"; }) +
                         "]");
     }},
    {"references to no entity", true,
     [](size_t n) {
         return Document("", "", Fill(n, string("&e;")), "<!DOCTYPE project SYSTEM 'x'>");
     }},
    {"references to characters", true,
     [](size_t n) {
         return Document("",
                         Locals(Var("v", "<INT/>", Value(Fill(n, string("&#65;")))), "globalVars"),
                         "", "<!DOCTYPE project SYSTEM 'x'>");
     }},
    {"a long default of an attribute", true,
     [](size_t n) {
         return Document(
             "", Locals(Fill(n / 2, string("<variable/>")), "globalVars"), "",
             "<!DOCTYPE project [<!ATTLIST variable name CDATA '" + string(n / 2, 'x') + "'>]>");
     },
     kLong},
    {"many defaults of attributes", true,
     [](size_t n) {
         const auto attribute = [](size_t i) { return " a" + No(i) + " CDATA 'x'"; };
         return Document("", Locals(Fill(n / 2, string("<variable/>")), "globalVars"), "",
                         "<!DOCTYPE project [<!ATTLIST variable" + Fill(n / 2, attribute) + ">]>");
     }},
    {"a deep content model", true,
     [](size_t n) {
         return WithType("[<!ELEMENT e " + string(n / 2, '(') + "a" + string(n / 2, ')') + ">]");
     }},
    {"comments in the document type", true,
     [](size_t n) { return WithType("[" + Fill(n, string("<!-- no --><?no no?>")) + "]"); }},
    {"a long comment in the document type", true,
     [](size_t n) { return WithType("[<!--" + string(n, 'x') + "-->]"); }, kLong},
    {"a long address of the document type", true,
     [](size_t n) { return WithType("SYSTEM '" + string(n, 'x') + "'"); }, kLong},
    {"attributes of an element", true,
     [](size_t n) {
         return Document("", "<globalVars" + Fill(n, [](size_t i) {
                                 return " a" + No(i) + "=''";
                             }) + "></globalVars>");
     }},
    {"attributes of one name", true,
     [](size_t n) {
         return Document("", "<globalVars" + Fill(n, string(" a=''")) + "></globalVars>");
     }},
    {"attributes of many elements", true,
     [](size_t n) {
         return ManyGlobals(n, [](size_t i) {
             string element = "<variable name='v" + No(i) + "'";
             for (size_t k = 0; k < 100; ++k) {
                 element += " a" + No(i * 100 + k) + "=''";
             }
             return element + "/>";
         });
     }},
    {"attributes with a prefix", true,
     [](size_t n) {
         return Document("", "<globalVars xmlns:p='" + string(n / 2, 'u') + "'" +
                                 Fill(n / 2, [](size_t i) { return " p:a" + No(i) + "=''"; }) +
                                 "/>");
     }},
    {"attributes with a short prefix", true,
     [](size_t n) {
         return Document("", "<globalVars xmlns:p='" + string(200, 'u') + "'" +
                                 Fill(n, [](size_t i) { return " p:a" + No(i) + "=''"; }) + "/>");
     }},
    {"a long attribute", true,
     [](size_t n) { return Globals(Var("v", "<INT/>", Value(string(n, '1')))); }, kLong},
    {"a long name of an attribute", true,
     [](size_t n) { return Globals("<variable " + string(n, 'a') + "=''/>"); }, kLong},
    {"a long name of an element", true,
     [](size_t n) { return Globals("<" + string(n, 'a') + "/>"); }, kLong},
    {"many names of elements", true,
     [](size_t n) { return Globals(Fill(n, [](size_t i) { return "<a" + No(i) + "/>"; })); }},
    {"elements that are kept to be judged", true,
     [](size_t n) { return Globals(Named("variable", "v", Fill(n, string("<a/>")))); }},
    {"texts that are kept to be judged", true,
     [](size_t n) { return Globals(Named("variable", "v", Fill(n, string("x<a/>")))); }},
    {"namespaces of an element", true,
     [](size_t n) {
         return Document("", "", "", "", Fill(n, [](size_t i) {
                             return " xmlns:n" + No(i) + "='u:" + No(i) + "'";
                         }));
     }},
    {"namespaces of nested elements", true,
     [](size_t n) {
         const string deep = Fill(8000, string("<a xmlns='u:1' xmlns:b='u:2'><b:c/>"));
         const size_t depth = 8000 / 35 + 1;
         return Globals(Fill(n, deep + Times(depth, "</a>")));
     }},
    {"a long namespace", true,
     [](size_t n) {
         return Globals("<variable name='v' xmlns:p='" + string(n / 2, 'u') + "'>" +
                        Fill(n / 2, string("<p:a/>")) + "</variable>");
     }},
    {"a long namespace of known elements", true,
     [](size_t n) {
         string document = ManyGlobals(n / 2, [](size_t i) { return Var("v" + No(i)); });
         const string space = "xmlns='http://www.plcopen.org/xml/tc6";
         return document.replace(document.find(space), space.size(), space + string(n / 2, 'u'));
     }},
    {"nested to the limit", true,
     [](size_t n) { return Globals(Fill(n, Times(240, "<a>") + Times(240, "</a>"))); }},
    {"nested to the limit where it is read", true,
     [](size_t n) {
         const string type =
             Times(120, "<array><baseType>") + "<INT/>" + Times(120, "</baseType></array>");
         return ManyGlobals(n, [&](size_t i) { return Var("v" + No(i), type); });
     }},
    {"nested beyond the limit", true, [](size_t n) { return Globals(Fill(n, string("<a>"))); }},
    {"globals of one name", true, [](size_t n) { return Globals(Fill(n, Var("same"))); }},
    {"lists with a global of one name", true,
     [](size_t n) { return Document("", Fill(n, Locals(Var("same"), "globalVars"))); }},
    {"units of one name", true,
     [](size_t n) { return Document(Fill(n, Unit("Same", Locals(Var("v"))))); }},
    {"types of one name", true,
     [](size_t n) { return Document("", "", Fill(n, Structure("Same", Var("m")))); }},
    {"tasks of one name", true,
     [](size_t n) {
         return Document(Unit("Main", ""),
                         Fill(n, string("<task name='T' priority='1'><pouInstance name='P' "
                                        "typeName='Main'/></task>")));
     }},
    {"variables of one name", true,
     [](size_t n) { return Document(Unit("U", Locals(Fill(n, Var("same"))))); }},
    {"members of one name", true,
     [](size_t n) { return Document("", "", Structure("T", Fill(n, Var("same")))); }},
    {"labels of one name", true,
     [](size_t n) {
         return Document(Unit("U", "", Fill(n, string("same: LD v\nJMP same\n")), "IL"));
     }},
    {"a long name of a unit with variables", true,
     [](size_t n) {
         const auto variable = [](size_t i) { return Var("1" + No(i)); };
         return Document(Unit(string(n / 2, 'u'), Locals(Fill(n / 2, variable))));
     }},
    {"a long name of a list with globals", true,
     [](size_t n) {
         const string globals = Fill(n / 2, [](size_t i) { return Var("1" + No(i)); });
         return Document(
             "", "<globalVars name='" + string(n / 2, 'g') + "'>" + globals + "</globalVars>");
     }},
    {"a long name of a type with members", true,
     [](size_t n) {
         const auto member = [](size_t i) { return Var("m" + No(i), Typed("No" + No(i))); };
         return Document("", "", Structure(string(n / 2, 't'), Fill(n / 2, member)));
     }},
    {"a long name of a unit with labels", true,
     [](size_t n) {
         const auto label = [](size_t i) { return "l" + No(i) + ":\n"; };
         return Document(Unit(string(n / 2, 'u'), "", Fill(n / 2, label), "IL"));
     }},
    {"a long name with many reports", true,
     [](size_t n) {
         const auto unknown = [](size_t i) { return "<a" + No(i) + "/>"; };
         return Globals(Named("variable", string(n / 2, 'v'), Fill(n / 2, unknown)));
     }},
    {"many faults in the format", true,
     [](size_t n) {
         const auto task = [](size_t i) { return "<task name='t' interval='?" + No(i) + "'/>"; };
         return Document("", Fill(n, task));
     }},
    {"a long comment", true, [](size_t n) { return Globals("<!--" + string(n, 'x') + "-->"); },
     kLong},
    {"comments", true, [](size_t n) { return Globals(Fill(n, string("<!-- -->"))); }},
    {"a long CDATA section", true,
     [](size_t n) { return Document(Unit("U", "", "<![CDATA[" + string(n, ';') + "]]>")); }, kLong},
    {"CDATA sections", true,
     [](size_t n) { return Document(Unit("U", "", Fill(n, string("<![CDATA[;]]>")))); }},
    {"processing instructions", true, [](size_t n) { return Globals(Fill(n, string("<?a?>"))); }},
    {"a long processing instruction", true,
     [](size_t n) { return Globals("<?a " + string(n, 'x') + "?>"); }, kLong},
    {"open comments in a body", true,
     [](size_t n) { return Document(Unit("U", "", Fill(n, string("(* *) (* (* *)")))); }},
    {"open pragmas in a body", true,
     [](size_t n) { return Document(Unit("U", "", Fill(n, string("{ } {")))); }},
    {"open strings in a body", true,
     [](size_t n) { return Document(Unit("U", "", Fill(n, string("'\n\"\n$'")))); }},
    {"names of calls in a body", true,
     [](size_t n) {
         return Document(Unit("U", "", Fill(n, [](size_t i) { return "f" + No(i) + "("; })));
     }},
    {"tags cut off", true, [](size_t n) { return "<project " + string(n, ' '); }, kLong},
};

}  // namespace

std::span<const Shape> Shapes() {
    return kShapes;
}

}  // namespace lq::bench
