#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include "combiner_support.h"

#include <sstream>
#include <tuple>

using namespace combinertest;
using ZRXPrsUtil::ZRXSplitPMMLCombiner;
using ZRMTD_NAMESPACE::ZRVarList;
using Values = std::vector<std::string>;

namespace {

// A minimal split model; `body` goes inside PMML after the DataDictionary.
std::string Model(const std::string& fields, const std::string& body)
{
    return "<PMML version='4.4'><DataDictionary>" + fields + "</DataDictionary>" + body +
           "</PMML>";
}

std::string Tree(const std::string& function, const std::string& schema)
{
    return "<TreeModel functionName='" + function + "'><MiningSchema>" + schema +
           "</MiningSchema><Node><True/></Node></TreeModel>";
}

const char* const kField = "<DataField name='x' optype='continuous' dataType='double'/>";
const char* const kSchema = "<MiningField name='x'/>";

} // namespace

TEST(CombinerMerge, TwoModelsGiveTheUnionInFirstSeenOrder)
{
    ZRVarList list;
    AddSplitVars(list, false);
    TempDir dir;
    ZRXSplitPMMLCombiner combiner(list);
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {"north"}).IsOK());
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_b.pmml"), {"south"}).IsOK());
    EXPECT_EQ(combiner.GetNModels(), 2);
    std::ostringstream shown;
    combiner.Display(shown);
    EXPECT_TRUE(shown.str().empty());
    ASSERT_TRUE(combiner.ExportMiningModel(dir.Path("out.pmml")).IsOK());

    Combined out(dir.Path("out.pmml"));
    ASSERT_TRUE(out.ok);
    // Root attributes and Header come from the first model only; no
    // TransformationDictionary is left at the top.
    EXPECT_EQ(Att(out.Root(), "xmlns"), "http://www.dmg.org/PMML-4_4");
    EXPECT_EQ(Att(Child(out.Root(), "Header"), "copyright"), "first");
    EXPECT_EQ(ChildTags(out.Root()), (Values{"Header", "DataDictionary", "MiningModel"}));

    // Data dictionary: first model's fields, split variable, then new ones.
    EXPECT_EQ(ChildAtts(out.Dictionary(), "DataField", "name"),
              (Values{"x", "color", "y", "region", "z"}));
    EXPECT_EQ(Att(out.Dictionary(), "numberOfFields"), "5");
    EXPECT_EQ(ChildAtts(out.Dictionary(), "DataField", "optype"),
              (Values{"continuous", "categorical", "categorical", "categorical", "continuous"}));
    // A value new to the output and listed twice comes twice; a known one
    // never; a later field named like a split variable adds its values.
    EXPECT_EQ(out.Values("color"), (Values{"red", "green", "blue", "blue"}));
    EXPECT_EQ(out.Values("y"), (Values{"yes", "no", "maybe"}));
    EXPECT_EQ(out.Values("region"), (Values{"north", "south", "west"}));
    const xercesc::DOMElement* region = out.Field("region");
    EXPECT_EQ(Att(region, "displayName"), "Sales region");
    EXPECT_EQ(Att(region, "dataType"), "string");

    // Mining schema: same order rule, later attributes kept, split variable
    // active.
    EXPECT_EQ(ChildAtts(out.Schema(), "MiningField", "name"),
              (Values{"x", "color", "y", "region", "z"}));
    EXPECT_EQ(ChildAtts(out.Schema(), "MiningField", "usageType"),
              (Values{"<absent>", "<absent>", "target", "active", "supplementary"}));
    EXPECT_EQ(Att(out.MiningModel(), "functionName"), "classification");
    EXPECT_EQ(Att(out.Segmentation(), "multipleModelMethod"), "selectFirst");

    // Segments: predicate, model copy, derived fields moved in last.
    const auto segments = out.Segments();
    ASSERT_EQ(segments.size(), 2u);
    EXPECT_EQ(Att(segments[0], "id"), "<absent>");
    EXPECT_EQ(ChildTags(segments[0]), (Values{"SimplePredicate", "TreeModel"}));
    const xercesc::DOMElement* predicate = Child(segments[0], "SimplePredicate");
    EXPECT_EQ(Att(predicate, "field") + Att(predicate, "operator") + Att(predicate, "value"),
              "regionequalnorth");
    EXPECT_EQ(ChildTags(Child(segments[0], "TreeModel")),
              (Values{"MiningSchema", "Node", "LocalTransformations"}));
    EXPECT_EQ(ChildAtts(Child(Child(segments[0], "TreeModel"), "LocalTransformations"),
                        "DerivedField", "name"),
              (Values{"x2"}));
    EXPECT_EQ(Att(Child(segments[1], "SimplePredicate"), "value"), "south");
    EXPECT_EQ(Att(Child(segments[1], "TreeModel"), "modelName"), "b");
    EXPECT_EQ(ChildTags(Child(segments[1], "TreeModel")), (Values{"MiningSchema", "Node"}));
}

