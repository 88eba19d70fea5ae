#pragma once
// The state kept beside the engine, owned by the main form for the whole run.

#include <string>
#include <vector>

#include "engine/Types.h"

namespace core {

struct LabelEntry {
    engine::Handle group = 0;
    engine::Point3 position;
    std::string text;
};

struct MainState {
    // handles
    engine::Handle F_h_lngCamera = 0;
    engine::Handle F_h_lngLight = 0;
    engine::Handle F_h_lngFont = 0;
    engine::Handle F_h_lngAddedInfoGroup = 0;
    std::vector<engine::Handle> F_h_lngAddedGroups;  // intAddedGroupCount is its size
    engine::Handle F_h_lngMUSphere1 = 0;
    engine::Handle F_h_lngMUSphere2 = 0;
    engine::Handle F_h_lngRubberLine = 0;
    engine::Handle F_h_lngPointMoveEntity = 0;

    // text markers drawn in every frame (lngLabelCount is the size)
    std::vector<LabelEntry> labels;

    engine::Point3 dblCoordOffset;
    engine::Point3 dblRotationCentre;
    std::string strCommentLog;
    std::string txtComment;
    std::string strLoadedFiles;
    bool bolInterruptProcess = false;
    bool bolDialogCancelled = false;
    short bolInverseColourMap = 0;
    short bolColourMapCancelled = 0;

    // camera (Part of the navigation)
    double dblCamAzimuth = 0;
    double dblCamElevation = 3.1416 * 0.5;
    double dblCamDistance = 50000.0;
    float sngProjectionFactor = 1.0f;
    float sngNorthAxis = 0.5f;  // also sngAxisRotation: one value
    float sngQuadrant = 0.5f;
    long lngCutOff = 1;
    long lngCullingDepth = 0;  // 0: "Infinite"
    double dblFogDepth = 0;
    int intRotateSpeedX = 0;
    int intRotateSpeedY = 0;
    double dblSlowZoomRate = 1.2;
    bool bolZoomActive = true;
    bool bolCameraMoved = false;
    bool bolAllowNavigate = true;

    // lighting
    short bolLightFollowsCamera = 0;

    // the rubber line
    bool bolRubberLine = false;
    engine::Point3 rubberFrom;
    engine::Point3 rubberTo;
    double mouseOffsetX = 0, mouseOffsetY = 0;

    // window layout in twips (15 to a pixel), computed by Form_Resize
    struct Layout {
        int renderLeft = 0, renderTop = 360, renderWidth = 0, renderHeight = 0;
        int framesTop = 0;
        int buttonLeft[4] = {0, 0, 0, 0};
    } layout;
    int intResizeX = 480;
    int intResizeY = 1300;
    // window
    int lngWindowWidth = 800;
    int lngWindowHeight = 600;
    int windowState = 0;  // 1 minimised
    int formWidth = 0, formHeight = 0;  // twips
    bool timSliderEnabled = false;
    bool timAutoRotateEnabled = false;
    int intTranslucentCount = 0;

    // tool flags: any armed tool sets one; p_subResetAndCleanup clears them all
    std::vector<std::pair<std::string, bool>> toolFlags;
    bool toolArmed() const;
    void setToolFlag(const std::string& name, bool on);
    bool toolFlag(const std::string& name) const;
    void clearToolFlags();

    bool bolOpenByAssociation = false;
    bool bolProgramEnding = false;

    // files: the import road and the world files
    std::string strFullPath;       // the chosen file, "" for none
    std::string strFileTitle;      // its name as the dialog gave it
    std::string strFolder;         // strFullPath less strFileTitle
    short bolFileCancelled = 0;    // -1 when the file dialog was cancelled
    std::string comLoadStateFile;  // the world open dialog's file name
    // The worlds opened and added: [0] "FirstModel", then a "NextModel" each
    // (intModelCount is the highest index, -1 for none).
    std::vector<engine::Handle> lngModelGroups;
    int intModelCount = -1;
    engine::Point3 dblSceneOffset;  // taken off the scene while it is saved
    // the readers' line-counting progress helper (P_subProgressMessage)
    float sngProgressBusy = 0;
    long lngProgressLines = 0;
};

}  // namespace core
