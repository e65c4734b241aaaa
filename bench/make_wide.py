#!/usr/bin/env python3
"""Writes a wide data set's dictionary for the benchmarks of the field readers.

One field element per variable, as the documents of text features, genomic
markers or survey batteries have them: 60% categorical fields (half of them
strings, half integers) with 5 to 50 labelled Values and one missing value,
40% continuous doubles with a range. --kind pmml writes a PMML document (a
Header, the DataDictionary of DataFields, and a small RegressionModel over
the first fields); --kind datamodel writes a DataModel document of Fields.
About 1.1 KB per field in PMML, so 100,000 fields make some 110 MB.

    make_wide.py OUT.pmml --fields 100000
    make_wide.py OUT.xml --fields 10000 --kind datamodel

The output is the same for the same arguments.
"""

import argparse
import os
import random
import sys


def categorical_values(rng, numeric):
    count = rng.randint(5, 50)
    values = []
    for v in range(count):
        value = str(v + 1) if numeric else "level_%d" % v
        values.append((value, "Scale point %d" % v))
    missing = ("99", "not stated") if numeric else ("unknown", "not stated")
    return values, missing


def pmml_field(i, rng):
    name = "v%07d" % i
    kind = i % 5
    if kind < 3:
        numeric = kind == 2
        values, missing = categorical_values(rng, numeric)
        parts = ['  <DataField name="%s" displayName="Variable %d of the data set" '
                 'optype="categorical" dataType="%s">\n'
                 % (name, i, "integer" if numeric else "string")]
        for value, label in values:
            parts.append('   <Value value="%s" displayValue="%s"/>\n' % (value, label))
        parts.append('   <Value value="%s" displayValue="%s" property="missing"/>\n'
                     % missing)
        parts.append('  </DataField>\n')
        return "".join(parts)
    low = rng.randint(0, 1000)
    return ('  <DataField name="%s" displayName="Variable %d of the data set" '
            'optype="continuous" dataType="double">\n'
            '   <Interval closure="closedClosed" leftMargin="%d" rightMargin="%d.5"/>\n'
            '   <Value value="-1" displayValue="refused" property="missing"/>\n'
            '  </DataField>\n' % (name, i, low, low + 800))


def datamodel_field(i, rng):
    name = "v%07d" % i
    kind = i % 5
    if kind < 3:
        numeric = kind == 2
        values, _ = categorical_values(rng, numeric)
        parts = ['  <Field name="%s" displayLabel="Variable %d of the data set" storage="%s" '
                 'measure="nominal" role="input">\n   <Values>\n'
                 % (name, i, "integer" if numeric else "string")]
        for value, label in values:
            parts.append('    <Value value="%s" displayLabel="%s"/>\n' % (value, label))
        parts.append('   </Values>\n  </Field>\n')
        return "".join(parts)
    low = rng.randint(0, 1000)
    return ('  <Field name="%s" displayLabel="Variable %d of the data set" storage="real" '
            'measure="continuous" role="input">\n'
            '   <Range minValue="%d" maxValue="%d.5"/>\n  </Field>\n' % (name, i, low, low + 800))


def write(path, fields, kind, seed):
    rng = random.Random(seed)
    size = 0
    with open(path, "w", encoding="utf-8", newline="\n") as out:
        def put(text):
            nonlocal size
            out.write(text)
            size += len(text)

        if kind == "pmml":
            put('<?xml version="1.0" encoding="UTF-8"?>\n'
                '<PMML xmlns="http://www.dmg.org/PMML-4_4" version="4.4">\n'
                ' <Header copyright="generated" description="wide data set"/>\n'
                ' <DataDictionary numberOfFields="%d">\n' % fields)
            field = pmml_field
        else:
            put('<?xml version="1.0" encoding="UTF-8"?>\n<DataModel>\n <Fields>\n')
            field = datamodel_field
        batch = []
        for i in range(fields):
            batch.append(field(i, rng))
            if len(batch) == 1000:
                put("".join(batch))
                batch = []
        put("".join(batch))
        if kind == "pmml":
            inputs = min(fields, 10)
            put(' </DataDictionary>\n'
                ' <RegressionModel functionName="regression" modelName="wide">\n'
                '  <MiningSchema>\n')
            for i in range(inputs):
                put('   <MiningField name="v%07d"/>\n' % i)
            put('  </MiningSchema>\n  <RegressionTable intercept="0.5">\n')
            for i in range(inputs):
                if i % 5 >= 3:
                    put('   <NumericPredictor name="v%07d" coefficient="0.25"/>\n' % i)
            put('  </RegressionTable>\n </RegressionModel>\n</PMML>\n')
        else:
            put(' </Fields>\n</DataModel>\n')
    return size


def main(argv):
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("output")
    parser.add_argument("--fields", type=int, required=True)
    parser.add_argument("--kind", choices=["pmml", "datamodel"], default="pmml")
    parser.add_argument("--seed", type=int, default=2024)
    args = parser.parse_args(argv)
    if args.fields < 1:
        parser.error("--fields must be at least 1")
    partial = args.output + ".partial"
    size = write(partial, args.fields, args.kind, args.seed)
    os.replace(partial, args.output)
    print("%s: %s, %d fields, %d bytes" % (args.output, args.kind, args.fields, size))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
