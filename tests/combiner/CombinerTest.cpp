#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include "ZRXScopedLocale.h"
#include "ZRXTestDom.h"
#include "CombinerTestSupport.h"

#include <fstream>
#include <iterator>
#include <memory>
#include <tuple>
#include <utility>

using namespace combinertest;
using ZRMTD_NAMESPACE::ZRVarList;
using ZRXPrsUtil::ZRXSplitPMMLCombiner;

namespace {

// A predicate in short: "field operator value", "and(...)" or its tag.
std::string Predicate(Element predicate)
{
    const std::string tag = ZRXPrsUtil::ToUTF8(predicate->getTagName());
    if (tag == "SimplePredicate")
        return Att(predicate, "field") + " " + Att(predicate, "operator") + " " +
               Att(predicate, "value");
    if (tag != "CompoundPredicate")
        return tag;
    std::string out = Att(predicate, "booleanOperator") + "(";
    for (Element c : Children(predicate, nullptr))
        out += (out.back() == '(' ? "" : ", ") + Predicate(c);
    return out + ")";
}

class CombinerTest : public ::testing::Test {
protected:
    ZRVarList list;
    TempDir dir;

    // Adds each model file with its split values, exports, reads the output.
    std::unique_ptr<Combined> Combine(const std::vector<std::pair<std::string, Texts>>& models)
    {
        ZRXSplitPMMLCombiner combiner(list);
        for (const auto& [file, values] : models)
            EXPECT_TRUE(combiner.AddModel(file[0] == '/' ? file : DataFile(file), values).IsOK())
                << file;
        EXPECT_TRUE(combiner.ExportMiningModel(dir.Path("out.pmml")).IsOK());
        return std::make_unique<Combined>(dir.Path("out.pmml"));
    }
    // The predicate of each Segment of `out`, in short.
    static Texts PredicatesOf(const Combined& out)
    {
        Texts texts;
        for (Element segment : out.Segments())
            texts.push_back(Predicate(Child(segment, nullptr)));
        return texts;
    }
};

} // namespace

// tree_a, tree_b and tree_c over one split variable: dictionary and schema
// are the unions in first-seen order, one segment per model.
TEST_F(CombinerTest, ThreeTreesGiveTheUnionsAndOneSegmentEach)
{
    AddSplitVars(list, false);
    const auto out = Combine(
        {{"tree_a.pmml", {"north"}}, {"tree_b.pmml", {"south"}}, {"tree_c.pmml", {"south"}}});
    // Root attributes and Header come from the first model only; no
    // TransformationDictionary is left at the top.
    EXPECT_EQ(Att(out->Root(), "xmlns"), "http://www.dmg.org/PMML-4_4");
    EXPECT_EQ(Att(Child(out->Root(), "Header"), "copyright"), "first");
    EXPECT_EQ(ChildTags(out->Root()), (Texts{"Header", "DataDictionary", "MiningModel"}));
    // First model's fields, split variable, then new names; a known name keeps
    // its first definition whatever the order; unnamed fields are not taken.
    EXPECT_EQ(out->FieldNames(), (Texts{"x", "color", "y", "region", "z"}));
    EXPECT_EQ(Att(out->Dictionary(), "numberOfFields"), "5");
    EXPECT_EQ(ChildAtts(out->Dictionary(), "DataField", "optype"),
              (Texts{"continuous", "categorical", "categorical", "categorical", "continuous"}));
    // A new value listed twice comes twice, a known one never; values below an
    // Extension count; a later field named like a split variable adds values.
    EXPECT_EQ(out->Values("color"), (Texts{"red", "green", "blue", "blue"}));
    EXPECT_EQ(out->Values("y"), (Texts{"yes", "no", "maybe", "never"}));
    EXPECT_EQ(out->Values("region"), (Texts{"north", "south", "west"}));
    Element region = out->Field("region");
    EXPECT_EQ(Att(region, "displayName") + "/" + Att(region, "dataType"), "Sales region/string");
    // The split variable is active in the schema.
    EXPECT_EQ(out->SchemaNames(), (Texts{"x", "color", "y", "region", "z"}));
    EXPECT_EQ(ChildAtts(out->Schema(), "MiningField", "usageType"),
              (Texts{"<absent>", "<absent>", "target", "active", "supplementary"}));
    // One segment per model with its predicate, derived fields last.
    EXPECT_EQ(Att(out->MiningModel(), "functionName"), "classification");
    EXPECT_EQ(Att(Child(out->MiningModel(), "Segmentation"), "multipleModelMethod"), "selectFirst");
    // Same split values twice give two segments with the same predicate.
    EXPECT_EQ(PredicatesOf(*out),
              (Texts{"region equal north", "region equal south", "region equal south"}));
    const auto segments = out->Segments();
    ASSERT_EQ(segments.size(), 3u);
    Texts names;
    for (Element segment : segments) {
        EXPECT_EQ(Att(segment, "id"), "<absent>");
        EXPECT_EQ(ChildTags(segment), (Texts{"SimplePredicate", "TreeModel"}));
        names.push_back(Att(Child(segment, "TreeModel"), "modelName"));
    }
    EXPECT_EQ(names, (Texts{"a", "b", "c"}));
    Element first = Child(segments[0], "TreeModel");
    EXPECT_EQ(ChildTags(first), (Texts{"MiningSchema", "Node", "LocalTransformations"}));
    EXPECT_EQ(ChildAtts(Child(first, "LocalTransformations"), "DerivedField", "name"),
              (Texts{"x2"}));
    EXPECT_EQ(ChildTags(Child(segments[1], "TreeModel")), (Texts{"MiningSchema", "Node"}));
}