TEST(CombinerMerge, SameOrReorderedFieldsAddNothing)
{
    ZRVarList list;
    AddSplitVars(list, false);
    TempDir dir;
    const std::string fields = std::string(kField) +
                               "<DataField name='c' optype='categorical' dataType='string'>"
                               "<Value value='p'/></DataField>";
    const std::string reordered = "<DataField name='c' optype='ordinal' dataType='string'>"
                                  "<Extension><Value value='q'/></Extension></DataField>" +
                                  std::string(kField);
    const std::string schema = std::string(kSchema) + "<MiningField name='c'/>";
    ZRXSplitPMMLCombiner combiner(list);
    combiner.AddModel(dir.Write("1.xml", Model(fields, Tree("regression", schema))), {"north"});
    combiner.AddModel(dir.Write("2.xml", Model(fields, Tree("regression", schema))), {"south"});
    combiner.AddModel(
        dir.Write("3.xml", Model(reordered, Tree("regression", "<MiningField name='c'/>" +
                                                                   std::string(kSchema)))),
        {"south"});
    ASSERT_TRUE(combiner.ExportMiningModel(dir.Path("out.xml")).IsOK());
    Combined out(dir.Path("out.xml"));
    EXPECT_EQ(ChildAtts(out.Dictionary(), "DataField", "name"), (Values{"x", "c", "region"}));
    // Values at any depth below a field count.
    EXPECT_EQ(out.Values("c"), (Values{"p", "q"}));
    EXPECT_EQ(ChildAtts(out.Schema(), "MiningField", "name"), (Values{"x", "c", "region"}));
    // Same values twice give two segments with the same predicate.
    const auto segments = out.Segments();
    ASSERT_EQ(segments.size(), 3u);
    EXPECT_EQ(Att(Child(segments[2], "SimplePredicate"), "value"), "south");
}

TEST(CombinerMerge, UnnamedFieldsAndValuesAreLeftOutOfTheMerge)
{
    ZRVarList list;
    AddSplitVars(list, false);
    TempDir dir;
    const std::string first = std::string("<DataField optype='continuous' dataType='double'/>") +
                              "<DataField name='c' optype='categorical' dataType='string'>"
                              "<Value/><Value value='p'/></DataField>";
    const std::string later = "<DataField optype='continuous' dataType='double'/>"
                              "<DataField name='c' optype='categorical' dataType='string'>"
                              "<Value/><Value value='p'/><Value value='r'/></DataField>";
    ZRXSplitPMMLCombiner combiner(list);
    EXPECT_TRUE(
        combiner.AddModel(dir.Write("1.xml", Model(first, Tree("regression", "<MiningField/>"))),
                          {"north"})
            .IsOK());
    EXPECT_TRUE(combiner
                    .AddModel(dir.Write("2.xml", Model(later, Tree("regression",
                                                                   "<MiningField/>" +
                                                                       std::string(kSchema)))),
                              {"south"})
                    .IsOK());
    ASSERT_TRUE(combiner.ExportMiningModel(dir.Path("out.xml")).IsOK());
    Combined out(dir.Path("out.xml"));
    // The first model's unnamed field stands as it came, uncounted; the
    // later one is not taken.
    EXPECT_EQ(ChildAtts(out.Dictionary(), "DataField", "name"),
              (Values{"<absent>", "c", "region"}));
    EXPECT_EQ(Att(out.Dictionary(), "numberOfFields"), "2");
    EXPECT_EQ(out.Values("c"), (Values{"<absent>", "p", "r"}));
    EXPECT_EQ(ChildAtts(out.Schema(), "MiningField", "name"),
              (Values{"<absent>", "region", "x"}));
}

