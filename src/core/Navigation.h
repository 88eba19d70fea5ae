#pragma once
// Moving the orbit camera: the mouse (rotate, pan, zoom), the wheel, the keys
// of the render window, the zoom-rate, culling, cut-off and projection
// controls of the main form, and the auto-rotation.

#include "engine/Types.h"

namespace core {

class AppContext;
struct MainState;

// Radians a degree of the rotate keys: a hair more than a degree, as it has always been.
inline constexpr double kKeyDegree = 0.017453292519943278 + 0.0001;
// Radians a pixel of mouse rotation.
inline constexpr double kMouseRotate = 0.007;
// What keys M and P run: the window registers them (the file menu at the
// mouse, a screenshot shown in the image viewer); without a window the keys
// only write their lines.
inline constexpr const char* kFileMenuCommand = "mnuFile";
inline constexpr const char* kScreenshotCommand = "mnuScreenshot";
// Wheel notches count as this many lines (the system's usual setting).
inline constexpr int kWheelLines = 3;

// The elevation after adding `delta`: where the sine or the cosine comes within
// 1e-5 of +-1 (looking straight down or up, or level) it is pushed on by a
// further 0.009 the way it was going, so that the camera frame never degenerates.
double elevationAfter(double elevation, double delta);

// The zoom step for one unit of movement (steps 1 to 3 of the zoom).
double zoomRate(const MainState& s);
// Zoom by Y units of movement: the distance shrinks by factor * Y * rate and is
// held between 238 and 2000000 times the projection factor. bolSlow is kept for
// its callers; the rate follows the zoom-rate box alone.
void p_subZoom(AppContext& ctx, double Y, bool bolSlow);

// Resets, asks for north's place (modal when bolUseForm, else silently) and,
// unless that was cancelled, restarts the camera on the scene's centre.
void p_subInitializeWorld(AppContext& ctx, bool bolUseForm);

// One tick of timAutoRotate: azimuth and elevation move by speed * 0.002.
void timAutoRotate_Timer(AppContext& ctx);
// One tick of timSlider: the cut-off follows the slider.
void timSlider_Timer(AppContext& ctx);
// The rotate buttons: the auto-rotation speeds change by (dx, dy); both zero stops it.
void cmdRotatePicture(AppContext& ctx, int dx, int dy);
void cmdRotatePictureStop(AppContext& ctx);

// Handlers of the main form's controls.
void cboZoomRate_Change(AppContext& ctx);
void cboCullingDepth_Change(AppContext& ctx);
void sliViewCutOff_Change(AppContext& ctx);
void lstPersOrtho_Click(AppContext& ctx);

// The mouse, wheel and keys of picRenderWindow. Shift: 1 shift, 2 ctrl, 4 alt;
// button: 1 left, 2 right, 4 middle.
class Navigator {
public:
    void mouseDown(AppContext& ctx, int button, int shift, double x, double y);
    void mouseMove(AppContext& ctx, int button, int shift, double x, double y);
    void mouseUp(AppContext& ctx, int button, int shift, double x, double y);
    void wheel(AppContext& ctx, int delta, double x, double y);
    void keyDown(AppContext& ctx, int keyCode, int shift);

private:
    // Where a window pixel meets the plane through the rotation centre square to the view.
    bool onPlane(AppContext& ctx, double x, double y, engine::Point3& out) const;
    void panBy(AppContext& ctx, engine::Point3 from, engine::Point3 to);

    double lastX_ = 0, lastY_ = 0;
    engine::Plane plane_;
    engine::Point3 press3D_;
    bool pressOnPlane_ = false;
    int pointerBefore_ = 1;
    bool navigated_ = false;
};

// Registers the navigation commands and procedures and the coordinate limit
// check, binds the main form's navigation controls and puts a navigator behind
// picRenderWindow's input (a handler already there keeps running, before it).
void installNavigation(AppContext& ctx);

}  // namespace core