TEST_F(CombinerTest, UnnamedElementsOfTheFirstModelStandUncounted)
{
    AddSplitVars(list, false);
    const auto out = Combine({{"unnamed_first.pmml", {"north"}}, {"tree_c.pmml", {"south"}}});
    EXPECT_EQ(out->FieldNames(), (Texts{"<absent>", "y", "region", "x"}));
    EXPECT_EQ(Att(out->Dictionary(), "numberOfFields"), "3");
    EXPECT_EQ(out->Values("y"), (Texts{"<absent>", "yes", "maybe", "never"}));
    EXPECT_EQ(out->SchemaNames(), (Texts{"<absent>", "y", "region", "x"}));
}

TEST_F(CombinerTest, NamelessSplitVariableGetsNoFieldAndNoCondition)
{
    list.AddCatVar("", "nameless", Texts{"a", "b"}, ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    list.AddContVar("score", "Score", ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    const auto out = Combine({{"tree_a.pmml", {"a", "1.5"}}});
    EXPECT_EQ(out->FieldNames(), (Texts{"x", "color", "y", "score"}));
    EXPECT_EQ(out->SchemaNames(), (Texts{"x", "color", "y", "score"}));
    // A variable without values gives a field without Value children.
    EXPECT_EQ(Att(out->Field("score"), "optype") + "/" + Att(out->Field("score"), "dataType"),
              "continuous/double");
    EXPECT_TRUE(out->Values("score").empty());
    EXPECT_EQ(PredicatesOf(*out), (Texts{"and(score equal 1.5)"}));
}

TEST_F(CombinerTest, TwoSplitVariablesGiveACompoundPredicate)
{
    AddSplitVars(list, true);
    const auto out = Combine({{"tree_a.pmml", {"north", "2021"}},
                              {"tree_b.pmml", {"", "2022"}},
                              {"tree_b.pmml", {"", ""}}});
    Element year = out->Field("year");
    EXPECT_EQ(Att(year, "optype") + "/" + Att(year, "dataType") + "/" + Att(year, "displayName"),
              "categorical/integer/");
    EXPECT_EQ(out->Values("year"), (Texts{"2021", "2022"}));
    EXPECT_EQ(out->SchemaNames(), (Texts{"x", "color", "y", "region", "year", "z"}));
    // An empty value drops only its own condition; with none left the
    // segment can never be chosen.
    EXPECT_EQ(PredicatesOf(*out),
              (Texts{"and(region equal north, year equal 2021)", "and(year equal 2022)", "False"}));
}

// A host locale with a decimal comma: the numeric split variable's values
// are written with a point, and the output reads back to the same numbers.
TEST_F(CombinerTest, NumericSplitValuesKeepTheirPointInACommaLocale)
{
    const zrxtest::ScopedLocale comma("de_DE.UTF-8");
    ASSERT_TRUE(comma.Active()) << "de_DE.UTF-8 is missing";
    list.AddCatVar("rate", "", std::vector<double>{0.5, 2.25, 1e-7},
                   ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    const auto out = Combine({{"tree_a.pmml", {"0.5"}}, {"tree_b.pmml", {"2.25"}}});
    EXPECT_EQ(out->Values("rate"), (Texts{"0.5", "2.25", "1e-07"}));
    EXPECT_EQ(PredicatesOf(*out), (Texts{"rate equal 0.5", "rate equal 2.25"}));

    std::ifstream file(dir.Path("out.pmml"));
    ZRXPrsUtil::ZRPMMLParser reader;
    ASSERT_TRUE(reader.ParseToDOM(file).IsOK());
    ZRVarList back;
    ASSERT_TRUE(reader.FillVarList(back, {"rate"}, false).IsOK());
    ASSERT_EQ(back.Size(), 1u);
    EXPECT_EQ(back.GetVarAt(0)->GetEncoder()->GetNumericValues(),
              (std::vector<double>{0.5, 2.25, 1e-7}));
}

TEST_F(CombinerTest, UnbuildableOneVariablePredicateIsFalseAndNamesAreReadLive)
{
    AddSplitVars(list, false);
    ZRXSplitPMMLCombiner combiner(list);
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {"north"}).IsOK());
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {""}).IsOK());
    list.GetVarAt(0)->SetName("area");
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {"south"}).IsOK());
    list.GetVarAt(0)->SetName("");
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {"west"}).IsOK());
    ASSERT_TRUE(combiner.ExportMiningModel(dir.Path("out.pmml")).IsOK());
    Combined out(dir.Path("out.pmml"));
    EXPECT_EQ(PredicatesOf(out),
              (Texts{"region equal north", "False", "area equal south", "False"}));
    // The dictionary keeps the name read at construction.
    EXPECT_EQ(out.Values("region"), (Texts{"north", "south"}));
}

