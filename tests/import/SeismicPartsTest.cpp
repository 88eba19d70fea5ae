// The pieces of the seismic readers on their own: dates and times, the line shapes,
// the record of an event and the convention form.

#include <gtest/gtest.h>

#include "forms/Frm21DataChanges.h"
#include "import/ImportRun.h"
#include "import/SeismicEvents.h"
#include "import/SeismicReaders.h"
#include "import/TextFile.h"

namespace {

using importers::ImportFault;
using importers::SeismicConvention;

TEST(SeismicDateTime, DateAndTimeAreCutByLength) {
    // Date: first four, middle two, last two, however odd the result.
    const std::pair<const char*, const char*> dates[] = {{"20060629", "2006-06-29"},
                                                         {"2019-02-01", "2019--0-01"},
                                                         {"2006", "2006--06"},
                                                         {"7", "7--7"},
                                                         {"", "--"}};
    for (const auto& [in, out] : dates) EXPECT_EQ(importers::seismicDate(in), out) << in;
    // Time: filled from the left; lengths without a rule stay as read.
    const std::pair<const char*, const char*> times[] = {
        {"7", "00:00:07"},        {"44", "00:00:44"},
        {"944", "00:09:44"},      {"2944", "00:29:44"},
        {"32944", "03:29:44"},    {"132944", "13:29:44"},
        {"03:40:09", "03:40:09"}, {"", ""}};
    for (const auto& [in, out] : times) EXPECT_EQ(importers::seismicTime(in), out) << in;
}

struct Split {
    importers::FieldSplitter splitter{5};
    importers::SeismicFields fields;
    std::size_t count = 0;
    explicit Split(std::string_view line) {
        fields = splitter.split(line, importers::kSeismicFieldsKept);
        count = splitter.count();
    }
};

TEST(SeismicLines, QkLLineWithFreeSeparatorsAndAShift) {
    SeismicConvention c;
    for (const char* line :
         {"20060629 132944 87333 56893 -1222 1.2", ",20060629,,132944\t87333  56893 -1222 , 1.2",
          " 20060629 132944 87333 56893 -1222 1.2"}) {
        SCOPED_TRACE(line);
        Split s(line);
        const importers::SeismicEvent e = importers::readQkLFields(s.fields, s.count, c);
        EXPECT_EQ(e.position, (engine::Point3{873330, 568930, -12220}));
        EXPECT_DOUBLE_EQ(e.ml, 1.2);
        EXPECT_EQ(importers::seismicRecord(e),
                  "PR_SEvnt\r\n2006-06-29\r\n13:29:44\r\n873330\t568930\t-12220\t1.2");
    }
}

TEST(SeismicLines, ShortLinesAreFaultsAndMsWithoutMagnitudeIsAQuarter) {
    SeismicConvention c;
    // " 1 2": shifted, the three numbers are two.
    const std::tuple<const char*, bool, bool> shapes[] = {
        {"20060629 132944 87333 56893 -1222", true, false}, {"", true, true}, {" 1 2", true, true}};
    for (const auto& [line, qklFault, msFault] : shapes) {
        SCOPED_TRACE(line);
        Split s(line);
        if (qklFault) {
            EXPECT_THROW(importers::readQkLFields(s.fields, s.count, c), ImportFault);
        }
        if (msFault) {
            EXPECT_THROW(importers::readMsFields(s.fields, s.count, c), ImportFault);
        } else {
            EXPECT_NO_THROW(importers::readMsFields(s.fields, s.count, c));
        }
    }
    Split s(",87333 56893 -1222");
    importers::SeismicEvent e = importers::readMsFields(s.fields, s.count, c);
    EXPECT_EQ(e.position, (engine::Point3{873330, 568930, -12220}));
    EXPECT_DOUBLE_EQ(e.ml, 0.25);
    Split t("x 2 3 abc");  // text that is no number reads 0
    e = importers::readMsFields(t.fields, t.count, c);
    EXPECT_EQ(e.position, (engine::Point3{0, 20, 30}));
    EXPECT_DOUBLE_EQ(e.ml, 0.0);
}

TEST(SeismicForm, SignBoxesAndSwitchAsTheReadersTakeThem) {
    forms::Frm21DataChanges f;
    EXPECT_EQ(f.name(), "frm21_DataChanges");
    EXPECT_EQ(f.intCoordSign(0), 1);
    EXPECT_FALSE(f.bolSwitchXandY());
    // Any negative number, or a bare minus, is -1; text that is no number is 1.
    f.setText("cboY", "-1");
    f.setText("cboZ", " -");
    f.setText("cboX", "-0.5e1");
    EXPECT_EQ(f.intCoordSign(0), -1);
    EXPECT_EQ(f.intCoordSign(1), -1);
    EXPECT_EQ(f.intCoordSign(2), -1);
    f.setText("cboX", "abc");
    EXPECT_EQ(f.intCoordSign(0), 1);
    f.setCheck("chkSwitchXandY", 1);
    EXPECT_TRUE(f.bolSwitchXandY());
    EXPECT_EQ(f.intCoordSign(7), 1);
}

}  // namespace
