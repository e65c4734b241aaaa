// ZRPMMLParser: document statuses and the life of the held document, the
// fields of the dictionary as variables, and the statistics of a model.
#include "PMMLTestSupport.h"

using Doubles = std::vector<double>;
using pmmltest::Doc;
using pmmltest::Field;
using pmmltest::Join;
using pmmltest::Parser;
using pmmltest::Same;
using pmmltest::Walk;
using ZRMetadata::IZRVariable;
using ZRMetadata::ZRUniStats;
using ZRMetadata::ZRVarList;

namespace {

// Documents that are not well-formed, and hostile ones, give 104 in the XML
// layer's tests (Parsing.EveryFailedParseGives104WithTheXmlLibrarysMessage,
// whose parser this reader's derives from); here what only this reader
// decides, and an external entity inside the fields that it reads.
TEST(PMMLDocument, StatusOfEachKindOfDocument)
{
    const std::pair<std::string, long> cases[] = {
        {Doc("", "<TransformationDictionary/>"), 0},
        {"<!DOCTYPE PMML [<!ENTITY x SYSTEM \"file:///etc/hostname\">]>" + Doc("&x;"), 104},
        {Doc("") + "<PMML/>", 104},
        {"<pmml><DataDictionary/></pmml>", 105},
        {"<ns1:PMML xmlns:ns1=\"http://www.dmg.org/PMML-4_2\"><ns1:DataDictionary/></ns1:PMML>",
         105},
        {"<PMML><Header><DataDictionary/></Header></PMML>", 106},
    };
    for (const auto& [text, code] : cases) {
        Parser parser;
        EXPECT_EQ(parser.Parse(text), code) << text;
        EXPECT_EQ(parser.GetStatus().GetCode(), code);
        EXPECT_EQ(parser.GetRootElement() != nullptr, code == 0) << text;
        EXPECT_EQ(parser.GetXercesMessage().empty(), code != 104) << text;
    }
}

TEST(PMMLDocument, QueriesFollowTheLastParse)
{
    auto* other = new Parser; // parsers live side by side, and end in any order
    Parser parser;
    ZRMetadata::ZRVarList list;
    ZRMetadata::ZRUniStats stats;
    const xercesc::DOMElement* position = nullptr;
    EXPECT_EQ(parser.FillVarList(list, {}, false).GetCode(), 107);
    EXPECT_EQ(parser.FillUniStats(stats, position).GetCode(), 107);
    ASSERT_EQ(parser.Parse(Doc("", "<TreeModel/>")), 0);
    EXPECT_EQ(parser.FillUniStats(stats, position).GetCode(), 112);
    const xercesc::DOMElement& model = *parser.Find(u"TreeModel");
    ASSERT_TRUE(parser.SetModelElmt(model));
    EXPECT_TRUE(parser.FillUniStats(stats, position).IsOK());
    EXPECT_EQ(position, nullptr);
    delete other;

    // A failed parse answers every query with its code and touches nothing.
    ASSERT_EQ(parser.Parse("<PMML/>"), 106);
    EXPECT_FALSE(parser.SetModelElmt(model));
    EXPECT_EQ(parser.FillVarList(list, {}, false).GetCode(), 106);
    position = &model;
    EXPECT_EQ(parser.FillUniStats(stats, position).GetCode(), 106);
    EXPECT_EQ(position, &model);
    EXPECT_EQ(list.Size(), 0u);

    // A good parse recovers, without the model chosen before.
    ASSERT_EQ(parser.Parse(Doc("", "<TreeModel/>")), 0);
    position = nullptr;
    EXPECT_EQ(parser.FillUniStats(stats, position).GetCode(), 112);
}

// ZRPMMLParser::FillVarList: field kinds, values, missing values, ranges and
// bins.
// Every field of tests/data/pmml/dictionary.pmml as a variable, in the line
// form that pmmltest::Describe writes and explains, and the bins that come
// with useBins. Bins stop the walk
// at the last field, which has no Discretize.
TEST(PMMLFields, DictionaryFileAsVariables)
{
    const std::pair<const char*, const char*> vars[] = {
        {"cat_str 3;x|y;;?=unknown|=;;", ""},
        {"cat_num 2;1|M|2;one|none|inf;6=n/a|9=bad|8=;lo..100;", ""},
        {"ordinal 2;1.5|2.5;;;;", ""},
        {"odd_optype 2;;;;;", ""},
        {"shown 3;\xC3\xA9;\xE2\x82\xAC;;;", ""},
        {"cont 1;;;-9=;-5..hi;", "0..3 1|2 low|mid|high"},
        {"cont_open 1;;;;;", "lo..hi 1 "},
        {"cont_one 1;;;;;", ""},
        {"cont_two 1;;;;;", "0..3 1|2 "},
        {"cont_empty 1;;;;;", ""},
        {"cont_str 1;;;;;", ""},
        {"cont_unbinned 1;;;;;", ""},
    };
    Parser parser;
    ASSERT_EQ(parser.ParseFile(pmmltest::kDictionary), 0);
    for (bool useBins : {false, true}) {
        ZRVarList list;
        EXPECT_EQ(parser.FillVarList(list, {}, useBins).GetCode(), useBins ? 110 : 0);
        ASSERT_EQ(list.Size(), std::size(vars) - (useBins ? 1 : 0));
        for (std::size_t i = 0; i < list.Size(); ++i) {
            const IZRVariable& var = *list.GetVarAt(static_cast<int>(i));
            EXPECT_EQ(pmmltest::Describe(var, *list.GetEncoderAt(static_cast<int>(i))),
                      vars[i].first + std::string(useBins ? vars[i].second : ""));
            EXPECT_EQ(var.GetRole(), IZRVariable::eRoleInput);
        }
        EXPECT_EQ(list.GetVarAt(4)->GetLabel(), "Shown & told");
        EXPECT_EQ(Join(list.GetEncoderAt(5)->GetCallOrder(), Same),
                  useBins ? "SetBinLabels|AddMissing|SetMissingRange"
                          : "AddMissing|SetMissingRange");
    }
    std::vector<double> cuts{7.0};
    std::vector<std::string> labels{"stale"};
    EXPECT_TRUE(parser.SetBinsFrTransDict("cont_empty", cuts, labels));
    EXPECT_EQ(cuts, std::vector<double>{0.0});
    EXPECT_TRUE(labels.empty());
    EXPECT_FALSE(parser.SetBinsFrTransDict("CONT", cuts, labels));
    EXPECT_TRUE(cuts.empty());
}

// The wanted list is a set of exact names: its order and repeats don't
// matter, names the document lacks are passed over, case and non-ASCII
// text count, and a name ends at a zero byte as its C string does. The
// variables come in document order, and a faulty field stops the walk even
// when it is not wanted.
TEST(PMMLFields, WantedListIsASetOfExactNames)
{
    const std::string dictionary = Field("b", "double") + Field("\xC3\xA9t\xC3\xA9", "string") +
                                   "<Other name=\"c\"/><DataField name=\"skipped\"/>" +
                                   Field("B", "string") + Field("a", "string") +
                                   "<DataField dataType=\"string\"/>" + Field("c", "string") +
                                   Field("\xC3\xA9", "string");
    Parser parser;
    ASSERT_EQ(parser.Parse(Doc(dictionary)), 0);
    const std::vector<std::string> wanted{
        "zz", "a", "\xC3\xA9t\xC3\xA9", "a", std::string("b\0c", 3), "missing", "\xC3\xA9t", "c"};
    ZRVarList list;
    EXPECT_EQ(parser.FillVarList(list, wanted, false).GetCode(), 108); // nameless field
    std::vector<std::string> names;
    for (std::size_t i = 0; i < list.Size(); ++i)
        names.push_back(list.GetVarAt(static_cast<int>(i))->GetName());
    EXPECT_EQ(names, (std::vector<std::string>{"b", "\xC3\xA9t\xC3\xA9", "a"}));
    ASSERT_EQ(parser.Parse(Doc("<Other/>")), 0);
    EXPECT_TRUE(parser.FillVarList(list, {}, true).IsOK());
    EXPECT_EQ(list.Size(), 3u);
}

// ZRPMMLParser::FillUniStats and its helpers.
const double M = ZRMV::gMissingValue;

TEST(PMMLUniStats, WalkOfAModelFromAFile)
{
    Parser parser;
    ASSERT_EQ(parser.ParseFile(pmmltest::kDictionary), 0);
    std::vector<ZRUniStats> results;
    const auto codes = Walk(
        parser, *parser.Find(u"TreeModel"), [] { return ZRUniStats(); }, &results);
    ASSERT_EQ(codes, (std::vector<long>{0, 0, 109, 109}));
    const ZRUniStats& cat = results[0];
    EXPECT_EQ(std::make_tuple(cat.GetFieldName(), cat.IsContinuous(), cat.GetTotalFreq(),
                              cat.GetFrequencies()),
              std::make_tuple(std::string("cat_num"), false, 120.0, Doubles{40, 50, 28}));
    const ZRUniStats& cont = results[1];
    EXPECT_TRUE(cont.IsContinuous());
    EXPECT_EQ(cont.GetCutPoints(), (Doubles{0, 10000, 50000, 100000, M})); // a gap, an open end
    EXPECT_EQ(cont.GetFrequencies(), (Doubles{30, 60, 20, 10}));
    const ZRUniStats::SummStats& summary = cont.GetSummStats();
    EXPECT_EQ(Doubles({summary.minimum, summary.maximum, summary.mean, summary.stdDev}),
              (Doubles{0, 900000, 42000.5, 30500.25}));
}

// The statuses of the UnivariateStats of stats_faults.pmml, whose names say
// the status each must give.
TEST(PMMLUniStats, StatusOfEachFault)
{
    Parser parser;
    ASSERT_EQ(parser.ParseFile(ZRX_TEST_DATA_DIR "/pmml/stats_faults.pmml"), 0);
    const xercesc::DOMElement& model = *parser.Find(u"TreeModel");
    EXPECT_EQ(Walk(parser, model, [] { return ZRUniStats(); }),
              (std::vector<long>{0,   108, 108, 109, 109, 113, 113, 113, 108, 109,
                                 114, 114, 0,   109, 116, 0,   116, 113, 115, 0}));
    // NumericInfo without ContStats passes while the object holds valid
    // statistics ("no_cont_stats_116", the 17th).
    const ZRUniStats earlier("e", 1.0, Doubles{1.0});
    EXPECT_EQ(Walk(parser, model, [&] { return earlier; }).at(16), 0);
}

TEST(PMMLUniStats, CutPointsFromIntervals)
{
    // name of the case; status, cut points and open left end when OK
    const std::tuple<std::string, long, Doubles, bool> cases[] = {
        {"none", 0, {}, true},
        {"touching_open_left", 0, {0, 1, 2}, true},
        {"gap", 0, {0, 1, 2, 3}, false},
        {"open_left_end", 0, {M, 5}, false},
        {"open_right_end", 0, {5, M}, false},
        {"nan_margins", 108, {}, false},
        {"after_open_end", 115, {}, false},
        {"overlap", 115, {}, false},
        {"closure_changes", 115, {}, false},
        {"open_left_later", 115, {}, false},
        {"no_margins", 108, {}, false},
        {"no_closure", 108, {}, false},
        {"empty", 109, {}, false},
        {"reversed", 109, {}, false},
        {"word_margin", 109, {}, false},
        {"infinite_margin", 109, {}, false},
    };
    Parser parser;
    ASSERT_EQ(parser.ParseFile(ZRX_TEST_DATA_DIR "/pmml/stats_intervals.pmml"), 0);
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& [name, code, expected, expectedOpen] = cases[i];
        const auto* stats = parser.Find(u"UnivariateStats", i);
        ASSERT_NE(stats, nullptr);
        ASSERT_EQ(ZRXPrsUtil::ToUTF8(stats->getAttribute(u"field")), name);
        Doubles cuts{9.0}, frequencies{9.0};
        bool leftOpen = false;
        const xercesc::DOMElement& contStats = *stats->getFirstElementChild();
        EXPECT_EQ(parser.FillCutPointsFreqs(cuts, frequencies, leftOpen, contStats).GetCode(), code)
            << name;
        if (code == 0) {
            EXPECT_EQ(cuts, expected) << name;
            EXPECT_EQ(frequencies.size(), expected.empty() ? 0 : expected.size() - 1);
            EXPECT_EQ(leftOpen, expectedOpen) << name;
        }
    }
}

} // namespace