TEST(CombinerPredicates, TwoSplitVariablesGiveACompoundPredicate)
{
    ZRVarList list;
    AddSplitVars(list, true);
    TempDir dir;
    ZRXSplitPMMLCombiner combiner(list);
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {"north", "2021"}).IsOK());
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_b.pmml"), {"", "2022"}).IsOK());
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_b.pmml"), {"", ""}).IsOK());
    ASSERT_TRUE(combiner.ExportMiningModel(dir.Path("out.xml")).IsOK());
    Combined out(dir.Path("out.xml"));

    const xercesc::DOMElement* year = out.Field("year");
    EXPECT_EQ(Att(year, "optype") + "/" + Att(year, "dataType") + "/" + Att(year, "displayName"),
              "categorical/integer/");
    EXPECT_EQ(out.Values("year"), (Values{"2021", "2022"}));
    EXPECT_EQ(ChildAtts(out.Schema(), "MiningField", "name"),
              (Values{"x", "color", "y", "region", "year", "z"}));

    const auto segments = out.Segments();
    ASSERT_EQ(segments.size(), 3u);
    const xercesc::DOMElement* both = Child(segments[0], "CompoundPredicate");
    EXPECT_EQ(Att(both, "booleanOperator"), "and");
    EXPECT_EQ(ChildAtts(both, "SimplePredicate", "field"), (Values{"region", "year"}));
    EXPECT_EQ(ChildAtts(both, "SimplePredicate", "value"), (Values{"north", "2021"}));
    // An empty value drops only its own condition; with none left the
    // segment can never be chosen.
    EXPECT_EQ(ChildAtts(Child(segments[1], "CompoundPredicate"), "SimplePredicate", "field"),
              (Values{"year"}));
    EXPECT_EQ(ChildTags(segments[2]), (Values{"False", "TreeModel"}));
}

TEST(CombinerPredicates, UnbuildablePredicateBecomesFalseAndNamesAreReadLive)
{
    ZRVarList list;
    AddSplitVars(list, false);
    TempDir dir;
    ZRXSplitPMMLCombiner combiner(list);
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {"north"}).IsOK());
    list.GetVarAt(0)->SetName("area");
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {"south"}).IsOK());
    list.GetVarAt(0)->SetName("");
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {"west"}).IsOK());
    ASSERT_TRUE(combiner.ExportMiningModel(dir.Path("out.xml")).IsOK());
    Combined out(dir.Path("out.xml"));
    const auto segments = out.Segments();
    ASSERT_EQ(segments.size(), 3u);
    EXPECT_EQ(Att(Child(segments[1], "SimplePredicate"), "field"), "area");
    EXPECT_EQ(ChildTags(segments[2]), (Values{"False", "TreeModel"}));
    // The dictionary keeps the name read at construction.
    EXPECT_EQ(out.Values("region"), (Values{"north", "south"}));
}

