#!/usr/bin/env python3
"""Writes a PMML tree ensemble for the benchmarks and tests of the PMML reader.

The document is shaped like the output of a random forest or a boosted
ensemble: a Header, a DataDictionary of FIELDS fields (the last one the
target), a MiningModel with its MiningSchema, Output and ModelStats (one
UnivariateStats per input field), and a Segmentation of TREES segments, each a
TreeModel whose tree is full and DEPTH levels deep (2^DEPTH - 1 Nodes). Every
fourth input field is a categorical string field, the others are continuous.

Either --trees or --size-mb sets the number of trees; --size-mb picks the
number of trees whose document comes nearest the given size. The output is the
same for the same arguments.

    make_ensemble.py OUT.pmml --trees 2000 --depth 10 --fields 41
    make_ensemble.py OUT.pmml --size-mb 50
"""

import argparse
import io
import os
import random
import sys

CATEGORIES = ["north", "south", "east", "west", "centre"]


def field_name(i):
    return "x%02d" % i


def is_categorical(i):
    return i % 4 == 3


def head(fields, trees):
    out = io.StringIO()
    inputs = fields - 1
    out.write('<?xml version="1.0" encoding="UTF-8"?>\n')
    out.write('<PMML xmlns="http://www.dmg.org/PMML-4_4" version="4.4">\n')
    out.write(' <Header copyright="generated" description="tree ensemble for the reader'
              ' benchmarks">\n  <Application name="make_ensemble" version="1"/>\n </Header>\n')
    out.write(' <DataDictionary numberOfFields="%d">\n' % fields)
    for i in range(inputs):
        if is_categorical(i):
            out.write('  <DataField name="%s" optype="categorical" dataType="string">\n'
                      % field_name(i))
            for c in CATEGORIES:
                out.write('   <Value value="%s"/>\n' % c)
            out.write('   <Value value="?" property="missing"/>\n  </DataField>\n')
        else:
            out.write('  <DataField name="%s" optype="continuous" dataType="double">\n'
                      '   <Interval closure="closedClosed" leftMargin="0" rightMargin="100"/>\n'
                      '  </DataField>\n' % field_name(i))
    out.write('  <DataField name="y" optype="continuous" dataType="double"/>\n')
    out.write(' </DataDictionary>\n')
    out.write(' <MiningModel functionName="regression" modelName="ensemble">\n')
    out.write(mining_schema(inputs, "  "))
    out.write('  <Output>\n   <OutputField name="prediction" optype="continuous"'
              ' dataType="double" feature="predictedValue"/>\n  </Output>\n')
    out.write('  <ModelStats>\n')
    rng = random.Random(7)
    for i in range(inputs):
        out.write('   <UnivariateStats field="%s">\n    <Counts totalFreq="10000"/>\n'
                  % field_name(i))
        if is_categorical(i):
            counts = [rng.randint(500, 3000) for _ in CATEGORIES]
            out.write('    <DiscrStats>\n     <Array type="int" n="%d">%s</Array>\n'
                      '    </DiscrStats>\n' % (len(counts), " ".join(map(str, counts))))
        else:
            out.write('    <NumericInfo minimum="0" maximum="100" mean="%.4f"'
                      ' standardDeviation="%.4f"/>\n' % (rng.uniform(30, 70), rng.uniform(5, 25)))
            out.write('    <ContStats>\n')
            for b in range(10):
                out.write('     <Interval closure="%s" leftMargin="%d" rightMargin="%d"/>\n'
                          % ("closedOpen" if b < 9 else "closedClosed", b * 10, b * 10 + 10))
            counts = [rng.randint(500, 1500) for _ in range(10)]
            out.write('     <Array type="int" n="10">%s</Array>\n    </ContStats>\n'
                      % " ".join(map(str, counts)))
        out.write('   </UnivariateStats>\n')
    out.write('  </ModelStats>\n')
    out.write('  <Segmentation multipleModelMethod="sum">\n')
    return out.getvalue()