// Values over several later models: a value counts as known once an earlier
// model brought it, whichever model that was; a new value that one model
// lists twice comes twice; a field that had no values gains them in order.
TEST_F(CombinerTest, ValuesKnownFromAnyEarlierModelComeOnce)
{
    AddSplitVars(list, false);
    auto model = [this](const std::string& file, const Texts& colors, const Texts& sizes) {
        std::string text = "<PMML><DataDictionary><DataField name=\"color\">";
        for (const std::string& c : colors)
            text += "<Value value=\"" + c + "\"/>";
        text += "</DataField><DataField name=\"size\">";
        for (const std::string& v : sizes)
            text += "<Value value=\"" + v + "\"/>";
        text += "</DataField></DataDictionary><TreeModel functionName=\"regression\"/></PMML>";
        std::ofstream(dir.Path(file)) << text;
        return dir.Path(file);
    };
    const Texts north{"north"};
    const auto out = Combine({{model("1.pmml", {"v0", "v1"}, {}), north},
                              {model("2.pmml", {"v2", "v1", "v2", "v3"}, {"s", "s"}), north},
                              {model("3.pmml", {"v3", "v2", "v4", "v0", "v4"}, {"m", "s"}), north},
                              {model("4.pmml", {"v4", "v5"}, {"m", "l"}), north}});
    EXPECT_EQ(out->Values("color"), (Texts{"v0", "v1", "v2", "v2", "v3", "v4", "v4", "v5"}));
    EXPECT_EQ(out->Values("size"), (Texts{"s", "s", "m", "l"}));
}