TEST(CombinerIntake, BadModelsAtFirstAndLaterPositions)
{
    ZRVarList list;
    AddSplitVars(list, false);
    TempDir dir;
    const std::string good = dir.Write("good.xml", Model(kField, Tree("regression", kSchema)));
    // Path, status at the first position, status at a later one. A later
    // document without PMML root or without model passes and adds no Segment.
    const std::vector<std::tuple<std::string, long, long>> bad = {
        {dir.Path("missing.xml"), 104, 104},
        {dir.Write("text.xml", "this is not XML"), 104, 104},
        {dir.Write("cut.xml", "<PMML><DataDictionary>"), 104, 104},
        {dir.Write("mining.xml", Model(kField, Tree("regression", kSchema) +
                                                   "<MiningModel functionName='regression'/>")),
         125, 125},
        {dir.Write("nofunction.xml", Model(kField, "<TreeModel><MiningSchema/></TreeModel>")), 108,
         108},
        {dir.Write("emptyfunction.xml", Model(kField, Tree("", kSchema))), 109, 124},
        {dir.Write("otherfunction.xml", Model(kField, Tree("classification", kSchema))), 0, 124},
        {dir.Write("root.xml", "<DataModel><Fields/></DataModel>"), 105, 0},
        {dir.Write("nomodel.xml", Model(kField, "<Scorecard functionName='regression'/>")), 113, 0},
    };
    for (const auto& [path, first, later] : bad) {
        SCOPED_TRACE(path);
        ZRXSplitPMMLCombiner combiner(list);
        if (first != 0) {
            // A refused first model leaves nothing: no file, and the next
            // good one becomes the first.
            EXPECT_EQ(combiner.AddModel(path, {"north"}).GetCode(), first);
            EXPECT_EQ(combiner.GetStatus().GetCode(), first);
            EXPECT_EQ(combiner.ExportMiningModel(dir.Path("none.xml")).GetCode(), first);
            EXPECT_FALSE(std::filesystem::exists(dir.Path("none.xml")));
        }
        EXPECT_TRUE(combiner.AddModel(good, {"north"}).IsOK());
        EXPECT_EQ(combiner.AddModel(path, {"south"}).GetCode(), later);
        EXPECT_TRUE(combiner.AddModel(good, {"south"}).IsOK());
        EXPECT_EQ(combiner.GetNModels(), 2);
        ASSERT_TRUE(combiner.ExportMiningModel(dir.Path("out.xml")).IsOK());
        Combined out(dir.Path("out.xml"));
        const auto segments = out.Segments();
        ASSERT_EQ(segments.size(), 2u);
        EXPECT_EQ(Att(Child(segments[1], "SimplePredicate"), "value"), "south");
        EXPECT_EQ(Att(out.MiningModel(), "functionName"), "regression");
    }
}

TEST(CombinerIntake, ValueCountAndEmptyArguments)
{
    ZRVarList list;
    AddSplitVars(list, false);
    TempDir dir;
    const std::string good = dir.Write("good.xml", Model(kField, Tree("regression", kSchema)));
    ZRXSplitPMMLCombiner combiner(list);
    // Wrong count: refused before the file is opened. Empty path or values:
    // the previous status, nothing else.
    EXPECT_EQ(combiner.AddModel(dir.Path("missing.xml"), {"a", "b"}).GetCode(), 126);
    EXPECT_EQ(combiner.AddModel("", {"north"}).GetCode(), 126);
    EXPECT_EQ(combiner.AddModel(good, {}).GetCode(), 126);
    EXPECT_TRUE(combiner.AddModel(good, {"north"}).IsOK());
    EXPECT_EQ(combiner.AddModel(good, {"north", "x"}).GetCode(), 126);
    EXPECT_EQ(combiner.GetNModels(), 1);

    ZRVarList none;
    ZRXSplitPMMLCombiner empty(none);
    EXPECT_EQ(empty.AddModel(good, {"north"}).GetCode(), 126);
    EXPECT_EQ(empty.AddModel(good, {}).GetCode(), 126);
    EXPECT_EQ(empty.GetNModels(), 0);
}

TEST(CombinerIntake, ModellessLaterDocumentStillMergesItsDictionary)
{
    ZRVarList list;
    AddSplitVars(list, false);
    TempDir dir;
    // Of two models in a document the standard list decides, not the order.
    const std::string both = dir.Write(
        "both.xml", Model(kField, Tree("regression", kSchema) +
                                      "<RegressionModel functionName='regression'>"
                                      "<MiningSchema/><RegressionTable intercept='1'/>"
                                      "</RegressionModel>"));
    const std::string noModel = dir.Write(
        "nomodel.xml", Model("<DataField name='w' optype='continuous' dataType='double'/>", ""));
    ZRXSplitPMMLCombiner combiner(list);
    EXPECT_TRUE(combiner.AddModel(both, {"north"}).IsOK());
    EXPECT_TRUE(combiner.AddModel(noModel, {"south"}).IsOK());
    ASSERT_TRUE(combiner.ExportMiningModel(dir.Path("out.xml")).IsOK());
    Combined out(dir.Path("out.xml"));
    EXPECT_EQ(ChildAtts(out.Dictionary(), "DataField", "name"), (Values{"x", "region", "w"}));
    ASSERT_EQ(out.Segments().size(), 1u);
    EXPECT_EQ(ChildTags(out.Segments()[0]), (Values{"SimplePredicate", "RegressionModel"}));
    // The first model had an empty schema: the split variable still stands.
    EXPECT_EQ(ChildAtts(out.Schema(), "MiningField", "name"), (Values{"region"}));
}

