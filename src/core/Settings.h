#pragma once
// The shared settings with their defaults; the settings form and the .SET file
// change them (persistence layer).

namespace core {

struct Settings {
    float sngRotationDegrees = 10.0f;
    int lngZoomAmount = 1000;
    int lngPanAmount = 10;
    double dblLineThickness = 10.0;
    double dblSphereLatitudeBands = 4.0;
    double dblSphereLongitudeBands = 8.0;
    short intSphereMarkerKind = 0;
    double dblSphereScale = 4.0;
    double dblSphereRadius = 10.0;
    short intFormWidthStep = 1300;
    short intFormHeightStep = 480;
    bool statusBarVisible = true;
};

}  // namespace core
