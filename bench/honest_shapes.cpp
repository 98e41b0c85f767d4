// What a large plant may be large in.
#include "bench/document_parts.h"
#include "bench/shapes.h"

namespace lq::bench {

namespace {

// Chains of ten: each holds the one before.
string Chains(size_t bytes, string (*link)(const string& name, const string& before)) {
    return Fill(bytes, [link](size_t i) {
        const string name = "C" + No(i / 10) + "_";
        return link(name + No(i % 10), i % 10 == 0 ? "" : name + No(i % 10 - 1));
    });
}

constexpr Shape kShapes[] = {
    {"globals",
     [](size_t n) {
         return ManyGlobals(
             n, [](size_t i) { return Var("Motor_" + No(i), "<INT/>", Value(No(i % 1000))); });
     }},
    {"globals with reals",
     [](size_t n) {
         return ManyGlobals(
             n, [](size_t i) { return Var("Level" + No(i), "<REAL/>", Value(No(i) + ".25")); });
     }},
    {"globals with texts",
     [](size_t n) {
         return ManyGlobals(n, [](size_t i) {
             return Var("Say" + No(i), "<string length='80'/>",
                        Value("&apos;no " + No(i) + "&apos;"));
         });
     }},
    {"globals with addresses",
     [](size_t n) {
         return ManyGlobals(n, [](size_t i) {
             return "<variable name='In" + No(i) + "' address='%IW" + No(i) +
                    "'><type><INT/></type></variable>";
         });
     }},
    {"globals of array types",
     [](size_t n) {
         return ManyGlobals(n,
                            [](size_t i) { return Var("Row" + No(i), ArrayOf(i + 1, "<INT/>")); });
     }},
    {"globals of own types",
     [](size_t n) {
         const auto type = [](size_t i) { return Structure("T" + No(i), Var("m")); };
         const auto global = [n](size_t i) {
             return Var("G" + No(i), Typed("T" + No(i % (n / 2000 + 1))));
         };
         return Document("", Locals(Fill(n * 3 / 4, global), "globalVars"), Fill(n / 4, type));
     }},
    {"globals with faults",
     [](size_t n) {
         return ManyGlobals(n,
                            [](size_t i) { return Var("X" + No(i), "<INT/>", Value("not one")); });
     }},
    {"configurations",
     [](size_t n) {
         const string all = Fill(n, [](size_t i) {
             return Named("configuration", "C" + No(i),
                          Named("resource", "r", Locals(Var("g" + No(i)), "globalVars")));
         });
         string document = Document("");
         return document.insert(document.find("</configurations>"), all);
     }},
    {"units",
     [](size_t n) {
         return Document(Fill(n, [](size_t i) {
             return Unit(
                 "Unit" + No(i),
                 Locals(Var("On", "<BOOL/>") + Var("Goal", "<REAL/>", Value("1.5")), "inputVars") +
                     Locals(Var("Done", "<BOOL/>"), "outputVars"),
                 "Done := On AND Goal > " + No(i) + ".0;");
         }));
     }},
    {"small units",
     [](size_t n) {
         return Document(Fill(n, [](size_t i) { return Unit("U" + No(i), Locals(Var("v"))); }));
     }},
    {"units with 100 variables",
     [](size_t n) {
         string variables;
         for (size_t i = 0; i < 100; ++i) {
             variables += Var("v" + No(i), "<INT/>", Value(No(i)));
         }
         return Document(Fill(n, [&](size_t i) { return Unit("U" + No(i), Locals(variables)); }));
     }},
    {"variables of a unit",
     [](size_t n) {
         const auto variable = [](size_t i) {
             return Var("v" + No(i), "<INT/>", Value(No(i % 99)));
         };
         return Document(Unit("Big", Locals(Fill(n, variable))));
     }},
    {"temporaries",
     [](size_t n) {
         const auto variable = [](size_t i) { return Var("t" + No(i)); };
         return Document(Unit("Big", Locals(Fill(n, variable), "tempVars")));
     }},
    {"labels",
     [](size_t n) {
         const auto code = [](size_t i) {
             return "l" + No(i) + ": LD v\n JMP l" + No(i / 2) + "\n";
         };
         return Document(Unit("Big", Locals(Var("v")), Fill(n, code), "IL"));
     }},
    {"externals",
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
    {"calls of one unit",
     [](size_t n) {
         return Document(Function("F", "F := x;") +
                         Unit("Big", Locals(Var("y")), Fill(n, string("y := F(x := y);\n"))));
     }},
    {"calls of many units",
     [](size_t n) {
         const auto function = [](size_t i) { return Function("F" + No(i), "x;"); };
         const auto call = [](size_t i) { return "y := F" + No(i) + "(x := y);\n"; };
         return Document(Fill(n * 9 / 10, function) +
                         Unit("Big", Locals(Var("y")), Fill(n / 10, call)));
     }},
    {"functions, each calls the next",
     [](size_t n) {
         return Document(Fill(
             n, [](size_t i) { return Function("F" + No(i), "y := F" + No(i + 1) + "(x);"); }));
     }},
    {"function blocks, each in the next",
     [](size_t n) {
         return Document(Fill(n, [](size_t i) {
             return Unit("B" + No(i), Locals(Var("b", Typed("B" + No(i == 0 ? 0 : i - 1)))));
         }));
     }},
    {"function blocks, ten in each other",
     [](size_t n) {
         return Document(Chains(n, [](const string& name, const string& before) {
             return Unit(name, Locals(Var("b", before.empty() ? "<INT/>" : Typed(before))));
         }));
     }},
    {"tasks of one program",
     [](size_t n) {
         const auto task = [](size_t i) {
             return "<task name='T" + No(i) +
                    "' priority='1' interval='T#10ms'><pouInstance name='P" + No(i) +
                    "' typeName='Main'/></task>";
         };
         return Document(Unit("Main", "", "", "ST", "program"), Fill(n, task));
     }},
    {"tasks and programs",
     [](size_t n) {
         const auto program = [](size_t i) { return Unit("M" + No(i), "", "", "ST", "program"); };
         const auto task = [](size_t i) {
             return "<task name='T" + No(i) + "' priority='1'><pouInstance name='P" + No(i) +
                    "' typeName='M" + No(i) + "'/></task>";
         };
         return Document(Fill(n / 2, program), Fill(n / 2, task));
     }},
    {"structures",
     [](size_t n) {
         const string members = Var("a") + Var("b", "<REAL/>") + Var("c", "<BOOL/>");
         return Document("", "",
                         Fill(n, [&](size_t i) { return Structure("T" + No(i), members); }));
     }},
    {"structures, ten in each other",
     [](size_t n) {
         const auto link = [](const string& name, const string& before) {
             return Structure(
                 name, Var("m", before.empty() ? "<INT/>" : ArrayOf(10, Typed(before))) + Var("k"));
         };
         const auto global = [](size_t i) { return Var("G" + No(i), Typed("C" + No(i) + "_9")); };
         return Document("", Locals(Fill(n / 20, global), "globalVars"), Chains(n, link));
     }},
    {"members of a structure",
     [](size_t n) {
         return Document("", "",
                         Structure("T", Fill(n, [](size_t i) { return Var("m" + No(i)); })));
     }},
    {"values of a structure",
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
    {"values of an array",
     [](size_t n) {
         const string values = Fill(n, string("<value><simpleValue value='7'/></value>"));
         return Globals(
             Var("g", ArrayOf(n, "<INT/>"),
                 "<initialValue><arrayValue>" + values + "</arrayValue></initialValue>"));
     }},
    {"names of an enumeration",
     [](size_t n) {
         const auto value = [](size_t i) { return "<value name='e" + No(i) + "'/>"; };
         return Document(
             "", "",
             Named("dataType", "T",
                   "<baseType><enum><values>" + Fill(n, value) + "</values></enum></baseType>"));
     }},
    {"arrays of arrays",
     [](size_t n) {
         return ManyGlobals(n, [](size_t i) {
             string type = "<INT/>";
             for (int depth = 0; depth < 50; ++depth) {
                 type = ArrayOf(2, type);
             }
             return Var("a" + No(i), type);
         });
     }},
    {"long body",
     [](size_t n) {
         return Document(Unit("U", Locals(Var("y")), Fill(n, string("y := y + 1;\n"))));
     }},
    {"long expression",
     [](size_t n) {
         return Document(
             Unit("U", Locals(Var("y")),
                  "y := " + Fill(n / 2, string("(y+")) + "1" + Fill(n / 6, string(")")) + ";"));
     }},
    {"long comment in a body",
     [](size_t n) {
         return Document(Unit("U", Locals(Var("y")), "(*" + Fill(n, string("say ")) + "*)"));
     }},
    {"long documentation",
     [](size_t n) {
         return Document(Unit("U", Locals(Var("y")) +
                                       "<documentation><p xmlns='http://www.w3.org/1999/xhtml'>" +
                                       Fill(n, string("text ")) + "</p></documentation>"));
     }},
    {"paragraphs of a body",
     [](size_t n) {
         return Document(
             Unit("U", Locals(Var("y")),
                  Fill(n, string("y := 1;</p>\n<p xmlns='http://www.w3.org/1999/xhtml'>"))));
     }},
};

}  // namespace

std::span<const Shape> HonestShapes() {
    return kShapes;
}

}  // namespace lq::bench