TEST(CombinerLifecycle, ExportReleasesAndAddModelAfterwardsStartsAnew)
{
    ZRVarList list;
    AddSplitVars(list, false);
    TempDir dir;
    {
        // Destroyed before the export: the document and the combiner's hold
        // on the XML library go with it (the sanitizer build sees leaks).
        ZRXSplitPMMLCombiner dropped(list);
        EXPECT_TRUE(dropped.AddModel(DataFile("tree_a.pmml"), {"north"}).IsOK());
    }
    const std::string noDict = dir.Write(
        "nodict.xml", "<PMML version='4.4'>" + Tree("classification", kSchema) + "</PMML>");
    ZRXSplitPMMLCombiner combiner(list);
    // Nothing to export yet: the last status, no file.
    EXPECT_TRUE(combiner.ExportMiningModel(dir.Path("none.xml")).IsOK());
    EXPECT_FALSE(std::filesystem::exists(dir.Path("none.xml")));

    // No reader of the caller's keeps the XML library up between the calls.
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {"north"}).IsOK());
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_b.pmml"), {"south"}).IsOK());
    EXPECT_EQ(combiner.ExportMiningModel(dir.Path("no/such/dir/out.xml")).GetCode(), 118);
    // The failed write released the document: a second export writes nothing.
    EXPECT_EQ(combiner.ExportMiningModel(dir.Path("again.xml")).GetCode(), 118);
    EXPECT_FALSE(std::filesystem::exists(dir.Path("again.xml")));
    EXPECT_EQ(combiner.GetNModels(), 2);

    // A new output document, built from scratch around the next model; a
    // document without DataDictionary gets one for the split variable.
    for (const std::string& path : {std::string(), dir.Path("out.xml")}) {
        EXPECT_TRUE(combiner.AddModel(noDict, {"south"}).IsOK());
        EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {"north"}).IsOK());
        EXPECT_EQ(combiner.GetNModels(), 2);
        EXPECT_TRUE(combiner.ExportMiningModel(path).IsOK());
    }
    EXPECT_TRUE(combiner.ExportMiningModel(dir.Path("gone.xml")).IsOK());
    EXPECT_FALSE(std::filesystem::exists(dir.Path("gone.xml")));
    Combined out(dir.Path("out.xml"));
    EXPECT_EQ(Att(out.MiningModel(), "functionName"), "classification");
    EXPECT_EQ(ChildAtts(out.Dictionary(), "DataField", "name"),
              (Values{"region", "x", "color", "y"}));
    EXPECT_EQ(ChildAtts(out.Schema(), "MiningField", "name"),
              (Values{"x", "region", "color", "y"}));
    EXPECT_EQ(out.Segments().size(), 2u);
}

TEST(CombinerSplitVars, NamelessVariableGetsNoFieldAndNoCondition)
{
    ZRVarList list;
    list.AddCatVar("", "nameless", std::vector<std::string>{"a", "b"},
                   ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    list.AddContVar("score", "Score", ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    TempDir dir;
    ZRXSplitPMMLCombiner combiner(list);
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {"a", "1.5"}).IsOK());
    ASSERT_TRUE(combiner.ExportMiningModel(dir.Path("out.xml")).IsOK());
    Combined out(dir.Path("out.xml"));
    EXPECT_EQ(ChildAtts(out.Dictionary(), "DataField", "name"),
              (Values{"x", "color", "y", "score"}));
    // A variable without values gives a field without Value children.
    EXPECT_EQ(Att(out.Field("score"), "optype") + "/" + Att(out.Field("score"), "dataType"),
              "continuous/double");
    EXPECT_TRUE(out.Values("score").empty());
    EXPECT_EQ(ChildAtts(out.Schema(), "MiningField", "name"), (Values{"x", "color", "y", "score"}));
    const xercesc::DOMElement* both = Child(out.Segments().at(0), "CompoundPredicate");
    EXPECT_EQ(ChildAtts(both, "SimplePredicate", "field"), (Values{"score"}));
}
