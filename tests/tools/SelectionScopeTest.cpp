// Scope resolution, the data type rule, the progress step and the interrupt.

#include <algorithm>

#include "tools/SelectionScope.h"
#include "tools/SelectionTestFixture.h"

namespace selectiontest {
namespace {

using tools::dataTypeKey;
using tools::Scope;

TEST(SelectionDataType, RecordsMatchByTheirCode) {
    EXPECT_EQ(dataTypeKey("CM_DHAtr\t1\t2"), dataTypeKey("CM_DHAtr\t9"));
    EXPECT_NE(dataTypeKey("CM_DHAtr\t1"), dataTypeKey("CM_PPVel\t1"));
    // Protected or not, the same type of information.
    EXPECT_EQ(dataTypeKey("PR_SEvnt\r\n2020-01-01\r\n1:00:00\r\na"), dataTypeKey("UP_SEvnt\r\nb"));
    EXPECT_NE(dataTypeKey("PR_SEvnt\r\n"), dataTypeKey("PR_GrSup\r\n"));
    // An unknown colour-map code reads up to its first tab.
    EXPECT_EQ(dataTypeKey("CM_Other\t1"), dataTypeKey("CM_Other\t2"));
    EXPECT_NE(dataTypeKey("CM_Other\t1"), dataTypeKey("CM_Else\t1"));
}

TEST(SelectionDataType, PlainNamesMatchByTheirFirstThreeCharacters) {
    EXPECT_EQ(dataTypeKey("Stope 12"), dataTypeKey("Sto"));
    EXPECT_NE(dataTypeKey("Stope 12"), dataTypeKey("Drive 1"));
    EXPECT_EQ(dataTypeKey(""), dataTypeKey(" "));
    EXPECT_NE(dataTypeKey(""), dataTypeKey("a"));
    // A plain name that looks like a code is not a record.
    EXPECT_NE(dataTypeKey("CMX"), dataTypeKey("CM_DHAtr"));
    EXPECT_NE(dataTypeKey("PR_"), dataTypeKey("PRX"));
}

TEST(SelectionScopeText, EveryScopeOfTheBoxIsKnown) {
    for (const char* text : forms::Frm22Selection::kScopeTexts)
        EXPECT_NE(tools::scopeFromText(text), Scope::None) << text;
    EXPECT_EQ(tools::scopeFromText("entity"), Scope::None);
    EXPECT_EQ(tools::scopeFromText(""), Scope::None);
}

class SelectionScope : public SelectionApp {};

TEST_F(SelectionScope, GroupScopesClimbTheFatherChain) {
    const Handle top = group("Top");
    const Handle mid = group("Mid", top);
    const Handle entity = group("Entity", mid);
    const Handle lone = group("Lone");
    const Handle p = tri(entity), q = tri(lone);
    auto& eng = ctx.engine;
    EXPECT_EQ(tools::scopeGroup(eng, Scope::Entity, p), entity);
    EXPECT_EQ(tools::scopeGroup(eng, Scope::Group, p), mid);
    EXPECT_EQ(tools::scopeGroup(eng, Scope::File, p), top);
    EXPECT_EQ(tools::scopeGroup(eng, Scope::Group, q), 0u);
    EXPECT_EQ(tools::scopeGroup(eng, Scope::File, q), lone);
    EXPECT_EQ(tools::scopeGroup(eng, Scope::Colour, p), 0u);
    EXPECT_EQ(tools::scopeGroup(eng, Scope::Entity, 0), 0u);
    EXPECT_EQ(tools::scopeGroup(eng, Scope::Entity, 12345), 0u);
}

TEST_F(SelectionScope, TreePolygonsReachEveryLevel) {
    const Handle top = group("Top");
    const Handle a = group("A", top), b = group("B", a), c = group("C", top);
    const std::vector<Handle> made{tri(top), tri(a), tri(b), tri(b), tri(c)};
    tri(group("Outside"));
    std::vector<Handle> got = tools::treePolygons(ctx.engine, top);
    std::sort(got.begin(), got.end());
    std::vector<Handle> want = made;
    std::sort(want.begin(), want.end());
    EXPECT_EQ(got, want);
    EXPECT_EQ(tools::groupTree(ctx.engine, top).size(), 4u);
    EXPECT_TRUE(tools::treePolygons(ctx.engine, 0).empty());
}

TEST_F(SelectionScope, ProgressStepWritesEveryNthCallAndWrapsNearAHundred) {
    tools::P_subProgressStep(ctx, 1.0, 3, "first");
    tools::P_subProgressStep(ctx, 1.0, 3, "second");
    EXPECT_NE(comment(), "second");
    tools::P_subProgressStep(ctx, 1.0, 3, "third");
    EXPECT_EQ(comment(), "third");
    EXPECT_EQ(ui.progress(), 1);

    // 25 a step: 25, 50, 75, then within 25 of 100, so back to 0 with the hourglass.
    auto& form = forms::Frm22Selection::of(ctx);
    form.progressBar = 0;
    int bars[4];
    for (int i = 0; i < 4; ++i) {
        tools::P_subProgressStep(ctx, 25.0, 1, "t");
        bars[i] = ui.progress();
    }
    EXPECT_EQ(bars[0], 25);
    EXPECT_EQ(bars[1], 50);
    EXPECT_EQ(bars[2], 75);
    EXPECT_EQ(bars[3], 0);
    EXPECT_EQ(ui.pointer(), 11);
}

TEST_F(SelectionScope, SceneWalkCountsTestedPolygonsInTheComment) {
    const Handle g = group("G");
    for (int i = 0; i < 450; ++i) tri(g, {i % 2 == 0 ? 10 : 20, 0, 0});
    forms::Frm22Selection::of(ctx).progressCalls = 0;
    tools::SceneFilter f;
    f.scope = Scope::Colour;
    f.colour = {10, 0, 0};
    long n = tools::walkScene(ctx, f, [](Handle) {});
    EXPECT_EQ(n, 225);
    EXPECT_EQ(comment(), "The number of polygons tested: 400");
}

TEST_F(SelectionScope, AnInterruptedDeleteKeepsWhatItDid) {
    const Handle g = group("G");
    for (int i = 0; i < 450; ++i) tri(g);
    arm("cmdDeleteGroup", "optVisible");
    forms::Frm22Selection::of(ctx).progressCalls = 0;
    // The interrupt button is pressed while the walk lets events run.
    ui.onPump = [this] { ctx.state.bolInterruptProcess = true; };
    click(ctx.engine.polygon_get_first_polygon());
    ui.onPump = nullptr;
    EXPECT_EQ(polygons(), 250u);
    EXPECT_EQ(comment(), "The number of deleted polygons is 200");
}

}  // namespace
}  // namespace selectiontest