TEST_F(CombinerTest, BadModelsAtFirstAndLaterPositions)
{
    AddSplitVars(list, false);
    const std::string good = DataFile("regression.pmml");
    // File, status at the first position, status at a later one. A later
    // document without PMML root or without model passes and adds no Segment;
    // CheckSplitModel tells it, at any position, with a first model's status.
    const std::vector<std::tuple<std::string, long, long>> bad = {
        {"bad/missing.pmml", 104, 104},
        {"bad/not_xml.txt", 104, 104},
        {"bad/cut.pmml", 104, 104},
        {"bad/mining_model.pmml", 125, 125},
        {"bad/no_function.pmml", 108, 108},
        {"bad/empty_function.pmml", 109, 124},
        {"tree_a.pmml", 0, 124},
        {"bad/wrong_root.xml", 105, 0},
        {"bad/no_model.pmml", 113, 0}};
    for (const auto& [file, first, later] : bad) {
        SCOPED_TRACE(file);
        ZRXSplitPMMLCombiner combiner(list);
        if (first != 0) {
            // A refused first model leaves nothing: no file, and the next
            // good one becomes the first.
            EXPECT_EQ(combiner.AddModel(DataFile(file), {"north"}).GetCode(), first);
            EXPECT_EQ(combiner.GetStatus().GetCode(), first);
            EXPECT_EQ(combiner.ExportMiningModel(dir.Path("none.pmml")).GetCode(), first);
            EXPECT_FALSE(std::filesystem::exists(dir.Path("none.pmml")));
        }
        EXPECT_TRUE(combiner.AddModel(good, {"north"}).IsOK());
        Texts doubled;
        EXPECT_EQ(combiner.CheckSplitModel(DataFile(file), doubled).GetCode(), first);
        EXPECT_EQ(combiner.AddModel(DataFile(file), {"south"}).GetCode(), later);
        EXPECT_TRUE(combiner.AddModel(good, {"south"}).IsOK());
        EXPECT_EQ(combiner.GetNModels(), 2);
        ASSERT_TRUE(combiner.ExportMiningModel(dir.Path("out.pmml")).IsOK());
        Combined out(dir.Path("out.pmml"));
        EXPECT_EQ(PredicatesOf(out), (Texts{"region equal north", "region equal south"}));
        EXPECT_EQ(Att(out.MiningModel(), "functionName"), "regression");
    }
}

TEST_F(CombinerTest, ValueCountAndEmptyArguments)
{
    AddSplitVars(list, false);
    const std::string good = DataFile("regression.pmml");
    ZRXSplitPMMLCombiner combiner(list);
    // Wrong count: refused before the file is opened. Empty path or values:
    // the previous status, nothing else.
    EXPECT_EQ(combiner.AddModel(dir.Path("missing.pmml"), {"a", "b"}).GetCode(), 126);
    EXPECT_EQ(combiner.AddModel("", {"north"}).GetCode(), 126);
    EXPECT_EQ(combiner.AddModel(good, {}).GetCode(), 126);
    EXPECT_TRUE(combiner.AddModel(good, {"north"}).IsOK());
    EXPECT_EQ(combiner.AddModel(good, {"north", "x"}).GetCode(), 126);
    EXPECT_EQ(combiner.GetNModels(), 1);

    ZRVarList none;
    ZRXSplitPMMLCombiner empty(none);
    EXPECT_EQ(empty.AddModel(good, {"north"}).GetCode(), 126);
    EXPECT_EQ(empty.GetNModels(), 0);
}