def mining_schema(inputs, indent):
    lines = [indent + '<MiningSchema>\n']
    for i in range(inputs):
        lines.append(indent + ' <MiningField name="%s"/>\n' % field_name(i))
    lines.append(indent + ' <MiningField name="y" usageType="target"/>\n')
    lines.append(indent + '</MiningSchema>\n')
    return "".join(lines)


def tree(index, depth, inputs, rng):
    """One Segment holding a TreeModel with a full tree of `depth` levels."""
    parts = ['   <Segment id="%d">\n    <True/>\n'
             '    <TreeModel functionName="regression" splitCharacteristic="binarySplit">\n'
             % (index + 1), mining_schema(inputs, "     ")]
    def node(level, predicate, indent):
        records = rng.randint(10, 999)
        score = rng.uniform(-1, 1)
        if level == depth:
            parts.append('%s<Node score="%.4f" recordCount="%d">%s</Node>\n'
                         % (indent, score, records, predicate))
            return
        parts.append('%s<Node score="%.4f" recordCount="%d">%s\n'
                     % (indent, score, records, predicate))
        f = rng.randrange(inputs)
        if is_categorical(f):
            value = rng.choice(CATEGORIES)
            left = '<SimplePredicate field="%s" operator="equal" value="%s"/>' % (field_name(f), value)
            right = ('<SimplePredicate field="%s" operator="notEqual" value="%s"/>'
                     % (field_name(f), value))
        else:
            value = "%.3f" % rng.uniform(0, 100)
            left = ('<SimplePredicate field="%s" operator="lessOrEqual" value="%s"/>'
                    % (field_name(f), value))
            right = ('<SimplePredicate field="%s" operator="greaterThan" value="%s"/>'
                     % (field_name(f), value))
        node(level + 1, left, indent + " ")
        node(level + 1, right, indent + " ")
        parts.append(indent + "</Node>\n")

    node(1, "<True/>", "     ")
    parts.append('    </TreeModel>\n   </Segment>\n')
    return "".join(parts)


TAIL = '  </Segmentation>\n </MiningModel>\n</PMML>\n'


def write(path, trees, depth, fields, seed):
    rng = random.Random(seed)
    size = 0
    with open(path, "w", encoding="utf-8", newline="\n") as out:
        text = head(fields, trees)
        out.write(text)
        size += len(text)
        for t in range(trees):
            text = tree(t, depth, fields - 1, rng)
            out.write(text)
            size += len(text)
        out.write(TAIL)
        size += len(TAIL)
    return size


def trees_for_size(size_mb, depth, fields, seed):
    rng = random.Random(seed)
    sample = 8
    per_tree = sum(len(tree(t, depth, fields - 1, rng)) for t in range(sample)) / sample
    fixed = len(head(fields, 0)) + len(TAIL)
    return max(1, round((size_mb * 1e6 - fixed) / per_tree))


def main(argv):
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("output")
    count = parser.add_mutually_exclusive_group(required=True)
    count.add_argument("--trees", type=int)
    count.add_argument("--size-mb", type=float)
    parser.add_argument("--depth", type=int, default=10)
    parser.add_argument("--fields", type=int, default=41)
    parser.add_argument("--seed", type=int, default=2024)
    args = parser.parse_args(argv)
    if args.depth < 1 or args.fields < 2:
        parser.error("--depth must be at least 1 and --fields at least 2")
    trees = args.trees
    if trees is None:
        trees = trees_for_size(args.size_mb, args.depth, args.fields, args.seed)
    if trees < 1:
        parser.error("--trees must be at least 1")
    partial = args.output + ".partial"
    size = write(partial, trees, args.depth, args.fields, args.seed)
    os.replace(partial, args.output)
    print("%s: %d trees of depth %d, %d fields, %d bytes"
          % (args.output, trees, args.depth, args.fields, size))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
