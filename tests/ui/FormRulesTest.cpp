// The rules by which setting a control runs its handler: the dialogs depend on
// them (an option only when it was off, a check box only on a change).

#include <gtest/gtest.h>

#include "forms/Form.h"

namespace {

using forms::ControlKind;

class RulesForm : public forms::Form {
public:
    RulesForm() : Form("frmRules", "Rules") {
        watch(add(ControlKind::OptionButton, "optA", "A", "fraOne"));
        watch(add(ControlKind::OptionButton, "optB", "B", "fraOne"));
        watch(add(ControlKind::OptionButton, "optC", "C", "fraTwo"));
        watch(add(ControlKind::CheckBox, "chkX", "X"));
        watch(add(ControlKind::ComboBox, "cboY"));
        watch(add(ControlKind::TextBox, "txtZ"));
        auto& lst = add(ControlKind::ListBox, "lstL");
        lst.items = {"one", "two", "three"};
        watch(lst);
        auto& sld = add(ControlKind::Slider, "sldS");
        sld.min = 1;
        sld.max = 10;
        sld.value = 1;
        watch(sld);
        watch(add(ControlKind::CommandButton, "cmdGo", "Go"));
        add(ControlKind::Label, "lblInfo", "Some caption");
        add(ControlKind::Frame, "fraOne", "Frame one");
    }
    std::string log;
    int loads = 0;

protected:
    void onLoad() override {
        ++loads;
        // A load that sets a control from code must not load again.
        setOption("optA");
    }

private:
    void watch(forms::Control& c) {
        c.onChange = [this, name = c.name] { log += name + ";"; };
    }
};

TEST(FormRules, OptionRunsOnlyWhenItWasOffAndClearsItsFrameOnly) {
    RulesForm f;
    f.ensureLoaded();
    EXPECT_EQ(f.log, "optA;");  // from the load
    f.setOption("optC");        // another frame: optA stays on
    EXPECT_TRUE(f.optionValue("optA"));
    f.log.clear();

    EXPECT_TRUE(f.setFromUser("optB", "1"));
    EXPECT_EQ(f.log, "optB;");
    EXPECT_FALSE(f.optionValue("optA"));
    EXPECT_TRUE(f.optionValue("optB"));
    EXPECT_TRUE(f.optionValue("optC"));

    EXPECT_TRUE(f.setFromUser("optB", "true"));  // already on: no handler
    EXPECT_EQ(f.log, "optB;");
    EXPECT_FALSE(f.setFromUser("optB", "yes"));
    EXPECT_FALSE(f.setFromUser("optB", "2"));

    // Taking an option off from a script runs nothing and touches no other option.
    EXPECT_TRUE(f.setFromUser("optB", "0"));
    EXPECT_EQ(f.log, "optB;");
    EXPECT_EQ(f.valueOf("optB"), "0");
    EXPECT_EQ(f.valueOf("optA"), "0");
}

TEST(FormRules, CheckBoxRunsOnChangeOnlyAndShowsGrey) {
    RulesForm f;
    f.ensureLoaded();
    f.log.clear();
    EXPECT_TRUE(f.setFromUser("chkX", "0"));  // was 0
    EXPECT_EQ(f.log, "");
    EXPECT_TRUE(f.setFromUser("chkX", "1"));
    EXPECT_TRUE(f.setFromUser("chkX", "TRUE"));
    EXPECT_EQ(f.log, "chkX;");
    EXPECT_TRUE(f.setFromUser("chkX", "false"));
    EXPECT_EQ(f.log, "chkX;chkX;");
    f.setCheck("chkX", 2);
    EXPECT_EQ(f.valueOf("chkX"), "2");
    EXPECT_EQ(f.checkValue("chkX"), 2);
    EXPECT_FALSE(f.setFromUser("chkX", "maybe"));
}

TEST(FormRules, TextAndComboRunOnChange) {
    RulesForm f;
    f.ensureLoaded();
    f.log.clear();
    EXPECT_TRUE(f.setFromUser("cboY", "12.5"));
    EXPECT_TRUE(f.setFromUser("cboY", "12.5"));
    EXPECT_TRUE(f.setFromUser("txtZ", "a b"));
    EXPECT_TRUE(f.setFromUser("txtZ", ""));
    EXPECT_EQ(f.log, "cboY;txtZ;txtZ;");
    EXPECT_EQ(f.valueOf("cboY"), "12.5");
    EXPECT_EQ(f.text("txtZ"), "");
}

TEST(FormRules, ListBoxSelectsByItemText) {
    RulesForm f;
    f.ensureLoaded();
    f.log.clear();
    EXPECT_FALSE(f.setFromUser("lstL", "four"));
    EXPECT_FALSE(f.setFromUser("lstL", "TWO"));
    EXPECT_TRUE(f.setFromUser("lstL", "two"));
    EXPECT_EQ(f.at("lstL").value, 1);
    EXPECT_EQ(f.valueOf("lstL"), "two");
    EXPECT_TRUE(f.setFromUser("lstL", "two"));
    EXPECT_EQ(f.log, "lstL;");
}

TEST(FormRules, SliderTakesNumbersInItsRange) {
    RulesForm f;
    f.ensureLoaded();
    f.log.clear();
    EXPECT_TRUE(f.setFromUser("sldS", "7"));
    EXPECT_EQ(f.valueOf("sldS"), "7");
    EXPECT_TRUE(f.setFromUser("sldS", "7.0"));  // same value: no handler
    EXPECT_FALSE(f.setFromUser("sldS", "11"));
    EXPECT_FALSE(f.setFromUser("sldS", "0"));
    EXPECT_FALSE(f.setFromUser("sldS", "seven"));
    EXPECT_FALSE(f.setFromUser("sldS", "7x"));
    EXPECT_EQ(f.log, "sldS;");
    EXPECT_EQ(f.at("sldS").value, 7);
}

TEST(FormRules, ButtonsRunEveryTimeLabelsAndFramesRefuseValues) {
    RulesForm f;
    f.ensureLoaded();
    f.log.clear();
    f.click("cmdGo");
    EXPECT_TRUE(f.setFromUser("cmdGo", ""));
    EXPECT_EQ(f.log, "cmdGo;cmdGo;");
    EXPECT_FALSE(f.setFromUser("lblInfo", "x"));
    EXPECT_FALSE(f.setFromUser("fraOne", "x"));
    EXPECT_FALSE(f.setFromUser("nope", "1"));
    EXPECT_EQ(f.valueOf("lblInfo"), "Some caption");
    EXPECT_EQ(f.valueOf("cmdGo"), "Go");
    EXPECT_EQ(f.valueOf("nope"), "");
    EXPECT_THROW(f.at("nope"), std::out_of_range);
}

TEST(FormRules, LoadRunsOnceEvenWhenAPersonTouchesFirst) {
    RulesForm f;
    EXPECT_FALSE(f.loaded());
    EXPECT_TRUE(f.setFromUser("chkX", "1"));
    EXPECT_TRUE(f.loaded());
    f.ensureLoaded();
    EXPECT_EQ(f.loads, 1);
    EXPECT_EQ(f.log, "optA;chkX;");
}

TEST(FormRegistry, FindsByNameAndReplacesASecondFormOfTheSameName) {
    forms::FormRegistry reg;
    reg.add(std::make_unique<RulesForm>());
    reg.add(std::make_unique<forms::Form>("frmOther"));
    EXPECT_EQ(reg.all().size(), 2u);
    RulesForm& r = reg.get<RulesForm>("frmRules");
    r.log = "old";
    reg.add(std::make_unique<RulesForm>());
    EXPECT_EQ(reg.all().size(), 2u);
    EXPECT_EQ(reg.get<RulesForm>("frmRules").log, "");
    EXPECT_EQ(reg.find("frmMissing"), nullptr);
    EXPECT_EQ(reg.all()[1]->name(), "frmOther");
}

}  // namespace
