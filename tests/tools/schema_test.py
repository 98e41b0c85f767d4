"""Checks what `lq --json` prints against docs/schema/: schema_test.py LQ SCHEMAS EXAMPLES."""

import json
import pathlib
import subprocess
import sys

import jsonschema

lq, schemas, examples = sys.argv[1:]
plant = examples + "/plant/plant.xml"

# Of one project after the other: refusals, reports of the reader, and nothing at all.
faulty = """<project xmlns='http://www.plcopen.org/xml/tc6_0201'>
<fileHeader companyName='c' productName='p' productVersion='1'
  creationDateTime='2024-01-01T00:00:00'/><contentHeader name='n'/>
<types><dataTypes/><pous/></types><instances><configurations><configuration name='c'>
<globalVars name='List'><variable name='a'><type><derived name='Nobody'/></type></variable><strange/>
</globalVars></configuration></configurations></instances></project>"""

# The arguments, standard input, and the exit status.
CASES = [
    (["translate", plant], "", 0),
    (["translate", "-"], faulty, 1),
    (["show", plant], "", 0),
    (["show", plant, "--table", "units", "--table", "globals"], "", 0),
    (["show", plant, "--find", "Mixing.stirring"], "", 0),
    (["show", plant, "--find", "nothing"], "", 1),
    (["show", "-"], "\0" * 40, 0),
    (["scan", "-"], "x := 16#G; (* c *) %QX1.2 'a' T#1h 1..2\nD#2024-02-29", 1),
    (["scan", "-", "--errors"], "", 0),
    (["value", "0", "-5", "16#FF", "1.5", "TRUE", "T#1h", "D#2024-02-29"], "", 0),
    (["value", "abc"], "", 1),
    (["pou", plant, "Mixing"], "", 0),
    (["pou", plant, "Recipe"], "", 0),
    (["pou", plant, "PlantState"], "", 0),
    (["pou", plant, "Dosing", "--interface"], "", 0),
    (["fb", plant, "Mixing", "stirring"], "", 0),
    (["fb", plant, "Mixing", "nothing"], "", 1),
    (["tasks", plant], "", 0),
    (["tasks", "-"], faulty, 1),
    (["symbols", plant], "", 0),
    (["symbols", plant, "--expand", "--sort", "name"], "", 0),
    (["symbols", "-", "--located"], faulty, 1),
    (["diff", plant, "-"], faulty, 1),
    (["diff", "-", plant], faulty, 1),
    (["diff", plant, plant], "", 0),
    (["symbols", plant, "--uses"], "", 0),
    (["uses", plant, "Clamp"], "", 0),
    (["check", plant], "", 0),
    (["check", "-"], faulty, 0),
    (["check", "--list"], "", 0),
    (["check", plant, "--format", "sarif"], "", 0),
    (["check", "-", "--format", "sarif"], faulty, 0),
    (["types"], "", 0),
]


def close(schema):
    """The schema with no members but those that it names. The published ones are open, since readers
    are to pass over new members."""
    if isinstance(schema, dict):
        if "additionalProperties" in schema:
            raise ValueError("a published schema is open")
        closed = {key: close(value) for key, value in schema.items()}
        return closed | {"additionalProperties": False} if "properties" in schema else closed
    return [close(item) for item in schema] if isinstance(schema, list) else schema


faults = []
unused = {path.stem for path in pathlib.Path(schemas).glob("*.json")}
for arguments, text, status in CASES:
    name = arguments[-1] if "--format" in arguments else arguments[0]
    form = [] if "--format" in arguments else ["--json"]
    schema = json.loads(pathlib.Path(schemas, name + ".json").read_text())
    jsonschema.Draft202012Validator.check_schema(schema)
    run = subprocess.run([lq, *arguments, *form], input=text.encode(), capture_output=True)
    try:
        if run.returncode != status:
            raise ValueError(f"exit status {run.returncode}: {run.stderr.decode()}")
        jsonschema.validate(json.loads(run.stdout), close(schema))
    except (ValueError, jsonschema.ValidationError) as fault:
        faults.append(f"lq {' '.join(arguments)}: {fault}")
    unused.discard(name)
faults += [f"no case for {name}.json" for name in sorted(unused)]
sys.exit("\n".join(faults) or 0)
