#include "forms/Frm03MirrowMain.h"

namespace forms {

Frm03MirrowMain::Frm03MirrowMain() : Form("frm03_MirrowMain", "Tarvik") {
    add(ControlKind::CheckBox, "chkShowInfo", "Info OFF");
    auto& zoom = add(ControlKind::ComboBox, "cboZoomRate", "Zoom rate");
    zoom.items = {"Active", "SlowP1", "SlowP2", "SlowO1", "SlowO2"};
    zoom.text = "Active";
    auto& cull = add(ControlKind::ComboBox, "cboCullingDepth", "Culling depth");
    cull.items = {"Infinite", "1000", "5000", "10000", "50000", "100000", "500000"};
    cull.text = "Infinite";
    auto& cut = add(ControlKind::Slider, "sliViewCutOff", "Cut-off");
    cut.min = 1;
    cut.max = 80000;
    cut.smallChange = 200;
    cut.value = 1;
    auto& po = add(ControlKind::ListBox, "lstPersOrtho", "Projection");
    po.items = {"Perspective", "Orthographic"};
    po.text = "Perspective";
    add(ControlKind::TextBox, "txtComment", "");
    add(ControlKind::ComboBox, "cboSnapSelect1", "Snap to").items = {"Polygon", "Tube", "Line", "Entity", "Group"};
    at("cboSnapSelect1").text = "Polygon";
    add(ControlKind::ComboBox, "cboSnapSelect2", "Snap on").items = {"Surface", "Point", "Edge", "1/2 Edge", "Centre"};
    at("cboSnapSelect2").text = "Surface";
}

}  // namespace forms
