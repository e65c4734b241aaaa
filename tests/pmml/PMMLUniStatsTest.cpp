// ZRPMMLParser::FillUniStats and its helpers.
#include "PMMLTestSupport.h"

#include <gtest/gtest.h>

#include <zrcommonr/ZRMV.h>

using pmmltest::Parser;
using pmmltest::Walk;
using ZRMetadata::ZRUniStats;
using Doubles = std::vector<double>;

namespace {

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