TEST_F(CombinerTest, ModellessLaterDocumentStillMergesItsDictionary)
{
    AddSplitVars(list, false);
    const auto out = Combine({{"two_models.pmml", {"north"}}, {"bad/no_model.pmml", {"south"}}});
    EXPECT_EQ(out->FieldNames(), (Texts{"x", "region", "w"}));
    ASSERT_EQ(out->Segments().size(), 1u);
    EXPECT_EQ(ChildTags(out->Segments()[0]), (Texts{"SimplePredicate", "RegressionModel"}));
    // The taken model had an empty schema: the split variable still stands.
    EXPECT_EQ(out->SchemaNames(), (Texts{"region"}));
}

TEST_F(CombinerTest, ExportReleasesAndAddModelAfterwardsStartsAnew)
{
    AddSplitVars(list, false);
    {
        // Destroyed before the export: the document and the combiner's hold
        // on the XML library go with it (the sanitizer build sees leaks).
        ZRXSplitPMMLCombiner dropped(list);
        EXPECT_TRUE(dropped.AddModel(DataFile("tree_a.pmml"), {"north"}).IsOK());
    }
    ZRXSplitPMMLCombiner combiner(list);
    // No reader of the caller's keeps the XML library up between the calls.
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {"north"}).IsOK());
    EXPECT_TRUE(combiner.AddModel(DataFile("tree_b.pmml"), {"south"}).IsOK());
    EXPECT_EQ(combiner.ExportMiningModel(dir.Path("no/such/dir/out.pmml")).GetCode(), 118);
    // The failed write kept the document: the export can be made again.
    EXPECT_TRUE(combiner.ExportMiningModel(dir.Path("again.pmml")).IsOK());
    EXPECT_TRUE(std::filesystem::exists(dir.Path("again.pmml")));
    EXPECT_EQ(combiner.GetNModels(), 2);

    // A new output document, built from scratch around the next model; a
    // document without DataDictionary gets one for the split variable.
    for (const std::string& path : {std::string(), dir.Path("out.pmml")}) {
        EXPECT_TRUE(combiner.AddModel(DataFile("no_dictionary.pmml"), {"south"}).IsOK());
        EXPECT_TRUE(combiner.AddModel(DataFile("tree_a.pmml"), {"north"}).IsOK());
        EXPECT_EQ(combiner.GetNModels(), 2);
        EXPECT_TRUE(combiner.ExportMiningModel(path).IsOK());
    }
    Combined out(dir.Path("out.pmml"));
    EXPECT_EQ(Att(out.MiningModel(), "functionName"), "classification");
    EXPECT_EQ(out.FieldNames(), (Texts{"region", "x", "color", "y"}));
    EXPECT_EQ(out.SchemaNames(), (Texts{"x", "region", "color", "y"}));
    EXPECT_EQ(out.Segments().size(), 2u);
}

// Every kind of node a model holds reaches its segment as written: comments,
// processing instructions, CDATA, escaped attribute values, whitespace; for
// the first model and for a later one alike.
TEST_F(CombinerTest, ModelsAreCopiedNodeForNode)
{
    AddSplitVars(list, false);
    const auto out = Combine({{"markup.pmml", {"north"}}, {"markup.pmml", {"south"}}});
    const std::string text = zrxtest::ReadFile(dir.Path("out.pmml"));
    const std::string model = "<TreeModel functionName=\"classification\" modelName=\"m&amp;m\">\n"
                              "    <!-- kept as written -->\n"
                              "    <MiningSchema><MiningField name=\"x\"/><MiningField name=\"y\" "
                              "usageType=\"target\"/></MiningSchema>\n"
                              "    <?engine keep this?>\n"
                              "    <Node score=\"a&quot;b\"><True/><Extension "
                              "name=\"note\"><![CDATA[x < 1 && y]]></Extension></Node>\n"
                              "  </TreeModel>";
    const size_t first = text.find(model);
    ASSERT_NE(first, std::string::npos) << text;
    EXPECT_NE(text.find(model, first + 1), std::string::npos);
    EXPECT_NE(text.find("<Header copyright=\"R&amp;D &lt;lab>\"/>"), std::string::npos);
    EXPECT_EQ(out->Values("y"), (Texts{"a\"b"}));
}
